#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// What happens in a document, as far as it is compared.
enum class RecordKind : unsigned char {
  StartPrefixMapping,  ///< Prefix, URI.
  StartElement,        ///< URI, local name, qualified name; of each attribute the same and value.
  EndElement,          ///< URI, local name, qualified name.
  Text,                ///< The octets of a part of a text, and nothing else.
  Numbers,             ///< A part of a text as numbers: see Numbers.h.
  Octets,              ///< URI, number where there is no URI, data.
  ProcessingInstruction,  ///< Target, data.
  Comment,                ///< Text.
  SkippedEntity,          ///< Name.
  ResolveEntity,          ///< Public and system identifier.
  StartDTD,               ///< Name, public and system identifier.
  EndDTD,
  StartCDATA,
  EndCDATA,
  Border,  ///< Another document begins.
};

/// How many strings are the name of an element, and how many are an attribute.
inline constexpr std::size_t kNameStrings = 3;
inline constexpr std::size_t kAttributeStrings = 4;

/// Whether a record is a part of a text: all such records in a row are one text.
inline bool isPartOfText(RecordKind kind) {
  return kind == RecordKind::Text || kind == RecordKind::Numbers;
}

/// Where a record began: a line and a column, or in documents without lines an octet. There is one
/// for each record, which is why it is small.
class Place {
 public:
  Place() = default;
  static Place ofOctet(std::uint64_t octet) { return Place(octet); }
  static Place inLine(std::int32_t line, std::int32_t column) {
    return Place(kHasLine | static_cast<std::uint64_t>(line) << kLineShift |
                 static_cast<std::uint32_t>(column));
  }

  bool hasLine() const { return (bits_ & kHasLine) != 0; }
  std::int32_t line() const { return static_cast<std::int32_t>((bits_ & ~kHasLine) >> kLineShift); }
  std::int32_t column() const { return static_cast<std::int32_t>(bits_); }
  std::uint64_t octet() const { return bits_; }

 private:
  static constexpr std::uint64_t kHasLine = std::uint64_t{1} << 63;
  static constexpr int kLineShift = 32;

  explicit Place(std::uint64_t bits) : bits_(bits) {}

  std::uint64_t bits_ = 0;
};

/// A place of which both is known, so that lines behind it can be counted from there.
struct Anchor {
  std::uint64_t octet = 0;  ///< How many stand in front of it.
  Place place;              ///< The line and column; an octet where lines are not counted.
};

/// Where a record began, for messages.
struct Location {
  Place place;
  Anchor anchor;               ///< Does not stand behind the place.
  std::uint64_t document = 1;  ///< The number of the document.
  std::string entity;          ///< Names the external entity; empty in the document itself.
};

/// The type of an attribute of which nothing is remarked.
inline constexpr char kUsualType[] = "CDATA";

/// What is told of a record and not compared: the type of an attribute, the number of an algorithm.
struct Remark {
  std::uint32_t record;     ///< The number of the record in its block.
  std::uint32_t attribute;  ///< The number of the attribute.
  std::string text;
};

/// Records of a document behind each other. Each is a kind, the size of what follows, and that:
/// strings, each with its size in front, or for a part of a text only its octets. Two documents
/// that are the same make the same blocks of octets, whatever pieces their readers tell them in.
struct Block {
  /// How many octets a block has at most, but for a record that is longer by itself.
  static constexpr std::size_t kSize = std::size_t{64} * 1024;
  static constexpr std::size_t kHeaderSize = 1 + sizeof(std::uint32_t);

  /// Makes it as new, and keeps the storage.
  void clear();

  /// How many octets storage has from the start: most records end in it that begin in time.
  static constexpr std::size_t kRoom = kSize + std::size_t{4} * 1024;

  std::vector<char> octets;  ///< Of which `size` count.
  std::size_t size = 0;
  std::vector<Place> places;            ///< One for each record.
  Anchor anchor;                        ///< For places that are octets: from it lines are counted.
  std::vector<std::uint32_t> entityOf;  ///< Of each record, from the first in an entity on.
  std::vector<std::string> entities;    ///< What entityOf counts, from 1.
  std::vector<Remark> remarks;
  std::uint64_t document = 1;        ///< The number of the document, the same for all records.
  std::size_t lastText = 0;          ///< Where the text at the end begins, which may go on in the
                                     ///< next block; without one, the size.
  std::uint32_t lastTextNumber = 0;  ///< The number of its first record.
  bool isCutOff = false;             ///< The document could not be read on in the text at the end.
};

/// A record in a block, valid while that is.
struct Record {
  RecordKind kind;
  std::string_view body;
  const Block* block;
  std::uint32_t number;  ///< In its block.

  const Place& place() const { return block->places[number]; }
  /// Names the external entity that it is in; empty in the document itself.
  std::string entity() const;
  Location location() const { return {place(), block->anchor, block->document, entity()}; }
  /// What is remarked of an attribute: its type; of octets, the number of their algorithm.
  std::string remark(std::uint32_t attribute) const;
};

/// The record at an offset of a block, which is smaller than its size.
inline Record recordAt(const Block& block, std::size_t offset, std::uint32_t number) {
  const char* const begin = block.octets.data() + offset;
  std::uint32_t size = 0;
  std::memcpy(&size, begin + 1, sizeof size);
  return {static_cast<RecordKind>(*begin), {begin + Block::kHeaderSize, size}, &block, number};
}

/// Takes the next string off the body of a record.
std::string_view takeString(std::string_view& body);
/// All strings of a record.
std::vector<std::string_view> stringsOf(const Record& record);

}  // namespace tool
