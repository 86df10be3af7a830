#pragma once

#include <string>
#include <string_view>

#include "Callbacks.h"

namespace Tavrin {

/// A name that expat has processed for namespaces, taken apart.
struct ExpatName {
  std::string_view uri;
  std::string_view localName;
  std::string_view prefix;
};

/// Takes a name of expat's apart: "local", "uri SEPARATOR local" or "uri SEPARATOR local SEPARATOR
/// prefix".
/// @param uriLength where the first separator is, or npos
/// @param skip      how much of what follows the namespace name is not searched for the second
///                  separator
inline ExpatName splitAt(std::string_view name, std::size_t uriLength, std::size_t skip) {
  if (uriLength == std::string_view::npos) return {{}, name, {}};
  const std::string_view rest = name.substr(uriLength + 1);
  const std::size_t separator = rest.find(kNameSeparator, skip);
  if (separator == std::string_view::npos) return {name.substr(0, uriLength), rest, {}};
  return {name.substr(0, uriLength), rest.substr(0, separator), rest.substr(separator + 1)};
}

inline ExpatName splitName(std::string_view name) {
  return splitAt(name, name.find(kNameSeparator), 0);
}

/// The name as the document writes it.
inline void assignQName(std::string& qName, const ExpatName& name) {
  if (name.prefix.empty()) {
    qName = name.localName;
    return;
  }
  qName.clear();
  qName.reserve(name.prefix.size() + 1 + name.localName.size());
  qName.append(name.prefix).append(1, ':').append(name.localName);
}

}  // namespace Tavrin
