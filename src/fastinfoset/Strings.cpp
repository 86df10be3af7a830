#include <optional>

#include "../xml/Characters.h"
#include "Decoder.h"
#include "Encoder.h"
#include "RestrictedAlphabet.h"
#include "format/AlgorithmField.h"
#include "format/Octets.h"

// Strings: identifying and non-identifying strings, character chunks in other encodings than UTF-8,
// encoded character strings, and the numbers of algorithms (X.891, C.13 to C.15, C.19, C.20 and
// C.29).

namespace Tavrin::fastinfoset {

/// An entry of a table, valid until the table changes.
const std::string& Decoder::stringAt(unsigned long index, Strings& table) {
  const std::string* const entry = table.find(index);
  if (entry == nullptr) fail(kInvalidStringIndex);
  return *entry;
}

// --- Identifying strings ---

const std::string& Decoder::decodeEntry(unsigned table, std::string& unlisted) {
  const unsigned octet = readOctet();
  Strings& entries = strings(table);
  if ((octet & kStringIndex) == 0) return decodeLiteralIdentifier(octet, entries, unlisted);
  const std::string& text = stringAt(decodeIndex(octet), entries);
  fromTables_ += text.size();
  return text;
}

void Decoder::decodeIdentifier(unsigned table, std::string& text) {
  const std::string& entry = decodeEntry(table, text);
  if (&entry != &text) text = entry;
}

void Decoder::decodeIdentifier(std::string& text) {
  const unsigned octet = readOctet();
  if (octet & kStringIndex) fail("Error when parsing identifier");
  decodeLiteralIdentifier(octet, text);
}

/// Octets, or a string that is checked where it is used.
void Decoder::decodeLiteralIdentifier(unsigned octet, std::string& text) {
  readOctets(decodeIdentifierLength(octet), text);
}

/// A literal that is added to its table.
const std::string& Decoder::decodeLiteralIdentifier(unsigned octet, Strings& table,
                                                    std::string& unlisted) {
  const std::uint64_t length = decodeIdentifierLength(octet);
  checkLiteralLength(length);
  const char* const buffered = input_.consumeBuffered(length);
  if (buffered == nullptr) readOctets(length, unlisted);
  const std::string_view text =
      buffered != nullptr ? std::string_view(buffered, length) : std::string_view(unlisted);
  checkEntry(table.table(), text);
  if (const std::string* const entry = addEntry(table, text)) return *entry;
  if (buffered != nullptr) unlisted = text;
  return unlisted;
}

/// The length of a literal.
/// @throws SAXException where the format has no form for it
std::uint64_t Encoder::lengthOf(std::string_view text) const {
  if (text.size() <= dialect_.longestStringWritten) return text.size();
  throw SAXException("String longer than " + std::to_string(dialect_.longestStringWritten) +
                     " octets");
}

void Encoder::encodeIdentifier(unsigned table, std::string_view text) {
  StringIndexMap& entries = strings(table);
  const bool adds = entries.positions() < dialect_.maximumEntries;
  if (const unsigned* const index = adds ? entries.findOrAdd(text) : entries.find(text)) {
    encodeIndex(kStringIndex, *index);
    return;
  }
  if (adds) limits_.tableOctets += countedOctets(text);
  encodeLiteralIdentifier(text);
}

void Encoder::encodeLiteralIdentifier(std::string_view text) {
  writeInteger(kIdentifierLength, 0, lengthOf(text));
  write(text);
}

// --- Non-identifying strings ---

void Decoder::decodeString(unsigned octet, Strings* table, std::string& text) {
  if (octet == kEmptyString) {
    text.clear();
    return;
  }
  if (octet & kStringIndex) {
    const unsigned long index = decodeIndex(octet);
    if (table == nullptr) fail("Error when decoding string");
    text = stringAt(index, *table);
    fromTables_ += text.size();
    if (const RawOctets* const raw = text.empty() ? table->findRaw(index) : nullptr) {
      fail(describeUnknown(raw->uri) + ", because its text is needed");
    }
    return;
  }
  if ((octet & kStringEncoding) == kStringUTF8) {
    return decodeLiteralText(octet, decodeStringLength(octet), table, text);
  }
  decodeOtherString(octet, text);
  checkText(text);
  if ((octet & kStringAddToTable) && table != nullptr) addEntry(*table, text);
}

/// @param octet in which the string begins; its length was read
void Decoder::decodeLiteralText(unsigned octet, std::uint64_t length, Strings* table,
                                std::string& text) {
  readText(length, text);
  if ((octet & kStringAddToTable) && table != nullptr) addEntry(*table, text);
}

/// Decodes a text in UTF-8 that is added to a table.
/// @param unlisted holds it where the table is full
const std::string& Decoder::decodeListedText(std::uint64_t length, Strings& table,
                                             std::string& unlisted) {
  checkLiteralLength(length);
  const char* const buffered = input_.consumeBuffered(length);
  if (buffered == nullptr) readText(length, unlisted);
  const std::string_view text =
      buffered != nullptr ? std::string_view(buffered, length) : std::string_view(unlisted);
  if (buffered != nullptr) checkText(text);
  if (const std::string* const entry = addEntry(table, text)) return *entry;
  if (buffered != nullptr) unlisted = text;
  return unlisted;
}

void Decoder::decodeString(unsigned table, std::string& text) {
  decodeString(readOctet(), &strings(table), text);
}

void Encoder::encodeString(unsigned table, bool adds, std::string_view text) {
  KeyHash hash;
  const unsigned* const index = text.empty() ? nullptr : strings(table).find(text, hash);
  if (index != nullptr) {
    encodeIndex(kStringIndex, *index);
  } else {
    encodeNewString(table, adds, text, hash);
  }
}

void Encoder::encodeNewString(unsigned table, bool adds, std::string_view text, KeyHash hash) {
  if (adds && !text.empty()) addEntry(strings(table), text, hash);
  encodeLiteralString(adds, text);
}

void Encoder::encodeLiteralString(bool adds, std::string_view text) {
  if (text.empty()) {
    put(kEmptyString);
    return;
  }
  writeInteger(kStringLength, kStringUTF8 | (adds ? kStringAddToTable : 0), lengthOf(text));
  write(text);
}

// --- Character chunks ---

void Encoder::encodeCharacters(const std::string& text) {
  if (text.empty()) return;
  StringIndexMap& table = strings(kContentCharacterChunks);
  KeyHash hash;
  const unsigned* const index = table.find(text, hash);
  const bool adds = addsChunk(text, index != nullptr);
  if (index != nullptr) {
    writeInteger(dialect_.charactersIndexWritten, kChunkIndex, *index);
    return;
  }
  unsigned bits = kChunk | kChunkUTF8;
  if (adds) {
    addEntry(table, text, hash);
    bits |= kChunkAddToTable;
  }
  writeInteger(kCharactersLength, bits, lengthOf(text));
  write(text);
}

// --- Encoded character strings ---

/// Decodes a string in UTF-16, of a restricted alphabet or of an algorithm. This is text where
/// nothing typed is reported.
void Decoder::decodeOtherString(unsigned octet, std::string& text) {
  switch (octet & kStringEncoding) {
    case kStringUTF16:
      return decodeUTF16(decodeStringLength(octet), text);
    case kStringRestrictedAlphabet:
      return decodeRestrictedAlphabet(decodeStringField(octet), text);
    default:
      return decodeAlgorithmText(decodeStringField(octet), text);
  }
}

/// Chunks that an algorithm encodes are typed content: they do not come here.
void Decoder::decodeOtherChunk(unsigned octet, std::string& text) {
  if ((octet & kChunkEncoding) == kChunkUTF16) {
    decodeUTF16(decodeCharactersLength(octet), text);
  } else {
    decodeRestrictedAlphabet(decodeChunkField(octet), text);
  }
}

/// Big-endian, without a byte order mark.
void Decoder::decodeUTF16(std::uint64_t length, std::string& text) {
  readOctets(length, octets_);
  text.clear();
  constexpr std::uint64_t kMostOctetsOfUnit = 3;  // In UTF-8.
  text.reserve(length / 2 * kMostOctetsOfUnit);
  const auto unitAt = [this](std::size_t i) {
    return static_cast<char32_t>(static_cast<unsigned char>(octets_[i]) << 8 |
                                 static_cast<unsigned char>(octets_[i + 1]));
  };
  char32_t high = 0;  // The first half of a surrogate pair.
  bool isValid = length % 2 == 0;
  for (std::size_t i = 0; isValid && i < length; i += 2) {
    const char32_t unit = unitAt(i);
    const bool isHigh = unit >= 0xD800 && unit <= 0xDBFF;
    const bool isLow = unit >= 0xDC00 && unit <= 0xDFFF;
    isValid = isLow == (high != 0);
    if (isHigh) {
      high = unit;
    } else {
      xml::appendUTF8(isLow ? 0x10000 + ((high - 0xD800) << 10) + (unit - 0xDC00) : unit, text);
      high = 0;
    }
  }
  if (!isValid || high != 0) fail("Invalid UTF-16");
  checkTextLength(text.size(), length);
}

void Decoder::decodeRestrictedAlphabet(Field field, std::string& text) {
  expectLiteral(field.length);
  auto found = alphabets_.find(field.number);
  if (found == alphabets_.end()) {
    const std::string characters = charactersOfAlphabet(field.number);
    checkText(characters);
    accountFor(RestrictedAlphabet::kMostCopies * characters.size() + kEntryOctets);
    found = alphabets_.emplace(field.number, RestrictedAlphabet(characters)).first;
    if (!found->second.isValid()) fail("Invalid restricted alphabet");
  }
  readOctets(field.length, octets_);
  const std::optional<std::uint64_t> size = found->second.sizeOf(octets_);
  if (!size) fail("Error when decoding restricted alphabet");
  checkTextLength(*size, field.length);
  text.clear();
  text.reserve(*size);
  found->second.decode(octets_, text);
}

std::string Decoder::charactersOfAlphabet(unsigned number) {
  if (number == kNumericAlphabet) return std::string(kNumericCharacters);
  if (number == kDateAndTimeAlphabet) return std::string(kDateAndTimeCharacters);
  if (number >= kFirstOwnAlphabet) {
    return stringAt(number - kFirstOwnAlphabet, strings(kRestrictedAlphabets));
  }
  fail("Reserved restricted alphabet " + std::to_string(number + 1));
}

void Decoder::decodeAlgorithmText(Field field, std::string& text) {
  expectLiteral(field.length);
  std::string uri;
  EncodingAlgorithm* algorithm = getEncodingAlgorithm(field.number, uri);
  if (algorithm == nullptr) fail(describeUnknown(uri));
  const EncodedData& value = decodeData(*algorithm, field);
  text = textOfValue(field.number, value);
}

// --- Algorithms ---

/// Decodes the number of an algorithm or restricted alphabet, and the length of its data.
Decoder::Field Decoder::decodeStringField(unsigned octet) {
  const unsigned next = readOctet();
  const unsigned number =
      (octet << kStringFieldLowBits | next >> (8 - kStringFieldLowBits)) & kLastAlgorithmField;
  return {number, decodeStringLength(next)};
}

/// Likewise, of a character chunk.
Decoder::Field Decoder::decodeChunkField(unsigned octet) {
  const unsigned next = readOctet();
  const unsigned number = (octet & dialect_.chunkFieldReadBits) << kChunkFieldLowBits |
                          next >> (8 - kChunkFieldLowBits);
  return {number, decodeCharactersLength(next)};
}

void Encoder::encodeAlgorithmField(bool chunk, unsigned field, std::uint64_t length) {
  const auto encoded = fastinfoset::encodeAlgorithmField(chunk, field, length);
  write({encoded.octets.data(), encoded.length});
}

RawData& Decoder::decodeUnknown(Field, const std::string& uri) { fail(describeUnknown(uri)); }

EncodingAlgorithm* Decoder::getEncodingAlgorithm(unsigned field, std::string& uri) {
  return findEncodingAlgorithm(field, uri);
}

EncodingAlgorithm* Decoder::findEncodingAlgorithm(unsigned field, std::string& uri) {
  if (field < dialect_.firstApplicationAlgorithm) return builtIn_.find(static_cast<int>(field));
  uri = stringAt(field - dialect_.firstApplicationAlgorithm, strings(kEncodingAlgorithms));
  if (registeredEncodingAlgorithms_ == nullptr) return nullptr;
  const auto found = registeredEncodingAlgorithms_->find(uri);
  return found == registeredEncodingAlgorithms_->end() ? nullptr : found->second;
}

}  // namespace Tavrin::fastinfoset
