# The target coverage: runs all tests and reports which lines they executed, as an HTML page and as
# a summary on the terminal.
find_program(KROFX_GCOVR gcovr)
if(KROFX_COVERAGE AND KROFX_GCOVR)
  add_custom_target(
    coverage
    COMMAND ${CMAKE_CTEST_COMMAND} --output-on-failure
    COMMAND ${KROFX_GCOVR} --root ${PROJECT_SOURCE_DIR} --filter ${PROJECT_SOURCE_DIR}/src
            --exclude-throw-branches --exclude-unreachable-branches
            --html-details ${PROJECT_BINARY_DIR}/coverage.html --print-summary
    WORKING_DIRECTORY ${PROJECT_BINARY_DIR}
    USES_TERMINAL VERBATIM)
endif()
