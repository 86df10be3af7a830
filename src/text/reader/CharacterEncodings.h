#pragma once

#include <expat.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// Character encodings that expat does not know, through iconv.

namespace Tavrin::text {

/// Fills expat's table for an encoding. It can only describe encodings in which each octet is a
/// character, and which have the characters of ASCII where ASCII has them.
/// @return whether it could be filled
bool describeEncoding(const char* name, XML_Encoding& encoding);

/// Whether iconv knows an encoding by this name.
bool isKnownEncoding(const char* name);
/// Whether this is a name of UTF-32, in any order of its octets.
bool isFourOctets(std::string_view name);

/// Converts octets to UTF-8; empty where they are not valid in their encoding.
std::string toUTF8(const char* encoding, std::string_view octets);

/// How many octets of an entity are searched for its encoding declaration.
inline constexpr std::size_t kLongestDeclaration = 1024;

/// What has to be done before expat reads an entity.
struct EntityEncoding {
  enum class Way {
    Expat,   ///< Nothing. It knows the encoding, or finds it by describeEncoding, or fails.
    UTF8,    ///< It is declared by a name that expat does not know, like "utf8": it must be set.
    Recoded  ///< The octets must be converted, from the encoding of this name.
  };

  Way way = Way::Expat;
  std::string name = {};
};

/// The encoding of an entity: what its first octets show, or what its declaration names.
/// @param start the entity's octets so far
/// @return nothing while more octets are needed
std::optional<EntityEncoding> encodingOfEntity(std::string_view start);

}  // namespace Tavrin::text
