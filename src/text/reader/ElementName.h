#pragma once

#include <string>
#include <utility>

#include "EventTarget.h"
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
    giveUp();
    const ExpatName split = splitName(given, separator);
    uri = split.uri;
    localName = split.localName;
    assignQName(qName, split);
    name = given;
  }
  /// Takes a name as it is written.
  void takeWhole(const char* given) {
    if (name == given) return;
    giveUp();
    qName = given;
    name = given;
  }

  /// Frees the memory. An empty string that is assigned would leave it as it is.
  void release() { const ElementName gone(std::move(*this)); }

 private:
  /// There is no name until all of the next one is there: memory may run out on the way.
  void giveUp() {
    if (name.size() > kMostKept) release();
    name.clear();
  }
};

}  // namespace Tavrin
