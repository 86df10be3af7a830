#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "measuring/CostlyStrings.h"
#include "measuring/PathTree.h"

namespace tool {

/// What the documents of a file take in both encodings, as copies that the tool would make.
struct Measurement {
  std::string name;                    ///< Of the file.
  std::uint64_t octets = 0;            ///< Of the file itself,
  Encoding encoding = Encoding::Text;  ///< which is in this encoding.
  std::uint64_t documents = 0;
  std::array<OctetsByKind, kEncodingCount> kinds{};
  /// Why there can be no copy; empty where there is one.
  std::array<std::string, kEncodingCount> refusals;
  PathTree paths;
  CostlyStrings strings;

  const OctetsByKind& kindsOf(Encoding which) const {
    return kinds[static_cast<std::size_t>(which)];
  }
  const std::string& refusalOf(Encoding which) const {
    return refusals[static_cast<std::size_t>(which)];
  }
};

}  // namespace tool
