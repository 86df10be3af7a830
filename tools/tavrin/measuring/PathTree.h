#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "measuring/EventOctets.h"

namespace tool {

/// The encodings that a document is measured in.
enum class Encoding { Text, Binary };
inline constexpr Encoding kEncodings[] = {Encoding::Text, Encoding::Binary};
inline constexpr std::size_t kEncodingCount = 2;

/// The octets of a document by the paths of its elements. Memory is bounded: there are so many
/// different paths, of so many levels; what goes beyond is counted together below the last element
/// that has a path of its own.
class PathTree {
 public:
  static constexpr std::size_t kMaximumPaths = 10000;
  static constexpr std::size_t kMaximumLevels = 64;
  static constexpr std::size_t kLongestName = 256;  ///< Longer ones that begin alike are one.

  struct Node {
    std::string name;  ///< Empty for elements that have no path of their own.
    std::uint32_t parent = 0;
    std::uint64_t elements = 0;
    std::array<OctetsByKind, kEncodingCount> own{};  ///< Without those of elements within.
    std::vector<std::uint32_t> children;
  };

  PathTree() : nodes_(1), open_{0} {}

  void startElement(const std::string& name);
  void endElement();
  /// Counts octets for the innermost open element, or for the document itself.
  void add(Encoding encoding, const OctetsByKind& octets);
  /// A document that failed may have left elements open.
  void closeAll() {
    open_.resize(1);
    deeper_ = 0;
  }

  /// The first node is the document, with what is outside of its root element.
  const std::vector<Node>& nodes() const { return nodes_; }

 private:
  std::uint32_t childOf(std::uint32_t parent, const std::string& name);

  std::vector<Node> nodes_;
  std::unordered_map<std::string, std::uint32_t> numbers_;  // By parent and name.
  std::vector<std::uint32_t> open_;
  std::uint64_t deeper_ = 0;  // Open elements within the innermost one that is counted apart.
  std::string key_;           // Kept for its storage.
};

}  // namespace tool
