# Debian packages: after a build of the preset "packages", cpack --preset packages makes them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tavrin)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # Each package has its own.
set(CPACK_PACKAGE_CONTACT "The libTavrin developers <libtavrin@example.org>")
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
# The umask of whoever packs shall not show.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime development)
if(TARGET tavrin)
  list(APPEND CPACK_COMPONENTS_ALL tool)
endif()
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(soname_version ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
set(library_package libtavrin${PROJECT_VERSION_MAJOR})
math(EXPR next_minor "${PROJECT_VERSION_MINOR} + 1")
# The name of the package has no minor version, and the SONAME has, so each dependency says it.
set(library_dependency
  "${library_package} (>= ${PROJECT_VERSION}), ${library_package} (<< ${PROJECT_VERSION_MAJOR}.${next_minor}~)")
set(same_library "${library_package} (= ${PROJECT_VERSION})")

# describe(COMPONENT PACKAGE SECTION SUMMARY TEXT): names a package, and says what it is for.
function(describe component package section summary text)
  string(TOUPPER ${component} upper)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package} PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section} PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_DESCRIPTION "${summary}\n${text}" PARENT_SCOPE)
endfunction()

set(about "libTavrin gives programs one event-based interface, in the manner of SAX2,
to documents in XML text and in Fast Infoset, the binary encoding of
ITU-T X.891. Readers call handlers, and writers are handlers, so that a
reader connected to a writer converts a document in one pass.
.
")
describe(runtime ${library_package} libs "events of XML text and of Fast Infoset"
  "${about}This package has the shared library.")
describe(development libtavrin-dev libdevel "events of XML text and of Fast Infoset, for development"
  "${about}This package has the headers, and what CMake and pkg-config need to find
the library.")
describe(tool tavrin text "converts, checks and compares XML text and Fast Infoset"
  "The tool tavrin converts documents between XML text and Fast Infoset, the
binary encoding of ITU-T X.891. It checks and compares them event by event,
shows what each octet means, and takes out what a path names, in either
encoding.")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${same_library}")
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${library_dependency}")

# What Debian asks of each package besides: its licence, a changelog, and for the library the symbols
# with the version from which on they are there.
set(debian_dir ${PROJECT_BINARY_DIR}/debian)
# The last change's time, so that the same sources make the same packages.
execute_process(COMMAND git log -1 --format=%cD WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
  OUTPUT_VARIABLE changed OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
if(NOT changed)
  string(TIMESTAMP changed "%a, %d %b %Y %H:%M:%S +0000" UTC)
endif()
string(REGEX REPLACE "^([A-Za-z]+), ([0-9]) " "\\1, 0\\2 " changed "${changed}")
string(REGEX MATCH "[0-9][0-9][0-9][0-9]" year "${changed}")
set(contact ${CPACK_PACKAGE_CONTACT})
foreach(name changelog copyright lintian-overrides)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/${name}.in ${debian_dir}/${name} @ONLY)
endforeach()
execute_process(COMMAND gzip --best --no-name --force --keep changelog
  WORKING_DIRECTORY ${debian_dir} COMMAND_ERROR_IS_FATAL ANY)
foreach(component ${CPACK_COMPONENTS_ALL})
  string(TOUPPER ${component} upper)
  set(doc_dir ${CMAKE_INSTALL_DATAROOTDIR}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  install(FILES ${debian_dir}/copyright DESTINATION ${doc_dir} COMPONENT ${component})
  install(FILES ${debian_dir}/changelog.gz DESTINATION ${doc_dir} COMPONENT ${component})
endforeach()
install(FILES ${debian_dir}/lintian-overrides COMPONENT runtime
  DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/lintian/overrides RENAME ${library_package})

# The symbols are those of the library as it was built: cpack asks for them when it begins.
configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/Symbols.cmake.in ${debian_dir}/Symbols.cmake @ONLY)
set(CPACK_PROJECT_CONFIG_FILE ${debian_dir}/Symbols.cmake)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
  ${debian_dir}/symbols ${debian_dir}/shlibs
  ${CMAKE_CURRENT_LIST_DIR}/debian/triggers)

include(CPack)
