#include "Mutations.h"

#include <cstdlib>

#include "HexOctets.h"

namespace reader_test {

std::string mutate(const std::vector<std::string>& samples, std::mt19937& random) {
  const auto below = [&random](std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(random);
  };
  // Octets that mean something nearly anywhere.
  static const std::string telling =
      octets("00 01 0C 10 20 30 38 3C 3F 40 60 78 7C 7F 80 83 88 8C 8F A0 B8 C0 CF E1 E2 F0 FF");
  std::string octets = samples[below(samples.size())];
  for (std::size_t changes = 1 + below(8); changes > 0; --changes) {
    const std::size_t place = octets.empty() ? 0 : below(octets.size());
    // The header is mostly left alone: what differs there is told apart at once.
    if (place < 4 && below(16) != 0) continue;
    const std::string& other = samples[below(samples.size())];
    switch (below(7)) {
      case 0:
        octets[place] = static_cast<char>(octets[place] ^ (1 << below(8)));
        break;
      case 1:
        octets[place] = static_cast<char>(below(256));
        break;
      case 2:
        octets[place] = telling[below(telling.size())];
        break;
      case 3:
        octets.insert(place, 1, telling[below(telling.size())]);
        break;
      case 4:
        octets.erase(place, 1 + below(4));
        break;
      case 5:
        octets.insert(place, other, below(other.size()), 1 + below(32));
        break;
      default:
        octets.resize(place);
    }
    if (octets.empty()) break;
  }
  return octets;
}

std::size_t mutationCount(std::size_t standard) {
  const char* given = std::getenv("TAVRIN_MUTATIONS");
  return given ? std::strtoul(given, nullptr, 10) : standard;
}

}  // namespace reader_test
