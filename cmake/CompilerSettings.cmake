# Settings of every target in this tree. Public headers promise C++17; the rest uses C++20.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast)
if(TAVRIN_WARNINGS_AS_ERRORS)
  set(CMAKE_COMPILE_WARNING_AS_ERROR ON)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # Sees overlapping copies in std::string's operator+ that are not there (GCC bug 105651).
  add_compile_options(-Wno-restrict)
endif()

if(TAVRIN_BUILD_FUZZERS)
  add_compile_options(-fsanitize=fuzzer-no-link)  # So that the fuzzers see what they cover.
endif()
if(TAVRIN_SANITIZERS)
  add_compile_options(-fsanitize=${TAVRIN_SANITIZERS} -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${TAVRIN_SANITIZERS})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Instrumented code hides from GCC what has been initialised; other presets keep the warning.
    add_compile_options(-Wno-maybe-uninitialized)
  endif()
endif()
