#include "documents.h"

#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>

namespace documents {

std::string records(unsigned count) {
  static const char* const kinds[] = {"order", "return", "refund", "exchange"};
  static const char* const places[] = {"Lisbon", "Reykjavik", "Wellington", "Ulaanbaatar", "Quito"};
  std::mt19937 random(20240229);
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r:records xmlns:r=\"urn:records\">\n";
  for (unsigned i = 0; i < count; ++i) {
    text += "  <r:record id=\"R" + std::to_string(100000 + i) + "\" kind=\"" +
            kinds[random() % std::size(kinds)] + "\" r:revision-number=\"" +
            std::to_string(random() % 10) + "\">\n    <r:place>" +
            places[random() % std::size(places)] + "</r:place>\n    <r:amount currency=\"EUR\">" +
            std::to_string(random() % 100000) + "</r:amount>\n  </r:record>\n";
  }
  return text + "</r:records>\n";
}

std::string file(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(stream), {}};
  if (!stream) throw std::runtime_error("cannot read " + path);
  return text;
}

}  // namespace documents
