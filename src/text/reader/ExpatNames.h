#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace Tavrin::text {

/// Separates the parts of a name that expat has processed for namespaces: namespace name, local
/// name, prefix. A line feed cannot be part of a name. Where a namespace name has one, by a
/// reference, expat refuses the document.
inline constexpr char kExpatSeparator = '\n';

/// A separator with which every namespace name is accepted: an octet that UTF-8 does not have.
inline constexpr char kXML10Separator = '\xFF';

/// Stands for no separator, where expat does not process names for namespaces.
inline constexpr char kNoSeparator = '\0';

/// The parts of a name that expat has processed for namespaces.
struct ExpatName {
  std::string_view uri;
  std::string_view localName;
  std::string_view prefix;
};

/// Splits a name of expat's: "local", "uri SEPARATOR local" or "uri SEPARATOR local SEPARATOR
/// prefix".
/// @param uriLength the position of the first separator, or npos
/// @param skip      how many octets after it are not searched for the second one
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

/// The memory of a text or name that is longer is not kept for the next one.
inline constexpr std::size_t kMostKept = std::size_t{64} * 1024;

/// The name of the current element event. The next one reuses its memory: an allocation takes as
/// long as expat needs for a small event.
struct ElementName {
  std::string name;  ///< As expat gave it. The others are derived from it.
  std::string uri;
  std::string localName;
  std::string qName;

  /// @param separator the one that expat uses, or kNoSeparator
  void assign(const char* given, char separator) {
    // As with the end tag of an element without child elements.
    if (name == given) return;
    // Where memory runs out below, there is no name.
    if (name.size() > kMostKept) release();
    name.clear();
    if (separator == kNoSeparator) {
      qName = given;
    } else {
      const ExpatName split = splitName(given, separator);
      uri = split.uri;
      localName = split.localName;
      assignQName(qName, split);
    }
    name = given;
  }

  /// Frees the memory; assigning an empty string would not.
  void release() { const ElementName released(std::move(*this)); }
};

}  // namespace Tavrin::text
