#include <Tavrin/EncodingAlgorithms.h>

#include <bit>

#include "EncodedLength.h"
#include "OctetsOfItems.h"

namespace Tavrin {

namespace {

/// Lengths are 32-bit numbers; a longer value loses the upper half of its length.
std::uint32_t length32(std::size_t octets) { return static_cast<std::uint32_t>(octets); }

void encodeOctets(const EncodingAlgorithm& algorithm, int index, bool chunk,
                  const std::string& octets, std::ostream& stream) {
  algorithm.writeSize(index, chunk, length32(octets.size()), stream);
  writeOctets(octets, stream);
}

template <typename Bits, typename Item, typename BitsOf>
void encodeItems(const EncodingAlgorithm& algorithm, int index, bool chunk,
                 const std::vector<Item>& items, std::ostream& stream, BitsOf bitsOf) {
  algorithm.writeSize(index, chunk, length32(sizeof(Bits) * items.size()), stream);
  writeNumbers<Bits>(items, stream, bitsOf);
}

}  // namespace

// --- Octets: as they are ---

EncodedData& HexadecimalEncodingAlgorithm::decodeFromInputStream(std::uint32_t length,
                                                                 std::istream& stream) {
  readOctets(length, stream, holder_.data_);
  return holder_;
}

void HexadecimalEncodingAlgorithm::encodeToOutputStream(bool chunk, const EncodedData& data,
                                                        std::ostream& stream) {
  encodeToOutputStream(chunk, dynamic_cast<const HexadecimalData&>(data).data_, stream);
}

void HexadecimalEncodingAlgorithm::encodeToOutputStream(bool chunk, const std::string& value,
                                                        std::ostream& stream) {
  encodeOctets(*this, algorithms::hexadecimal, chunk, value, stream);
}

EncodedData& Base64EncodingAlgorithm::decodeFromInputStream(std::uint32_t length,
                                                            std::istream& stream) {
  readOctets(length, stream, holder_.data_);
  return holder_;
}

void Base64EncodingAlgorithm::encodeToOutputStream(bool chunk, const EncodedData& data,
                                                   std::ostream& stream) {
  encodeToOutputStream(chunk, dynamic_cast<const Base64Data&>(data).data_, stream);
}

void Base64EncodingAlgorithm::encodeToOutputStream(bool chunk, const std::string& value,
                                                   std::ostream& stream) {
  encodeOctets(*this, algorithms::base64, chunk, value, stream);
}

EncodedData& CDATAEncodingAlgorithm::decodeFromInputStream(std::uint32_t length,
                                                           std::istream& stream) {
  readOctets(length, stream, holder_.data_);
  return holder_;
}

void CDATAEncodingAlgorithm::encodeToOutputStream(bool chunk, const EncodedData& data,
                                                  std::ostream& stream) {
  encodeToOutputStream(chunk, dynamic_cast<const CDATAData&>(data).data_, stream);
}

void CDATAEncodingAlgorithm::encodeToOutputStream(bool chunk, const std::string& value,
                                                  std::ostream& stream) {
  encodeOctets(*this, algorithms::cdata, chunk, value, stream);
}

// --- Integers: two's complement, big-endian ---

EncodedData& ShortEncodingAlgorithm::decodeFromInputStream(std::uint32_t length,
                                                           std::istream& stream) {
  checkEncodedLength(algorithms::shortInteger, length);
  readNumbers<std::uint16_t>(length, stream, holder_.data_,
                             [](std::uint16_t bits) { return static_cast<short>(bits); });
  return holder_;
}

void ShortEncodingAlgorithm::encodeToOutputStream(bool chunk, const EncodedData& data,
                                                  std::ostream& stream) {
  encodeToOutputStream(chunk, dynamic_cast<const ShortData&>(data).data_, stream);
}

void ShortEncodingAlgorithm::encodeToOutputStream(bool chunk, const std::vector<short>& value,
                                                  std::ostream& stream) {
  encodeItems<std::uint16_t>(*this, algorithms::shortInteger, chunk, value, stream,
                             [](short item) { return static_cast<std::uint16_t>(item); });
}

EncodedData& IntEncodingAlgorithm::decodeFromInputStream(std::uint32_t length,
                                                         std::istream& stream) {
  checkEncodedLength(algorithms::integer, length);
  readNumbers<std::uint32_t>(length, stream, holder_.data_, [](std::uint32_t bits) {
    return long{static_cast<std::int32_t>(bits)};
  });
  return holder_;
}

void IntEncodingAlgorithm::encodeToOutputStream(bool chunk, const EncodedData& data,
                                                std::ostream& stream) {
  encodeToOutputStream(chunk, dynamic_cast<const IntData&>(data).data_, stream);
}

void IntEncodingAlgorithm::encodeToOutputStream(bool chunk, const std::vector<long>& value,
                                                std::ostream& stream) {
  encodeItems<std::uint32_t>(*this, algorithms::integer, chunk, value, stream,
                             [](long item) { return static_cast<std::uint32_t>(item); });
}

EncodedData& LongEncodingAlgorithm::decodeFromInputStream(std::uint32_t length,
                                                          std::istream& stream) {
  checkEncodedLength(algorithms::longInteger, length);
  readNumbers<std::uint64_t>(length, stream, holder_.data_,
                             [](std::uint64_t bits) { return static_cast<long>(bits); });
  return holder_;
}

void LongEncodingAlgorithm::encodeToOutputStream(bool chunk, const EncodedData& data,
                                                 std::ostream& stream) {
  encodeToOutputStream(chunk, dynamic_cast<const LongData&>(data).data_, stream);
}

void LongEncodingAlgorithm::encodeToOutputStream(bool chunk, const std::vector<long>& value,
                                                 std::ostream& stream) {
  encodeItems<std::uint64_t>(*this, algorithms::longInteger, chunk, value, stream,
                             [](long item) { return static_cast<std::uint64_t>(item); });
}

// --- Floating-point numbers: their bits, big-endian ---

EncodedData& FloatEncodingAlgorithm::decodeFromInputStream(std::uint32_t length,
                                                           std::istream& stream) {
  checkEncodedLength(algorithms::floatNumber, length);
  readNumbers<std::uint32_t>(length, stream, holder_.data_,
                             [](std::uint32_t bits) { return std::bit_cast<float>(bits); });
  return holder_;
}

void FloatEncodingAlgorithm::encodeToOutputStream(bool chunk, const EncodedData& data,
                                                  std::ostream& stream) {
  encodeToOutputStream(chunk, dynamic_cast<const FloatData&>(data).data_, stream);
}

void FloatEncodingAlgorithm::encodeToOutputStream(bool chunk, const std::vector<float>& value,
                                                  std::ostream& stream) {
  encodeItems<std::uint32_t>(*this, algorithms::floatNumber, chunk, value, stream,
                             [](float item) { return std::bit_cast<std::uint32_t>(item); });
}

EncodedData& DoubleEncodingAlgorithm::decodeFromInputStream(std::uint32_t length,
                                                            std::istream& stream) {
  checkEncodedLength(algorithms::doubleNumber, length);
  readNumbers<std::uint64_t>(length, stream, holder_.data_,
                             [](std::uint64_t bits) { return std::bit_cast<double>(bits); });
  return holder_;
}

void DoubleEncodingAlgorithm::encodeToOutputStream(bool chunk, const EncodedData& data,
                                                   std::ostream& stream) {
  encodeToOutputStream(chunk, dynamic_cast<const DoubleData&>(data).data_, stream);
}

void DoubleEncodingAlgorithm::encodeToOutputStream(bool chunk, const std::vector<double>& value,
                                                   std::ostream& stream) {
  encodeItems<std::uint64_t>(*this, algorithms::doubleNumber, chunk, value, stream,
                             [](double item) { return std::bit_cast<std::uint64_t>(item); });
}

// --- UUIDs: their octets ---

EncodedData& UUIDEncodingAlgorithm::decodeFromInputStream(std::uint32_t length,
                                                          std::istream& stream) {
  checkEncodedLength(algorithms::uuid, length);
  readItems<UUID>(length, stream, holder_.data_, [](const UUID& uuid) { return uuid; });
  return holder_;
}

void UUIDEncodingAlgorithm::encodeToOutputStream(bool chunk, const EncodedData& data,
                                                 std::ostream& stream) {
  encodeToOutputStream(chunk, dynamic_cast<const UUIDData&>(data).data_, stream);
}

void UUIDEncodingAlgorithm::encodeToOutputStream(bool chunk, const std::vector<UUID>& value,
                                                 std::ostream& stream) {
  writeSize(algorithms::uuid, chunk, length32(sizeof(UUID) * value.size()), stream);
  stream.write(reinterpret_cast<const char*>(value.data()),
               static_cast<std::streamsize>(sizeof(UUID) * value.size()));
}

}  // namespace Tavrin
