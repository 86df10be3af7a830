# The port stands in the sources that it builds.
get_filename_component(SOURCE_PATH ${CMAKE_CURRENT_LIST_DIR}/../../.. ABSOLUTE)

vcpkg_check_features(OUT_FEATURE_OPTIONS feature_options FEATURES tool TAVRIN_BUILD_TOOL)
vcpkg_cmake_configure(
  SOURCE_PATH ${SOURCE_PATH}
  OPTIONS -DTAVRIN_BUILD_TESTS=OFF ${feature_options})
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(PACKAGE_NAME Tavrin CONFIG_PATH lib/cmake/Tavrin)
vcpkg_fixup_pkgconfig()
if("tool" IN_LIST FEATURES)
  vcpkg_copy_tools(TOOL_NAMES tavrin AUTO_CLEAN)
endif()
file(REMOVE_RECURSE ${CURRENT_PACKAGES_DIR}/debug/include ${CURRENT_PACKAGES_DIR}/debug/share)
vcpkg_install_copyright(FILE_LIST ${SOURCE_PATH}/LICENSE)
