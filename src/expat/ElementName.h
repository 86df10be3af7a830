#pragma once

#include <string>

#include "ExpatNames.h"

namespace Tavrin {

/// The name of the current element event. That of the next one takes its place, so that its memory
/// is used again: made anew, it takes as long as what expat does for a small event.
struct ElementName {
  std::string name;  ///< As expat gave it, which the next three are made of.
  std::string uri;
  std::string localName;
  std::string qName;

  /// Takes a name that expat has processed for namespaces.
  void take(const char* given, char separator) {
    // The end tag of an element without child elements, say, follows its start tag.
    if (name == given) return;
    name = given;
    const ExpatName split = splitName(name, separator);
    uri = split.uri;
    localName = split.localName;
    assignQName(qName, split);
  }
  /// Takes a name as it is written.
  void takeWhole(const char* given) {
    if (name == given) return;
    name = given;
    qName = name;
  }
};

}  // namespace Tavrin
