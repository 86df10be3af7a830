#include <Tavrin/Attributes.h>
#include <Tavrin/OwnedVocabulary.h>
#include <Tavrin/XMLWriter_X891.h>

#include <utility>

#include "../../xml/Rules.h"
#include "../SharedVocabulary.h"
#include "VocabularyChecks.h"
#include "X891Decoder.h"

namespace Tavrin {

using namespace fastinfoset;

namespace {

/// The number by which X.891 counts the first of a writer's positions.
std::uint32_t firstIndex(unsigned table) {
  if (table == kRestrictedAlphabets) return 1 + kFirstOwnAlphabet;
  if (table == kEncodingAlgorithms) return 1 + kDialectX891.firstApplicationAlgorithm;
  return 1;
}

SharedVocabulary* sharedOf(const std::shared_ptr<ExternalVocabulary>& tables) {
  return static_cast<SharedVocabulary*>(tables.get());
}

/// The tables for a change that nobody else sees.
SharedVocabulary& changeable(std::shared_ptr<ExternalVocabulary>& tables) {
  const SharedVocabulary* const known = sharedOf(tables);
  if (known == nullptr) {
    tables = std::make_shared<SharedVocabulary>();
  } else if (known->isSealed()) {
    tables = known->copy();
  }
  return *sharedOf(tables);
}

/// Whether a table has an entry. Those of no vocabulary are those that are built in.
bool has(const SharedVocabulary* tables, unsigned table, const std::string& entry) {
  if (tables != nullptr) return tables->strings(table).find(entry) != nullptr;
  const char* const builtIn = kStringTableForms[table].builtIn;
  return builtIn != nullptr && entry == builtIn;
}

/// @throws SAXException where there is no position for another entry
void checkRoom(const SharedVocabulary* tables, unsigned table) {
  const std::size_t positions = tables == nullptr        ? 0
                                : table >= kStringTables ? tables->names(table).positions()
                                                         : tables->strings(table).positions();
  checkPositions(table, positions + 1);
}

/// Reads nothing but the initial vocabulary of a document.
class VocabularyDecoder : public X891Decoder {
 public:
  VocabularyDecoder() : X891Decoder({kNoContentHandler, kNoErrorHandler, kNoDTDHandler}) {}

  std::shared_ptr<SharedVocabulary> read(std::istream& stream) {
    parseVocabulary(stream);
    auto tables = std::make_shared<SharedVocabulary>();
    for (unsigned table = 0; table < kStringTables; ++table) {
      const auto& entries = strings(table).own();
      for (std::size_t i = 0; i < entries.size(); ++i) {
        const std::string& entry = entries[i];
        fastinfoset::checkEntry(table, entry);
        checkRoom(tables.get(), table);
        tables->append(table, entry);
      }
    }
    for (unsigned table = kStringTables; table < kTables; ++table) {
      for (std::size_t i = 0; i < names(table).size(); ++i) {
        const Name& name = names(table)[i];
        checkName(table, name.parts(), name.qName());
        checkRoom(tables.get(), table);
        tables->append(table, name.parts());
      }
    }
    return tables;
  }

 private:
  std::string describeUnknownVocabulary(const std::string& uri) const override {
    return "The vocabulary is not complete: it refers to the external vocabulary " + uri;
  }

  static constexpr ContentHandler* kNoContentHandler = nullptr;
  static constexpr ErrorHandler* kNoErrorHandler = nullptr;
  static constexpr DTDHandler* kNoDTDHandler = nullptr;
};

}  // namespace

OwnedVocabulary::OwnedVocabulary() = default;
// What two of them share must not change.
OwnedVocabulary::OwnedVocabulary(const OwnedVocabulary& other) : tables_(other.tables_) {
  if (tables_ != nullptr) sharedOf(tables_)->seal();
}
OwnedVocabulary::OwnedVocabulary(OwnedVocabulary&& other) noexcept = default;
OwnedVocabulary& OwnedVocabulary::operator=(const OwnedVocabulary& other) {
  return *this = OwnedVocabulary(other);
}
OwnedVocabulary& OwnedVocabulary::operator=(OwnedVocabulary&& other) noexcept = default;
OwnedVocabulary::~OwnedVocabulary() = default;

// --- Entries ---

std::uint32_t OwnedVocabulary::add(unsigned table, const std::string& entry) {
  const SharedVocabulary* const known = sharedOf(tables_);
  if (known != nullptr) {
    const unsigned* const index = known->strings(table).find(entry);
    if (index != nullptr) return firstIndex(table) + *index;
  } else if (has(nullptr, table, entry)) {
    return firstIndex(table);
  }
  checkEntry(table, entry);
  checkRoom(known, table);
  return firstIndex(table) + changeable(tables_).append(table, entry);
}

std::uint32_t OwnedVocabulary::addName(unsigned table, const std::string& uri,
                                       const std::string& localName, const std::string& qName) {
  const std::string& spelling = qName.empty() ? localName : qName;
  const NameParts name = {std::string(xml::split(spelling).prefix), uri, localName};
  const SharedVocabulary* const known = sharedOf(tables_);
  if (known != nullptr) {
    const unsigned* const index = known->names(table).find(name);
    if (index != nullptr) return firstIndex(table) + *index;
  }
  checkName(table, name, spelling);
  const std::pair<unsigned, const std::string&> parts[] = {
      {kPrefixes, name.prefix}, {kNamespaceNames, uri}, {kLocalNames, localName}};
  const auto isMissing = [&](unsigned partTable, const std::string& part) {
    return !part.empty() && !has(sharedOf(tables_), partTable, part);
  };
  checkRoom(known, table);
  for (const auto& [partTable, part] : parts) {
    if (isMissing(partTable, part)) checkRoom(known, partTable);
  }
  for (const auto& [partTable, part] : parts) {
    if (isMissing(partTable, part)) changeable(tables_).append(partTable, part);
  }
  return firstIndex(table) + changeable(tables_).append(table, name);
}

std::uint32_t OwnedVocabulary::addElementName(const std::string& uri, const std::string& localName,
                                              const std::string& qName) {
  return addName(kElementNames, uri, localName, qName);
}

std::uint32_t OwnedVocabulary::addAttributeName(const std::string& uri,
                                                const std::string& localName,
                                                const std::string& qName) {
  return addName(kAttributeNames, uri, localName, qName);
}

std::uint32_t OwnedVocabulary::addAttributeValue(const std::string& value) {
  return add(kAttributeValues, value);
}

std::uint32_t OwnedVocabulary::addCharacters(const std::string& text) {
  return add(kContentCharacterChunks, text);
}

std::uint32_t OwnedVocabulary::addOtherString(const std::string& text) {
  return add(kOtherStrings, text);
}

std::uint32_t OwnedVocabulary::addPrefix(const std::string& prefix) {
  return add(kPrefixes, prefix);
}

std::uint32_t OwnedVocabulary::addNamespaceName(const std::string& uri) {
  return add(kNamespaceNames, uri);
}

std::uint32_t OwnedVocabulary::addLocalName(const std::string& name) {
  return add(kLocalNames, name);
}

std::uint32_t OwnedVocabulary::addOtherNCName(const std::string& name) {
  return add(kOtherNCNames, name);
}

std::uint32_t OwnedVocabulary::addOtherURI(const std::string& identifier) {
  return add(kOtherURIs, identifier);
}

std::uint32_t OwnedVocabulary::addEncodingAlgorithm(const std::string& uri) {
  return add(kEncodingAlgorithms, uri);
}

std::uint32_t OwnedVocabulary::addRestrictedAlphabet(const std::string& characters) {
  return add(kRestrictedAlphabets, characters);
}

bool OwnedVocabulary::isEmpty() const {
  return tables_ == nullptr || sharedOf(tables_)->entries().components() == 0;
}

std::shared_ptr<const ExternalVocabulary> OwnedVocabulary::tables() const {
  static const auto kNone = std::make_shared<SharedVocabulary>();
  SharedVocabulary& tables = tables_ == nullptr ? *kNone : *sharedOf(tables_);
  tables.seal();
  return tables_ == nullptr ? kNone : tables_;
}

// --- Files ---

void OwnedVocabulary::write(std::ostream& stream) const {
  XMLWriter_X891 writer;
  writer.setOutputStream(&stream);
  writer.setInitialVocabulary(*this);
  writer.startDocument();
  // With a name of the vocabulary nothing else enters the tables.
  const std::shared_ptr<const SharedVocabulary> tables = shared(*this);
  const std::vector<NameParts>& names = tables->entries().names[kElementNames - kStringTables];
  const NameParts name = names.empty() ? NameParts{"", "", "vocabulary"} : names.front();
  const auto& [prefix, uri, localName] = name;
  if (!uri.empty()) writer.startPrefixMapping(prefix, uri);
  const std::string qName = prefix.empty() ? localName : prefix + ":" + localName;
  writer.startElement(uri, localName, qName, AttributesImpl());
  writer.endElement(uri, localName, qName);
  if (!uri.empty()) writer.endPrefixMapping(prefix);
  writer.endDocument();
}

OwnedVocabulary OwnedVocabulary::read(std::istream& stream) {
  OwnedVocabulary result;
  result.tables_ = VocabularyDecoder().read(stream);
  return result;
}

}  // namespace Tavrin
