#include <Tavrin/XMLWriter_FI.h>

#include <algorithm>
#include <tuple>

#include "../../writer/WriteOctets.h"
#include "../Octets.h"
#include "Event.h"

// Integers, strings, names and namespace declarations (X.891, C.12 to C.28), with the tables that
// are handed over. What does not depend on the kind of the tables is in Event.h.

namespace Tavrin {

using namespace fastinfoset;

bool XMLWriter_FI::QualifiedName::operator<(const QualifiedName& other) const {
  return std::tie(localName, prefix, namespaceName) <
         std::tie(other.localName, other.prefix, other.namespaceName);
}

bool XMLWriter_FI::QualifiedName::operator==(const QualifiedName& other) const {
  return localName == other.localName && prefix == other.prefix &&
         namespaceName == other.namespaceName;
}

// --- Octets and integers ---

void XMLWriter_FI::put(unsigned octet) {
  if (gathers_) {
    gathered_ += static_cast<char>(octet);
  } else {
    out_->put(static_cast<char>(octet));
  }
}

void XMLWriter_FI::write(const char* octets, std::size_t count) {
  constexpr std::size_t kGathered = 4096;
  if (gathers_) {
    if (count < kGathered - std::min(kGathered, gathered_.size())) {
      gathered_.append(octets, count);
      return;
    }
    sendOctets();
  }
  if (out_ != nullptr) writeOctets(*out_, std::string_view(octets, count));
}

void XMLWriter_FI::sendOctets() {
  if (gathered_.empty()) return;
  // Gone even when the stream throws: the next event must not bring them.
  struct Clear {
    std::string& octets;
    ~Clear() { octets.clear(); }
  } const clear{gathered_};
  if (out_) writeOctets(*out_, gathered_);
}

void XMLWriter_FI::putOctets(const std::string& octets) { write(octets.data(), octets.size()); }

void XMLWriter_FI::encodeIndex(int bits, unsigned int index) {
  putInteger(kIndex, static_cast<unsigned>(bits), index);
}

void XMLWriter_FI::putItemCount(std::uint32_t count) {
  if (count < kItemCountLong + dialect_.itemCountBias) {
    put(count - dialect_.itemCountBias);
    return;
  }
  const std::uint32_t field = count - dialect_.longItemCountBias;
  put(kItemCountLong | field >> 16);
  put(field >> 8 & 0xFF);
  put(field & 0xFF);
}

void XMLWriter_FI::putAlgorithm(bool chunk, unsigned field, std::uint64_t length) {
  if (chunk) {
    put(kChunk | kChunkAlgorithm | field >> kChunkFieldLowBits);
    putInteger(kCharactersLength, field << (8 - kChunkFieldLowBits) & 0xFF, length);
  } else {
    put(kStringAlgorithm | field >> kStringFieldLowBits);
    putInteger(kStringLength, field << (8 - kStringFieldLowBits) & 0xFF, length);
  }
}

// --- Strings ---

/// The length of a literal. The stream has room for little more than 32 bits.
std::uint64_t XMLWriter_FI::lengthOf(const std::string& text) const {
  if (text.size() > dialect_.longestStringWritten) {
    throw SAXException("String longer than " + std::to_string(dialect_.longestStringWritten) +
                       " octets");
  }
  return text.size();
}

void XMLWriter_FI::encodeString(std::map<std::string, unsigned>* table, bool addToTable,
                                const std::string& text) {
  writeString(table, addToTable, text);
}

void XMLWriter_FI::encodeIdentifier(std::map<std::string, unsigned>* table,
                                    const std::string& text) {
  writeIdentifier(table, text);
}

void XMLWriter_FI::putIdentifier(const std::string& text) {
  putInteger(kIdentifierLength, 0, lengthOf(text));
  putOctets(text);
}

void XMLWriter_FI::encodeCharacters(const std::string& text) {
  if (text.empty()) return;
  StringIndexMap& table = vocabulary_.characterChunks;
  if (const unsigned* const index = table.find(text)) {
    putInteger(dialect_.charactersIndexWritten, kChunkIndex, *index);
    return;
  }
  unsigned bits = kChunk | kChunkUTF8;
  if (isIndexed(table, text)) {
    addEntry(table, text);
    bits |= kChunkAddToTable;
  }
  putInteger(kCharactersLength, bits, lengthOf(text));
  putOctets(text);
}

// --- Names ---

void XMLWriter_FI::missingNamePart(const std::string& part, const char* what) {
  throw SAXException(std::string("Undeclared ") + what + " \"" + part + "\"");
}

/// The index of a prefix or namespace name as a literal name counts it, or kNoIndex where it may
/// be written literally.
unsigned XMLWriter_FI::findNamePart(const StringIndexMap& table, const std::string& part,
                                    const char* builtIn, const char* what) const {
  if (part == builtIn) return kBuiltInNameIndex;
  if (const unsigned* const index = table.find(part)) {
    return *index + kBuiltInNames - dialect_.builtInNamesInDeclarations;
  }
  if (!dialect_.literalNameParts) missingNamePart(part, what);
  return kNoIndex;
}

void XMLWriter_FI::writeNamePart(StringIndexMap& table, const std::string& part, unsigned index) {
  if (index == kNoIndex) {
    writeIdentifier(&table, part);
  } else {
    encodeIndex(kStringIndex, index);
  }
}

void XMLWriter_FI::encodeQualifiedName(int bits, std::map<QualifiedName, unsigned>& table,
                                       const QualifiedName& name) {
  writeQualifiedName(bits, table, name);
}

void XMLWriter_FI::encodeNamespaces(const std::vector<std::string>& pairs) {
  for (std::size_t i = 0; i < pairs.size(); i += 2) {
    const std::string& prefix = pairs[i];
    const std::string& namespaceName = pairs[i + 1];
    put(kNamespaceDeclaration | (prefix.empty() ? 0 : kPrefixPresent) |
        (namespaceName.empty() ? 0 : kNamespacePresent));
    if (!prefix.empty()) writeIdentifier(&vocabulary_.prefixes, prefix);
    if (!namespaceName.empty()) writeIdentifier(&vocabulary_.namespaceNames, namespaceName);
  }
  put(kTerminator);
}

}  // namespace Tavrin
