#pragma once

#include <expat.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// What expat does not know of character encodings, through iconv.

namespace Tavrin::text {

enum class EncodingSupport { singleByte, multiByte, unknown };

/// Fills expat's table for an encoding. It can only describe encodings in which each octet is a
/// character by itself.
/// @return whether that was done, or why not
EncodingSupport describeEncoding(const char* name, XML_Encoding& encoding);

/// Octets of an encoding in UTF-8; empty where they are not of that encoding.
std::string toUTF8(const char* encoding, std::string_view octets);

/// How many octets of an entity are searched for its declaration.
inline constexpr std::size_t kLongestDeclaration = 1024;

/// Whether an entity declares UTF-8 under a name that iconv knows and expat does not, like "utf8".
/// Such an encoding must be set before expat reads: a table of describeEncoding ends at U+FFFF.
/// @param start the entity's octets so far
/// @return nothing while more octets are needed
std::optional<bool> declaresUTF8ByAnotherName(std::string_view start);

}  // namespace Tavrin::text
