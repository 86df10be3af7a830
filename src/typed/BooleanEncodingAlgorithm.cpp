#include <Tavrin/EncodingAlgorithms.h>

#include "EncodedLength.h"
#include "OctetsOfItems.h"

// Booleans (X.891, 10.7): the first four bits hold the number of unused bits at the end of the last
// octet; then one bit per boolean follows.

namespace Tavrin {

namespace {

constexpr unsigned kFirstBit = 0x80;                        // Of an octet.
constexpr unsigned kFirstBooleanBit = 0x80 >> kUnusedBits;  // Of the first octet.

}  // namespace

EncodedData& BooleanEncodingAlgorithm::decodeFromInputStream(std::uint32_t length,
                                                             std::istream& stream) {
  checkEncodedLength(algorithms::boolean, length);
  std::vector<bool>& booleans = holder_.data_;
  const SingleOctets source(stream);
  const int got = source.get();
  const bool isMissing = got == std::istream::traits_type::eof();
  const unsigned first = isMissing ? kMissingOctet : static_cast<unsigned>(got);
  const unsigned unused = first >> (8 - kUnusedBits);
  const std::uint64_t bits = std::uint64_t{8} * length - kUnusedBits;
  if (unused > bits) {
    if (!isMissing) throw EncodingAlgorithmException(kInvalidBooleanLength);
    booleans.clear();  // The stream ended early, which is no fault of the length.
    return holder_;
  }

  const std::uint32_t count = countBooleans(first, length);
  std::uint32_t missing = count;
  booleans.clear();
  booleans.reserve(count);
  const auto appendBits = [&](unsigned octet, unsigned bit) {
    for (; bit != 0 && missing > 0; bit >>= 1, --missing) booleans.push_back((octet & bit) != 0);
  };
  appendBits(first, kFirstBooleanBit);
  // Octets that consist of unused bits alone are not consumed.
  while (missing > 0) {
    const int octet = source.get();
    const bool isEnd = octet == std::istream::traits_type::eof();
    appendBits(isEnd ? kMissingOctet : static_cast<unsigned>(octet), kFirstBit);
    if (!isEnd) continue;
    // After a call has failed, all further calls fail: each missing octet counts as 0xFF.
    if (missing > 0) source.getAfterFailure();
    break;
  }
  booleans.resize(count, true);
  return holder_;
}

void BooleanEncodingAlgorithm::encodeToOutputStream(bool chunk, const EncodedData& data,
                                                    std::ostream& stream) {
  encodeToOutputStream(chunk, dynamic_cast<const BooleanData&>(data).data_, stream);
}

void BooleanEncodingAlgorithm::encodeToOutputStream(bool chunk, const std::vector<bool>& value,
                                                    std::ostream& stream) {
  if (value.empty()) {
    writeSize(algorithms::boolean, chunk, 0, stream);
    return;
  }
  const std::size_t octets = octetsOfBooleans(value.size());
  const std::size_t unused = 8 * octets - kUnusedBits - value.size();
  writeSize(algorithms::boolean, chunk, static_cast<std::uint32_t>(octets), stream);
  auto octet = static_cast<unsigned>(unused << (8 - kUnusedBits));
  unsigned bit = kFirstBooleanBit;
  for (const bool item : value) {
    if (item) octet |= bit;
    bit >>= 1;
    if (bit == 0) {
      stream.put(static_cast<char>(octet));
      octet = 0;
      bit = kFirstBit;
    }
  }
  if (bit != kFirstBit) stream.put(static_cast<char>(octet));
}

}  // namespace Tavrin
