# Runs tools/schemac over every .schema file at build time. It writes into the build tree only, and
# lists its own outputs (--list), so a new schema needs no edit here.
find_package(Python3 3.9 REQUIRED COMPONENTS Interpreter)

set(KROFX_GENERATED_DIR ${CMAKE_CURRENT_BINARY_DIR}/generated)
file(GLOB_RECURSE KROFX_SCHEMAS CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/src/krofx/*.schema)
file(GLOB KROFX_SCHEMAC CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/tools/schemac/*.py)

# The list is made at configure time, and again when a schema or the compiler has changed.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${KROFX_SCHEMAS} ${KROFX_SCHEMAC})
execute_process(
  COMMAND ${Python3_EXECUTABLE} ${CMAKE_CURRENT_SOURCE_DIR}/tools/schemac/schemac.py --source
          ${CMAKE_CURRENT_SOURCE_DIR}/src --out ${KROFX_GENERATED_DIR} --list
  OUTPUT_VARIABLE KROFX_GENERATED OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\n" ";" KROFX_GENERATED "${KROFX_GENERATED}")
add_custom_command(
  OUTPUT ${KROFX_GENERATED}
  COMMAND ${Python3_EXECUTABLE} ${CMAKE_CURRENT_SOURCE_DIR}/tools/schemac/schemac.py --source
          ${CMAKE_CURRENT_SOURCE_DIR}/src --out ${KROFX_GENERATED_DIR}
  DEPENDS ${KROFX_SCHEMAS} ${KROFX_SCHEMAC}
  COMMENT "Compiling schemas"
  VERBATIM)
add_custom_target(krofx_schemas DEPENDS ${KROFX_GENERATED})
