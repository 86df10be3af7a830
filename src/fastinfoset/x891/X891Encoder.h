#pragma once

#include <Tavrin/Vocabulary.h>
#include <Tavrin/XMLWriter_X891.h>

#include <algorithm>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

#include "../../xml/ElementStack.h"
#include "../../xml/NamespaceBindings.h"
#include "../../xml/UniqueAttributes.h"
#include "../Encoder.h"
#include "../InitialVocabulary.h"
#include "../SharedVocabulary.h"
#include "ValueTally.h"

namespace Tavrin {

namespace fastinfoset {

/// The longest string there is (X.891, C.22 to C.24).
inline constexpr std::uint64_t kLongestString = kDialectX891.longestStringWritten;

// Checks of strings. Each throws a SAXException with the reason.

void checkLength(std::uint64_t octets);
/// @param place what contains the text, with its article
void checkText(const std::string& text, const char* place);
void checkNCName(std::string_view name);
/// Identifiers of an external entity or a notation; an empty one is absent.
void checkIdentifiers(const std::string& publicId, const std::string& systemId);

}  // namespace fastinfoset

/// What is a member of the writer in other types. It is a base class, so that it exists before the
/// base class that refers to it.
struct EncoderState {
  bool pendingTerminator = false;
  std::string characters;
  BuiltInAlgorithms builtIn;
};

/// What is known of the names of a table, by index, in the current document. Where a document uses
/// few names of a large vocabulary, a new document costs as much as those.
template <typename Record>
class NameRecords {
 public:
  Record& operator[](std::size_t index) { return records_[index]; }
  /// The record of an index, which is a new one at first.
  Record& at(std::size_t index) {
    if (index >= records_.size()) records_.resize(std::max(kFirst, index + index / 2 + 1));
    return records_[index];
  }
  /// Comes before a new record is changed.
  void use(std::size_t index) { used_.push_back(index); }
  /// Makes all records new.
  void forget(bool keepsMemory) {
    if (keepsMemory && used_.size() < records_.size() / kFew) {
      for (const std::size_t index : used_) records_[index] = {};
    } else if (records_.size() <= kMostKept) {
      std::ranges::fill(records_, Record());
    } else {
      records_ = {};
    }
    used_.clear();
  }

 private:
  static constexpr std::size_t kFew = 8;
  static constexpr std::size_t kFirst = 32;
  static constexpr std::size_t kMostKept = 128;

  std::vector<Record> records_;
  std::vector<std::size_t> used_;
};

/// The state of the current document and event, the checks before anything is written, and the
/// items before the root element, which are buffered until the header can be written.
class TAVRIN_LOCAL XMLWriter_X891::Encoder : public EncoderState, public fastinfoset::Encoder {
 public:
  using EventName = fastinfoset::EventName;
  using NameParts = fastinfoset::NameParts;
  using NameView = fastinfoset::NameView;
  using KeyHash = fastinfoset::KeyHash;
  using InitialVocabulary = fastinfoset::InitialVocabulary;
  using SharedVocabulary = fastinfoset::SharedVocabulary;

  explicit Encoder(XMLWriter_X891& writer);

  /// Runs an event. Where it is refused, or fails before any of it is written, it has no effect.
  /// Where it fails later, it is unknown which octets were written, and nothing may follow.
  template <typename Body>
  void attempt(Body body);
  void breakOff() noexcept;
  /// Begins a document without tables. Nothing is written: notations and unparsed entities, which
  /// come before the children, are yet to come.
  void beginDocument();
  template <typename Access>
  bool accessProperty(Access access);
  void setValueIndexing(const std::string& mode);

  // --- Start tags ---

  void prepareStartTag(const EventName& name, const Attributes& attributes);
  void encodeStartTag(const EventName& name, const Attributes& attributes);
  unsigned findElementName(const EventName& name);
  void classifyAttributes(const Attributes& attributes);
  void checkAttributes(const Attributes& attributes);
  void encodeAttributes(const Attributes& attributes);
  template <typename Record>
  unsigned encodeUnlistedName(unsigned bits, unsigned table, const NameView& name, KeyHash hash,
                              NameRecords<Record>& records);
  template <typename Record>
  fastinfoset::ValueTally& tallyOf(NameRecords<Record>& records, unsigned index) {
    return index != fastinfoset::kNoIndex ? records[index].tally : document_.unlisted;
  }
  void declare(const std::string& prefix, const std::string& uri);
  void declareByAttributes(const Attributes& attributes);
  void checkKnownElementName(const EventName& name, unsigned index);
  void checkElementName(const EventName& name, const NameView& parts, unsigned index);
  struct AttributeRecord;
  void prepareAttributeName(const Attributes& attributes, std::size_t number);
  void checkAttributeName(const EventName& name, const NameView& parts, unsigned index);
  bool isFirst(const EventName& name, AttributeRecord& record);
  void checkNewAttribute(const Attributes& attributes, std::size_t number,
                         const std::string& localName);
  void checkNewName(const NameView& name);
  void checkPrefix(std::string_view prefix, const std::string& uri) const;
  void checkValue(const std::string& value, unsigned index) const;
  bool addsNew(unsigned table, const std::string& text, fastinfoset::ValueTally& tally);
  /// Refuses what would make the tables larger than a reader allows.
  void checkTableOctets(std::uint64_t octets, std::uint64_t entries) const;

  // --- What comes before the root ---

  void beginChildren(const InitialVocabulary& vocabulary);
  void encodeComponents(const InitialVocabulary& vocabulary);
  void encodeProlog();

  const ExternalVocabulary* findExternalVocabulary() const;
  void setExternalVocabulary(const std::string& uri, const OwnedVocabulary& vocabulary);
  void setInitialVocabulary(const OwnedVocabulary& vocabulary);
  void prepareVocabulary();
  void shareTables(std::shared_ptr<const SharedVocabulary> vocabulary);
  void loadExternalVocabulary(const ExternalVocabulary& external);
  void loadInitialVocabulary(InitialVocabulary& written);
  void loadAlgorithms(const ExternalVocabulary* external);

  // --- Text and typed values ---

  void addText(const std::string& text);
  bool addsChunk(const std::string& text, bool isFound) override;
  void checkTypedContent() const;
  template <typename Algorithm, typename Value>
  void encodeTypedContent(Algorithm& algorithm, const Value& value, std::uint64_t octets);
  void encodeCDATA(const std::string& text);
  void encodeChunk(unsigned field, const std::string& octets);
  void checkTypedValue(const std::string& uri, int index, const EncodedData& data);
  void encodeTypedValue(const std::string& uri, int index, const EncodedData& data);
  void checkOctets(unsigned field, const std::string& octets);
  EncodingAlgorithm* findAlgorithm(const std::string& uri, int index);
  EncodingAlgorithm& algorithmFor(const std::string& uri, int index);
  std::string namedAlgorithm(int index) const;
  unsigned fieldOf(const std::string& uri, int index) const;
  [[noreturn]] void refuseAlgorithm(const std::string& uri, int index) const;

  static constexpr char kAdaptive[] = "adaptive";
  static constexpr char kAlways[] = "always";
  static constexpr char kNever[] = "never";
  static constexpr std::uint64_t kIndexedLengthDefault = 32;
  static constexpr std::uint64_t kMaximumTableOctetsDefault = std::uint64_t{64} << 20;

  XMLWriter_X891& writer_;
  std::vector<std::string> namespaces_;  // Prefix, namespace name, ... for the next start tag.
  UUIDEncodingAlgorithm uuid_;

  // --- Properties ---
  std::optional<std::string> xmlVersion_;
  std::optional<bool> standalone_;
  std::optional<ExternalVocabulary> initialVocabulary_;
  std::optional<std::string> externalVocabulary_;
  ExternalVocabularyMap* externalVocabularies_ = nullptr;
  std::shared_ptr<const SharedVocabulary> sharedInitial_;   // Which initialVocabulary_ refers to.
  std::shared_ptr<const SharedVocabulary> sharedExternal_;  // Known by this URI.
  std::string sharedExternalURI_;
  EncodingAlgorithmMap* registeredAlgorithms_ = nullptr;
  std::optional<std::vector<std::string>> algorithmURIs_;
  std::uint64_t maximumDepth_ = UINT64_MAX;
  std::string valueIndexing_ = kAdaptive;
  bool isAdaptive_ = true;  // As this says.

  // --- The document ---
  enum class Kind { comment, processingInstruction, documentType, endOfDocumentType };

  /// An item before the root element: the text of a comment, the target and data of a processing
  /// instruction, or the public and system identifiers of a document type.
  struct PrologItem {
    Kind kind;
    std::string first;
    std::string second;
  };
  /// What is known of a name.
  struct ElementRecord {
    std::uint64_t bindings = 0;     // The version of the bindings for which the prefix was checked.
    fastinfoset::ValueTally tally;  // Of its chunks.
  };
  struct AttributeRecord {
    std::uint64_t bindings = 0;
    std::size_t number = xml::UniqueAttributes::kUnknown;  // Of one in a namespace.
    std::uint64_t lastTag = 0;      // Of another one: its index tells it apart.
    fastinfoset::ValueTally tally;  // Of its values.
  };
  struct OpenElement {
    std::size_t declarations;
    unsigned name;  // Its index, or kNoIndex.
  };

  struct Document {
    bool isBroken = false;       // An event failed when some of it may have been written.
    bool childrenBegan = false;  // The header and the buffered items are written.
    std::vector<PrologItem> prolog;
    std::vector<fastinfoset::ExternalItem> notations;
    std::vector<fastinfoset::ExternalItem> unparsedEntities;
    std::map<std::string, std::pair<std::string, std::string>> externalEntities;  // Public, system.

    xml::NamespaceBindings bindings;
    xml::UniqueAttributes attributes;
    std::set<std::string> declared;  // Prefixes, for the next start tag.
    std::vector<OpenElement> openElements;
    unsigned textElement = fastinfoset::kNoIndex;  // The name of the innermost, which has the text.
    fastinfoset::ValueTally unlisted;              // Of names that are in no table.

    std::shared_ptr<const SharedVocabulary> vocabulary;  // With which the tables begin, or null.
    unsigned loadedValues = 0;            // The number of values in the vocabularies.
    std::vector<std::string> algorithms;  // URIs; the first has field 31. Empty: not defined.
    std::map<std::string, unsigned> algorithmFields;
  };
  Document document_;
  xml::ElementStack stack_;
  NameRecords<ElementRecord> elementRecords_;
  NameRecords<AttributeRecord> attributeRecords_;

  // --- Of the current event ---
  struct CheckedAttribute {
    int position;
    unsigned index;       // Of its name, or kNoIndex.
    unsigned valueIndex;  // Of its text, or kNoIndex.
    bool isKnown;         // Its name is one of known_.
    // Where they are in no table:
    KeyHash nameHash = {};
    KeyHash valueHash = {};
  };
  bool isClear_ = true;                       // There has been no event of a document.
  bool isWriting_ = false;                    // Some of its octets may be written.
  unsigned elementIndex_ = 0;                 // Of the element's name, or kNoIndex.
  KeyHash elementHash_;                       // Of its name, where it is in no table.
  std::string localName_;                     // Of an attribute.
  std::vector<CheckedAttribute> attributes_;  // Those that are not declarations.
  std::vector<int> declarations_;             // The positions of the others.
  std::vector<std::string> newPrefixes_;      // Prefixes that attributes declare.
  std::deque<std::string> encodedValues_;     // By applications' algorithms, in order.
  std::uint64_t newOctets_ = 0;               // The most that new names add to the tables.
  std::uint64_t newEntries_ = 0;
  // Prepared by the root element.
  InitialVocabulary composed_;
  const InitialVocabulary* header_ = &composed_;  // That, or the one of a shared vocabulary.
};

template <typename Body>
void XMLWriter_X891::Encoder::attempt(Body body) {
  if (document_.isBroken) {
    throw SAXException("The document cannot go on after a failure: the writer must be reset");
  }
  const WriterState state = writer_.state_;
  const bool hadContent = writer_.hasContent_;
  try {
    body(*this);
  } catch (...) {
    writer_.state_ = state;
    writer_.hasContent_ = hadContent;
    if (isWriting_) breakOff();
    throw;
  }
  isWriting_ = false;
}

}  // namespace Tavrin
