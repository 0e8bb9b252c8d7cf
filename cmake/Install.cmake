# What `cmake --install` installs, and how other projects find it: krofxConfig.cmake for
# find_package(krofx), krofx.pc for pkg-config.

include(CMakePackageConfigHelpers)
set(KROFX_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/krofx)

install(
  TARGETS krofx krofx_static
  EXPORT krofxTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(
  EXPORT krofxTargets
  NAMESPACE krofx::
  DESTINATION ${KROFX_CMAKE_DIR})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/krofxConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/krofxConfig.cmake
                              INSTALL_DESTINATION ${KROFX_CMAKE_DIR})
# Before 1.0 a minor version may break compatibility with the previous one.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/krofxConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/krofxConfig.cmake
              ${PROJECT_BINARY_DIR}/krofxConfigVersion.cmake DESTINATION ${KROFX_CMAKE_DIR})

# The path from the .pc file back to the prefix, so that a moved installation still works.
file(RELATIVE_PATH KROFX_PC_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${CMAKE_CURRENT_LIST_DIR}/krofx.pc.in ${PROJECT_BINARY_DIR}/krofx.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/krofx.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# The public headers are known only when all generated ones exist, so they are determined at install
# time.
configure_file(${CMAKE_CURRENT_LIST_DIR}/InstallHeaders.cmake.in
               ${PROJECT_BINARY_DIR}/InstallHeaders.cmake @ONLY)
install(SCRIPT ${PROJECT_BINARY_DIR}/InstallHeaders.cmake)

install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md
              ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(
  DIRECTORY ${PROJECT_SOURCE_DIR}/docs
  DESTINATION ${CMAKE_INSTALL_DOCDIR}
  FILES_MATCHING
  PATTERN "*.md")
