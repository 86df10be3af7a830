#pragma once

#include <Tavrin/EncodingAlgorithms.h>
#include <Tavrin/Handlers.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/TypedData.h>
#include <Tavrin/Vocabulary.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <istream>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "format/Dialect.h"
#include "NameParts.h"

namespace Tavrin::fastinfoset {

using Strings = std::vector<std::string>;

/// A position in no table.
inline constexpr std::uint32_t kUnlisted = UINT32_MAX;

/// A name of a table, with what the decoder needs beside its parts.
struct Name : NameParts {
  std::string qName;  ///< Prefix, colon and local name, or the local name alone.

  std::uint32_t position = kUnlisted;  ///< In its table.

  // What a reader that checks names has found out, to look once.
  std::uint32_t identity = 0;  ///< The number of the namespace name and local name, or 0.
  std::uint64_t bindings = 0;  ///< The version of the bindings in which the prefix is right.
  std::size_t octets = 0;      ///< How many the handler is given with it.
};

/// A table of names, which stay where they are when it grows.
class Names {
 public:
  std::size_t size() const { return size_; }
  Name& operator[](std::size_t position) { return blocks_[position / kBlock][position % kBlock]; }
  const Name& operator[](std::size_t position) const {
    return blocks_[position / kBlock][position % kBlock];
  }
  Name& append();
  /// Drops the names from a position on.
  void shrinkTo(std::size_t size);

 private:
  static constexpr std::size_t kBlock = 16;
  std::vector<std::vector<Name>> blocks_;
  std::size_t size_ = 0;
};

/// Decodes documents for a reader: what all readers of Fast Infoset share, which is the format.
///
/// A reader's own decoder derives from this one. It decides on the steps that dialects take
/// differently and on what becomes of each item (the `report` operations).
class Decoder {
 public:
  /// The handlers of a reader: its own pointers, because a handler may take itself, or another, off
  /// at any event.
  struct Handlers {
    ContentHandler* const& content;
    ErrorHandler* const& error;
    DTDHandler* const& dtd;
  };

  virtual ~Decoder() = default;
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;

  /// Sets a property that all readers of Fast Infoset have.
  /// @return whether it is one of them
  bool setProperty(const std::string& name, void* value);
  /// @param value receives the pointer that was set, or null
  /// @return whether it is a property that all readers of Fast Infoset have
  bool getProperty(const std::string& name, void*& value) const;

  /// Decodes one document.
  void parse(std::istream& stream);

  // --- Integers (C.21 to C.28) ---
  // Each takes the octet in which the integer begins and reads those that follow. Bits that do not
  // belong to the integer are ignored; a form that does not exist is refused.

  unsigned long decodeIndex(int octet);             ///< Begins on the second bit (C.25).
  unsigned long decodeElementIndex(int octet);      ///< Begins on the third bit (C.27).
  unsigned long decodeCharactersIndex(int octet);   ///< Begins on the fourth bit (C.28).
  unsigned long decodeIdentifierLength(int octet);  ///< Begins on the second bit (C.22).
  unsigned long decodeStringLength(int octet);      ///< Begins on the fifth bit (C.23).
  unsigned long decodeCharactersLength(int octet);  ///< Begins on the seventh bit (C.24).
  unsigned long decodeNumberOfItems();              ///< All its octets (C.21).

  // --- Strings (C.13 and C.14) ---

  /// An entry of a table: the external entries first, then the document's own. Either may be null.
  std::string getString(unsigned long index, const Strings* table,
                        const StringTable* external) const;
  /// A non-identifying string whose first octet was read.
  void decodeString(int octet, Strings* table, const StringTable* external, std::string& text);
  /// A non-identifying string.
  void decodeString(Strings* table, const StringTable* external, std::string& text);
  /// An identifying string. A literal is added to the table, if there is one.
  void decodeIdentifier(Strings* table, std::string& text);

  // --- Document (C.2 and C.9) ---

  /// Reads the header up to its first wrong octet, and tells whether there was none (12.6, 12.7).
  bool isFastInfosetDocument();
  void decodeAdditionalData();                 ///< C.2.4
  virtual void decodeInitialVocabulary() = 0;  ///< C.2.5
  void decodeNotations();                      ///< C.2.6
  void decodeUnparsedEntities();               ///< C.2.7
  void decodeCharacterEncodingScheme();        ///< C.2.8
  void decodeVersion();                        ///< C.2.10
  /// A document type declaration whose first octet was read.
  /// @return true when it ended with a double terminator, which ends the document too
  bool decodeDTD(int octet);

  // --- Elements (C.3 and C.4) ---

  /// An element, with all that is in it, whose first octet was read.
  /// @return true when it ended with a double terminator that also ends what it stands in
  bool decodeElement(int octet);

  // --- Content (C.5 to C.8) ---

  void decodeCharacters(int octet);  ///< A character chunk whose first octet was read (C.7).
  /// The algorithm of a field, or null (C.29).
  /// @param uri receives the URI of an application-defined algorithm
  virtual EncodingAlgorithm* getEncodingAlgorithm(unsigned field, std::string& uri);
  void decodeComment();                             ///< C.8
  void decodeProcessingInstruction();               ///< C.5
  void decodeUnexpandedEntityReference(int octet);  ///< Whose first octet was read (C.6).

 protected:
  Decoder(const Dialect& dialect, const Handlers& handlers);

  /// An element whose end has not come yet: an octet of the document may begin one.
  struct OpenElement {
    std::uint32_t position;      // Of its name in the table, or kUnlisted.
    std::uint32_t declarations;  // How many namespace declarations it has.
  };

  /// What precedes the data of an algorithm or restricted alphabet.
  struct Field {
    unsigned number;
    unsigned long length;
  };

  // --- Steps that dialects take differently: the document ---

  [[noreturn]] virtual void throwFailure(const std::string& message) const = 0;
  virtual void clearTables();
  virtual void decodeDocument() = 0;
  virtual void checkPadding(unsigned bits) const = 0;  // Which the standard wants to be zero.
  virtual void checkRootElement(bool elementSeen) = 0;

  // --- Steps: strings and names. A table tells what kind of string it is. ---

  virtual void checkIdentifier(const Strings* table, const std::string& text) = 0;
  virtual void checkText(std::string_view text) = 0;
  virtual void checkAmplification() const = 0;  // After strings were taken from tables.
  virtual void decodeOtherString(unsigned octet, std::string& text) = 0;
  virtual void decodeOtherChunk(unsigned octet, std::string& text) = 0;
  virtual std::string describeUnknown(const std::string& uri) const = 0;
  virtual EncodedData& decodeWith(EncodingAlgorithm& algorithm, unsigned field,
                                  unsigned long length) = 0;
  virtual void takeTyped(bool addToTable, Strings& table, unsigned field, EncodedData& value) = 0;
  // Decodes the namespace declarations of an element, and may report them. Returns how many.
  virtual std::uint32_t decodeDeclarations() = 0;
  virtual void checkElementName(Name& name) = 0;
  virtual void checkAttributeName(Name& name) = 0;
  // Decodes the attributes of an element, if it has any, and reports its start.
  // Returns true when the end of the attributes is that of the element, too.
  virtual bool decodeStartTag(bool hasAttributes, const Name& name, std::uint32_t declarations) = 0;

  // --- What becomes of an item ---

  virtual void reportVersion(const std::string& version) = 0;
  virtual void reportStandalone(unsigned octet) = 0;
  virtual void reportUnused(const std::string& line) = 0;  // What no handler takes.
  virtual void reportNotation(const std::string& name, const std::string& publicId,
                              const std::string& systemId) = 0;
  virtual void reportUnparsedEntity(const std::string& name, const std::string& publicId,
                                    const std::string& systemId,
                                    const std::string& notationName) = 0;
  virtual void reportStartDTD(const std::string& publicId, const std::string& systemId) = 0;
  virtual void reportEndDTD() = 0;
  virtual void reportEndElement(const Name& name, std::uint32_t declarations) = 0;
  virtual void reportCharacters(const std::string& text) = 0;
  virtual void reportValue(unsigned field, const std::string& uri, const EncodedData& value) = 0;
  virtual void reportOctets(bool addToTable, unsigned field, const std::string& uri,
                            const std::string& octets) = 0;
  virtual void reportComment(const std::string& text) = 0;
  virtual void reportProcessingInstruction(const std::string& target, const std::string& data) = 0;
  virtual void reportEntityReference(const std::string& name, const std::string& publicId,
                                     const std::string& systemId) = 0;

  // --- What all dialects share ---

  template <const auto& Encoding>
  unsigned long decodeInteger(int octet, const char* message);
  unsigned long withoutPadding(unsigned long index, const IntegerForm& longest,
                               std::uint32_t fieldBits) const;
  void assignString(unsigned long index, const Strings* table, const StringTable* external,
                    std::string& text) const;
  void addEntry(Strings& table, const std::string& entry);
  void accountFor(std::uint64_t octets);
  static std::uint64_t octetsOf(const NameParts& name);
  const StringTable* findExternalEntries(const Strings* table) const;
  const QualifiedNameTable* findExternalNames(const Names* table) const;
  // The external entries in front of a table, or null. Few documents have any.
  const StringTable* externalEntries(const Strings* table) const {
    return externalVocabulary_ == nullptr ? nullptr : findExternalEntries(table);
  }
  const QualifiedNameTable* externalNames(const Names* table) const {
    return externalVocabulary_ == nullptr ? nullptr : findExternalNames(table);
  }
  Field decodeStringField(unsigned octet);
  Field decodeChunkField(unsigned octet);
  void decodeLiteralIdentifier(unsigned octet, Strings* table, std::string& text);
  bool openElement(int octet);
  void closeElement();
  void decodeOptionalComponents();
  void decodeChildren();
  void decodeNameParts(unsigned octet, std::string& prefix, std::string& namespaceName,
                       std::string& localName);
  void decodeNameParts(unsigned octet, NameParts& name) {
    decodeNameParts(octet, name.prefix, name.namespaceName, name.localName);
  }
  void decodeNamePart(Strings& table, const char* builtIn, const char* message, std::string& part);
  void decodeDeclaration(unsigned octet, std::string& prefix, std::string& namespaceName);
  void decodeDeclaredName(Strings& table, const char* builtIn, std::string& part);
  Name& decodeLiteralName(unsigned octet, Names& table);
  bool findExternalName(unsigned long& index, const Names& table, const char* message,
                        NameParts& name) const;
  Name& nameAt(unsigned long index, Names& table, const char* message);
  static std::string qNameOf(const NameParts& name);
  template <typename List>
  bool decodeAttributesInto(List& attributes);
  template <typename List>
  void decodeAttribute(List& attributes, Name& name);
  template <typename List, typename Attribute>
  void referToValue(List& attributes, Attribute& attribute, unsigned long index);
  int nextOctet();
  int getOctet();
  unsigned takeOctet();
  const char* takeBuffered(std::uint64_t length);
  bool haveArrived(std::uint64_t length);
  template <typename Read>
  void readPieces(std::uint64_t length, std::string& octets, Read read);
  void readFromBuffer(std::uint64_t length, std::string& octets);
  void readOctets(std::uint64_t length, std::string& octets);
  void readText(std::uint64_t length, std::string& text);
  int brokenStream();
  int endOfStream();
  void checkLiteralLength(std::uint64_t length) const;
  [[noreturn]] void fail(const std::string& message) const;
  [[noreturn]] void failAtLimit(const std::string& message, const char* property) const;
  [[noreturn]] void failAtEnd() const;
  void decodeIdentifiers(unsigned octet, std::string& systemId, std::string& publicId);
  void decodeAlgorithmData(unsigned octet);
  void deliverFromTable(const std::string& text);
  EncodingAlgorithm* findEncodingAlgorithm(unsigned field, std::string& uri);
  EncodingAlgorithm* getApplicationAlgorithm(unsigned field, std::string& uri) const;

  const Dialect& dialect_;

  ContentHandler* const& contentHandler_;
  ErrorHandler* const& errorHandler_;
  DTDHandler* const& dtdHandler_;
  DeclHandler* declHandler_ = nullptr;
  LexicalHandler* lexicalHandler_ = nullptr;
  PrimitiveTypeContentHandler* primitiveTypeContentHandler_ = nullptr;
  EncodingAlgorithmContentHandler* encodingAlgorithmContentHandler_ = nullptr;
  EncodingAlgorithmMap* registeredEncodingAlgorithms_ = nullptr;
  ExternalVocabularyMap* externalVocabularies_ = nullptr;

  std::istream* stream_ = nullptr;
  std::ios* source_ = nullptr;  // Of the stream: its state, and the buffer it has at the time.
  const ExternalVocabulary* externalVocabulary_ = nullptr;
  const bool callsGet_;           // Dialect::callsGet
  bool parsing_ = false;          // A call of parse is on the stack.
  std::uint64_t octetsRead_ = 0;  // Of the document, in whole.
  std::uint64_t fromTables_ = 0;  // Octets of strings that were delivered by their index.
  Name unlisted_;                 // A name that is in none of the document's tables.
  // External entries as names, by table and index. The vocabulary is the application's.
  std::map<std::pair<const Names*, unsigned long>, Name> externalNames_;
  std::map<unsigned long, std::string> externalValues_;  // Of attributes.

  std::string text_;  // Of a chunk; used again for each, as it keeps its memory.

  std::uint64_t maximumLiteralOctets_ = UINT64_MAX;
  std::uint64_t tableOctets_ = 0;
  std::uint64_t maximumTableOctets_ = UINT64_MAX;
  std::uint64_t maximumDepth_ = UINT64_MAX;

  /// The name of an open element that is in none of the document's tables.
  struct UnlistedName {
    std::unique_ptr<Name> own;  // Where it is not an external entry.
    Name* name;
  };
  std::vector<OpenElement> openElements_;  // Nesting is not bounded by the call stack.
  // What a handler is being told of stays where it is, whatever a derived reader decodes meanwhile.
  std::deque<UnlistedName> unlistedElements_;  // The innermost last.
  std::deque<Strings> declarations_;           // Those of "FI", for each element that has some.

  // The vocabulary (X.891, clause 8), in the standard's order.
  Strings restrictedAlphabets_;
  Strings encodingAlgorithms_;
  Strings prefixes_;
  Strings namespaceNames_;
  Strings localNames_;
  Strings otherNCNames_;
  Strings otherURIs_;
  Strings attributeValues_;
  Strings contentCharacterChunks_;
  Strings otherStrings_;
  Names elementNames_;
  Names attributeNames_;

  BuiltInAlgorithms builtIn_;
};

}  // namespace Tavrin::fastinfoset
