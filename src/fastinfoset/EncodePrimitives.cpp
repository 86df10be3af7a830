#include <algorithm>

#include "../io/WriteOctets.h"
#include "Encoder.h"
#include "format/Octets.h"

// Integers, strings, names and namespace declarations (X.891, C.12 to C.28), with the tables that
// are handed over. What does not depend on the kind of the tables is in Event.h.

namespace Tavrin::fastinfoset {

Encoder::Encoder(const Dialect& dialect, const Shared& shared)
    : out_(shared.out),
      pendingTerminator_(shared.pendingTerminator),
      characters_(shared.characters),
      builtIn_(shared.builtIn),
      dialect_(dialect) {}

// --- Octets and integers ---

void Encoder::put(unsigned octet) {
  if (gathers_) {
    gathered_ += static_cast<char>(octet);
  } else {
    out_->put(static_cast<char>(octet));
  }
}

void Encoder::write(const char* octets, std::size_t count) {
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

void Encoder::sendOctets() {
  if (gathered_.empty()) return;
  // Gone even when the stream throws: the next event must not bring them.
  struct Clear {
    std::string& octets;
    ~Clear() { octets.clear(); }
  } const clear{gathered_};
  if (out_) writeOctets(*out_, gathered_);
}

void Encoder::putOctets(const std::string& octets) { write(octets.data(), octets.size()); }

void Encoder::encodeIndex(int bits, unsigned int index) {
  putInteger(kIndex, static_cast<unsigned>(bits), index);
}

void Encoder::putItemCount(std::uint32_t count) {
  if (count < kItemCountLong + dialect_.itemCountBias) {
    put(count - dialect_.itemCountBias);
    return;
  }
  const std::uint32_t field = count - dialect_.longItemCountBias;
  put(kItemCountLong | field >> 16);
  put(field >> 8 & 0xFF);
  put(field & 0xFF);
}

void Encoder::putAlgorithm(bool chunk, unsigned field, std::uint64_t length) {
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
std::uint64_t Encoder::lengthOf(const std::string& text) const {
  if (text.size() > dialect_.longestStringWritten) {
    throw SAXException("String longer than " + std::to_string(dialect_.longestStringWritten) +
                       " octets");
  }
  return text.size();
}

void Encoder::putIdentifier(const std::string& text) {
  putInteger(kIdentifierLength, 0, lengthOf(text));
  putOctets(text);
}

void Encoder::encodeCharacters(const std::string& text) {
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

void Encoder::missingNamePart(const std::string& part, const char* what) {
  throw SAXException(std::string("Undeclared ") + what + " \"" + part + "\"");
}

/// The index of a prefix or namespace name as a literal name counts it, or kNoIndex where it may
/// be written literally.
unsigned Encoder::findNamePart(const StringIndexMap& table, const std::string& part,
                               const char* builtIn, const char* what) const {
  if (part == builtIn) return kBuiltInNameIndex;
  if (const unsigned* const index = table.find(part)) {
    return *index + kBuiltInNames - dialect_.builtInNamesInDeclarations;
  }
  if (!dialect_.literalNameParts) missingNamePart(part, what);
  return kNoIndex;
}

void Encoder::writeNamePart(StringIndexMap& table, const std::string& part, unsigned index) {
  if (index == kNoIndex) {
    writeIdentifier(&table, part);
  } else {
    encodeIndex(kStringIndex, index);
  }
}

void Encoder::encodeNamespaces(const std::vector<std::string>& pairs) {
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

void Encoder::flushTerminator(bool final) {
  if (pendingTerminator_) {
    pendingTerminator_ = false;
    if (out_) put(final ? kDoubleTerminator : kTerminator);
  } else if (final && out_) {
    put(kTerminator);
  }
}

void Encoder::flushCharacters() {
  if (characters_.empty()) return;
  flushTerminator(false);
  if (out_) encodeCharacters(characters_);
  characters_.clear();
}

void Encoder::clearTables() {
  vocabulary_ = {};
  limits_.tableOctets = 0;
  known_.elements.clear();
  known_.attributes.clear();
}

void Encoder::writeElementName(unsigned attributeFlag, const EventName& name) {
  const auto& [uri, localName, qName] = name;
  const unsigned* index = known_.elements.find(uri, localName, qName);
  if (index == nullptr) {
    assignName(name_, name);
    index = vocabulary_.elementNames.find(name_);
    if (index == nullptr) {
      writeQualifiedName(static_cast<int>(kLiteralElementName | attributeFlag),
                         vocabulary_.elementNames, name_);
      return;
    }
    known_.elements.put(uri, localName, qName, *index);
  }
  putInteger(kElementIndex, attributeFlag, *index);
}

void Encoder::writeAttributeName(const EventName& name) {
  const auto& [uri, localName, qName] = name;
  const unsigned* index = known_.attributes.find(uri, localName, qName);
  if (index == nullptr) {
    assignName(name_, name);
    index = vocabulary_.attributeNames.find(name_);
    if (index == nullptr) {
      writeQualifiedName(kLiteralAttributeName, vocabulary_.attributeNames, name_);
      return;
    }
    known_.attributes.put(uri, localName, qName, *index);
  }
  encodeIndex(0, *index);
}

// --- Items ---

void Encoder::encodeProcessingInstruction(const std::string& target, const std::string& data) {
  perform([&] {
    flushCharacters();
    flushTerminator(false);
    if (!out_) return;
    put(kProcessingInstruction);
    writeIdentifier(&vocabulary_.otherNCNames, target);
    writeString(&vocabulary_.otherStrings, isIndexed(vocabulary_.otherStrings, data), data);
  });
}

void Encoder::encodeComment(const std::string& text) {
  perform([&] {
    flushCharacters();
    flushTerminator(false);
    if (!out_) return;
    put(kComment);
    writeString(&vocabulary_.otherStrings, isIndexed(vocabulary_.otherStrings, text), text);
  });
}

void Encoder::finishElement() {
  perform([this] {
    flushCharacters();
    if (pendingTerminator_) {
      flushTerminator(true);
    } else {
      pendingTerminator_ = true;
    }
  });
}

void Encoder::finishDocument() {
  perform([this] {
    flushCharacters();
    flushTerminator(true);
  });
}

}  // namespace Tavrin::fastinfoset
