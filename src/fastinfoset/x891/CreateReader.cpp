#include <Tavrin/Factories.h>
#include <Tavrin/Parse.h>

#include <algorithm>
#include <string_view>

#include "../../io/SingleOctets.h"

namespace Tavrin {

namespace {

// What a document of Fast Infoset begins with: the part of its header that begins no text, or an
// XML declaration up to its encoding (X.891, 12.3).
constexpr std::string_view kIdentification("\xE0\0", 2);
constexpr std::string_view kDeclarations[] = {"<?xml encoding='finf'",
                                              "<?xml version='1.0' encoding='finf'",
                                              "<?xml version='1.1' encoding='finf'"};

bool isFastInfoset(std::string_view start) {
  if (start.empty()) return false;
  if (start.starts_with(kIdentification.substr(0, start.size()))) return true;
  return std::ranges::any_of(kDeclarations, [&](auto each) { return start.starts_with(each); });
}

/// The octets that a stream's buffer has at hand, of which there is one at least unless it ends.
std::string_view octetsAtHand(std::streambuf& buffer, char& first) {
  const int octet = buffer.sgetc();
  if (octet == std::streambuf::traits_type::eof()) return {};
  if (const GetArea area(buffer); !area.isEmpty()) return {area.begin(), area.size()};
  first = static_cast<char>(octet);  // The buffer keeps none.
  return {&first, 1};
}

}  // namespace

std::unique_ptr<XMLReader> createReaderFor(std::istream& stream) {
  char first = 0;
  std::string_view start;
  if (stream.rdbuf()) start = octetsAtHand(*stream.rdbuf(), first);
  return XMLReaderFactory::createXMLReader(isFastInfoset(start) ? "X891" : "XML10");
}

}  // namespace Tavrin
