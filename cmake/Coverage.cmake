# The target coverage: runs all tests and reports which lines and branches of the sources they reach.
if(KROFX_COVERAGE)
  add_custom_target(
    coverage
    COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/scripts/coverage.py ${PROJECT_BINARY_DIR}
    USES_TERMINAL VERBATIM)
endif()
