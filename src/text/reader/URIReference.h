#pragma once

#include <string>
#include <string_view>

namespace Tavrin::text {

/// Resolves a URI reference against a base (RFC 3986, section 5.2).
///
/// The base may be relative to an unknown place. Then the result is relative to that place, too,
/// and keeps the `..` segments that lead out of it.
/// @param base where it is empty, the reference stays as it is
std::string resolveURIReference(std::string_view reference, std::string_view base);

}  // namespace Tavrin::text
