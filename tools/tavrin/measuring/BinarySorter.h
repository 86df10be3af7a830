#pragma once

#include <array>

#include "measuring/EventOctets.h"

namespace tool {

/// Tells what the octets of Fast Infoset are for (ITU-T X.891, clause 12 and annex C), as the
/// writer "X891" writes them without a vocabulary. It follows the syntax alone and knows no tables,
/// so it keeps nothing of the document.
class BinarySorter : public OctetSorter {
 protected:
  void take(std::string_view octets) override;
  bool mayBePending() const override { return true; }  // Text and ends of elements.

 private:
  /// What the next octets can be.
  enum class Part {
    Header,          // Clause 12, and the presence of components (C.2).
    Standalone,      // One octet.
    Declarations,    // Notations or unparsed entities, up to their end.
    Children,        // Without an end: it does not matter whose they are.
    Namespaces,      // Namespace attributes, up to their end.
    ElementName,     // C.18
    Attributes,      // Up to their end.
    Identifying,     // C.13
    NonIdentifying,  // C.14
  };
  /// Whose octets are being taken, besides those of their kind.
  enum class Item { None, ElementName, AttributeName, Value, Text };

  struct Expected {
    Part part;
    OctetKind kind;  // Of a string that is spelled out.
    Item item;
  };

  void expect(Part part, OctetKind kind = OctetKind::Other, Item item = Item::None) {
    expected_[expectedCount_++] = {part, kind, item};
  }
  void expectStrings(unsigned count, OctetKind kind, Item item = Item::None) {
    for (unsigned i = 0; i < count; ++i) expect(Part::Identifying, kind, item);
  }
  void countFor(Item item, OctetKind kind, std::uint64_t octets);
  std::size_t sizeOfHead(const Expected& next) const;
  void takeHead(const Expected& next);
  void takeHeader();
  void takeChild();
  void takeLiteral(const Expected& next, unsigned format, std::uint64_t size);
  unsigned octet(std::size_t i) const { return head_[i]; }
  std::uint64_t number(std::size_t from, std::size_t octets) const;

  // Heads that are still to come, the next one last. A name, its attributes and all components of a
  // document are far fewer.
  std::array<Expected, 16> expected_{{{Part::Header, OctetKind::Structure, Item::None}}};
  std::size_t expectedCount_ = 1;
  std::array<unsigned char, 8> head_{};
  std::size_t headSize_ = 0;
  std::uint64_t left_ = 0;  // Octets of a string that are still to come.
  OctetKind kindOfLeft_ = OctetKind::Structure;
  Item itemOfLeft_ = Item::None;
};

}  // namespace tool
