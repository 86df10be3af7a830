#include "VocabularyChecks.h"

#include <Tavrin/Exceptions.h>

#include <algorithm>
#include <string_view>
#include <vector>

#include "../../xml/NamespaceBindings.h"
#include "../../xml/Rules.h"
#include "../format/Dialect.h"
#include "../format/Octets.h"
#include "X891Encoder.h"

namespace Tavrin::fastinfoset {

namespace {

/// The most alphabets and algorithms of a document: their indexes are those up to 256 that are not
/// reserved.
constexpr std::size_t kMostAlphabets = kMaximumAlgorithms - kFirstOwnAlphabet;
constexpr std::size_t kMostAlgorithms = kMaximumAlgorithms - kDialectX891.firstApplicationAlgorithm;

void checkVocabularyText(const std::string& text) { checkText(text, "the vocabulary"); }

/// A restricted alphabet has at least two characters, each once (X.891, 7.17).
void checkAlphabet(const std::string& alphabet) {
  checkVocabularyText(alphabet);
  std::vector<std::string> characters;
  for (const char octet : alphabet) {
    const bool continues = (static_cast<unsigned char>(octet) & 0xC0) == 0x80;
    if (!continues) characters.emplace_back();
    characters.back() += octet;
  }
  if (characters.size() < 2) {
    throw SAXException("A restricted alphabet of the vocabulary has fewer than two characters");
  }
  std::ranges::sort(characters);
  if (std::ranges::adjacent_find(characters) != characters.end()) {
    throw SAXException("A restricted alphabet of the vocabulary repeats a character");
  }
}

}  // namespace

void checkURI(const std::string& uri) { checkText(uri, "a URI"); }

void checkEntry(unsigned table, const std::string& entry) {
  if (entry.empty()) throw SAXException("An entry of the vocabulary is empty");
  switch (kStringTableForms[table].kind) {
    case EntryKind::alphabet:
      return checkAlphabet(entry);
    case EntryKind::uri:
      return checkURI(entry);
    case EntryKind::name:
      return checkNCName(entry);
    case EntryKind::text:
      return checkVocabularyText(entry);
  }
}

void checkNameParts(const NameParts& name) {
  checkNCName(name.localName);
  if (!name.prefix.empty()) checkNCName(name.prefix);
  checkURI(name.namespaceName);
  if (!name.prefix.empty() && name.namespaceName.empty()) {
    throw SAXException("A name of the vocabulary has a prefix, but no namespace");
  }
}

void checkName(unsigned table, const NameParts& name, const std::string& qName) {
  checkNameParts(name);
  xml::refuseIf(xml::whyNotLocalName(name.localName, qName));
  xml::NamespaceBindings bindings;
  if (!name.namespaceName.empty()) {
    xml::refuseIf(xml::whyNotDeclaration(name.prefix, name.namespaceName));
    bindings.declare(name.prefix, name.namespaceName);
  }
  const auto whyNot = table == kElementNames ? xml::whyNotElement : xml::whyNotAttribute;
  xml::refuseIf(whyNot(name.prefix, &name.namespaceName, qName, bindings));
}

void checkPositions(unsigned table, std::size_t positions) {
  const auto refuseMore = [positions](std::size_t most, const char* what) {
    if (positions <= most) return;
    throw SAXException("More than " + std::to_string(most) + what);
  };
  if (table == kRestrictedAlphabets) return refuseMore(kMostAlphabets, " restricted alphabets");
  if (table == kEncodingAlgorithms) return refuseMore(kMostAlgorithms, " encoding algorithms");
  if (positions > kMaximumEntries) {
    throw SAXException("A table of the vocabulary has more than " +
                       std::to_string(kMaximumEntries) + " entries");
  }
}

}  // namespace Tavrin::fastinfoset
