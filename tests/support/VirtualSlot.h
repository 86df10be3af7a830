#pragma once

#include <cstddef>
#include <cstring>

/// Where a virtual operation stands in the table of its class. The destructor, which comes first,
/// takes the places 0 and 1. A pointer to such a member holds the place, in octets and plus one,
/// and no adjustment of `this` (Itanium C++ ABI, section 2.3); on arm64 the one stands in the
/// adjustment (C++ ABI for the Arm 64-bit Architecture, section 3.2.1). -1 if it holds anything
/// else.
///
/// The order of these places is part of the binary interface: a program built against an older
/// library calls by place, not by name.
template <typename Member>
std::ptrdiff_t slotOf(Member member) {
  struct {
    std::ptrdiff_t place;
    std::ptrdiff_t adjustment;
  } parts;
  static_assert(sizeof parts == sizeof member);
  std::memcpy(&parts, &member, sizeof parts);
  constexpr auto width = static_cast<std::ptrdiff_t>(sizeof(void*));
#ifdef __aarch64__
  const bool isVirtual = parts.place % width == 0 && parts.adjustment == 1;
#else
  const bool isVirtual = parts.place % width == 1 && parts.adjustment == 0;
#endif
  return isVirtual ? parts.place / width : -1;
}
