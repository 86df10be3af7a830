#pragma once

#include <array>
#include <string>
#include <vector>

#include "format/Tables.h"

namespace Tavrin::fastinfoset {

/// The initial vocabulary of a document as it is written (X.891, C.2.5).
struct InitialVocabulary {
  std::string externalVocabulary;
  std::array<std::vector<std::string>, kStringTables> strings;        // By Table.
  std::array<std::vector<NameParts>, kTables - kStringTables> names;  // From kElementNames on.

  /// The bits of the components that are present.
  unsigned components() const {
    unsigned bits = externalVocabulary.empty() ? 0 : kExternalVocabulary;
    for (unsigned i = 0; i < strings.size(); ++i) {
      if (!strings[i].empty()) bits |= componentBit(i);
    }
    for (unsigned i = 0; i < names.size(); ++i) {
      if (!names[i].empty()) bits |= componentBit(kStringTables + i);
    }
    return bits;
  }
};

}  // namespace Tavrin::fastinfoset
