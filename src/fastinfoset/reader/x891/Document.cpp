#include <Tavrin/Identifiers.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "../../../xml/Characters.h"
#include "../../Dialect.h"
#include "../TakeOctet.h"
#include "State.h"

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

void XMLReader_X891::dialectDecodeDocument() {
  decodeHeader();
  decodeOptionalComponents();
  if (contentHandler_) contentHandler_->startDocument();
  decodeChildren();
  if (contentHandler_) contentHandler_->endDocument();
}

void XMLReader_X891::decodeHeader() {
  if (source_->good() && source_->rdbuf()->sgetc() == kXMLDeclarations[0].text[0])
    decodeXMLDeclaration();
  if (!isFastInfosetDocument()) fail(kNotFastInfoset);
}

void XMLReader_X891::decodeXMLDeclaration() {
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
    if (!found->version.empty()) state_->document.version = found->version;
    if (found->standalone >= 0) state_->document.standalone = found->standalone == 1;
    return;
  }
}

void XMLReader_X891::dialectCheckPadding(unsigned bits) const {
  if (bits != 0) fail("Padding bits that are not zero");
}

// The components have the last word.

void XMLReader_X891::dialectDeliverVersion(const std::string& version) {
  if (!xml::isVersion(version)) fail("Invalid version of XML \"" + version + "\"");
  state_->document.version = version;
}

void XMLReader_X891::dialectDeliverStandalone(unsigned octet) {
  if (octet > 1) fail("Error when decoding standalone");
  state_->document.standalone = octet == 1;
}

void XMLReader_X891::dialectEndChildren(bool elementSeen) {
  if (!elementSeen) fail("Document without an element");
}

// --- Initial vocabulary ---

void XMLReader_X891::dialectDecodeInitialVocabulary() {
  const unsigned high = takeOctet();
  dialectCheckPadding(high & kVocabularyPadding);
  const unsigned tables = high << 8 | takeOctet();
  if (tables == 0) fail("Initial vocabulary without a component");
  if (tables & kExternalVocabulary) {
    std::string uri;
    decodeIdentifier(nullptr, uri);
    dialectCheckText(uri);
    const auto* known = externalVocabularies_;
    const auto found = known ? known->find(uri) : ExternalVocabularyMap::const_iterator();
    if (known == nullptr || found == known->end() || found->second == nullptr) {
      fail("Unknown external vocabulary - " + uri);
    }
    externalVocabulary_ = found->second;
  }
  if (tables & kRestrictedAlphabets) decodeIdentifiers(restrictedAlphabets_);
  if (tables & kEncodingAlgorithms) decodeIdentifiers(encodingAlgorithms_);
  if (tables & kPrefixes) decodeIdentifiers(prefixes_);
  if (tables & kNamespaceNames) decodeIdentifiers(namespaceNames_);
  if (tables & kLocalNames) decodeIdentifiers(localNames_);
  if (tables & kOtherNCNames) decodeIdentifiers(otherNCNames_);
  if (tables & kOtherURIs) decodeIdentifiers(otherURIs_);
  if (tables & kAttributeValues) decodeStrings(attributeValues_);
  if (tables & kContentCharacterChunks) decodeStrings(contentCharacterChunks_);
  if (tables & kOtherStrings) decodeStrings(otherStrings_);
  if (tables & kElementNameSurrogates) decodeSurrogates(elementNames_);
  if (tables & kAttributeNameSurrogates) decodeSurrogates(attributeNames_);
}

unsigned long XMLReader_X891::decodeListLength(unsigned long most) {
  const unsigned long length = decodeNumberOfItems();
  if (length > most) {
    fail("Initial vocabulary with more than " + std::to_string(most) + " entries of a kind");
  }
  return length;
}

/// Entries that are octet strings (C.22).
void XMLReader_X891::decodeIdentifiers(Strings& table) {
  const bool isNumbered = &table == &restrictedAlphabets_ || &table == &encodingAlgorithms_;
  const unsigned long length = decodeListLength(isNumbered ? kMaximumAlgorithms : kMaximumEntries);
  std::string entry;
  for (unsigned long i = 0; i < length; ++i) {
    decodeIdentifier(nullptr, entry);
    dialectCheckIdentifier(&table, entry);
    addEntry(table, entry);
  }
}

/// Entries that are encoded character strings (C.19), which begin on the third bit.
void XMLReader_X891::decodeStrings(Strings& table) {
  const unsigned long length = decodeListLength(kMaximumEntries);
  std::string entry;
  for (unsigned long i = 0; i < length; ++i) {
    const unsigned octet = takeOctet();
    dialectCheckPadding(octet & (kStringIndex | kStringAddToTable));
    decodeString(static_cast<int>(octet), nullptr, nullptr, entry);
    addEntry(table, entry);
  }
}

/// Entries that are name surrogates (C.16): indexes of the parts of a name.
void XMLReader_X891::decodeSurrogates(Names& table) {
  const unsigned long length = decodeListLength(kMaximumEntries);
  for (unsigned long i = 0; i < length; ++i) {
    const unsigned octet = takeOctet();
    dialectCheckPadding(octet & ~(kPrefixPresent | kNamespacePresent));
    if ((octet & kPrefixPresent) && !(octet & kNamespacePresent)) {
      fail("Qualified name with a prefix, but without a namespace");
    }
    const auto builtInOr = [this](const Strings& own, const char* builtIn) {
      const unsigned long index = decodeSurrogateIndex();
      if (index == kBuiltInNameIndex) return std::string(builtIn);
      return getString(index - kBuiltInNames, &own, externalEntries(&own));
    };
    Name name;
    if (octet & kPrefixPresent) name.prefix = builtInOr(prefixes_, "xml");
    if (octet & kNamespacePresent) name.namespaceName = builtInOr(namespaceNames_, namespaces::xml);
    name.localName = getString(decodeSurrogateIndex(), &localNames_, externalEntries(&localNames_));
    const QualifiedNameTable* external = externalNames(&table);
    if (table.size() + (external ? external->occupiedCount : 0) >= kMaximumEntries) continue;
    name.qName = qNameOf(name);
    accountForName(name);
    table.push_back(std::move(name));
  }
}

unsigned long XMLReader_X891::decodeSurrogateIndex() {
  const unsigned octet = takeOctet();
  dialectCheckPadding(octet & kStringIndex);
  return decodeIndex(static_cast<int>(octet));
}

}  // namespace Tavrin
