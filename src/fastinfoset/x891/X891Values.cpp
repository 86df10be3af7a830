#include <Tavrin/Identifiers.h>

#include <algorithm>
#include <climits>
#include <limits>
#include <optional>
#include <string_view>

#include "../../sax/AtLimit.h"
#include "../../typed/EncodedLength.h"
#include "../../xml/Characters.h"
#include "../format/Dialect.h"
#include "../format/Octets.h"
#include "X891Decoder.h"

// Typed values (X.891, clause 10): which algorithms there are, and what values may be and cost.

namespace Tavrin::fastinfoset {

namespace {

std::uint64_t lengthOfBase64(std::uint64_t octets) { return (octets + 2) / 3 * 4; }

}  // namespace

/// Text may take many times the octets that it was made of. It counts like text from tables, and
/// that of an attribute, which is kept as long as its tag is read, like the attribute.
/// @param length how many octets arrived for it
void X891Decoder::checkTextLength(std::uint64_t textOctets, std::uint64_t length) {
  checkLiteralLength(textOctets);
  if (textOctets <= length) return;
  fromTables_ += textOctets - length;
  checkAmplification();
  std::uint64_t& tagOctets = document_.tagOctets;
  if (tagOctets == 0) return;  // No attribute is being read.
  tagOctets += textOctets - length;
  accountFor(textOctets - length);
}

// --- Encoding algorithms ---

EncodingAlgorithm* X891Decoder::findAlgorithm(unsigned field, std::string& uri) {
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
void X891Decoder::checkAlgorithmField(unsigned field) {
  if (field < kDialectX891.firstApplicationAlgorithm) return;
  Strings& uris = strings(kEncodingAlgorithms);
  if (uris.find(field - kDialectX891.firstApplicationAlgorithm) != nullptr) return;
  const std::string message =
      "No URI for the encoding algorithm " + std::to_string(field + 1) + " in the vocabulary";
  if (uris.externalPositions() == 0) fail(message);
  fail(message + " (the external one is in the property " +
       propertyName(properties::externalVocabularies) + ")");
}

std::string X891Decoder::describeUnknown(const std::string& uri) const {
  return "Unknown encoding algorithm - " + uri + " (add it to the property " +
         propertyName(properties::registeredEncodingAlgorithms) + ", or set " +
         propertyName(properties::rawOctets) + ")";
}

/// The URIs of the vocabulary, by the numbers of their algorithms.
void X891Decoder::collectAlgorithmURIs() {
  Strings& uris = strings(kEncodingAlgorithms);
  if (document_.isVocabularyUnknown) return;  // No number is known.
  constexpr std::size_t kMost = kLastAlgorithmField + 1 - kDialectX891.firstApplicationAlgorithm;
  for (std::size_t i = 0; i < std::min(uris.positions(), kMost); ++i) {
    const std::string* const uri = uris.find(i);
    document_.algorithmURIs.push_back(uri != nullptr ? *uri : std::string());
  }
}

/// The octets go into a holder that is used again.
RawData& X891Decoder::decodeUnknown(Field data, const std::string& uri) {
  if (!reportsRaw_) fail(describeUnknown(uri));
  readOctets(data.length, raw_.data_);
  rawURI_ = uri;
  return raw_;
}

std::string X891Decoder::describeUnknownVocabulary(const std::string& uri) const {
  return "Unknown external vocabulary - " + uri + " (add it to the property " +
         propertyName(properties::externalVocabularies) + ")";
}

namespace {

/// Moves a value from its holder into one whose text is exact.
template <typename Holder, typename Exact>
Exact& moveInto(Exact& exact, EncodedData& holder) {
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

/// The octets and their text belong to the attribute, not to the table.
std::unique_ptr<EncodedData> X891Decoder::copyOfRaw(const RawOctets& entry) {
  const std::size_t size = entry.octets.size();
  fromTables_ += entry.uri.size();
  checkTextLength(size + lengthOfBase64(size), 0);
  return std::make_unique<RawData>(entry.octets);
}

EncodedData& X891Decoder::decodeFrom(std::istream& stream, EncodingAlgorithm& algorithm,
                                     unsigned long length) {
  try {
    return algorithm.decodeFromInputStream(static_cast<std::uint32_t>(length), stream);
  } catch (const EncodingAlgorithmException& exception) {
    fail(exception.getMessage());
  }
}

/// Lets an algorithm decode octets that have been read: none is missing, and it cannot read beyond
/// them.
EncodedData& X891Decoder::decodeWhole(EncodingAlgorithm& algorithm, unsigned long length) {
  readOctets(length, octets_);
  if (!octetStream_) octetStream_.emplace();
  std::istream& stream = octetStream_->over(octets_);
  EncodedData& decoded = decodeFrom(stream, algorithm, length);
  if (stream.fail() || !octetStream_->isAtEnd()) fail(kOtherLength);
  return decoded;
}

/// Lets a built-in algorithm decode whole numbers that have arrived, of which there may be very
/// many: they are not copied before.
EncodedData& X891Decoder::decodeItems(EncodingAlgorithm& algorithm, unsigned long length) {
  NextOctets octets(input_.buffer(), length);
  EncodedData& decoded = decodeFrom(octets.stream(), algorithm, length);
  input_.add(octets.taken());
  octets.rethrow();
  if (octets.stream().fail()) failAtEnd();
  return decoded;
}

/// Lets an algorithm decode its data, and no more.
EncodedData& X891Decoder::decodeData(EncodingAlgorithm& algorithm, Field data) {
  const auto [field, length] = data;
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
  EncodedData* const decoded = itemSize > 0 && length % itemSize == 0 && input_.hasArrived(length)
                                   ? &decodeItems(algorithm, length)
                                   : &decodeWhole(algorithm, length);
  // The text of numbers must read back as the same ones, which that of their own holders need not.
  switch (field) {
    case algorithms::shortInteger:
      return moveInto<ShortData>(shorts_, *decoded);
    case algorithms::integer:
      return moveInto<IntData>(ints_, *decoded);
    case algorithms::longInteger:
      return moveInto<LongData>(longs_, *decoded);
    case algorithms::floatNumber:
      return moveInto<FloatData>(floats_, *decoded);
    case algorithms::doubleNumber:
      return moveInto<DoubleData>(doubles_, *decoded);
    default:
      return *decoded;
  }
}

/// Text of a string that stands where nothing typed is reported.
std::string X891Decoder::textOfValue(unsigned field, const EncodedData& value) {
  checkTextOf(field, value);
  std::string text = value.toString();
  if (field >= kDialectX891.firstApplicationAlgorithm) checkTextLength(text.size(), 0);
  return text;
}

/// Booleans are the one kind of value whose text takes many times their octets: a bit becomes a
/// word. That of an application's algorithm is known when it is there.
void X891Decoder::checkTextOf(unsigned field, const EncodedData& value) {
  if (field != algorithms::boolean) return;
  constexpr std::uint64_t kLongestWord = sizeof "false";  // With the space before it.
  const std::uint64_t count = static_cast<const BooleanData&>(value).data_.size();
  checkTextLength(count * kLongestWord, count / CHAR_BIT);
}

/// The table holds the text that the value stands for (7.14).
void X891Decoder::checkValue(bool adds, Strings& table, unsigned field, EncodedData& value) {
  const bool isAttribute = table.table() == kAttributeValues;
  if (field == algorithms::cdata && isAttribute) fail("CDATA section in an attribute value");
  if (&value == &raw_) {
    checkTextLength(lengthOfBase64(raw_.data_.size()), raw_.data_.size());
    if (adds) addEntry(table, field, rawURI_, raw_.data_);
    return;
  }
  // Anyone may ask for an attribute's text; an application's algorithm may give any.
  const bool isOwnAttribute = field >= kDialectX891.firstApplicationAlgorithm && isAttribute;
  if (adds || isAttribute) checkTextOf(field, value);
  if (!adds && field != algorithms::cdata && !isOwnAttribute) return;
  const std::string text = value.toString();
  checkText(text);
  if (isOwnAttribute) checkTextLength(text.size(), 0);
  if (adds) addEntry(table, text);
}

}  // namespace Tavrin::fastinfoset
