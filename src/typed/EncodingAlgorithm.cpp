#include <Tavrin/EncodingAlgorithms.h>

#include "../fastinfoset/format/Integers.h"
#include "../fastinfoset/format/Octets.h"

namespace Tavrin {

using namespace fastinfoset;

EncodingAlgorithm::~EncodingAlgorithm() = default;

void EncodingAlgorithm::writeSize(int index, bool chunk, std::uint32_t length,
                                  std::ostream& stream) const {
  const auto put = [&stream](unsigned octet) { stream.put(static_cast<char>(octet)); };
  const auto putInteger = [&stream](const EncodedInteger& integer) {
    for (std::size_t i = 0; i < integer.length; ++i) stream.put(integer.octets[i]);
  };
  const auto field = static_cast<unsigned>(index);
  if (chunk) {
    if (length == 0) return;
    put(kChunk | kChunkAlgorithm | field >> kChunkFieldLowBits);
    putInteger(encodeInteger(kCharactersLength, field << (8 - kChunkFieldLowBits) & 0xFF, length));
  } else {
    if (length == 0) {
      put(kEmptyString);
      return;
    }
    put(kStringAlgorithm | field >> kStringFieldLowBits);
    putInteger(encodeInteger(kStringLength, field << (8 - kStringFieldLowBits) & 0xFF, length));
  }
}

EncodingAlgorithm* BuiltInAlgorithms::find(int index) {
  switch (index) {
    case algorithms::hexadecimal:
      return &hexadecimal;
    case algorithms::base64:
      return &base64;
    case algorithms::shortInteger:
      return &shortInteger;
    case algorithms::integer:
      return &integer;
    case algorithms::longInteger:
      return &longInteger;
    case algorithms::boolean:
      return &boolean;
    case algorithms::floatNumber:
      return &floatNumber;
    case algorithms::doubleNumber:
      return &doubleNumber;
    case algorithms::cdata:
      return &cdata;
    default:
      return nullptr;
  }
}

}  // namespace Tavrin
