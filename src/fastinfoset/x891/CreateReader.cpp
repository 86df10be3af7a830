#include <Tavrin/Parse.h>
#include <Tavrin/XMLReader_X891.h>
#include <Tavrin/XMLReader_XML10.h>

#include <string_view>

#include "../../io/SingleOctets.h"
#include "../format/Octets.h"

namespace Tavrin {

namespace {

/// Whether a document of Fast Infoset begins like that, by its header or an XML declaration.
bool isFastInfoset(std::string_view start) {
  constexpr std::size_t kIdentification = 2;  // The octets of the header that no text begins with.
  constexpr std::string_view kDeclaration = "<?xml ";
  const auto octetAt = [&](std::size_t i) { return static_cast<unsigned char>(start[i]); };
  if (!start.starts_with(kDeclaration)) {
    return !start.empty() && octetAt(0) == fastinfoset::kHeader[0] &&
           (start.size() < kIdentification || octetAt(1) == fastinfoset::kHeader[1]);
  }
  return start.substr(0, start.find("?>")).find(" encoding='finf'") != std::string_view::npos;
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
  if (stream.rdbuf() && isFastInfoset(octetsAtHand(*stream.rdbuf(), first))) {
    return XMLReader_X891::create();
  }
  return XMLReader_XML10::create();
}

}  // namespace Tavrin
