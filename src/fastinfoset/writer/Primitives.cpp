#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_FI.h>

#include <limits>
#include <tuple>

#include "../Integers.h"
#include "../Octets.h"

// Integers, strings, names and namespace declarations (X.891, C.12 to C.28), and the tables behind
// them. An entry's index is the number of entries that came before it.

namespace Tavrin {

using namespace fastinfoset;

bool XMLWriter_FI::QualifiedName::operator<(const QualifiedName& other) const {
  return std::tie(localName, prefix, namespaceName) <
         std::tie(other.localName, other.prefix, other.namespaceName);
}

namespace {

template <typename Map, typename Key>
void addEntry(Map& table, const Key& key) {
  table.emplace(key, static_cast<unsigned>(table.size()));
}

/// The index of a prefix or namespace name in a literal name.
/// @throws SAXException when it was never declared
template <typename Map>
unsigned declaredIndex(const std::string& part, const char* builtIn, const Map& table,
                       const char* what) {
  if (part == builtIn) return kBuiltInNameIndex;
  const auto found = table.find(part);
  if (found == table.end()) {
    throw SAXException(std::string("Undeclared ") + what + " \"" + part + "\"");
  }
  return found->second + kBuiltInNames;
}

/// The length of a literal. The stream has room for little more than 32 bits.
std::uint32_t lengthOf(const std::string& text) {
  if (text.size() > std::numeric_limits<std::uint32_t>::max()) {
    throw SAXException("String longer than 4294967295 octets");
  }
  return static_cast<std::uint32_t>(text.size());
}

}  // namespace

// --- Octets and integers ---

void XMLWriter_FI::put(unsigned octet) { out_->put(static_cast<char>(octet)); }

void XMLWriter_FI::putOctets(const std::string& octets) {
  out_->write(octets.data(), static_cast<std::streamsize>(octets.size()));
}

template <typename Encoding>
void XMLWriter_FI::putInteger(const Encoding& encoding, unsigned bits, std::uint32_t value) {
  const EncodedInteger integer = encodeInteger(encoding, bits, value);
  out_->write(integer.octets.data(), static_cast<std::streamsize>(integer.length));
}

void XMLWriter_FI::encodeIndex(int bits, unsigned int index) {
  putInteger(kIndex, static_cast<unsigned>(bits), index);
}

// --- Strings ---

void XMLWriter_FI::encodeString(StringIndexMap* table, bool addToTable, const std::string& text) {
  if (text.empty()) {
    put(kEmptyString);
    return;
  }
  unsigned bits = kStringUTF8;
  if (table != nullptr) {
    const auto found = table->find(text);
    if (found != table->end()) {
      encodeIndex(kStringIndex, found->second);
      return;
    }
    if (addToTable) {
      addEntry(*table, text);
      bits |= kStringAddToTable;
    }
  }
  putInteger(kStringLength, bits, lengthOf(text));
  putOctets(text);
}

void XMLWriter_FI::encodeIdentifier(StringIndexMap* table, const std::string& text) {
  const auto found = table->find(text);
  if (found != table->end()) {
    encodeIndex(kStringIndex, found->second);
    return;
  }
  addEntry(*table, text);
  putInteger(kIdentifierLength, 0, lengthOf(text));
  putOctets(text);
}

void XMLWriter_FI::encodeCharacters(const std::string& text) {
  if (text.empty()) return;
  const auto found = characterChunks_.find(text);
  if (found != characterChunks_.end()) {
    putInteger(kCharactersIndexUnmarked, kChunkIndex, found->second);
    return;
  }
  unsigned bits = kChunk | kChunkUTF8;
  if (text.size() < kIndexedLength) {
    addEntry(characterChunks_, text);
    bits |= kChunkAddToTable;
  }
  putInteger(kCharactersLength, bits, lengthOf(text));
  putOctets(text);
}

// --- Names ---

void XMLWriter_FI::encodeQualifiedName(int bits, NameIndexMap& table, const QualifiedName& name) {
  const bool hasPrefix = !name.prefix.empty();
  const bool hasNamespace = !name.namespaceName.empty();
  // Both are looked up before anything is written or added.
  const unsigned prefixIndex =
      hasPrefix ? declaredIndex(name.prefix, "xml", prefixes_, "prefix") : 0;
  const unsigned namespaceIndex = hasNamespace ? declaredIndex(name.namespaceName, namespaces::xml,
                                                               namespaceNames_, "namespace")
                                               : 0;

  addEntry(table, name);
  put(static_cast<unsigned>(bits) | (hasPrefix ? kPrefixPresent : 0) |
      (hasNamespace ? kNamespacePresent : 0));
  if (hasPrefix) encodeIndex(kStringIndex, prefixIndex);
  if (hasNamespace) encodeIndex(kStringIndex, namespaceIndex);
  encodeIdentifier(&localNames_, name.localName);
}

void XMLWriter_FI::encodeElementName(unsigned attributesFlag, const QualifiedName& name) {
  const auto found = elementNames_.find(name);
  if (found != elementNames_.end()) {
    putInteger(kElementIndex, attributesFlag, found->second);
  } else {
    encodeQualifiedName(static_cast<int>(kLiteralElementName | attributesFlag), elementNames_,
                        name);
  }
}

void XMLWriter_FI::encodeNamespaces(const std::vector<std::string>& pairs) {
  for (std::size_t i = 0; i < pairs.size(); i += 2) {
    const std::string& prefix = pairs[i];
    const std::string& namespaceName = pairs[i + 1];
    put(kNamespaceDeclaration | (prefix.empty() ? 0 : kPrefixPresent) |
        (namespaceName.empty() ? 0 : kNamespacePresent));
    if (!prefix.empty()) encodeIdentifier(&prefixes_, prefix);
    if (!namespaceName.empty()) encodeIdentifier(&namespaceNames_, namespaceName);
  }
  put(kTerminator);
}

}  // namespace Tavrin
