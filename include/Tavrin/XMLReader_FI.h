/// @file
/// The reader of Fast Infoset documents.
#pragma once

#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/EncodingAlgorithms.h>
#include <Tavrin/Export.h>
#include <Tavrin/Factories.h>
#include <Tavrin/Vocabulary.h>
#include <Tavrin/XMLReader.h>

#include <cstdint>
#include <deque>
#include <istream>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Tavrin {

namespace fastinfoset {
struct Dialect;
struct IntegerForm;
}  // namespace fastinfoset

/// Reads Fast Infoset documents (ITU-T X.891) as the "FI" writer writes them; registered as "FI".
///
/// Properties: lexicalHandler, declarationHandler, primitiveTypeContentHandler,
/// encodingAlgorithmContentHandler, registeredEncodingAlgorithms and externalVocabularies of
/// Tavrin::properties. None is owned.
///
/// Typed content goes to the first of these that is there: for a CDATA section the lexical handler
/// and the content handler; the primitive type handler (built-in algorithms); the encoding
/// algorithm handler; the content handler, as text. A typed value belongs to its algorithm and is
/// valid during the call.
///
/// The reader takes no octet beyond the document's last one, so documents may follow each other in
/// one stream. Whatever a document claims about its lengths, memory grows only with the octets that
/// arrive; elements may be nested as deep as memory allows.
///
/// Things to know before relying on it. It reads a dialect:
/// - The number of items of a list is the encoded field itself, and prefixes and namespace names of
///   a namespace declaration are counted from 0, without the built-in `xml`.
/// - UTF-16 strings and restricted alphabets are not decoded: they give empty text, and their
///   octets are read as the next item. The uuid algorithm is not provided.
/// - Of an algorithm's number in content, bit 0x40 is not read.
/// - Version, character encoding scheme, additional data and entity references are printed to
///   standard output and delivered to no handler.
/// - An external vocabulary, restricted alphabets and algorithm URIs stay for the documents that
///   follow, until another document brings its own.
class TAVRIN_API XMLReader_FI : public XMLReader {
 public:
  /// A name as the surrogate tables hold it; a part that is absent is empty.
  struct QualifiedName {
    std::string prefix;         ///< Prefix.
    std::string namespaceName;  ///< Namespace name.
    std::string localName;      ///< Local name.
  };

  XMLReader_FI();
  ~XMLReader_FI() override;

  /// A new reader without handlers.
  static std::unique_ptr<XMLReader> create();

  /// Sets a handler, the registered algorithms or the external vocabularies. The type of the value
  /// is not checked.
  /// @throws SAXNotRecognizedException for any other identifier
  void setProperty(const std::string& name, void* value) override;
  /// The pointer that was set, or null.
  /// @throws SAXNotRecognizedException for any other identifier
  void* getProperty(const std::string& name) override;

  using XMLReader::parse;

  /// Reads one document.
  /// @throws SAXException for a stream that is not such a document; no endDocument follows, and the
  ///         reader can read another document
  /// @throws EncodingAlgorithmException for encoded data of a wrong length
  void parse(std::istream& stream) override;

 protected:
  /// @name Integers (X.891, C.21 to C.28)
  /// Each takes the octet in which the integer begins and reads those that follow. Bits that do not
  /// belong to the integer are ignored; a form that does not exist is refused with a SAXException.
  /// @{

  /// A position that begins on the second bit (C.25).
  unsigned long decodeIndex(int octet);
  /// A position that begins on the third bit (C.27).
  unsigned long decodeElementIndex(int octet);
  /// A position that begins on the fourth bit (C.28).
  unsigned long decodeCharactersIndex(int octet);
  /// A length that begins on the second bit (C.22).
  unsigned long decodeIdentifierLength(int octet);
  /// A length that begins on the fifth bit (C.23).
  unsigned long decodeStringLength(int octet);
  /// A length that begins on the seventh bit (C.24).
  unsigned long decodeCharactersLength(int octet);
  /// The number of items of a list (C.21), all its octets. The field itself is the number; in
  /// X.891, the number minus the least that the form has.
  unsigned long decodeNumberOfItems();
  /// @}

  /// @name Strings (X.891, C.13 and C.14)
  /// @{

  /// An entry of a table: the external entries first, then the document's own. Either may be null.
  std::string getString(unsigned long index, const std::vector<std::string>* table,
                        const StringTable* external) const;
  /// A non-identifying string whose first octet was read. What is not decoded leaves `out` alone.
  void decodeString(int octet, std::vector<std::string>* table, const StringTable* external,
                    std::string& out);
  /// A non-identifying string.
  void decodeString(std::vector<std::string>* table, const StringTable* external, std::string& out);
  /// An identifying string. A literal is added to the table, if there is one.
  void decodeIdentifier(std::vector<std::string>* table, std::string& out);
  /// @}

  /// @name Document (X.891, C.2)
  /// @{

  /// Reads the header up to its first wrong octet, and tells whether there was none (12.6, 12.7).
  bool isFastInfosetDocument();
  void decodeAdditionalData();     ///< Prints it (C.2.4).
  void decodeInitialVocabulary();  ///< Fills the tables, selects the external vocabulary (C.2.5).
  void decodeNotations();          ///< Reports them to the DTD handler (C.2.6).
  void decodeUnparsedEntities();   ///< Reports them to the DTD handler (C.2.7).
  void decodeCharacterEncodingScheme();  ///< Prints it (C.2.8).
  void decodeVersion();                  ///< Prints it (C.2.10).

  /// A table of an initial vocabulary, in the form of non-identifying strings.
  void decodeStringTable(std::vector<std::string>& table);
  /// A table of an initial vocabulary, in the form of identifying strings.
  void decodeIdentifierTable(std::vector<std::string>& table);
  /// A table of names of an initial vocabulary.
  void decodeQualifiedNameTable(std::vector<QualifiedName>& table);

  /// Decodes a document type declaration whose first octet was read (C.9).
  /// @return true when it ended with a double terminator, which ends the document too
  bool decodeDTD(int octet);
  /// @}

  /// @name Elements (X.891, C.3 and C.4)
  /// @{

  /// Decodes an element, with all that is in it, whose first octet was read.
  /// @return true when it ended with a double terminator that also ends what it stands in
  bool decodeElement(int octet);
  /// Decodes the namespace declarations of an element (C.12).
  /// @param declarations receives prefix, namespace name, prefix, namespace name, ...
  void decodeNamespaces(std::vector<std::string>& declarations);
  /// Decodes a literal name whose first octet was read, and adds it to the table (C.17, C.18).
  /// @return the new entry, valid until the table changes
  QualifiedName& decodeQualifiedName(int octet, std::vector<QualifiedName>& table);
  /// An entry of the element names: the external entries first, then the document's own.
  QualifiedName getElementName(unsigned long index) const;
  /// An entry of the attribute names: the external entries first, then the document's own.
  QualifiedName getAttributeName(unsigned long index) const;
  /// Decodes the attributes of an element.
  /// @return true when the list ended with a double terminator, which ends the element too
  bool decodeAttributes(EncodingAlgorithmAttributesImpl& attributes);
  /// @}

  /// @name Content (X.891, C.5 to C.8)
  /// @{

  /// Decodes and delivers a character chunk whose first octet was read (C.7).
  void decodeCharacters(int octet);
  /// The algorithm of a field, or null (C.29).
  /// @param field the algorithm's number; see Tavrin::algorithms
  /// @param uri   receives the URI of an application-defined algorithm
  EncodingAlgorithm* getEncodingAlgorithm(unsigned int field, std::string& uri);
  void decodeComment();                ///< Decodes and delivers a comment (C.8).
  void decodeProcessingInstruction();  ///< Decodes and delivers an instruction (C.5).
  /// Decodes and prints an entity reference whose first octet was read (C.6).
  void decodeUnexpandedEntityReference(int octet);
  /// @}

 private:
  // The reader of the standard's own dialect is this reader with other numbers and other steps.
  friend class XMLReader_X891;
  explicit XMLReader_FI(const fastinfoset::Dialect& dialect);

  using Strings = std::vector<std::string>;
  static constexpr std::uint32_t kUnlisted = UINT32_MAX;

  /// A name of a table, with what the reader needs beside its parts.
  struct Name : QualifiedName {
    std::string qName;  // Prefix, colon and local name, or the local name alone.

    std::uint32_t position = kUnlisted;  // In its table.

    // What a reader that checks names has found out, to look once.
    std::uint32_t identity = 0;  // The number of the namespace name and local name, or 0.
    std::uint64_t bindings = 0;  // The version of the bindings in which the prefix is right.
    std::size_t octets = 0;      // How many the handler is given with it.
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

  /// The name of an open element that is in none of the document's tables.
  struct UnlistedName {
    std::unique_ptr<Name> own;  // Where it is not an external entry.
    Name* name;
  };

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
  // Their names begin alike, so that no operation of a derived class overrides one by accident.

  [[noreturn]] virtual void dialectThrowFailure(const std::string& message) const;
  virtual void dialectClearTables();
  virtual void dialectDecodeDocument();
  virtual void dialectDecodeInitialVocabulary();
  virtual void dialectCheckPadding(
      unsigned bits) const;  // Of bits that the standard wants to be zero.
  virtual void dialectEndChildren(bool elementSeen);

  // --- Steps: strings and names. A table tells what kind of string it is. ---

  virtual void dialectCheckIdentifier(const Strings* table, const std::string& text);
  virtual void dialectCheckText(std::string_view text);
  virtual void dialectCheckAmplification() const;  // After strings were taken from tables.
  virtual void dialectDecodeOtherString(unsigned octet, std::string& text);
  virtual void dialectDecodeOtherChunk(unsigned octet, std::string& text);
  virtual EncodingAlgorithm* dialectGetEncodingAlgorithm(unsigned field, std::string& uri);
  virtual std::string dialectDescribeUnknown(const std::string& uri) const;
  virtual EncodedData& dialectDecodeWith(EncodingAlgorithm& algorithm, unsigned field,
                                         unsigned long length);
  virtual void dialectTakeTyped(bool addToTable, Strings& table, unsigned field,
                                EncodedData& value);
  // Decodes the namespace declarations of an element, and may deliver them. Returns how many.
  virtual std::uint32_t dialectDecodeDeclarations();
  virtual void dialectCheckElementName(Name& name);
  virtual void dialectCheckAttributeName(Name& name);

  // --- Steps: delivery ---

  virtual void dialectDeliverVersion(const std::string& version);
  virtual void dialectDeliverStandalone(unsigned octet);
  virtual void dialectDeliverUnused(const std::string& line);  // What no handler takes.
  virtual void dialectDeliverNotation(const std::string& name, const std::string& publicId,
                                      const std::string& systemId);
  virtual void dialectDeliverUnparsedEntity(const std::string& name, const std::string& publicId,
                                            const std::string& systemId,
                                            const std::string& notationName);
  virtual void dialectDeliverStartDTD(const std::string& publicId, const std::string& systemId);
  virtual void dialectDeliverEndDTD();
  // Decodes the attributes of an element, if it has any, and delivers its start.
  // Returns true when the end of the attributes is that of the element, too.
  virtual bool dialectStartTag(bool hasAttributes, const Name& name, std::uint32_t declarations);
  virtual void dialectDeliverEndElement(const Name& name, std::uint32_t count);
  virtual void dialectDeliverCharacters(const std::string& text);
  virtual void dialectDeliver(unsigned field, const std::string& uri, const EncodedData& value);
  virtual void dialectDeliverOctets(bool addToTable, unsigned field, const std::string& uri,
                                    const std::string& octets);
  virtual void dialectDeliverComment(const std::string& text);
  virtual void dialectDeliverInstruction(const std::string& target, const std::string& data);
  virtual void dialectDeliverEntityReference(const std::string& name, const std::string& publicId,
                                             const std::string& systemId);

  // --- What all dialects share ---

  template <const auto& Encoding>
  unsigned long decodeInteger(int octet, const char* message);
  unsigned long withoutPadding(unsigned long index, const fastinfoset::IntegerForm& longest,
                               std::uint32_t fieldBits) const;
  void assignString(unsigned long index, const std::vector<std::string>* table,
                    const StringTable* external, std::string& text) const;
  void addEntry(Strings& table, const std::string& entry);
  void accountFor(std::uint64_t octets);
  static std::uint64_t octetsOf(const QualifiedName& name);
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
  void decodeLiteralIdentifier(unsigned octet, Strings* table, std::string& out);
  bool openElement(int octet);
  void closeElement();
  void decodeOptionalComponents();
  void decodeChildren();
  void decodeNameParts(unsigned octet, QualifiedName& name);
  void decodeNamePart(Strings& table, const char* builtIn, const char* message, std::string& part);
  void decodeDeclaration(unsigned octet, std::string& prefix, std::string& namespaceName);
  void decodeDeclaredName(Strings& table, const char* builtIn, std::string& part);
  Name& decodeLiteralName(unsigned octet, Names& table);
  void decodeNameTable(Names& table);
  bool findExternalName(unsigned long& index, const Names& table, const char* message,
                        QualifiedName& name) const;
  QualifiedName getName(unsigned long index, const Names& table, const char* message) const;
  Name& nameAt(unsigned long index, Names& table, const char* message);
  static std::string qNameOf(const QualifiedName& name);
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
  EncodedData& decodeLarge(EncodingAlgorithm& algorithm, unsigned field, unsigned long length);
  void deliverFromTable(const std::string& text);
  EncodingAlgorithm* getApplicationAlgorithm(unsigned field, std::string& uri) const;

  const fastinfoset::Dialect& dialect_;

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
  // Memory of attribute lists that are gone: a list without records, and small records.
  std::vector<std::unique_ptr<EncodingAlgorithmAttributesImpl::Attribute>> spareList_;
  std::vector<std::unique_ptr<EncodingAlgorithmAttributesImpl::Attribute>> spareAttributes_;

  std::uint64_t maximumLiteralOctets_ = UINT64_MAX;
  std::uint64_t tableOctets_ = 0;
  std::uint64_t maximumTableOctets_ = UINT64_MAX;
  std::uint64_t maximumDepth_ = UINT64_MAX;
  std::vector<OpenElement> openElements_;  // Nesting is not bounded by the call stack.
  // What a handler is being told of stays where it is, whatever a derived reader decodes meanwhile.
  std::deque<UnlistedName> unlistedElements_;  // The innermost last.
  std::deque<Strings> declarations_;           // Those of "FI", for each element that has some.

  // The vocabulary (X.891, clause 8), in the standard's order.
  std::vector<std::string> restrictedAlphabets_;
  std::vector<std::string> encodingAlgorithms_;
  std::vector<std::string> prefixes_;
  std::vector<std::string> namespaceNames_;
  std::vector<std::string> localNames_;
  std::vector<std::string> otherNCNames_;
  std::vector<std::string> otherURIs_;
  std::vector<std::string> attributeValues_;
  std::vector<std::string> contentCharacterChunks_;
  std::vector<std::string> otherStrings_;
  Names elementNames_;
  Names attributeNames_;

  BuiltInAlgorithms builtIn_;

  static const XMLReaderType type_;
};

}  // namespace Tavrin
