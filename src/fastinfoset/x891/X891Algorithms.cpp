#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_X891.h>

#include <ostream>
#include <sstream>

#include "../../io/OctetStream.h"
#include "../../typed/EncodedLength.h"
#include "../format/Dialect.h"
#include "../format/Integers.h"
#include "../format/Octets.h"
#include "Checks.h"
#include "X891Encoder.h"

// Algorithms: which there are, by which field they are called, and what they may not encode.

namespace Tavrin {

using namespace fastinfoset;

namespace {

constexpr const char* kSection = "character data";

constexpr auto kFirstNamed = static_cast<int>(kDialectX891.firstApplicationAlgorithm);

}  // namespace

bool XMLWriter_X891::Encoder::isBuiltIn(const std::string& uri, int index) {
  return uri.empty() && index < kFirstNamed;
}

/// The URI of an application's field, or nothing.
std::string XMLWriter_X891::Encoder::namedAlgorithm(int index) const {
  const std::vector<std::string>& named = document_.algorithms;
  if (index < kFirstNamed) return {};
  const auto position = static_cast<std::size_t>(index - kFirstNamed);
  return position < named.size() ? named[position] : std::string();
}

EncodingAlgorithm* XMLWriter_X891::Encoder::getEncodingAlgorithm(const std::string& uri,
                                                                 int index) {
  if (isBuiltIn(uri, index)) {
    if (index == algorithms::uuid) return &uuid_;
    return builtIn_.find(index);
  }
  const EncodingAlgorithmMap* const registered = registeredAlgorithms_;
  if (registered == nullptr) return nullptr;
  const auto found = registered->find(uri.empty() ? namedAlgorithm(index) : uri);
  return found == registered->end() ? nullptr : found->second;
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
  EncodingAlgorithm* const algorithm = getEncodingAlgorithm(uri, index);
  if (algorithm == nullptr) refuseAlgorithm(uri, index);
  return *algorithm;
}

/// Tells what is unknown, and where it could be made known.
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

std::uint64_t XMLWriter_X891::Encoder::octetsOfBooleans(std::size_t count) {
  if (count == 0) return 0;
  const std::uint64_t octets = Tavrin::octetsOfBooleans(count);
  if (octets > kMostOctetsOfBooleans) throw SAXException(kTooManyBooleans);
  return octets;
}

/// The algorithms take lengths of 32 bits.
void XMLWriter_X891::Encoder::checkValueLength(std::uint64_t octets) {
  constexpr std::uint64_t kLongestValue = 0xFFFFFFFF;
  if (octets > kLongestValue) {
    throw SAXException("Typed value longer than " + std::to_string(kLongestValue) + " octets");
  }
}

/// Refuses a value that a built-in algorithm cannot encode.
/// @return how many octets it takes
std::uint64_t XMLWriter_X891::Encoder::checkBuiltIn(int index, const EncodedData& data) {
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
      octets = octetsOfBooleans(dynamic_cast<const BooleanData&>(data).data_.size());
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
      checkText(dynamic_cast<const CDATAData&>(data).data_, kSection);
      octets = dynamic_cast<const CDATAData&>(data).data_.size();
  }
  checkValueLength(octets);
  return octets;
}

/// Refuses octets that a built-in algorithm cannot have made.
void XMLWriter_X891::Encoder::checkOctets(unsigned field, const std::string& octets) {
  checkValueLength(octets.size());
  if (field >= kDialectX891.firstApplicationAlgorithm || octets.empty()) return;
  switch (field) {
    case algorithms::hexadecimal:
    case algorithms::base64:
      return;
    case algorithms::cdata:
      checkText(octets, kSection);
      return;
    default: {
      std::istringstream stream(octets);
      algorithmFor({}, static_cast<int>(field))
          .decodeFromInputStream(static_cast<std::uint32_t>(octets.size()), stream);
      // Booleans may leave octets over: the unused bits that they tell of are too many.
      if (stream.peek() != std::istringstream::traits_type::eof()) {
        throw EncodingAlgorithmException("Encoded data of another length than its value");
      }
    }
  }
}

// --- Applications' algorithms ---

namespace {

/// The length that stands in the octets of writeSize, and where it ends; nothing else is looked at,
/// the number of the algorithm least.
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

}  // namespace

/// What an application's algorithm makes of a value, without what introduces it: the algorithm
/// writes the number that it believes to have, but the document decides which it is.
std::string XMLWriter_X891::Encoder::encodedBy(EncodingAlgorithm& algorithm, const std::string& uri,
                                               bool chunk, const EncodedData& data) {
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
  // Behind these bits, the first octet has the beginning of the number.
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

}  // namespace Tavrin
