# The target tidy: clang-tidy over the hand-written sources of the library and the command, by the
# rules of .clang-tidy. It needs the generated headers, and nothing else built.
find_program(KROFX_RUN_CLANG_TIDY NAMES run-clang-tidy run-clang-tidy-14)
if(PROJECT_IS_TOP_LEVEL AND KROFX_RUN_CLANG_TIDY)
  # What GCC alone understands is taken out of its commands: its precompiled headers, and warnings
  # that clang has not. What clang's own warnings may say is up to .clang-tidy.
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
