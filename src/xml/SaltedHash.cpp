#include "SaltedHash.h"

#include <random>

namespace Tavrin::xml {

namespace {

std::uint64_t randomBits(std::random_device& device) {
  return std::uint64_t{device()} << 32U | device();
}

}  // namespace

const HashSecret& hashSecret() {
  static const HashSecret secret = [] {
    std::random_device device;
    return HashSecret{randomBits(device), randomBits(device) | 1U};
  }();
  return secret;
}

}  // namespace Tavrin::xml
