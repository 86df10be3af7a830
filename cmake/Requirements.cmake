# What is not supported is said in the first sentence of the configuration.

# Octets are looked at eight together, as one word whose lowest octet comes first, and sizes are
# counted in 64 bits. Tests run on x86-64, and on arm64 in an emulator (scripts/check-arm64).
math(EXPR pointer_bits "8 * ${CMAKE_SIZEOF_VOID_P}")
if(NOT CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|amd64|AMD64|aarch64|arm64)$"
   OR NOT pointer_bits EQUAL 64
   OR NOT CMAKE_CXX_BYTE_ORDER STREQUAL "LITTLE_ENDIAN")
  message(FATAL_ERROR
    "libTavrin supports x86-64 and arm64 processors, with 64 bits and the lowest octet first, and "
    "not ${CMAKE_SYSTEM_PROCESSOR} with ${pointer_bits} bits (${CMAKE_CXX_BYTE_ORDER}).")
endif()

if(NOT CMAKE_SYSTEM_NAME STREQUAL "Linux")
  message(FATAL_ERROR "libTavrin supports Linux, and not ${CMAKE_SYSTEM_NAME}.")
endif()

# Older ones lack parts of C++20 that the sources use (scripts/check-compilers).
set(oldest_GNU 12)
set(oldest_Clang 14)
if(NOT DEFINED oldest_${CMAKE_CXX_COMPILER_ID})
  message(WARNING "libTavrin is tested with GCC and clang, and not with "
    "${CMAKE_CXX_COMPILER_ID}.")
elseif(CMAKE_CXX_COMPILER_VERSION VERSION_LESS oldest_${CMAKE_CXX_COMPILER_ID})
  message(FATAL_ERROR "libTavrin needs GCC ${oldest_GNU} or clang ${oldest_Clang}, or a newer one, "
    "and not ${CMAKE_CXX_COMPILER_ID} ${CMAKE_CXX_COMPILER_VERSION}.")
endif()
