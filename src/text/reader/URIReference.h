#pragma once

#include <string>
#include <string_view>

namespace Tavrin::text {

/// Resolves a URI reference against a base (RFC 3986, section 5.2).
///
/// A base may itself be relative, to a place that is not known: the result is then relative to that
/// place, too, and keeps the `..` segments that lead out of it.
/// @param base an empty one leaves the reference as it is
std::string resolveURIReference(std::string_view reference, std::string_view base);

}  // namespace Tavrin::text
