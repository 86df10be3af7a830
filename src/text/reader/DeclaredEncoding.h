#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace Tavrin {

/// How far the start of an entity is looked through for its declaration.
inline constexpr std::size_t kLongestDeclaration = 1024;

/// Whether an entity declares UTF-8 under a name that expat does not know, but iconv does, like
/// "utf8". expat has to be told before it reads: a table of its own for UTF-8 ends at U+FFFF.
/// @param start the entity's octets so far
/// @return nothing while more octets are needed
std::optional<bool> declaresUTF8ByAnotherName(std::string_view start);

}  // namespace Tavrin
