#include <Tavrin/Identifiers.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "../../sax/AtLimit.h"
#include "../../xml/Characters.h"
#include "../format/Dialect.h"
#include "../TakeOctet.h"
#include "X891Decoder.h"

// Header, components and initial vocabulary (X.891, clause 12, C.2, C.2.5 and C.16).

namespace Tavrin {

using namespace fastinfoset;

namespace {

/// The XML declarations that a document may begin with (12.3), and what they state.
struct XMLDeclaration {
  std::string_view text;
  std::string_view version;
  int standalone;  // -1 where nothing is stated.
};

constexpr std::array<XMLDeclaration, 9> kXMLDeclarations = {{
    {"<?xml encoding='finf'?>", "", -1},
    {"<?xml encoding='finf' standalone='yes'?>", "", 1},
    {"<?xml encoding='finf' standalone='no'?>", "", 0},
    {"<?xml version='1.0' encoding='finf'?>", "1.0", -1},
    {"<?xml version='1.0' encoding='finf' standalone='yes'?>", "1.0", 1},
    {"<?xml version='1.0' encoding='finf' standalone='no'?>", "1.0", 0},
    {"<?xml version='1.1' encoding='finf'?>", "1.1", -1},
    {"<?xml version='1.1' encoding='finf' standalone='yes'?>", "1.1", 1},
    {"<?xml version='1.1' encoding='finf' standalone='no'?>", "1.1", 0},
}};

constexpr char kNotFastInfoset[] = "Not a Fast Infoset document";

}  // namespace

void XMLReader_X891::Decoder::decodeDocument() {
  decodeHeader();
  decodeOptionalComponents();
  if (contentHandler_) contentHandler_->startDocument();
  const std::string warning = xml::describeOtherVersion(document_.version);
  if (!warning.empty() && errorHandler_) errorHandler_->warning(exceptionHere(warning));
  decodeChildren();
  if (contentHandler_) contentHandler_->endDocument();
}

void XMLReader_X891::Decoder::decodeHeader() {
  if (source_->good() && source_->rdbuf()->sgetc() == kXMLDeclarations[0].text[0])
    decodeXMLDeclaration();
  if (!isFastInfosetDocument()) fail(kNotFastInfoset);
}

void XMLReader_X891::Decoder::decodeXMLDeclaration() {
  // As soon as no declaration begins like that, no more is read: the rest may be a stranger's.
  std::string text;
  const auto isPossible = [&] {
    return std::ranges::any_of(kXMLDeclarations,
                               [&](const auto& each) { return each.text.starts_with(text); });
  };
  for (;;) {
    text += static_cast<char>(takeOctet());
    if (!isPossible()) fail(kNotFastInfoset);
    const auto found = std::ranges::find(kXMLDeclarations, text, &XMLDeclaration::text);
    if (found == kXMLDeclarations.end()) continue;
    if (!found->version.empty()) document_.version = found->version;
    if (found->standalone >= 0) document_.standalone = found->standalone == 1;
    return;
  }
}

void XMLReader_X891::Decoder::checkPadding(unsigned bits) const {
  if (bits != 0) fail("Padding bits that are not zero");
}

// The components have the last word.

void XMLReader_X891::Decoder::reportVersion(const std::string& version) {
  if (!xml::isVersion(version)) fail("Invalid version of XML \"" + version + "\"");
  document_.version = version;
}

void XMLReader_X891::Decoder::reportStandalone(unsigned octet) {
  if (octet > 1) fail("Error when decoding standalone");
  document_.standalone = octet == 1;
}

void XMLReader_X891::Decoder::checkRootElement(bool elementSeen) {
  if (!elementSeen) fail("Document without an element");
}

// --- Initial vocabulary ---

void XMLReader_X891::Decoder::decodeInitialVocabulary() {
  const unsigned high = takeOctet();
  checkPadding(high & kVocabularyPadding);
  const unsigned tables = high << 8 | takeOctet();
  if (tables == 0) fail("Initial vocabulary without a component");
  if (tables & kExternalVocabulary) {
    std::string uri;
    decodeIdentifier(nullptr, uri);
    checkText(uri);
    const auto* known = externalVocabularies_;
    const auto found = known ? known->find(uri) : ExternalVocabularyMap::const_iterator();
    if (known == nullptr || found == known->end() || found->second == nullptr) {
      fail("Unknown external vocabulary - " + uri + " (add it to the property " +
           propertyName(properties::externalVocabularies) + ")");
    }
    externalVocabulary_ = found->second;
  }
  if (tables & kRestrictedAlphabets) decodeIdentifierEntries(restrictedAlphabets_);
  if (tables & kEncodingAlgorithms) decodeIdentifierEntries(encodingAlgorithms_);
  if (tables & kPrefixes) decodeIdentifierEntries(prefixes_);
  if (tables & kNamespaceNames) decodeIdentifierEntries(namespaceNames_);
  if (tables & kLocalNames) decodeIdentifierEntries(localNames_);
  if (tables & kOtherNCNames) decodeIdentifierEntries(otherNCNames_);
  if (tables & kOtherURIs) decodeIdentifierEntries(otherURIs_);
  if (tables & kAttributeValues) decodeStringEntries(attributeValues_);
  if (tables & kContentCharacterChunks) decodeStringEntries(contentCharacterChunks_);
  if (tables & kOtherStrings) decodeStringEntries(otherStrings_);
  if (tables & kElementNameSurrogates) decodeSurrogateEntries(elementNames_);
  if (tables & kAttributeNameSurrogates) decodeSurrogateEntries(attributeNames_);
}

unsigned long XMLReader_X891::Decoder::decodeListLength(unsigned long most) {
  const unsigned long length = decodeNumberOfItems();
  if (length > most) {
    fail("Initial vocabulary with more than " + std::to_string(most) + " entries of a kind");
  }
  return length;
}

/// Entries that are octet strings (C.22).
void XMLReader_X891::Decoder::decodeIdentifierEntries(Strings& table) {
  const bool isNumbered = &table == &restrictedAlphabets_ || &table == &encodingAlgorithms_;
  const unsigned long length = decodeListLength(isNumbered ? kMaximumAlgorithms : kMaximumEntries);
  std::string entry;
  for (unsigned long i = 0; i < length; ++i) {
    decodeIdentifier(nullptr, entry);
    checkIdentifier(&table, entry);
    addEntry(table, entry);
  }
}

/// Entries that are encoded character strings (C.19), which begin on the third bit.
void XMLReader_X891::Decoder::decodeStringEntries(Strings& table) {
  const unsigned long length = decodeListLength(kMaximumEntries);
  std::string entry;
  for (unsigned long i = 0; i < length; ++i) {
    const unsigned octet = takeOctet();
    checkPadding(octet & (kStringIndex | kStringAddToTable));
    decodeString(static_cast<int>(octet), nullptr, nullptr, entry);
    addEntry(table, entry);
  }
}

/// Entries that are name surrogates (C.16): indexes of the parts of a name.
void XMLReader_X891::Decoder::decodeSurrogateEntries(Names& table) {
  const unsigned long length = decodeListLength(kMaximumEntries);
  for (unsigned long i = 0; i < length; ++i) {
    const unsigned octet = takeOctet();
    checkPadding(octet & ~(kPrefixPresent | kNamespacePresent));
    if ((octet & kPrefixPresent) && !(octet & kNamespacePresent)) {
      fail("Qualified name with a prefix, but without a namespace");
    }
    const auto builtInOr = [this](const Strings& own, const char* builtIn) {
      const unsigned long index = decodeSurrogateIndex();
      if (index == kBuiltInNameIndex) return std::string(builtIn);
      return getString(index - kBuiltInNames, &own, externalEntries(&own));
    };
    NameParts name;
    if (octet & kPrefixPresent) name.prefix = builtInOr(prefixes_, "xml");
    if (octet & kNamespacePresent) name.namespaceName = builtInOr(namespaceNames_, namespaces::xml);
    name.localName = getString(decodeSurrogateIndex(), &localNames_, externalEntries(&localNames_));
    const QualifiedNameTable* external = externalNames(&table);
    if (table.size() + (external ? external->occupiedCount : 0) >= kMaximumEntries) continue;
    accountFor(octetsOf(name));
    Name& entry = table.append();
    static_cast<NameParts&>(entry) = std::move(name);
    entry.qName = qNameOf(entry);
  }
}

unsigned long XMLReader_X891::Decoder::decodeSurrogateIndex() {
  const unsigned octet = takeOctet();
  checkPadding(octet & kStringIndex);
  return decodeIndex(static_cast<int>(octet));
}

}  // namespace Tavrin
