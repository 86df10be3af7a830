#include <Tavrin/EncodingAlgorithms.h>

#include <array>

#include "../fastinfoset/format/AlgorithmField.h"
#include "../fastinfoset/format/Octets.h"
#include "EncodedLength.h"
#include "OctetsOfItems.h"

namespace Tavrin {

using namespace fastinfoset;
using std::istream;
using std::ostream;
using std::string;
using std::uint32_t;
using std::vector;

EncodingAlgorithm::~EncodingAlgorithm() = default;

void EncodingAlgorithm::writeSize(int index, bool chunk, uint32_t length, ostream& stream) const {
  if (length == 0) {
    if (!chunk) stream.put(static_cast<char>(kEmptyString));
    return;
  }
  const auto field = encodeAlgorithmField(chunk, static_cast<unsigned>(index), length);
  for (std::size_t i = 0; i < field.length; ++i) stream.put(field.octets[i]);
}

void checkEncodedLength(int algorithm, std::uint64_t length) {
  struct Items {
    std::size_t size;  // A power of two.
    const char* message;
  };
  static constexpr Items kOctets{1, nullptr};
  static constexpr std::array kItems = {
      kOctets,
      kOctets,
      Items{sizeof(std::int16_t), "Invalid length for encoded short data"},
      Items{sizeof(std::int32_t), "Invalid length for encoded int data"},
      Items{sizeof(std::int64_t), "Invalid length for encoded long data"},
      kOctets,
      Items{sizeof(float), "Invalid length for encoded float data"},
      Items{sizeof(double), "Invalid length for encoded double data"},
      Items{sizeof(UUID), "Invalid length for encoded uuid data"},
  };
  const auto position = static_cast<std::size_t>(algorithm);
  if (position >= kItems.size()) return;
  if (algorithm == algorithms::boolean && length == 0) {
    throw EncodingAlgorithmException(kInvalidBooleanLength);
  }
  const Items& items = kItems[position];
  if ((length & (items.size - 1)) != 0) throw EncodingAlgorithmException(items.message);
}

namespace {

/// Decodes a value.
/// @tparam Encoded a type of the size of an encoded item
template <typename Encoded, typename Holder>
EncodedData& decode(int algorithm, uint32_t length, istream& stream, Holder& holder) {
  checkEncodedLength(algorithm, length);
  readItems<Encoded>(length, stream, holder.data_);
  return holder;
}

/// Encodes a value. Its length is written modulo 2^32.
template <typename Encoded, typename Value>
void encode(const EncodingAlgorithm& algorithm, int index, bool chunk, const Value& value,
            ostream& stream) {
  algorithm.writeSize(index, chunk, static_cast<uint32_t>(sizeof(Encoded) * value.size()), stream);
  writeItems<Encoded>(value, stream);
}

using Hexadecimal = HexadecimalEncodingAlgorithm;
using Base64 = Base64EncodingAlgorithm;
using CDATA = CDATAEncodingAlgorithm;
using Short = ShortEncodingAlgorithm;
using Int = IntEncodingAlgorithm;
using Long = LongEncodingAlgorithm;
using Float = FloatEncodingAlgorithm;
using Double = DoubleEncodingAlgorithm;

}  // namespace

// --- Octets: as they are ---

EncodedData& Hexadecimal::decodeFromInputStream(uint32_t length, istream& stream) {
  return decode<char>(algorithms::hexadecimal, length, stream, holder_);
}
void Hexadecimal::encodeToOutputStream(bool chunk, const EncodedData& data, ostream& stream) {
  encodeToOutputStream(chunk, dynamic_cast<const HexadecimalData&>(data).data_, stream);
}
void Hexadecimal::encodeToOutputStream(bool chunk, const string& value, ostream& stream) {
  encode<char>(*this, algorithms::hexadecimal, chunk, value, stream);
}

EncodedData& Base64::decodeFromInputStream(uint32_t length, istream& stream) {
  return decode<char>(algorithms::base64, length, stream, holder_);
}
void Base64::encodeToOutputStream(bool chunk, const EncodedData& data, ostream& stream) {
  encodeToOutputStream(chunk, dynamic_cast<const Base64Data&>(data).data_, stream);
}
void Base64::encodeToOutputStream(bool chunk, const string& value, ostream& stream) {
  encode<char>(*this, algorithms::base64, chunk, value, stream);
}

EncodedData& CDATA::decodeFromInputStream(uint32_t length, istream& stream) {
  return decode<char>(algorithms::cdata, length, stream, holder_);
}
void CDATA::encodeToOutputStream(bool chunk, const EncodedData& data, ostream& stream) {
  encodeToOutputStream(chunk, dynamic_cast<const CDATAData&>(data).data_, stream);
}
void CDATA::encodeToOutputStream(bool chunk, const string& value, ostream& stream) {
  encode<char>(*this, algorithms::cdata, chunk, value, stream);
}

// --- Integers: two's complement, big-endian ---

EncodedData& Short::decodeFromInputStream(uint32_t length, istream& stream) {
  return decode<std::uint16_t>(algorithms::shortInteger, length, stream, holder_);
}
void Short::encodeToOutputStream(bool chunk, const EncodedData& data, ostream& stream) {
  encodeToOutputStream(chunk, dynamic_cast<const ShortData&>(data).data_, stream);
}
void Short::encodeToOutputStream(bool chunk, const vector<short>& value, ostream& stream) {
  encode<std::uint16_t>(*this, algorithms::shortInteger, chunk, value, stream);
}

EncodedData& Int::decodeFromInputStream(uint32_t length, istream& stream) {
  return decode<std::uint32_t>(algorithms::integer, length, stream, holder_);
}
void Int::encodeToOutputStream(bool chunk, const EncodedData& data, ostream& stream) {
  encodeToOutputStream(chunk, dynamic_cast<const IntData&>(data).data_, stream);
}
void Int::encodeToOutputStream(bool chunk, const vector<long>& value, ostream& stream) {
  encode<std::uint32_t>(*this, algorithms::integer, chunk, value, stream);
}

EncodedData& Long::decodeFromInputStream(uint32_t length, istream& stream) {
  return decode<std::uint64_t>(algorithms::longInteger, length, stream, holder_);
}
void Long::encodeToOutputStream(bool chunk, const EncodedData& data, ostream& stream) {
  encodeToOutputStream(chunk, dynamic_cast<const LongData&>(data).data_, stream);
}
void Long::encodeToOutputStream(bool chunk, const vector<long>& value, ostream& stream) {
  encode<std::uint64_t>(*this, algorithms::longInteger, chunk, value, stream);
}

// --- Floating-point numbers: their bits, big-endian ---

EncodedData& Float::decodeFromInputStream(uint32_t length, istream& stream) {
  return decode<std::uint32_t>(algorithms::floatNumber, length, stream, holder_);
}
void Float::encodeToOutputStream(bool chunk, const EncodedData& data, ostream& stream) {
  encodeToOutputStream(chunk, dynamic_cast<const FloatData&>(data).data_, stream);
}
void Float::encodeToOutputStream(bool chunk, const vector<float>& value, ostream& stream) {
  encode<std::uint32_t>(*this, algorithms::floatNumber, chunk, value, stream);
}

EncodedData& Double::decodeFromInputStream(uint32_t length, istream& stream) {
  return decode<std::uint64_t>(algorithms::doubleNumber, length, stream, holder_);
}
void Double::encodeToOutputStream(bool chunk, const EncodedData& data, ostream& stream) {
  encodeToOutputStream(chunk, dynamic_cast<const DoubleData&>(data).data_, stream);
}
void Double::encodeToOutputStream(bool chunk, const vector<double>& value, ostream& stream) {
  encode<std::uint64_t>(*this, algorithms::doubleNumber, chunk, value, stream);
}

// --- UUIDs: their octets ---

EncodedData& UUIDEncodingAlgorithm::decodeFromInputStream(uint32_t length, istream& stream) {
  return decode<UUID>(algorithms::uuid, length, stream, holder_);
}
void UUIDEncodingAlgorithm::encodeToOutputStream(bool chunk, const EncodedData& data,
                                                 ostream& stream) {
  encodeToOutputStream(chunk, dynamic_cast<const UUIDData&>(data).data_, stream);
}
void UUIDEncodingAlgorithm::encodeToOutputStream(bool chunk, const vector<UUID>& value,
                                                 ostream& stream) {
  encode<UUID>(*this, algorithms::uuid, chunk, value, stream);
}

EncodingAlgorithm* BuiltInAlgorithms::find(int index) {
  EncodingAlgorithm* const all[] = {&hexadecimal, &base64,  &shortInteger, &integer,
                                    &longInteger, &boolean, &floatNumber,  &doubleNumber,
                                    nullptr,      &cdata};
  const auto position = static_cast<std::size_t>(index);
  return position < std::size(all) ? all[position] : nullptr;
}

}  // namespace Tavrin
