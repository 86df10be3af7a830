#pragma once

#include <string>
#include <string_view>

namespace Tavrin {

/// Separates the parts of a name that expat has processed for namespaces: namespace name, local
/// name, prefix. A line feed cannot stand in a name, and in a namespace name only as a reference:
/// expat then refuses the document.
inline constexpr char kExpatSeparator = '\n';

/// The same where any namespace name is to be read: an octet that UTF-8 does not have.
inline constexpr char kXML10Separator = '\xFF';

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
inline ExpatName splitAt(std::string_view name, char separator, std::size_t uriLength,
                         std::size_t skip) {
  if (uriLength == std::string_view::npos) return {{}, name, {}};
  const std::string_view rest = name.substr(uriLength + 1);
  const std::size_t second = rest.find(separator, skip);
  if (second == std::string_view::npos) return {name.substr(0, uriLength), rest, {}};
  return {name.substr(0, uriLength), rest.substr(0, second), rest.substr(second + 1)};
}

inline ExpatName splitName(std::string_view name, char separator) {
  return splitAt(name, separator, name.find(separator), 0);
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

inline std::string qNameOf(const ExpatName& name) {
  std::string qName;
  assignQName(qName, name);
  return qName;
}

}  // namespace Tavrin
