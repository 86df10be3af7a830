#pragma once

#include <Tavrin/Vocabulary.h>
#include <Tavrin/XMLWriter_X891.h>

#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

#include "../../xml/NamespaceBindings.h"
#include "../../xml/UniqueAttributes.h"
#include "../Encoder.h"
#include "WrittenVocabulary.h"

namespace Tavrin {

/// What belongs to the writer in this type, to be there before its encoder is.
struct EncoderState {
  bool pendingTerminator = false;
  std::string characters;
  BuiltInAlgorithms builtIn;
};

/// What writer "X891" does beside encoding: it checks what is to be written, and keeps what stands
/// in front of the root until the header can be written.
class XMLWriter_X891::Encoder : private EncoderState, public fastinfoset::Encoder {
 public:
  explicit Encoder(XMLWriter_X891& writer);

  // --- Events, as the writer has them ---

  void startDocument();
  void endDocument();
  void startPrefixMapping(const std::string& prefix, const std::string& uri);
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Attributes& attributes);
  void endElement(const std::string& uri, const std::string& localName, const std::string& qName);
  void characters(const std::string& text);
  void ignorableWhitespace(const std::string& text);
  void processingInstruction(const std::string& target, const std::string& data);
  void skippedEntity(const std::string& name);
  void notationDecl(const std::string& name, const std::string& publicId,
                    const std::string& systemId);
  void unparsedEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId, const std::string& notationName);
  void externalEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId);
  void internalEntityDecl(const std::string& name, const std::string& value);
  void elementDecl(const std::string& name, const std::string& model);
  void attributeDecl(const std::string& eName, const std::string& aName, const std::string& type,
                     const std::string& mode, const std::string& value);
  void startDTD(const std::string& name, const std::string& publicId, const std::string& systemId);
  void endDTD();
  void startCDATA();
  void endCDATA();
  void comment(const std::string& text);
  void reset();
  void bytes(const std::string& data);
  void shorts(const std::vector<short>& data);
  void ints(const std::vector<long>& data);
  void longs(const std::vector<long>& data);
  void booleans(const std::vector<bool>& data);
  void floats(const std::vector<float>& data);
  void doubles(const std::vector<double>& data);
  void octets(const std::string& uri, int index, const std::string& data);
  void object(const std::string& uri, int index, const EncodedData& data);

  // --- Properties ---

  bool setProperty(const std::string& name, void* value);
  bool getProperty(const std::string& name, void*& value);
  EncodingAlgorithm* getEncodingAlgorithm(const std::string& uri, int index);

 private:
  using EventName = fastinfoset::EventName;
  using NameParts = fastinfoset::NameParts;
  using WrittenVocabulary = fastinfoset::WrittenVocabulary;

  template <typename Body>
  void attempt(Body body);
  void requireSound() const;
  void breakOff() noexcept;

  void beginDocument();

  void encodeStartTag(const EventName& name, const Attributes& attributes);
  unsigned int takeElementName(const EventName& name);
  const EncodingAlgorithmAttributes* typedForm(const Attributes& attributes);
  void recogniseAttributes(const Attributes& attributes);
  void takeAttributes(const Attributes& attributes);
  void encodeTakenAttributes(const Attributes& attributes);
  void encodeNewAttributeName(const EventName& name);
  static bool isDeclaration(const Attributes& attributes, int index);
  void takeDeclarations(const Attributes& attributes, const std::vector<int>& declarations);
  void checkElementName(const EventName& name, unsigned int index, bool isKnown);
  void checkAttributeName(const EventName& name, unsigned int index, bool isKnown);
  void checkValue(const std::string& value, unsigned int index) const;
  void checkTypedValue(const std::string& uri, int index, const EncodedData& data);
  void beginTag();
  void encodeTypedValue(const std::string& uri, int index, const EncodedData& data);

  void declare(const std::string& prefix, const std::string& uri);
  void takeNewName(const EventName& name);
  [[noreturn]] static void refuseSpelling(const EventName& name);
  void checkPrefix(std::string_view prefix, const std::string& uri) const;
  void checkRoom(std::uint64_t octets, std::uint64_t entries) const;

  void beginChildren(const WrittenVocabulary& vocabulary);
  void writeComponents(const WrittenVocabulary& vocabulary);
  void writeProlog();
  void encodeIdentifiers(const std::string& systemId, const std::string& publicId);

  const ExternalVocabulary* findExternalVocabulary() const;
  void loadExternalVocabulary(WrittenVocabulary& written);
  void loadInitialVocabulary(WrittenVocabulary& written);
  void loadAlgorithms(WrittenVocabulary& written);
  WrittenVocabulary prepareVocabulary();
  void writeVocabulary(const WrittenVocabulary& vocabulary);
  void writeSurrogate(const NameParts& name);

  void writeInstruction(const std::string& target, const std::string& data);
  void gather(const std::string& text);
  void checkTypedContent() const;
  template <typename Write>
  void putValue(std::uint64_t octets, Write write);
  void putSection(const std::string& text);
  void putContent(unsigned int field, const std::string& octets);

  static bool isBuiltIn(const std::string& uri, int index);
  std::string namedAlgorithm(int index) const;
  unsigned int fieldOf(const std::string& uri, int index) const;
  EncodingAlgorithm& algorithmFor(const std::string& uri, int index);
  [[noreturn]] void refuseAlgorithm(const std::string& uri, int index) const;
  static std::uint64_t octetsOfBooleans(std::size_t count);
  static void checkValueLength(std::uint64_t octets);
  static std::uint64_t checkBuiltIn(int index, const EncodedData& data);
  void checkOctets(unsigned int field, const std::string& octets);
  static std::string encodedBy(EncodingAlgorithm& algorithm, const std::string& uri, bool chunk,
                               const EncodedData& data);

  XMLWriter_X891& writer_;
  WriterState& state_;
  bool& hasContent_;
  std::deque<Element>& elements_;
  std::vector<std::string> namespaces_;  // Prefix, namespace name, ... for the next start tag.

  // --- Properties ---
  std::optional<std::string> xmlVersion_;
  std::optional<bool> standalone_;
  std::optional<ExternalVocabulary> initialVocabulary_;
  std::optional<std::string> externalVocabulary_;
  ExternalVocabularyMap* externalVocabularies_ = nullptr;
  EncodingAlgorithmMap* registeredAlgorithms_ = nullptr;
  std::uint64_t maximumDepth_ = kMaximumDepthDefault;

  static constexpr std::uint64_t kIndexedLengthDefault = 32;
  static constexpr std::uint64_t kMaximumTableOctetsDefault = std::uint64_t{64} << 20;

  static constexpr std::uint64_t kMaximumDepthDefault = UINT64_MAX;

  UUIDEncodingAlgorithm uuid_;

  // --- The document ---
  enum class Kind { comment, instruction, documentType, endOfDocumentType };

  /// What stands in front of the root: a comment's text, an instruction's target and data, the
  /// public and system identifiers of a document type.
  struct PrologItem {
    Kind kind;
    std::string first;
    std::string second;
  };
  struct Notation {
    std::string name;
    std::string publicId;
    std::string systemId;
  };
  struct UnparsedEntity {
    std::string name;
    std::string publicId;
    std::string systemId;
    std::string notationName;
  };

  /// What was found out about the name of an attribute.
  struct AttributeRecord {
    std::uint64_t bindings = 0;  // The version of the bindings in which its prefix is right.
    std::size_t number = xml::UniqueAttributes::kUnknown;
  };

  struct Document {
    bool isBroken = false;       // An event failed when some of it may have been written.
    bool childrenBegan = false;  // The header and what was held back are written.
    std::vector<PrologItem> prolog;
    std::vector<Notation> notations;
    std::vector<UnparsedEntity> unparsedEntities;
    std::map<std::string, std::pair<std::string, std::string>> externalEntities;  // Public, system.

    xml::NamespaceBindings bindings;
    std::vector<std::uint64_t> elementBindings;     // By position: in which the prefix is right.
    std::vector<AttributeRecord> attributeRecords;  // By position.
    xml::UniqueAttributes attributes;
    std::set<std::string> declared;          // Prefixes, for the next start tag.
    std::vector<std::size_t> declaredCount;  // Of each open element.

    unsigned loadedValues = 0;            // Positions of values that it began with.
    std::vector<std::string> algorithms;  // URIs; the first has field 31. Empty: not defined.
    std::map<std::string, unsigned> algorithmFields;
  };
  Document document_;

  // --- Of the event that is running ---
  struct TakenAttribute {
    int position;
    unsigned index;       // Of its name, or kNoIndex.
    unsigned valueIndex;  // Of its text, or kNoIndex.
    bool isKnown;         // Its name is one of known_.
  };
  bool isWriting_ = false;  // Some of it may be written.
  NameParts elementName_;
  std::vector<TakenAttribute> attributes_;  // Those that are not declarations.
  std::vector<int> declarations_;           // The positions of the others.
  std::vector<std::string> taken_;          // Prefixes that attributes declare.
  std::deque<std::string> encodedValues_;   // What applications' algorithms made, in order.
  std::uint64_t newOctets_ = 0;             // What new names may add to the tables.
  std::uint64_t newEntries_ = 0;
  WrittenVocabulary headerVocabulary_;  // Of the root: the header's.
};

/// Runs an event. Where it is refused, or fails before any of it is written, it leaves no trace.
/// Where it fails later, nobody can tell what has been written, and nothing may follow.
template <typename Body>
void XMLWriter_X891::Encoder::attempt(Body body) {
  requireSound();
  const WriterState state = state_;
  const bool hadContent = hasContent_;
  try {
    body();
  } catch (...) {
    state_ = state;
    hasContent_ = hadContent;
    if (isWriting_) breakOff();
    throw;
  }
  isWriting_ = false;
}

}  // namespace Tavrin
