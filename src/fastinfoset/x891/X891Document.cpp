#include <algorithm>
#include <array>
#include <string_view>

#include "../../xml/Characters.h"
#include "../../xml/Rules.h"
#include "../format/Dialect.h"
#include "X891Decoder.h"

// The document as this reader has it: XML declarations before the header (X.891, 12.3), version and
// standalone.

namespace Tavrin::fastinfoset {

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

/// Of an unknown vocabulary no entry is known, and not how many there are: every position may
/// belong to it.
static const ExternalVocabulary& unknownVocabulary() {
  static const ExternalVocabulary unknown = [] {
    ExternalVocabulary vocabulary;
    for (const StringTableForm& form : kStringTableForms) {
      (vocabulary.*form.external).occupiedCount = UINT32_MAX;
    }
    for (const auto table : kExternalNameTables) (vocabulary.*table).occupiedCount = UINT32_MAX;
    return vocabulary;
  }();
  return unknown;
}

const ExternalVocabulary* X891Decoder::chooseVocabulary(const std::string& uri,
                                                        const ExternalVocabulary* known) {
  document_.externalVocabulary = uri;
  if (known != nullptr || !reportsRaw_) return Decoder::chooseVocabulary(uri, known);
  document_.isVocabularyUnknown = true;
  return &unknownVocabulary();
}

void X891Decoder::reportStartDocument() {
  collectAlgorithmURIs();
  if (handlers_.content) handlers_.content->setDocumentLocator(&position_);
  if (handlers_.content) handlers_.content->startDocument();
  const std::string warning = xml::describeOtherVersion(document_.version);
  if (!warning.empty() && handlers_.error) handlers_.error->warning(exceptionHere(warning));
}

void X891Decoder::reportEndDocument() {
  if (handlers_.content) handlers_.content->endDocument();
}

void X891Decoder::decodeHeader() {
  if (input_.peek() == kXMLDeclarations[0].text[0]) decodeXMLDeclaration();
  if (!isFastInfosetDocument()) fail(kNotFastInfoset);
}

void X891Decoder::decodeXMLDeclaration() {
  // As soon as no declaration begins like that, no more is read: the octets after it may belong to
  // something else.
  std::string text;
  const auto isPossible = [&] {
    return std::ranges::any_of(kXMLDeclarations,
                               [&](const auto& each) { return each.text.starts_with(text); });
  };
  for (;;) {
    text += static_cast<char>(readOctet());
    if (!isPossible()) fail(kNotFastInfoset);
    const auto found = std::ranges::find(kXMLDeclarations, text, &XMLDeclaration::text);
    if (found == kXMLDeclarations.end()) continue;
    if (!found->version.empty()) document_.version = found->version;
    if (found->standalone >= 0) document_.standalone = found->standalone == 1;
    return;
  }
}

void X891Decoder::checkPadding(unsigned bits) const {
  if (bits != 0) fail("Padding bits that are not zero");
}

// Components override what the XML declaration states.

void X891Decoder::reportVersion(const std::string& version) {
  const std::string reason = xml::whyNotVersion(version);
  if (!reason.empty()) fail(reason);
  document_.version = version;
}

void X891Decoder::reportStandalone(unsigned octet) {
  if (octet > 1) fail("Error when decoding standalone");
  document_.standalone = octet == 1;
}

void X891Decoder::checkRootElement(bool hasRoot) const {
  if (!hasRoot) fail("Document without an element");
}

}  // namespace Tavrin::fastinfoset
