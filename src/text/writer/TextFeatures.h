#pragma once

#include <Tavrin/Identifiers.h>

#include <string>

namespace Tavrin {

/// The feature of a writer of XML text that an identifier names, or null.
inline bool* findTextFeature(const std::string& name, bool& autoIndent, bool& emptyTags,
                             bool& xmlDeclaration) {
  if (name == features::autoIndent) return &autoIndent;
  if (name == features::emptyTags) return &emptyTags;
  if (name == features::xmlDeclaration) return &xmlDeclaration;
  return nullptr;
}

}  // namespace Tavrin
