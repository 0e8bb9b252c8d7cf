# The target tidy: clang-tidy over the hand-written sources of the library and the command, by the
# rules of .clang-tidy. It needs the generated headers, and nothing else built.
find_program(KROFX_RUN_CLANG_TIDY NAMES run-clang-tidy run-clang-tidy-14)
if(PROJECT_IS_TOP_LEVEL AND KROFX_RUN_CLANG_TIDY)
  # The commands are GCC's. What clang does not understand is removed from them: precompiled
  # headers, and warnings that clang does not have. .clang-tidy says which warnings of clang are on.
  set(commands ${PROJECT_BINARY_DIR}/tidy)
  file(MAKE_DIRECTORY ${commands})
  add_custom_target(
    tidy
    COMMAND
      sed -E "s/ -Wno-(restrict|stringop-overflow|array-bounds)//g; s/ (-Winvalid-pch|-include [^ ]+cmake_pch[.]hxx)//g"
      ${PROJECT_BINARY_DIR}/compile_commands.json > ${commands}/compile_commands.json
    COMMAND ${KROFX_RUN_CLANG_TIDY} -quiet -p ${commands} -extra-arg=-Wno-error
            "${PROJECT_SOURCE_DIR}/(src|command)/.*"
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
    USES_TERMINAL VERBATIM)
  add_dependencies(tidy krofx_schemas)
endif()
