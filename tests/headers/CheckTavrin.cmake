# Tavrin/Tavrin.h in the folder INCLUDE includes every other header beside it, in the order of their
# names.
cmake_minimum_required(VERSION 3.25)

file(GLOB expected RELATIVE ${INCLUDE} ${INCLUDE}/Tavrin/*.h)
list(REMOVE_ITEM expected Tavrin/Tavrin.h)
list(SORT expected)
file(STRINGS ${INCLUDE}/Tavrin/Tavrin.h included REGEX "^#include <.*>$")
list(TRANSFORM included REPLACE "^#include <(.*)>$" "\\1")
if(NOT included STREQUAL expected)
  message(FATAL_ERROR "Tavrin.h includes\n${included}\nand not\n${expected}")
endif()
