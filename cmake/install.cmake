# Installs the library, its log stand-in, the public headers, a pkg-config
# file and a CMake package config (find_package(voklite) gives voklite::voklite).
include(CMakePackageConfigHelpers)

install(TARGETS voklite voklite_log EXPORT voklite-targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/vok DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT voklite-targets NAMESPACE voklite::
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/voklite)

configure_package_config_file(cmake/voklite-config.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/voklite-config.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/voklite)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/voklite-config-version.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/voklite-config.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/voklite-config-version.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/voklite)

# The .pc file locates the prefix from its own directory.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
  file(RELATIVE_PATH VOK_PC_TO_PREFIX "${CMAKE_INSTALL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
else()
  file(RELATIVE_PATH VOK_PC_TO_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
endif()
string(REGEX REPLACE "/$" "" VOK_PC_TO_PREFIX "${VOK_PC_TO_PREFIX}")
configure_file(cmake/voklite.pc.in ${CMAKE_CURRENT_BINARY_DIR}/voklite.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/voklite.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
