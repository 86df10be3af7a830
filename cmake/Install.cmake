# The installed package, in components that packagers may choose from:
#   runtime      the shared library
#   development  headers, the linker's name or the static library, CMake package, pkg-config file
#   tool         the command line tool, with what makes it at home on a desktop
#   docs         the manual, once the target docs has made it
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Tavrin)

install(TARGETS Tavrin EXPORT TavrinTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
  FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(EXPORT TavrinTargets NAMESPACE Tavrin:: DESTINATION ${package_dir} COMPONENT development)

get_target_property(library_type Tavrin TYPE)
if(library_type STREQUAL "STATIC_LIBRARY")
  # The program that takes in the library needs what the library needs.
  set(find_dependencies "include(CMakeFindDependencyMacro)\nfind_dependency(EXPAT 2.5)\n")
endif()
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/TavrinConfig.cmake.in
  ${PROJECT_BINARY_DIR}/TavrinConfig.cmake INSTALL_DESTINATION ${package_dir})
# Before 1.0 a minor version may break callers.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/TavrinConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/TavrinConfig.cmake
              ${PROJECT_BINARY_DIR}/TavrinConfigVersion.cmake
        DESTINATION ${package_dir} COMPONENT development)

# The pkg-config file finds the package from its own place, so that the package can be moved.
set(pkgconfig_dir ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH pkgconfig_prefix ${pkgconfig_dir} ${CMAKE_INSTALL_PREFIX})
file(RELATIVE_PATH pkgconfig_includedir ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
file(RELATIVE_PATH pkgconfig_libdir ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
configure_file(${CMAKE_CURRENT_LIST_DIR}/Tavrin.pc.in ${PROJECT_BINARY_DIR}/Tavrin.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/Tavrin.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

if(TARGET tavrin)
  install(TARGETS tavrin RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
endif()
if(TARGET docs)
  install(DIRECTORY ${PROJECT_BINARY_DIR}/docs/html DESTINATION ${CMAKE_INSTALL_DOCDIR}
          COMPONENT docs OPTIONAL)
endif()
