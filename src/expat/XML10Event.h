#pragma once

#include <string>

#include "ElementAttributes.h"
#include "ExpatNames.h"

namespace Tavrin {

/// Strings of the current element event. Those of the next one take their place, so that their
/// memory is used again: made anew, they take as long as what expat does for a small event.
struct XML10Event {
  std::string name;  ///< As expat gave the last element's, which the next three are made of.
  std::string uri;
  std::string localName;
  std::string qName;
  ElementAttributes attributes;

  /// Takes an element's name.
  /// @param splits whether expat has processed the name for namespaces
  void takeName(const char* given, bool splits) {
    // The end tag of an element without child elements, say, follows its start tag.
    if (name == given) return;
    name = given;
    if (splits) {
      const ExpatName split = splitName(name, kXML10Separator);
      uri = split.uri;
      localName = split.localName;
      assignQName(qName, split);
    } else {
      qName = name;
    }
  }
};

}  // namespace Tavrin
