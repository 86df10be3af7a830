# The installed package: headers, library, CMake package "Tavrin", pkg-config file, tool.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Tavrin)

install(TARGETS Tavrin EXPORT TavrinTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT TavrinTargets NAMESPACE Tavrin:: DESTINATION ${package_dir})

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/TavrinConfig.cmake.in
  ${PROJECT_BINARY_DIR}/TavrinConfig.cmake INSTALL_DESTINATION ${package_dir})
# Before 1.0 a minor version may break callers.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/TavrinConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/TavrinConfig.cmake
              ${PROJECT_BINARY_DIR}/TavrinConfigVersion.cmake
        DESTINATION ${package_dir})

# The pkg-config file finds the package from its own place, so that the package can be moved.
set(pkgconfig_dir ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH pkgconfig_prefix ${pkgconfig_dir} ${CMAKE_INSTALL_PREFIX})
file(RELATIVE_PATH pkgconfig_includedir ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
file(RELATIVE_PATH pkgconfig_libdir ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
configure_file(${CMAKE_CURRENT_LIST_DIR}/Tavrin.pc.in ${PROJECT_BINARY_DIR}/Tavrin.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/Tavrin.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

if(TARGET tavrin)
  install(TARGETS tavrin RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
