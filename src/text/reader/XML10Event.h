#pragma once

#include "ElementAttributes.h"
#include "ElementName.h"

namespace Tavrin {

/// What the current element event is made of.
struct XML10Event : ElementName {
  ElementAttributes attributes;

  /// Takes an element's name.
  /// @param splits whether expat has processed the name for namespaces
  void takeName(const char* given, bool splits) {
    splits ? take(given, kXML10Separator) : takeWhole(given);
  }
};

}  // namespace Tavrin
