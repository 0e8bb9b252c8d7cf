# The five trusted roots that the library carries: files of the folder KROFX_ROOTS_DIR, which
# tools/roots writes into a source at build time. The README.md of the default folder describes its
# content, and how to use other roots.
set(KROFX_ROOTS_DIR
    ${CMAKE_CURRENT_SOURCE_DIR}/src/krofx/security/roots
    CACHE PATH "Folder of the trusted roots: DER files <ID>.der")
set(roots_script ${CMAKE_CURRENT_SOURCE_DIR}/tools/roots/embed_roots.py)
foreach(id 1000 2000 3000 4000 4001)
  list(APPEND roots ${KROFX_ROOTS_DIR}/${id}.der)
endforeach()

# The folder is checked at configure time, and again when a file in it has changed.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${roots} ${roots_script})
execute_process(COMMAND ${Python3_EXECUTABLE} ${roots_script} ${KROFX_ROOTS_DIR}
                RESULT_VARIABLE refused ERROR_VARIABLE reason ERROR_STRIP_TRAILING_WHITESPACE)
if(refused)
  message(FATAL_ERROR "KROFX_ROOTS_DIR: ${reason}")
endif()

set(roots_source ${KROFX_GENERATED_DIR}/krofx/security/trusted_roots.cpp)
add_custom_command(
  OUTPUT ${roots_source}
  COMMAND ${Python3_EXECUTABLE} ${roots_script} ${KROFX_ROOTS_DIR} ${roots_source}
  DEPENDS ${roots} ${roots_script}
  COMMENT "Writing the trusted roots"
  VERBATIM)
add_custom_target(krofx_roots DEPENDS ${roots_source})
# The layers depend on the target, and take their generated sources from the list.
add_dependencies(krofx_schemas krofx_roots)
list(APPEND KROFX_GENERATED ${roots_source})
