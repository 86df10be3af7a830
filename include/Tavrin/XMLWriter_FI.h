/// @file
/// The writer of Fast Infoset documents.
#pragma once

#include <Tavrin/EncodingAlgorithms.h>
#include <Tavrin/Export.h>
#include <Tavrin/Factories.h>
#include <Tavrin/TypedData.h>
#include <Tavrin/XMLWriter.h>

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <typeinfo>
#include <utility>
#include <vector>

namespace Tavrin {

class EncodingAlgorithmAttributes;
namespace fastinfoset {
struct Dialect;
}

/// Writes Fast Infoset documents (ITU-T X.891) for the "FI" reader; registered as "FI".
///
/// Beside the events of XML it takes typed content, through PrimitiveTypeContentHandler and
/// EncodingAlgorithmContentHandler, and typed attribute values, when the attributes of startElement
/// are an EncodingAlgorithmAttributes. Names and short strings (under 7 octets) enter tables and
/// are written as an index when they come again; the tables are emptied by startDocument.
///
/// Things to know before relying on it:
/// - Namespace declarations come from startPrefixMapping alone; attributes in the namespace of
///   `xmlns` are left out. A prefix or namespace name that was never declared is refused.
/// - Ignorable white space, the document type, declarations and entity borders leave no trace.
/// - Text in front of a CDATA section is written as a part of the section.
/// - A document in which the 17th or a later distinct short chunk of text is repeated does not come
///   back: the index is written without the marker of its form, so a reader takes its first octet
///   for another chunk and the rest for the next item. Most such documents are refused, some are
///   read as other documents.
/// - The URI of octets is not written: the algorithm is known by its number alone.
/// - Integers of ints are cut to their low 32 bits.
/// - Typed content is accepted at any point; it is not checked against the state of the document.
class TAVRIN_API XMLWriter_FI : public XMLWriter,
                                public PrimitiveTypeContentHandler,
                                public EncodingAlgorithmContentHandler {
 public:
  XMLWriter_FI();
  ~XMLWriter_FI() override;

  /// A new writer without a stream.
  static std::unique_ptr<XMLWriter> create();

  /// @name Events
  /// As XMLWriter has them. Each first refuses what may not come now.
  /// @{
  void startDocument() override;
  void endDocument() override;
  void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
  /// @throws SAXException "Empty name", "Undeclared prefix ..." or "Undeclared namespace ..."
  /// @throws EncodingAlgorithmException for a typed attribute whose algorithm is not built in;
  /// nothing
  ///         is written then
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Attributes& attributes) override;
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override;
  void characters(const std::string& text) override;
  /// @throws SAXException "Empty name" for an empty target
  void processingInstruction(const std::string& target, const std::string& data) override;
  void endCDATA() override;
  void comment(const std::string& text) override;
  /// @}

  /// The two properties of the Fast Infoset reader that name algorithms and vocabularies are
  /// accepted and ignored.
  void setProperty(const std::string& name, void* value) override;
  /// Null for the two properties that setProperty accepts.
  void* getProperty(const std::string& name) override;

  /// @name Typed content
  /// @{
  void bytes(const std::string& data) override;  ///< Base64 content.
  void shorts(const std::vector<short>& data) override;
  void ints(const std::vector<long>& data) override;
  void longs(const std::vector<long>& data) override;
  void booleans(const std::vector<bool>& data) override;
  void floats(const std::vector<float>& data) override;
  void doubles(const std::vector<double>& data) override;
  /// @throws EncodingAlgorithmException for a number below 0 or above 255; nothing is written then
  void octets(const std::string& uri, int index, const std::string& data) override;
  /// @throws EncodingAlgorithmException for an algorithm that is not built in; nothing is written
  /// then
  void object(const std::string& uri, int index, const EncodedData& data) override;
  /// @}

  /// The writer's algorithm, or null.
  /// @param uri   empty for the built-in algorithms, the only ones there are
  /// @param index the algorithm's number; see Tavrin::algorithms
  virtual EncodingAlgorithm* getEncodingAlgorithm(const std::string& uri, int index);

 protected:
  /// A writer of another dialect of the stream.
  explicit XMLWriter_FI(const fastinfoset::Dialect& dialect);

  /// A name as the tables hold it; a part that is absent is empty.
  struct QualifiedName {
    std::string prefix;         ///< Prefix.
    std::string namespaceName;  ///< Namespace name.
    std::string localName;      ///< Local name.

    /// By local name, then prefix, then namespace name.
    bool operator<(const QualifiedName& other) const;
    /// Whether all parts are the same.
    bool operator==(const QualifiedName& other) const;
  };

  static std::size_t octetsOf(const std::string& text);    ///< Octets of a string.
  static std::size_t octetsOf(const QualifiedName& name);  ///< Octets of all parts.

  /// A table of the vocabulary as a writer needs it: entries with their indices, from 0.
  template <typename Key>
  class TAVRIN_API IndexMap {
   public:
    using value_type = std::pair<Key, unsigned int>;          ///< Entry and index.
    using Entries = std::vector<value_type>;                  ///< How they are kept.
    using const_iterator = typename Entries::const_iterator;  ///< In the order of their arrival.
    using iterator = const_iterator;                          ///< In the order of their arrival.

    IndexMap();  ///< An empty table.
    /// A table of given entries.
    IndexMap(std::initializer_list<value_type> entries);

    /// The index of an entry, or null where there is none. Valid until the next change.
    const unsigned int* find(const Key& key) const;
    /// Takes up the next position with an entry. Of equal entries, the first is found.
    void add(const Key& key);
    /// Takes up positions at which nothing can be found.
    void skip(unsigned int count) { withoutEntry_ += count; }
    /// How many positions are taken up: the index of what comes next.
    unsigned int positions() const {
      return static_cast<unsigned int>(entries_.size()) + withoutEntry_;
    }
    /// The index of an entry.
    /// @throws std::out_of_range where there is none
    unsigned int at(const Key& key) const;
    /// How many entries there are.
    std::size_t size() const { return entries_.size(); }
    /// Whether there are no entries.
    bool empty() const { return entries_.empty(); }
    /// Empties the table.
    void clear() { *this = IndexMap(); }

    const_iterator begin() const { return entries_.begin(); }  ///< The first entry.
    const_iterator end() const { return entries_.end(); }      ///< Behind the last entry.
    /// Whether the entries and their indices are the same, in any order.
    bool operator==(const IndexMap& other) const;

   private:
    /// Where an entry is found. A tag that is 0 has none.
    struct Slot {
      std::uint64_t tag;
      std::uint32_t entry;
    };

    bool enter(const Key& key, unsigned int index);
    std::size_t slotOf(std::uint64_t tag, const Key& key) const;
    void grow();

    Entries entries_;
    std::vector<Slot> slots_;  // None, or a power of two, at most half of them taken.
    unsigned int withoutEntry_ = 0;
    std::size_t longest_ = 0;  // Octets.
  };

  using StringIndexMap = IndexMap<std::string>;  ///< Strings with their indices.
  using NameIndexMap = IndexMap<QualifiedName>;  ///< Names with their indices.

  /// The index of what is in no table.
  static constexpr unsigned int kNoIndex = ~0U;

  /// A name as an event brings it.
  struct Name {
    const std::string& uri;        ///< Namespace name.
    const std::string& localName;  ///< Local name.
    const std::string& qName;      ///< Qualified name.

    /// What stands in front of the last colon of the qualified name.
    std::string_view prefix() const;
  };

  /// The tables that the writer adds to (X.891, clause 8).
  struct Vocabulary {
    StringIndexMap prefixes;         ///< Prefixes.
    StringIndexMap namespaceNames;   ///< Namespace names.
    StringIndexMap localNames;       ///< Local names.
    StringIndexMap otherNCNames;     ///< Names of entities and notations, targets.
    StringIndexMap otherURIs;        ///< System and public identifiers.
    StringIndexMap attributeValues;  ///< Attribute values.
    StringIndexMap characterChunks;  ///< Character chunks.
    StringIndexMap otherStrings;     ///< Comments, data of instructions.
    NameIndexMap elementNames;       ///< Element names.
    NameIndexMap attributeNames;     ///< Attribute names.
  };

  /// @name Primitives
  /// None looks whether there is a stream.
  /// @{

  /// Writes an index that begins on the second bit (C.25).
  /// @param bits  the first bit of the octet: 0x80 or 0
  /// @param index the position in a table, from 0
  void encodeIndex(int bits, unsigned int index);
  /// Writes a non-identifying string, or its index (C.14).
  /// @param table      where to look it up; may be null
  /// @param addToTable whether a literal is added to the table
  /// @param text       the string
  void encodeString(StringIndexMap* table, bool addToTable, const std::string& text);
  /// Writes an identifying string, or its index (C.13). A literal is added to the table.
  void encodeIdentifier(StringIndexMap* table, const std::string& text);
  /// Writes a literal name and adds it to the table (C.17, C.18).
  /// @param bits  the bits of the octet that are not those of the parts
  /// @param table the table of element or of attribute names
  /// @param name  the name; its prefix and namespace name are built in or declared
  void encodeQualifiedName(int bits, NameIndexMap& table, const QualifiedName& name);
  /// Writes namespace declarations and the terminator behind them (C.12).
  /// @param pairs prefix, namespace name, prefix, namespace name, ...
  void encodeNamespaces(const std::vector<std::string>& pairs);
  /// Writes a character chunk, or its index (C.15); nothing for an empty text.
  void encodeCharacters(const std::string& text);
  /// Writes the attributes that are not namespace declarations (C.4); their terminator is owed.
  void encodeAttributes(const Attributes& attributes);
  /// @}

  /// Empties all tables.
  void clearTables();

  /// The number of attributes that are not namespace declarations.
  int countAttributes(const Attributes& attributes) const;

  /// Writes the terminator that is owed; with `final`, together with another one.
  void flushTerminator(bool final);
  /// Writes the text that has gathered as one chunk.
  void flushCharacters();

  /// @name Octets
  /// They need a stream. What gathers is to be sent at the end of each event.
  /// @{
  void gatherOctets() { gathers_ = true; }    ///< From now on, also between events.
  void sendOctets();                          ///< Writes what has gathered, if anything.
  void put(unsigned octet);                   ///< Writes one octet.
  void putOctets(const std::string& octets);  ///< Writes octets.
  /// Writes the length and the octets of an identifying string (C.22).
  void putIdentifier(const std::string& text);
  /// Writes a number of items (C.21).
  void putItemCount(std::uint32_t count);
  /// Writes what introduces the octets of an algorithm (C.19 with C.23, C.20 with C.24).
  void putAlgorithm(bool chunk, unsigned field, std::uint64_t length);
  /// @}

  /// @name Steps in which the dialects differ
  /// @{

  /// Writes what stands in front of the children (C.2), or puts it off.
  virtual void beginDocument();
  /// Whether a value, chunk or other string is to enter its table when it is written.
  virtual bool isIndexed(const StringIndexMap& table, const std::string& text) const;
  /// Enters what was written literally into its table.
  virtual void addEntry(StringIndexMap& table, const std::string& text);
  /// Enters a name that was written literally into its table.
  virtual void addEntry(NameIndexMap& table, const QualifiedName& name);
  /// Is told of a part of a name that is in no table. Where it returns, the part is written
  /// literally.
  virtual void missingNamePart(const std::string& part, const char* what) const;
  /// Whether an attribute is a namespace declaration, which startPrefixMapping tells of.
  virtual bool isDeclaration(const Attributes& attributes, int index) const;
  /// Takes the attributes of a start tag for namespace declarations that are such. Called where
  /// there are any, before names are looked at.
  /// @param attributes   all attributes of the start tag
  /// @param declarations the positions of those
  virtual void takeDeclarations(const Attributes& attributes, const std::vector<int>& declarations);
  /// Refuses the name of an element, before anything of the tag is written.
  /// @param name  the name
  /// @param index its position in the table, or kNoIndex
  /// @param isKnown whether these very strings were looked at before and not refused
  virtual void checkElementName(const Name& name, unsigned int index, bool isKnown);
  /// Refuses the name of an attribute, likewise.
  virtual void checkAttributeName(const Name& name, unsigned int index, bool isKnown);
  /// Refuses the text of an attribute, likewise.
  /// @param value the text, which is not empty
  /// @param index its position in the table, or kNoIndex
  virtual void checkValue(const std::string& value, unsigned int index) const;
  /// Refuses the typed value of an attribute, likewise.
  virtual void checkTypedValue(const std::string& uri, int index, const EncodedData& data);
  /// Nothing was refused: the tag will be written.
  virtual void beginTag();
  /// Writes the typed value of an attribute.
  virtual void encodeTypedValue(const std::string& uri, int index, const EncodedData& data);
  /// @}

  /// @throws EncodingAlgorithmException "Unknown encoding algorithm - " and the URI
  [[noreturn]] static void throwUnknownAlgorithm(const std::string& uri);
  /// The algorithm, or throwUnknownAlgorithm.
  EncodingAlgorithm& algorithmOrThrow(const std::string& uri, int index);

  Vocabulary vocabulary_;                ///< Of the current document.
  bool pendingTerminator_ = false;       ///< Owed; two in a row share an octet.
  std::string characters_;               ///< Text since the last item.
  std::vector<std::string> namespaces_;  ///< Prefix, namespace name, ... for the next start tag.
  BuiltInAlgorithms builtIn_;            ///< The algorithms.

 private:
  template <typename Encoding>
  void putInteger(const Encoding& encoding, unsigned bits, std::uint64_t value);
  std::uint64_t lengthOf(const std::string& text) const;
  void encodeNewString(StringIndexMap* table, const std::string& text);
  unsigned int findNamePart(const StringIndexMap& table, const std::string& part,
                            const char* builtIn, const char* what) const;
  void encodeNamePart(StringIndexMap& table, const std::string& part, unsigned int index);
  static void assignName(QualifiedName& name, const Name& from);
  unsigned int takeElementName(const Name& name);
  const EncodingAlgorithmAttributes* typedForm(const Attributes& attributes);
  void recogniseAttributes(const Attributes& attributes);
  void takeAttributes(const Attributes& attributes);
  void encodeTakenAttributes(const Attributes& attributes);
  void encodeNewAttributeName(const Name& name);
  void writeStartTag(const Name& name, const Attributes& attributes);
  template <typename Body>
  void perform(Body body);
  template <typename Algorithm, typename Value>
  void encodeContent(Algorithm& algorithm, const Value& value);

  void write(const char* octets, std::size_t count);
  std::ostream& stream();

  const fastinfoset::Dialect& dialect_;
  bool gathers_ = false;
  std::string gathered_;

  struct KnownNames;
  std::unique_ptr<KnownNames> known_;

  // Used again for each item; they keep their memory.
  struct TakenAttribute {
    int position;
    unsigned int index;       // Of its name, or kNoIndex.
    unsigned int valueIndex;  // Of its text, or kNoIndex.
    bool isKnown;             // Its name is one of known_.
  };
  QualifiedName name_;
  QualifiedName elementName_;
  std::vector<TakenAttribute> taken_;        // The attributes that are not declarations.
  std::vector<int> declarations_;            // The positions of the others.
  const std::type_info* untyped_ = nullptr;  // A class of attributes without typed values.

  static const XMLWriterType type_;
};

}  // namespace Tavrin
