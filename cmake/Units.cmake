# tavrin_unite(TARGET [EXCEPT REGEX]): where CMAKE_UNITY_BUILD is set, the compiler sees the sources of a
# folder as one, but for those whose path matches. It takes a quarter of the time. The sources have to
# compile alone as well, so some builds are always without it.
function(tavrin_unite target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "EXCEPT" "")
  set_target_properties(${target} PROPERTIES
    UNITY_BUILD_MODE GROUP
    UNITY_BUILD_CODE_BEFORE_INCLUDE "// NOLINTNEXTLINE(bugprone-suspicious-include)")
  get_target_property(sources ${target} SOURCES)
  foreach(source IN LISTS sources)
    cmake_path(ABSOLUTE_PATH source NORMALIZE OUTPUT_VARIABLE path)
    if(NOT arg_EXCEPT OR NOT path MATCHES "${arg_EXCEPT}")
      cmake_path(GET path PARENT_PATH folder)
      cmake_path(RELATIVE_PATH folder BASE_DIRECTORY ${PROJECT_SOURCE_DIR})
      string(MAKE_C_IDENTIFIER "${folder}" group)
      set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${group})
    endif()
  endforeach()
endfunction()
