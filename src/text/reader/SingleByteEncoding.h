#pragma once

#include <expat.h>

#include <string>
#include <string_view>

namespace Tavrin {

enum class EncodingSupport { singleByte, multiByte, unknown };

/// Fills expat's table for an encoding that expat does not know itself, through iconv. Only
/// encodings in which each octet is a character by itself can be told in such a table.
/// @return whether that was done, or why not
EncodingSupport describeEncoding(const char* name, XML_Encoding& encoding);

/// Whether a name is one of UTF-8 that iconv knows and expat does not.
bool isUTF8(const char* name);

/// Octets of an encoding in UTF-8; empty where they are not of that encoding.
std::string toUTF8(const char* encoding, std::string_view octets);

}  // namespace Tavrin
