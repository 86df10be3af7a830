#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "comparing/Records.h"
#include "files/Input.h"

namespace tool {

/// Finds the lines of places in a document of which only the octets were recorded, by looking up
/// what stands in front of them. So a document that has no differences needs no lines.
class LineFinder {
 public:
  explicit LineFinder(const Input& input) : input_(input) {}

  /// Whether the octets of a text can be looked up, and its characters counted: it is a file in
  /// UTF-8. Ask before the first document is read.
  bool isPossible() const;
  /// The line and column of a place that is an octet, if its anchor has them; else the place.
  Place placeOf(const Place& place, const Anchor& anchor);

 private:
  void countTo(std::uint64_t octet);
  std::string_view octetsFrom(std::uint64_t octet);

  const Input& input_;
  Anchor last_;        // What was found last. The next place is behind it, and may be near.
  std::string block_;  // What was looked up last,
  std::uint64_t blockStart_ = 0;  // and how many octets stand in front of it.
};

}  // namespace tool
