#include "measuring/BinarySorter.h"

#include <algorithm>

namespace tool {

namespace {

constexpr unsigned kTerminator = 0xF0;
constexpr unsigned kTwoTerminators = 0xFF;
constexpr unsigned kCDATAAlgorithm = 9;  // As C.29 has it: number 10, less one.

/// Octets of an integer that begins on the second bit (C.25, C.26).
std::size_t sizeOnSecondBit(unsigned octet) {
  return (octet & 0x40U) == 0 || octet == 0xFF ? 1 : (octet & 0x20U) == 0 ? 2 : 3;
}

/// On the third bit (C.27).
std::size_t sizeOnThirdBit(unsigned octet) {
  if ((octet & 0x20U) == 0) return 1;
  const unsigned form = octet & 0x18U;
  return form == 0 ? 2 : form == 0x08 ? 3 : 4;
}

/// On the fourth bit (C.28).
std::size_t sizeOnFourthBit(unsigned octet) {
  if ((octet & 0x10U) == 0) return 1;
  const unsigned form = octet & 0x0CU;
  return form == 0 ? 2 : form == 0x04 ? 3 : 4;
}

/// A length's form: what is added to it, and in how many octets behind the first.
struct LengthForm {
  std::size_t octets;
  std::uint64_t least;
};

LengthForm lengthOnSecondBit(unsigned octet) {  // C.22
  if ((octet & 0x40U) == 0) return {0, (octet & 0x3FU) + 1};
  return (octet & 0x20U) == 0 ? LengthForm{1, 65} : LengthForm{4, 321};
}

LengthForm lengthOnFifthBit(unsigned octet) {  // C.23
  if ((octet & 0x08U) == 0) return {0, (octet & 0x07U) + 1};
  return (octet & 0x04U) == 0 ? LengthForm{1, 9} : LengthForm{4, 265};
}

LengthForm lengthOnSeventhBit(unsigned octet) {  // C.24
  if ((octet & 0x02U) == 0) return {0, (octet & 0x01U) + 1};
  return (octet & 0x01U) == 0 ? LengthForm{1, 3} : LengthForm{4, 259};
}

bool isChunk(unsigned octet) { return (octet & 0xC0U) == 0x80; }

}  // namespace

void BinarySorter::take(std::string_view octets) {
  while (!octets.empty()) {
    if (left_ > 0) {
      const std::uint64_t size = std::min<std::uint64_t>(left_, octets.size());
      countFor(itemOfLeft_, kindOfLeft_, size);
      left_ -= size;
      octets.remove_prefix(static_cast<std::size_t>(size));
      continue;
    }
    const Expected next = expected_[expectedCount_ - 1];
    head_[headSize_++] = static_cast<unsigned char>(octets[0]);
    octets.remove_prefix(1);
    if (headSize_ < sizeOfHead(next)) continue;
    takeHead(next);
    headSize_ = 0;
  }
}

void BinarySorter::countFor(Item item, OctetKind kind, std::uint64_t octets) {
  count(kind, octets);
  switch (item) {
    case Item::None:
      break;
    case Item::ElementName:
      octets_.elementName += octets;
      break;
    case Item::AttributeName:
      octets_.attributeNames.back() += octets;
      break;
    case Item::Value:
      octets_.values.back() += octets;
      break;
    case Item::Text:
      octets_.text += octets;
      break;
  }
}

std::uint64_t BinarySorter::number(std::size_t from, std::size_t octets) const {
  std::uint64_t value = 0;
  for (std::size_t i = from; i < from + octets; ++i) value = value << 8 | head_[i];
  return value;
}

/// How many octets stand before the string or the next part; it may grow with the octets.
std::size_t BinarySorter::sizeOfHead(const Expected& next) const {
  const unsigned first = octet(0);
  const auto encoded = [&](unsigned format, LengthForm (*form)(unsigned)) -> std::size_t {
    // The number of an alphabet or algorithm ends in the second octet, and the length begins there.
    const std::size_t at = format < 2 ? 0 : 1;
    return headSize_ <= at ? at + 1 : at + 1 + form(octet(at)).octets;
  };
  switch (next.part) {
    case Part::Header:
      return 5;
    case Part::Identifying:
      return (first & 0x80U) != 0 ? sizeOnSecondBit(first) : 1 + lengthOnSecondBit(first).octets;
    case Part::NonIdentifying:
      return (first & 0x80U) != 0 ? sizeOnSecondBit(first)
                                  : encoded((first >> 4) & 3U, lengthOnFifthBit);
    case Part::ElementName:
      return (first & 0x3CU) == 0x3C ? 1 : sizeOnThirdBit(first);
    case Part::Attributes:
      return first >= 0x80 || (first & 0x78U) == 0x78 ? 1 : sizeOnSecondBit(first);
    case Part::Children:
      if (isChunk(first)) {
        return (first & 0x20U) != 0 ? sizeOnFourthBit(first)
                                    : encoded((first >> 2) & 3U, lengthOnSeventhBit);
      }
      // With namespace attributes, the name comes behind them.
      return first < 0x80 && (first & 0x3FU) < 0x38 ? sizeOnThirdBit(first) : 1;
    default:
      return 1;
  }
}

void BinarySorter::takeHead(const Expected& next) {
  const unsigned first = octet(0);
  const bool isEnd = first == kTerminator || first == kTwoTerminators;
  switch (next.part) {
    case Part::Header:
      return takeHeader();
    case Part::Standalone:
      --expectedCount_;
      return count(OctetKind::Structure, headSize_);
    case Part::Declarations:
      if (isEnd) {
        --expectedCount_;
      } else if ((first & 0xFCU) == 0xC0) {  // A notation (C.11).
        expectStrings(1 + ((first >> 1) & 1U) + (first & 1U), OctetKind::Other);
      } else {  // An unparsed entity (C.10).
        expectStrings(3 + (first & 1U), OctetKind::Other);
      }
      return count(OctetKind::Structure, headSize_);
    case Part::Children:
      return takeChild();
    case Part::Namespaces:
      if (isEnd) {
        --expectedCount_;
      } else {
        expectStrings(((first >> 1) & 1U) + (first & 1U), OctetKind::Names);
      }
      return count(OctetKind::Structure, headSize_);
    case Part::ElementName:
      --expectedCount_;
      if ((first & 0x3CU) == 0x3C) {
        expectStrings(1 + ((first >> 1) & 1U) + (first & 1U), OctetKind::Names, Item::ElementName);
        return countFor(Item::ElementName, OctetKind::Structure, headSize_);
      }
      return countFor(Item::ElementName, OctetKind::Tables, headSize_);
    case Part::Attributes: {
      if (isEnd) {
        --expectedCount_;
        return count(OctetKind::Structure, headSize_);
      }
      octets_.attributeNames.push_back(0);
      octets_.values.push_back(0);
      expect(Part::NonIdentifying, OctetKind::Values, Item::Value);
      const bool isSpelledOut = (first & 0x78U) == 0x78;
      if (isSpelledOut) {
        expectStrings(1 + ((first >> 1) & 1U) + (first & 1U), OctetKind::Names,
                      Item::AttributeName);
      }
      return countFor(Item::AttributeName, isSpelledOut ? OctetKind::Structure : OctetKind::Tables,
                      headSize_);
    }
    case Part::Identifying:
      --expectedCount_;
      if ((first & 0x80U) != 0) return countFor(next.item, OctetKind::Tables, headSize_);
      return takeLiteral(next, 0, lengthOnSecondBit(first).least + number(1, headSize_ - 1));
    case Part::NonIdentifying:
      --expectedCount_;
      if ((first & 0x80U) != 0) return countFor(next.item, OctetKind::Tables, headSize_);
      {
        const unsigned format = (first >> 4) & 3U;
        const std::size_t at = format < 2 ? 0 : 1;
        return takeLiteral(next, format,
                           lengthOnFifthBit(octet(at)).least + number(at + 1, headSize_ - at - 1));
      }
  }
}

/// The head of a string that is spelled out, and how many octets follow.
void BinarySorter::takeLiteral(const Expected& next, unsigned format, std::uint64_t size) {
  countFor(next.item, OctetKind::Structure, headSize_);
  left_ = size;
  kindOfLeft_ = format == 3 ? OctetKind::Typed : next.kind;
  itemOfLeft_ = next.item;
}

void BinarySorter::takeHeader() {
  const unsigned present = octet(4);
  expectedCount_ = 0;
  expect(Part::Children);
  if ((present & 0x01U) != 0) expect(Part::NonIdentifying, OctetKind::Structure);
  if ((present & 0x02U) != 0) expect(Part::Standalone);
  if ((present & 0x04U) != 0) expect(Part::Identifying, OctetKind::Structure);
  if ((present & 0x08U) != 0) expect(Part::Declarations);
  if ((present & 0x10U) != 0) expect(Part::Declarations);
  count(OctetKind::Structure, headSize_);
}

void BinarySorter::takeChild() {
  const unsigned first = octet(0);
  if (isChunk(first)) {
    if ((first & 0x20U) != 0) return countFor(Item::Text, OctetKind::Tables, headSize_);
    const unsigned format = (first >> 2) & 3U;
    const std::size_t at = format < 2 ? 0 : 1;
    const bool isSection = format == 3 && ((first & 3U) << 6 | octet(1) >> 2) == kCDATAAlgorithm;
    const Item item = format == 3 && !isSection ? Item::None : Item::Text;
    return takeLiteral({Part::Children, OctetKind::Text, item}, isSection ? 0 : format,
                       lengthOnSeventhBit(octet(at)).least + number(at + 1, headSize_ - at - 1));
  }
  // What precedes the root element is kept back until it begins.
  if (first < 0x80) isPending_ = false;
  if (first < 0x80) {
    if ((first & 0x40U) != 0) expect(Part::Attributes);
    if ((first & 0x3FU) == 0x38) {
      expect(Part::ElementName);
      expect(Part::Namespaces);
      return count(OctetKind::Structure);
    }
    const bool isSpelledOut = (first & 0x3CU) == 0x3C;
    if (isSpelledOut) {
      expectStrings(1 + ((first >> 1) & 1U) + (first & 1U), OctetKind::Names, Item::ElementName);
    }
    return countFor(Item::ElementName, isSpelledOut ? OctetKind::Structure : OctetKind::Tables,
                    headSize_);
  }
  count(OctetKind::Structure);
  const unsigned identifiers = ((first >> 1) & 1U) + (first & 1U);
  if (first == 0xE1) {
    expect(Part::NonIdentifying);
    expect(Part::Identifying);
  } else if (first == 0xE2) {
    expect(Part::NonIdentifying);
  } else if ((first & 0xFCU) == 0xC4) {
    expectStrings(identifiers, OctetKind::Other);
  } else if ((first & 0xFCU) == 0xC8) {
    expectStrings(1 + identifiers, OctetKind::Other);
  }
}

}  // namespace tool
