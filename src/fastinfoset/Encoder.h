#pragma once

#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/EncodingAlgorithms.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>
#include <typeinfo>
#include <utility>
#include <vector>

#include "../xml/NameCache.h"
#include "IndexMap.h"
#include "InitialVocabulary.h"
#include "format/Dialect.h"
#include "format/Integers.h"
#include "format/Octets.h"

namespace Tavrin::fastinfoset {

/// In place of an index: the entry is in no table.
inline constexpr unsigned kNoIndex = ~0U;

/// A name as an event brings it.
struct EventName {
  const std::string& uri;
  const std::string& localName;
  const std::string& qName;

  /// What precedes the last colon of the qualified name.
  std::string_view prefix() const {
    const std::size_t colon = qName.rfind(':');
    return std::string_view(qName).substr(0, colon == std::string::npos ? 0 : colon);
  }
  NameView parts() const { return {prefix(), uri, localName}; }
};

/// An item with identifiers; an empty one is absent.
struct ExternalItem {
  std::string name;
  std::string publicId;
  std::string systemId;
  std::string notation;  ///< Of an unparsed entity.
};

/// Which values and strings are added to the tables. Names and identifiers always are. Lengths are
/// in octets.
struct WriterLimits {
  bool addsValues = true;                                          // None of these, if not.
  std::uint64_t indexedAttributeValueLength = kIndexedLength - 1;  // Also of other strings.
  std::uint64_t indexedChunkLength = kIndexedLength - 1;
  std::uint64_t maximumTableOctets = UINT64_MAX;
  std::uint64_t tableOctets = 0;  // Of all entries, by countedOctets.
};

/// The indices of names that were used before, found without a search of the tables.
struct KnownNames {
  xml::NameCache<unsigned> elements;
  xml::NameCache<unsigned> attributes;
  const std::type_info* untyped = nullptr;  // A class of attributes without typed values.

  // The name of an attribute. The references that a list returns may be valid only until its next
  // call.
  std::string uri;
  std::string localName;
  std::string qName;
};

/// The attributes with their typed values, or null where their class has none. Most sources use one
/// class of attributes, so a class without typed values is kept. Measured: writing records takes a
/// twentieth less time than with a dynamic_cast each time.
/// @param untyped the class that was found to have none, or null
inline const EncodingAlgorithmAttributes* findTypedForm(const Attributes& attributes,
                                                        const std::type_info*& untyped) {
  if (&typeid(attributes) == untyped) return nullptr;
  const auto* const typed = dynamic_cast<const EncodingAlgorithmAttributes*>(&attributes);
  if (typed == nullptr) untyped = &typeid(attributes);
  return typed;
}

/// Whether an attribute is in the namespace of declarations.
inline bool isInXmlns(const Attributes& attributes, int index) {
  constexpr std::string_view kXmlns = namespaces::xmlns;
  return attributes.getURI(index) == kXmlns;  // Compares the lengths first.
}

/// Encodes the items of a document: the part of a writer that all dialects share. It is implemented
/// by clause of the standard, in the files that Decoder.h names.
///
/// `put` appends one octet to the output, `write` any number of octets, and `encode` a production
/// of the format.
class Encoder {
 public:
  /// Members of the writer. Some are protected members, which derived writers use.
  struct Shared {
    std::ostream* const& out;
    bool& pendingTerminator;
    std::string& characters;
    BuiltInAlgorithms& builtIn;
  };

  Encoder(const Dialect& dialect, const Shared& shared);
  Encoder(const Encoder&) = delete;
  Encoder& operator=(const Encoder&) = delete;
  virtual ~Encoder() = default;

  /// Buffers what an event writes, and sends it at the end of the event, also where the event is
  /// refused. Before code of an application runs within the event, sendOctets is called.
  template <typename Body>
  void perform(Body body);
  /// Writes the buffered octets to the stream.
  void sendOctets();

  // --- Octets and integers (Primitives.cpp) ---

  void put(unsigned octet) {
    if (at_ == end_) return putBeyond(octet);
    *at_++ = static_cast<char>(octet);
  }
  void write(std::string_view octets) {
    if (octets.size() > static_cast<std::size_t>(end_ - at_)) return writeBeyond(octets);
    append(octets);
  }
  void encodeNumberOfItems(std::uint32_t count);
  void encodeIndex(int bits, unsigned index);
  /// Writes an integer in its shortest form.
  /// @param bits the bits of the first octet that do not belong to the integer
  template <typename Encoding>
  void writeInteger(const Encoding& encoding, unsigned bits, std::uint64_t value);

  // --- Strings (Strings.cpp). Tables are those of Tables.h ---

  void encodeIdentifier(unsigned table, std::string_view text);
  void encodeLiteralIdentifier(std::string_view text);
  void encodeString(unsigned table, bool adds, std::string_view text);
  /// A string that is in no table yet.
  void encodeNewString(unsigned table, bool adds, std::string_view text, KeyHash hash);
  /// The length and the octets of a string.
  void encodeLiteralString(bool adds, std::string_view text);
  void encodeCharacters(const std::string& text);
  /// The number of an algorithm and the length of the data, which follows.
  void encodeAlgorithmField(bool chunk, unsigned field, std::uint64_t length);

  // --- Names (Names.cpp) ---

  /// The indices of prefix and namespace name, as a literal name counts them, or kNoIndex.
  struct PartIndices {
    unsigned prefix = kNoIndex;
    unsigned namespaceName = kNoIndex;
  };
  /// @throws SAXException "Undeclared prefix ..." or "Undeclared namespace ..."
  PartIndices findNameParts(std::string_view prefix, std::string_view namespaceName);
  /// A literal name. Its table is not changed.
  void encodeLiteralName(unsigned bits, const NameView& name, PartIndices indices);
  /// A name that is in no table yet, which is added.
  void encodeNewName(unsigned bits, unsigned table, const NameView& name, KeyHash hash);
  void encodeElementName(unsigned attributeFlag, const EventName& name);
  void encodeAttributeName(const EventName& name);
  void encodeNameSurrogate(const NameParts& name);

  // --- Elements and items (Elements.cpp, Items.cpp) ---

  void encodeNamespaces(const std::vector<std::string>& pairs);
  void finishElement();
  void encodeProcessingInstruction(const std::string& target, const std::string& data);
  void encodeEntityReference(const ExternalItem& entity);
  void encodeComment(const std::string& text);
  void encodeDocumentType(const ExternalItem& documentType);
  void encodeUnparsedEntity(const ExternalItem& entity);
  void encodeNotation(const ExternalItem& notation);
  /// Typed content. Buffered text is written before it.
  template <typename Algorithm, typename Value>
  void encodeContent(Algorithm& algorithm, const Value& value);

  // --- The document (Document.cpp, Vocabulary.cpp) ---

  void encodeHeader(unsigned components);
  void encodeInitialVocabulary(const InitialVocabulary& vocabulary);
  void finishDocument();

  /// Writes the pending terminator; with `final`, together with another one.
  void flushTerminator(bool final);
  /// Writes the buffered text as one chunk.
  void flushCharacters();

  // --- Tables (clause 8), by Table ---

  StringIndexMap& strings(unsigned table) { return strings_[table]; }
  const StringIndexMap& strings(unsigned table) const { return strings_[table]; }
  NameIndexMap& names(unsigned table) { return names_[table - kStringTables]; }
  void clearTables();
  /// Whether a value, chunk or other string is added to its table when it is written.
  bool isIndexed(unsigned table, std::string_view text) const;

 protected:
  /// Whether a chunk that is going to be written is added to its table.
  /// @param isFound whether it is there already
  virtual bool addsChunk(const std::string& text, bool isFound) {
    return !isFound && isIndexed(kContentCharacterChunks, text);
  }
  unsigned findNamePart(unsigned table, std::string_view part, const char* what) const;
  void encodeNamePart(unsigned table, std::string_view part, unsigned index);
  void encodeIdentifiers(const ExternalItem& item);
  template <typename Key>
  void addEntry(IndexMap<Key>& table, typename IndexMap<Key>::View entry, KeyHash hash);
  std::uint64_t lengthOf(std::string_view text) const;

  std::ostream* const& out_;
  bool& pendingTerminator_;
  std::string& characters_;
  BuiltInAlgorithms& builtIn_;

  const Dialect& dialect_;
  // The tables of the current document.
  std::array<StringIndexMap, kStringTables> strings_;
  std::array<NameIndexMap, kTables - kStringTables> names_;

  KnownNames known_;
  WriterLimits limits_;
  // A prefix and a namespace name that are in the tables. Most names have those of the name before.
  struct KnownParts {
    std::string prefix;
    std::string namespaceName;
    PartIndices indices;
    bool isKnown = false;
  };
  KnownParts parts_;
  bool isBuffering_ = false;
  bool isInPlace_ = false;  // Octets are composed in the put area of the stream, where they fit.

 private:
  void putBeyond(unsigned octet);
  void writeBeyond(std::string_view octets);
  /// Appends octets that there is room for.
  void append(std::string_view octets) {
    if (octets.empty()) return;
    std::memcpy(at_, octets.data(), octets.size());
    at_ += octets.size();
  }
  bool enterPutArea(std::size_t size);
  void growBy(std::size_t size);
  std::size_t composed() const { return static_cast<std::size_t>(at_ - begin_); }

  // The octets of an event that are not in the stream yet, and the room for more.
  char* begin_ = nullptr;
  char* at_ = nullptr;
  char* end_ = nullptr;
  std::streambuf* area_ = nullptr;  // Has them in its put area; null: the string has them.
  std::string buffer_;
};

template <typename Body>
void Encoder::perform(Body body) {
  const bool wasBuffering = std::exchange(isBuffering_, true);
  try {
    body();
  } catch (...) {
    isBuffering_ = wasBuffering;
    sendOctets();
    throw;
  }
  isBuffering_ = wasBuffering;
  sendOctets();
}

template <typename Encoding>
void Encoder::writeInteger(const Encoding& encoding, unsigned bits, std::uint64_t value) {
  // Most integers are small.
  if (value < encoding.forms[1].bias) {
    put(bits | encoding.forms[0].marker | static_cast<unsigned>(value - encoding.forms[0].bias));
    return;
  }
  const EncodedInteger integer = encodeInteger(encoding, bits, value);
  write({integer.octets.data(), integer.length});
}

template <typename Algorithm, typename Value>
void Encoder::encodeContent(Algorithm& algorithm, const Value& value) {
  flushCharacters();
  flushTerminator(false);
  sendOctets();
  if (out_ != nullptr) algorithm.encodeToOutputStream(true, value, *out_);
}

inline bool Encoder::isIndexed(unsigned table, std::string_view text) const {
  const WriterLimits& limits = limits_;
  const std::uint64_t longest = table == kContentCharacterChunks
                                    ? limits.indexedChunkLength
                                    : limits.indexedAttributeValueLength;
  return limits.addsValues && text.size() <= longest &&
         strings(table).positions() < dialect_.maximumEntries &&
         limits.tableOctets + countedOctets(text) <= limits.maximumTableOctets;
}

/// Adds what is written literally, and is not in its table, unless the table is full.
template <typename Key>
void Encoder::addEntry(IndexMap<Key>& table, typename IndexMap<Key>::View entry, KeyHash hash) {
  if (table.positions() >= dialect_.maximumEntries) return;
  limits_.tableOctets += countedOctets(entry);
  table.addNew(entry, hash);
}

}  // namespace Tavrin::fastinfoset
