#include <Tavrin/Factories.h>
#include <Tavrin/Parse.h>

#include <string_view>

#include "../../io/SingleOctets.h"
#include "DocumentStart.h"

namespace Tavrin {

namespace {

/// The octets that a stream's buffer has at hand, of which there is one at least unless it ends.
std::string_view octetsAtHand(std::streambuf& buffer, char& first) {
  const int octet = buffer.sgetc();
  if (octet == std::streambuf::traits_type::eof()) return {};
  if (const GetArea area(buffer); !area.isEmpty()) return {area.begin(), area.size()};
  first = static_cast<char>(octet);  // The buffer keeps none.
  return {&first, 1};
}

}  // namespace

bool fastinfoset::beginsFastInfoset(std::istream& stream) {
  char first = 0;
  std::string_view start;
  if (stream.rdbuf()) start = octetsAtHand(*stream.rdbuf(), first);
  return isFastInfoset(start);
}

std::unique_ptr<XMLReader> createReaderFor(std::istream& stream) {
  return XMLReaderFactory::createXMLReader(fastinfoset::beginsFastInfoset(stream) ? "X891"
                                                                                  : "XML10");
}

}  // namespace Tavrin
