#pragma once

#include <Tavrin/XMLWriter_FI.h>

#include "../Integers.h"

namespace Tavrin {

/// Writes an integer in its shortest form, with the other bits of its first octet.
template <typename Encoding>
void XMLWriter_FI::putInteger(const Encoding& encoding, unsigned bits, std::uint64_t value) {
  const fastinfoset::EncodedInteger integer = fastinfoset::encodeInteger(encoding, bits, value);
  write(integer.octets.data(), integer.length);
}

}  // namespace Tavrin
