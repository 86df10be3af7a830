#pragma once

#include <expat.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// Character encodings that expat does not know, through iconv.

namespace Tavrin::text {

enum class EncodingSupport { singleByte, multiByte, unknown };

/// Fills expat's table for an encoding. It can only describe encodings in which each octet is a
/// character.
/// @return singleByte, or the reason why that is impossible
EncodingSupport describeEncoding(const char* name, XML_Encoding& encoding);

/// Converts octets to UTF-8; empty where they are not valid in their encoding.
std::string toUTF8(const char* encoding, std::string_view octets);

/// How many octets of an entity are searched for its encoding declaration.
inline constexpr std::size_t kLongestDeclaration = 1024;

/// Whether an entity declares UTF-8 by a name that iconv knows and expat does not, like "utf8".
/// Then the encoding must be set before expat reads: describeEncoding cannot describe UTF-8.
/// @param start the entity's octets so far
/// @return nothing while more octets are needed
std::optional<bool> declaresUTF8ByAnotherName(std::string_view start);

}  // namespace Tavrin::text
