#include <Tavrin/Identifiers.h>

#include <climits>
#include <limits>
#include <optional>
#include <string_view>

#include "../../sax/AtLimit.h"
#include "../../typed/EncodedLength.h"
#include "../format/Dialect.h"
#include "../format/Octets.h"
#include "../Pieces.h"
#include "X891Decoder.h"

// Text in other formats than UTF-8: UTF-16, restricted alphabets and encoding algorithms (X.891,
// C.19, C.20 and clauses 9 and 10).

namespace Tavrin {

using namespace fastinfoset;

namespace {

void appendUTF8(char32_t character, std::string& text) {
  const auto append = [&text](char32_t octet) { text += static_cast<char>(octet); };
  if (character < 0x80) {
    append(character);
  } else if (character < 0x800) {
    append(0xC0 | character >> 6);
    append(0x80 | (character & 0x3F));
  } else if (character < 0x10000) {
    append(0xE0 | character >> 12);
    append(0x80 | (character >> 6 & 0x3F));
    append(0x80 | (character & 0x3F));
  } else {
    append(0xF0 | character >> 18);
    append(0x80 | (character >> 12 & 0x3F));
    append(0x80 | (character >> 6 & 0x3F));
    append(0x80 | (character & 0x3F));
  }
}

}  // namespace

void XMLReader_X891::Decoder::decodeOtherString(unsigned octet, std::string& text) {
  switch (octet & kStringEncoding) {
    case kStringUTF16:
      return decodeUTF16(decodeStringLength(static_cast<int>(octet)), text);
    case kStringRestrictedAlphabet:
      return decodeRestrictedAlphabet(decodeStringField(octet), text);
    default:
      return decodeAlgorithmText(decodeStringField(octet), text);
  }
}

// Chunks that an algorithm encodes are typed content: they do not come here.
void XMLReader_X891::Decoder::decodeOtherChunk(unsigned octet, std::string& text) {
  if ((octet & kChunkEncoding) == kChunkUTF16) {
    decodeUTF16(decodeCharactersLength(static_cast<int>(octet)), text);
  } else {
    decodeRestrictedAlphabet(decodeChunkField(octet), text);
  }
}

/// Big-endian, without a mark of byte order.
void XMLReader_X891::Decoder::decodeUTF16(unsigned long length, std::string& text) {
  std::string& octets = octets_;
  readOctets(length, octets);
  text.clear();
  constexpr unsigned long kMostOctetsOfUnit = 3;  // In UTF-8.
  text.reserve(length / 2 * kMostOctetsOfUnit);
  char32_t high = 0;  // The first half of a surrogate pair.
  const auto unitAt = [&octets](std::size_t i) {
    return static_cast<char32_t>(static_cast<unsigned char>(octets[i]) << 8 |
                                 static_cast<unsigned char>(octets[i + 1]));
  };
  bool isValid = length % 2 == 0;
  for (std::size_t i = 0; isValid && i < length; i += 2) {
    const char32_t unit = unitAt(i);
    const bool isHigh = unit >= 0xD800 && unit <= 0xDBFF;
    const bool isLow = unit >= 0xDC00 && unit <= 0xDFFF;
    isValid = isLow == (high != 0);
    if (isHigh) {
      high = unit;
    } else {
      appendUTF8(isLow ? 0x10000 + ((high - 0xD800) << 10) + (unit - 0xDC00) : unit, text);
      high = 0;
    }
  }
  if (!isValid || high != 0) fail("Invalid UTF-16");
  checkTextLength(text.size(), length);
}

/// Text may take many times the octets that it was made of. It counts like text from tables, and
/// that of an attribute, which is kept as long as its tag is read, like the attribute.
/// @param length how many octets arrived for it
void XMLReader_X891::Decoder::checkTextLength(std::uint64_t textOctets, std::uint64_t length) {
  checkLiteralLength(textOctets);
  if (textOctets <= length) return;
  fromTables_ += textOctets - length;
  checkAmplification();
  std::uint64_t& tagOctets = document_.tagOctets;
  if (tagOctets == 0) return;  // No attribute is being read.
  tagOctets += textOctets - length;
  accountFor(textOctets - length);
}

void XMLReader_X891::Decoder::decodeRestrictedAlphabet(Field field, std::string& text) {
  auto& alphabets = document_.alphabets;
  auto found = alphabets.find(field.number);
  if (found == alphabets.end()) {
    const auto charactersOf = [this](unsigned number) -> std::string {
      if (number == kNumericAlphabet) return std::string(kNumericCharacters);
      if (number == kDateAndTimeAlphabet) return std::string(kDateAndTimeCharacters);
      if (number < kFirstOwnAlphabet) {
        fail("Reserved restricted alphabet " + std::to_string(number + 1));
      }
      return getString(number - kFirstOwnAlphabet, &restrictedAlphabets_,
                       externalEntries(&restrictedAlphabets_));
    };
    const std::string characters = charactersOf(field.number);
    checkText(characters);
    accountFor(RestrictedAlphabet::kMostCopies * characters.size() + kEntryOctets);
    found = alphabets.emplace(field.number, RestrictedAlphabet(characters)).first;
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

// --- Encoding algorithms ---

/// A derived reader may put another algorithm in its place.
EncodingAlgorithm* XMLReader_X891::Decoder::getEncodingAlgorithm(unsigned field, std::string& uri) {
  return reader_.getEncodingAlgorithm(field, uri);
}

EncodingAlgorithm* XMLReader_X891::Decoder::findAlgorithm(unsigned field, std::string& uri) {
  if (field == algorithms::uuid) return &uuid_;
  checkAlgorithmField(field);
  EncodingAlgorithm* algorithm = findEncodingAlgorithm(field, uri);
  if (algorithm == nullptr && field < kDialectX891.firstApplicationAlgorithm) {
    fail("Reserved encoding algorithm " + std::to_string(field + 1));
  }
  fromTables_ += uri.size();  // It goes with every value.
  checkAmplification();
  return algorithm;
}

/// An algorithm of the application is named in a table.
void XMLReader_X891::Decoder::checkAlgorithmField(unsigned field) const {
  if (field < kDialectX891.firstApplicationAlgorithm) return;
  const StringTable* const external = externalEntries(&encodingAlgorithms_);
  const std::size_t position = field - kDialectX891.firstApplicationAlgorithm;
  const std::size_t inFront = external ? external->occupiedCount : 0;
  const bool isThere = position < inFront ? position < external->definedCount
                                          : position - inFront < encodingAlgorithms_.size();
  if (isThere) return;
  const std::string message =
      "No URI for the encoding algorithm " + std::to_string(field + 1) + " in the vocabulary";
  if (external == nullptr) fail(message);
  fail(message + " (the external one is in the property " +
       propertyName(properties::externalVocabularies) + ")");
}

std::string XMLReader_X891::Decoder::describeUnknown(const std::string& uri) const {
  return "Unknown encoding algorithm - " + uri + " (add it to the property " +
         propertyName(properties::registeredEncodingAlgorithms) + ")";
}

namespace {

/// Takes a value out of its holder into one whose text is exact.
template <typename Holder, typename Exact>
Exact& takeOver(EncodedData& holder, Exact& exact) {
  exact.data_.swap(static_cast<Holder&>(holder).data_);
  return exact;
}

constexpr const char* kOtherLength = "Encoded data of another length than its value";

/// How many octets a number of a built-in algorithm takes; 0 where that is not what it encodes.
std::size_t sizeOfItems(unsigned field) {
  switch (field) {
    case algorithms::shortInteger:
      return sizeof(std::int16_t);
    case algorithms::integer:
      return sizeof(std::int32_t);
    case algorithms::longInteger:
      return sizeof(std::int64_t);
    case algorithms::floatNumber:
      return sizeof(float);
    case algorithms::doubleNumber:
      return sizeof(double);
    default:
      return 0;
  }
}

}  // namespace

EncodedData& XMLReader_X891::Decoder::decodeFrom(std::istream& stream, EncodingAlgorithm& algorithm,
                                                 unsigned long length) {
  try {
    return algorithm.decodeFromInputStream(static_cast<std::uint32_t>(length), stream);
  } catch (const EncodingAlgorithmException& exception) {
    fail(exception.getMessage());
  }
}

/// Lets an algorithm decode octets that have been read: they are all there, and it cannot read
/// beyond.
EncodedData& XMLReader_X891::Decoder::decodeWhole(EncodingAlgorithm& algorithm,
                                                  unsigned long length) {
  readOctets(length, octets_);
  if (!octetStream_) octetStream_.emplace();
  std::istream& stream = octetStream_->over(octets_);
  EncodedData& decoded = decodeFrom(stream, algorithm, length);
  if (stream.fail() || !octetStream_->isAtEnd()) fail(kOtherLength);
  return decoded;
}

/// Lets a built-in algorithm decode whole numbers that have arrived, of which there may be very
/// many: they are not copied before.
EncodedData& XMLReader_X891::Decoder::decodeItems(EncodingAlgorithm& algorithm,
                                                  unsigned long length) {
  NextOctets octets(*source_->rdbuf(), length);
  EncodedData& decoded = decodeFrom(octets.stream(), algorithm, length);
  octetsRead_ += octets.taken();
  octets.rethrow();
  if (octets.stream().fail()) failAtEnd();
  return decoded;
}

/// Lets an algorithm decode its data, and no more.
EncodedData& XMLReader_X891::Decoder::decodeWith(EncodingAlgorithm& algorithm, unsigned field,
                                                 unsigned long length) {
  if (length > std::numeric_limits<std::uint32_t>::max()) {
    fail("Encoded data longer than 4294967295 octets");
  }
  checkLiteralLength(length);
  // What a derived reader puts in the place of a built-in algorithm may read otherwise.
  const bool isBuiltIn = &algorithm == builtIn_.find(static_cast<int>(field));
  if (isBuiltIn && field == algorithms::boolean && length > kMostOctetsOfBooleans) {
    fail(kTooManyBooleans);
  }
  const std::size_t itemSize = isBuiltIn ? sizeOfItems(field) : 0;
  EncodedData* const decoded = itemSize > 0 && length % itemSize == 0 && haveArrived(length)
                                   ? &decodeItems(algorithm, length)
                                   : &decodeWhole(algorithm, length);
  // The text of numbers must read back as the same ones, which that of their own holders need not.
  switch (field) {
    case algorithms::shortInteger:
      return takeOver<ShortData>(*decoded, shorts_);
    case algorithms::integer:
      return takeOver<IntData>(*decoded, ints_);
    case algorithms::longInteger:
      return takeOver<LongData>(*decoded, longs_);
    case algorithms::floatNumber:
      return takeOver<FloatData>(*decoded, floats_);
    case algorithms::doubleNumber:
      return takeOver<DoubleData>(*decoded, doubles_);
    default:
      return *decoded;
  }
}

/// Text of a string that stands where nothing typed is delivered.
void XMLReader_X891::Decoder::decodeAlgorithmText(Field field, std::string& text) {
  std::string uri;
  EncodingAlgorithm* algorithm = getEncodingAlgorithm(field.number, uri);
  if (algorithm == nullptr) fail(describeUnknown(uri));
  const EncodedData& value = decodeWith(*algorithm, field.number, field.length);
  checkTextOf(field.number, value);
  text = value.toString();
  if (field.number >= kDialectX891.firstApplicationAlgorithm) checkTextLength(text.size(), 0);
}

/// Booleans are the one kind of value whose text takes many times their octets: a bit becomes a
/// word. That of an application's algorithm is known when it is there.
void XMLReader_X891::Decoder::checkTextOf(unsigned field, const EncodedData& value) {
  if (field != algorithms::boolean) return;
  constexpr std::uint64_t kLongestWord = sizeof "false";  // With the space in front.
  const std::uint64_t count = static_cast<const BooleanData&>(value).data_.size();
  checkTextLength(count * kLongestWord, count / CHAR_BIT);
}

/// The table holds the text that the value stands for (7.14).
void XMLReader_X891::Decoder::takeTyped(bool addToTable, Strings& table, unsigned field,
                                        EncodedData& value) {
  if (field == algorithms::cdata && &table == &attributeValues_) {
    fail("CDATA section in an attribute value");
  }
  // Anyone may ask for an attribute's text; an application's algorithm may give any.
  const bool isOwnAttribute =
      field >= kDialectX891.firstApplicationAlgorithm && &table == &attributeValues_;
  if (addToTable || &table == &attributeValues_) checkTextOf(field, value);
  if (!addToTable && field != algorithms::cdata && !isOwnAttribute) return;
  const std::string text = value.toString();
  checkText(text);
  if (isOwnAttribute) checkTextLength(text.size(), 0);
  if (addToTable) addEntry(table, text);
}

}  // namespace Tavrin
