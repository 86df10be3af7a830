#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_X891.h>

#include <limits>
#include <ostream>
#include <sstream>
#include <type_traits>

#include "../../io/OctetStream.h"
#include "../../typed/EncodedLength.h"
#include "../format/Dialect.h"
#include "../format/Integers.h"
#include "../format/Octets.h"
#include "X891Encoder.h"

// Typed values: algorithms and their fields, and the checks of values and of encoded octets.

namespace Tavrin {

using namespace fastinfoset;

// --- Algorithms ---

namespace {

constexpr auto kFirstNamed = static_cast<int>(kDialectX891.firstApplicationAlgorithm);

bool isBuiltIn(const std::string& uri, int index) { return uri.empty() && index < kFirstNamed; }

}  // namespace

/// The URI of an application's algorithm with this field, or empty.
std::string XMLWriter_X891::Encoder::namedAlgorithm(int index) const {
  const std::vector<std::string>& named = document_.algorithms;
  if (index < kFirstNamed) return {};
  const auto position = static_cast<std::size_t>(index - kFirstNamed);
  return position < named.size() ? named[position] : std::string();
}

EncodingAlgorithm* XMLWriter_X891::getEncodingAlgorithm(const std::string& uri, int index) {
  return encoder_->findAlgorithm(uri, index);
}

EncodingAlgorithm* XMLWriter_X891::Encoder::findAlgorithm(const std::string& uri, int index) {
  if (isBuiltIn(uri, index)) return index == algorithms::uuid ? &uuid_ : builtIn.find(index);
  if (registeredAlgorithms_ == nullptr) return nullptr;
  const auto found = registeredAlgorithms_->find(uri.empty() ? namedAlgorithm(index) : uri);
  return found == registeredAlgorithms_->end() ? nullptr : found->second;
}

/// @throws EncodingAlgorithmException where the document does not name the algorithm
unsigned XMLWriter_X891::Encoder::fieldOf(const std::string& uri, int index) const {
  const bool isKnown =
      uri.empty() && (isBuiltIn(uri, index) ? index >= 0 && index <= algorithms::cdata
                                            : !namedAlgorithm(index).empty());
  if (isKnown) return static_cast<unsigned>(index);
  const auto& fields = document_.algorithmFields;
  const auto found = uri.empty() ? fields.end() : fields.find(uri);
  if (found == fields.end()) refuseAlgorithm(uri, index);
  return found->second;
}

EncodingAlgorithm& XMLWriter_X891::Encoder::algorithmFor(const std::string& uri, int index) {
  EncodingAlgorithm* const algorithm = findAlgorithm(uri, index);
  if (algorithm == nullptr) refuseAlgorithm(uri, index);
  return *algorithm;
}

void XMLWriter_X891::Encoder::refuseAlgorithm(const std::string& uri, int index) const {
  const std::string name = uri.empty() ? namedAlgorithm(index) : uri;
  const std::string what =
      name.empty() ? "number " + std::to_string(index) + ", which the document does not name"
                   : name;
  throw EncodingAlgorithmException(
      "Unknown encoding algorithm - " + what + ": it must be registered with the property \"" +
      properties::registeredEncodingAlgorithms + "\" before the root element");
}

// --- Checks ---

namespace {

void checkIntegers(const std::vector<long>& integers) {
  for (const long integer : integers) {
    if (integer < std::numeric_limits<std::int32_t>::min() ||
        integer > std::numeric_limits<std::int32_t>::max()) {
      throw SAXException(std::to_string(integer) + " is not a 32-bit integer");
    }
  }
}

std::uint64_t lengthOfBooleans(std::size_t count) {
  if (count == 0) return 0;
  const std::uint64_t octets = octetsOfBooleans(count);
  if (octets > kMostOctetsOfBooleans) throw SAXException(kTooManyBooleans);
  return octets;
}

/// The algorithms accept lengths of 32 bits.
void checkValueLength(std::uint64_t octets) {
  constexpr std::uint64_t kLongestValue = 0xFFFFFFFF;
  if (octets > kLongestValue) {
    throw SAXException("Typed value longer than " + std::to_string(kLongestValue) + " octets");
  }
}

/// Refuses a value that a built-in algorithm cannot encode.
/// @return the number of its encoded octets
std::uint64_t checkBuiltIn(int index, const EncodedData& data) {
  std::uint64_t octets = 0;
  switch (index) {
    case algorithms::hexadecimal:
      octets = dynamic_cast<const HexadecimalData&>(data).data_.size();
      break;
    case algorithms::base64:
      octets = dynamic_cast<const Base64Data&>(data).data_.size();
      break;
    case algorithms::shortInteger:
      octets = dynamic_cast<const ShortData&>(data).data_.size() * sizeof(std::int16_t);
      break;
    case algorithms::integer:
      checkIntegers(dynamic_cast<const IntData&>(data).data_);
      octets = dynamic_cast<const IntData&>(data).data_.size() * sizeof(std::int32_t);
      break;
    case algorithms::longInteger:
      octets = dynamic_cast<const LongData&>(data).data_.size() * sizeof(std::int64_t);
      break;
    case algorithms::boolean:
      octets = lengthOfBooleans(dynamic_cast<const BooleanData&>(data).data_.size());
      break;
    case algorithms::floatNumber:
      octets = dynamic_cast<const FloatData&>(data).data_.size() * sizeof(float);
      break;
    case algorithms::doubleNumber:
      octets = dynamic_cast<const DoubleData&>(data).data_.size() * sizeof(double);
      break;
    case algorithms::uuid:
      octets = dynamic_cast<const UUIDData&>(data).data_.size() * sizeof(UUID);
      break;
    default:
      checkText(dynamic_cast<const CDATAData&>(data).data_, "character data");
      octets = dynamic_cast<const CDATAData&>(data).data_.size();
  }
  checkValueLength(octets);
  return octets;
}

}  // namespace

/// Refuses octets that are no encoding by a built-in algorithm.
void XMLWriter_X891::Encoder::checkOctets(unsigned field, const std::string& octets) {
  checkValueLength(octets.size());
  if (field >= kDialectX891.firstApplicationAlgorithm || octets.empty() ||
      field == algorithms::hexadecimal || field == algorithms::base64) {
    return;
  }
  if (field == algorithms::cdata) return checkText(octets, "character data");
  std::istringstream stream(octets);
  algorithmFor({}, static_cast<int>(field))
      .decodeFromInputStream(static_cast<std::uint32_t>(octets.size()), stream);
  // Octets remain where booleans state too many unused bits.
  if (stream.peek() != std::istringstream::traits_type::eof()) {
    throw EncodingAlgorithmException("Encoded data of another length than its value");
  }
}

// --- Applications' algorithms ---

namespace {

/// The length in the octets of writeSize, and the position after it. Nothing else is checked, not
/// even the number of the algorithm.
template <typename Encoding>
std::pair<std::uint64_t, std::size_t> announced(const Encoding& encoding,
                                                const std::string& octets) {
  const auto octetAt = [&octets](std::size_t i) { return static_cast<unsigned char>(octets[i]); };
  const IntegerForm* const form = octets.size() < 2 ? nullptr : findForm(encoding, octetAt(1));
  if (form == nullptr || octets.size() < std::size_t{2} + form->octets) return {0, octets.size()};
  std::uint64_t field = firstField(*form, octetAt(1));
  for (std::size_t i = 0; i < form->octets; ++i) field = field << 8 | octetAt(2 + i);
  return {field + form->bias, std::size_t{2} + form->octets};
}

/// Encodes a value by an application's algorithm. The number and length that the algorithm writes
/// before the octets are removed: the document decides which number it has.
std::string encodedBy(EncodingAlgorithm& algorithm, const std::string& uri, bool chunk,
                      const EncodedData& data) {
  std::string octets;
  {
    AppendingBuffer buffer(octets);
    std::ostream stream(&buffer);
    stream.exceptions(std::ios::badbit);
    algorithm.encodeToOutputStream(chunk, data, stream);
  }
  const bool isEmpty =
      chunk ? octets.empty() : octets.size() == 1 && octets[0] == static_cast<char>(kEmptyString);
  if (isEmpty) return {};
  // These last bits of the first octet belong to the number.
  const unsigned numberBits = 8 - (chunk ? kChunkFieldLowBits : kStringFieldLowBits);
  const unsigned introduction = chunk ? kChunk | kChunkAlgorithm : kStringAlgorithm;
  const auto [length, begin] =
      chunk ? announced(kCharactersLength, octets) : announced(kStringLength, octets);
  if (octets.empty() ||
      unsigned{static_cast<unsigned char>(octets[0])} >> numberBits != introduction >> numberBits ||
      octets.size() - begin != length || length == 0) {
    throw EncodingAlgorithmException("The algorithm \"" + uri +
                                     "\" announced other octets than it wrote");
  }
  octets.erase(0, begin);
  return octets;
}

}  // namespace

/// The octets of a value that is encoded already, or null.
static const std::string* rawOctetsOf(const std::string& uri, int index, const EncodedData& data) {
  if (isBuiltIn(uri, index)) return nullptr;
  const auto* const raw = dynamic_cast<const RawData*>(&data);
  return raw != nullptr ? &raw->data_ : nullptr;
}

// --- Content ---

void XMLWriter_X891::Encoder::checkTypedContent() const {
  if (writer_.state_ != InElement) {
    throw SAXException("You cannot write character data at this point");
  }
}

/// Writes the octets of an algorithm as a chunk, after the buffered text.
void XMLWriter_X891::Encoder::encodeChunk(unsigned field, const std::string& octets) {
  if (octets.empty()) return;
  isWriting_ = true;
  flushCharacters();
  flushTerminator(false);
  if (!out_) return;
  encodeAlgorithmField(true, field, octets.size());
  write(octets);
  sendOctets();
}

/// Writes a value as a chunk.
/// @param octets the number of its encoded octets
template <typename Algorithm, typename Value>
void XMLWriter_X891::Encoder::encodeTypedContent(Algorithm& algorithm, const Value& value,
                                                 std::uint64_t octets) {
  attempt([&](Encoder&) {
    checkTypedContent();
    checkValueLength(octets);
    if (octets == 0) return;
    if constexpr (std::is_same_v<Algorithm, IntEncodingAlgorithm>) checkIntegers(value);
    isWriting_ = true;
    encodeContent(algorithm, value);
  });
}

void XMLWriter_X891::bytes(const std::string& data) { octets("", algorithms::base64, data); }

void XMLWriter_X891::shorts(const std::vector<short>& data) {
  encoder_->encodeTypedContent(encoder_->builtIn.shortInteger, data,
                               data.size() * sizeof(std::int16_t));
}

void XMLWriter_X891::ints(const std::vector<long>& data) {
  encoder_->encodeTypedContent(encoder_->builtIn.integer, data, data.size() * sizeof(std::int32_t));
}

void XMLWriter_X891::longs(const std::vector<long>& data) {
  encoder_->encodeTypedContent(encoder_->builtIn.longInteger, data,
                               data.size() * sizeof(std::int64_t));
}

void XMLWriter_X891::booleans(const std::vector<bool>& data) {
  encoder_->encodeTypedContent(encoder_->builtIn.boolean, data, lengthOfBooleans(data.size()));
}

void XMLWriter_X891::floats(const std::vector<float>& data) {
  encoder_->encodeTypedContent(encoder_->builtIn.floatNumber, data, data.size() * sizeof(float));
}

void XMLWriter_X891::doubles(const std::vector<double>& data) {
  encoder_->encodeTypedContent(encoder_->builtIn.doubleNumber, data, data.size() * sizeof(double));
}

void XMLWriter_X891::octets(const std::string& uri, int index, const std::string& data) {
  encoder_->attempt([&](Encoder& encoder) {
    encoder.checkTypedContent();
    const unsigned field = encoder.fieldOf(uri, index);
    encoder.checkOctets(field, data);
    if (field == algorithms::cdata) return encoder.encodeCDATA(data);
    encoder.encodeChunk(field, data);
  });
}

void XMLWriter_X891::object(const std::string& uri, int index, const EncodedData& data) {
  encoder_->attempt([&](Encoder& encoder) {
    encoder.checkTypedContent();
    if (const std::string* const raw = rawOctetsOf(uri, index, data)) {
      const unsigned field = encoder.fieldOf(uri, index);
      encoder.checkOctets(field, *raw);
      return encoder.encodeChunk(field, *raw);
    }
    EncodingAlgorithm& algorithm = encoder.algorithmFor(uri, index);
    if (!isBuiltIn(uri, index)) {
      const unsigned field = encoder.fieldOf(uri, index);
      return encoder.encodeChunk(field, encodedBy(algorithm, uri, true, data));
    }
    if (checkBuiltIn(index, data) == 0) return;
    if (index == algorithms::cdata) {
      return encoder.encodeCDATA(dynamic_cast<const CDATAData&>(data).data_);
    }
    encoder.isWriting_ = true;
    encoder.encodeContent(algorithm, data);
  });
}

// --- Attribute values ---

void XMLWriter_X891::Encoder::checkTypedValue(const std::string& uri, int index,
                                              const EncodedData& data) {
  if (const std::string* const raw = rawOctetsOf(uri, index, data)) {
    checkOctets(fieldOf(uri, index), *raw);
    encodedValues_.push_back(*raw);
    return;
  }
  EncodingAlgorithm& algorithm = algorithmFor(uri, index);
  if (!isBuiltIn(uri, index)) {
    // A reader may report the value as text, which must then be valid.
    checkText(data.toString(), "an attribute value");
    encodedValues_.push_back(encodedBy(algorithm, uri, false, data));
    return;
  }
  if (index == algorithms::cdata) {
    throw SAXException("The cdata algorithm cannot encode an attribute value");
  }
  checkBuiltIn(index, data);
}

void XMLWriter_X891::Encoder::encodeTypedValue(const std::string& uri, int index,
                                               const EncodedData& data) {
  if (isBuiltIn(uri, index)) {
    if (checkBuiltIn(index, data) == 0) return put(kEmptyString);
    sendOctets();
    algorithmFor(uri, index).encodeToOutputStream(false, data, *out_);
    return;
  }
  const std::string octets = std::move(encodedValues_.front());
  encodedValues_.pop_front();
  if (octets.empty()) return put(kEmptyString);
  encodeAlgorithmField(false, fieldOf(uri, index), octets.size());
  write(octets);
}

}  // namespace Tavrin
