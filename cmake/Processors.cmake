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
