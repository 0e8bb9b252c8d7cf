# The target tidy: clang-tidy over the hand-written sources of the library and the command, by the
# rules of .clang-tidy. It needs the generated headers, and nothing else built.
find_program(KROFX_RUN_CLANG_TIDY NAMES run-clang-tidy run-clang-tidy-14)
if(PROJECT_IS_TOP_LEVEL AND KROFX_RUN_CLANG_TIDY)
  add_custom_target(
    tidy
    COMMAND ${KROFX_RUN_CLANG_TIDY} -quiet -p ${PROJECT_BINARY_DIR}
            "${PROJECT_SOURCE_DIR}/(src|tools)/.*"
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
    USES_TERMINAL VERBATIM)
  add_dependencies(tidy krofx_schemas)
endif()
