#pragma once

#include <Tavrin/Vocabulary.h>
#include <Tavrin/XMLWriter_X891.h>

#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

#include "../../../xml/NamespaceBindings.h"
#include "../../../xml/UniqueAttributes.h"
#include "../Event.h"
#include "Vocabulary.h"

namespace Tavrin {

/// What the writer "X891" keeps beside what it shares with "FI".
struct XMLWriter_X891::State : Limits {
  State() {
    indexedAttributeValueLength = kIndexedLengthDefault;
    indexedChunkLength = kIndexedLengthDefault;
    maximumTableOctets = kMaximumTableOctetsDefault;
  }

  // --- Properties ---
  std::optional<std::string> xmlVersion;
  std::optional<bool> standalone;
  std::optional<ExternalVocabulary> initialVocabulary;
  std::optional<std::string> externalVocabulary;
  ExternalVocabularyMap* externalVocabularies = nullptr;
  EncodingAlgorithmMap* registeredAlgorithms = nullptr;
  std::uint64_t maximumDepth = kMaximumDepthDefault;

  static constexpr std::uint64_t kIndexedLengthDefault = 32;
  static constexpr std::uint64_t kMaximumTableOctetsDefault = std::uint64_t{64} << 20;

  static constexpr std::uint64_t kMaximumDepthDefault = UINT64_MAX;

  UUIDEncodingAlgorithm uuid;

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
  Document document;

  // --- Of the event that is running ---
  struct TakenAttribute {
    int position;
    unsigned index;       // Of its name, or kNoIndex.
    unsigned valueIndex;  // Of its text, or kNoIndex.
    bool isKnown;         // Its name is one of known_.
  };
  bool isWriting = false;  // Some of it may be written.
  QualifiedName elementName;
  std::vector<TakenAttribute> attributes;  // Those that are not declarations.
  std::vector<int> declarations;           // The positions of the others.
  std::vector<std::string> taken;          // Prefixes that attributes declare.
  std::deque<std::string> encodedValues;   // What applications' algorithms made, in order.
  std::uint64_t newOctets = 0;             // What new names may add to the tables.
  std::uint64_t newEntries = 0;
  WrittenVocabulary vocabulary;  // Of the root: the header's.
};

/// Runs an event. Where it is refused, or fails before any of it is written, it leaves no trace.
/// Where it fails later, nobody can tell what has been written, and nothing may follow.
template <typename Body>
void XMLWriter_X891::attempt(Body body) {
  requireSound();
  const WriterState state = state_;
  const bool hadContent = hasContent_;
  try {
    body();
  } catch (...) {
    state_ = state;
    hasContent_ = hadContent;
    if (own_->isWriting) breakOff();
    throw;
  }
  own_->isWriting = false;
}

}  // namespace Tavrin
