#include "EncodedLength.h"

#include <Tavrin/EncodingAlgorithms.h>

namespace Tavrin {

namespace {

void check(bool isValid, const char* message) {
  if (!isValid) throw EncodingAlgorithmException(message);
}

}  // namespace

void checkEncodedLength(int algorithm, std::uint64_t length) {
  switch (algorithm) {
    case algorithms::shortInteger:
      return check(length % sizeof(std::int16_t) == 0, "Invalid length for encoded short data");
    case algorithms::integer:
      return check(length % sizeof(std::int32_t) == 0, "Invalid length for encoded int data");
    case algorithms::longInteger:
      return check(length % sizeof(std::int64_t) == 0, "Invalid length for encoded long data");
    case algorithms::boolean:
      return check(length != 0, kInvalidBooleanLength);
    case algorithms::floatNumber:
      return check(length % sizeof(float) == 0, "Invalid length for encoded float data");
    case algorithms::doubleNumber:
      return check(length % sizeof(double) == 0, "Invalid length for encoded double data");
    case algorithms::uuid:
      return check(length % sizeof(UUID) == 0, "Invalid length for encoded uuid data");
    default:
      return;
  }
}

}  // namespace Tavrin
