# Runs PROGRAM (a list: the program and its arguments) and compares what it prints with the file
# EXPECTED. With the environment variable KROFX_UPDATE_EXPECTED set, writes that file instead.
execute_process(COMMAND ${PROGRAM} OUTPUT_VARIABLE printed RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "ended with ${result}")
endif()
if(DEFINED ENV{KROFX_UPDATE_EXPECTED})
  file(WRITE ${EXPECTED} "${printed}")
endif()
file(READ ${EXPECTED} expected)
if(NOT printed STREQUAL expected)
  message(FATAL_ERROR "expected:\n${expected}\nprinted:\n${printed}")
endif()
