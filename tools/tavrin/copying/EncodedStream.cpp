#include "copying/EncodedStream.h"

#include <Tavrin/Exceptions.h>
#include <Tavrin/XMLReader_XML10.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <stdexcept>

#include "copying/Characters.h"

namespace tool {

using namespace std::string_view_literals;

namespace {

/// What markup, declarations and references are written with.
constexpr std::string_view kNeeded =
    "\t\n !\"#%&'()*+,-./0123456789:;<=>?ABCDEFGHIJKLMNOPQRSTUVWXYZ[]_abcdefghijklmnopqrstuvwxyz|";

/// The name of an encoding (XML 1.0, production 81). To iconv, options follow a slash.
bool isEncodingName(std::string_view name) {
  const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  return !name.empty() && isLetter(name[0]) && std::ranges::all_of(name, [&](char c) {
    return isLetter(c) || (c >= '0' && c <= '9') || c == '.' || c == '_' || c == '-';
  });
}

std::string_view describe(MarkupScanner::Place place) {
  switch (place) {
    case MarkupScanner::Place::Comment:
      return "comments"sv;
    case MarkupScanner::Place::Instruction:
      return "processing instructions"sv;
    case MarkupScanner::Place::Identifier:
      return "identifiers"sv;
    default:
      return "names"sv;
  }
}

/// Keeps what is written.
class Collected : public std::streambuf {
 public:
  std::string octets;

 protected:
  int_type overflow(int_type c) override {
    if (!traits_type::eq_int_type(c, traits_type::eof())) octets += traits_type::to_char_type(c);
    return traits_type::not_eof(c);
  }
  std::streamsize xsputn(const char* text, std::streamsize size) override {
    octets.append(text, static_cast<std::size_t>(size));
    return size;
  }
};

std::string declaration(const std::string& encoding) {
  return "<?xml version=\"1.0\" encoding=\"" + encoding + "\"";
}

/// Whether a reader sees what a document in an encoding is. Of UTF-7, for one, "<" is written in a
/// way that none expects.
bool isReadable(const std::string& encoding) {
  Collected document;
  std::ostream collecting(&document);
  EncodedStream stream(encoding, collecting);
  try {
    stream << declaration("UTF-8") + "?>\n<a b='c'/>";
    stream.finish();
    Tavrin::XMLReader_XML10().parse(document.octets.data(), document.octets.size(), true);
    return true;
  } catch (const Tavrin::SAXException&) {
    return false;
  }
}

}  // namespace

EncodingBuffer::EncodingBuffer(const std::string& encoding, std::ostream& out)
    : encoding_(encoding), out_(out), recoding_("UTF-8", encoding), faithful_(encoding) {
  if (!recoding_.isKnown() || !faithful_.areKnown()) throw std::invalid_argument(encoding);
}

bool EncodingBuffer::isUsable(const std::string& encoding) {
  if (!isEncodingName(encoding)) return false;
  FaithfulCharacters faithful(encoding);
  return faithful.areKnown() && faithful.lengthOfRun(kNeeded) == kNeeded.size() &&
         faithful.comeBackTogether() && isReadable(encoding);
}

EncodingBuffer::int_type EncodingBuffer::overflow(int_type c) {
  const char octet = traits_type::to_char_type(c);
  if (!traits_type::eq_int_type(c, traits_type::eof())) xsputn(&octet, 1);
  return traits_type::not_eof(c);
}

std::streamsize EncodingBuffer::xsputn(const char* text, std::streamsize size) {
  std::string_view octets(text, static_cast<std::size_t>(size));
  if (!hasBegun_) {
    convertBeginning(octets);
  } else if (pending_.empty()) {
    pending_ = octets.substr(convert(octets));
  } else {
    pending_ += octets;
    pending_.erase(0, convert(pending_));
  }
  return size;
}

/// The writer's declaration is one event.
void EncodingBuffer::convertBeginning(std::string_view octets) {
  if (octets.empty()) return;
  hasBegun_ = true;
  const std::string written = declaration("UTF-8");
  if (octets.starts_with(written)) {
    octets.remove_prefix(written.size());
    convert(declaration(encoding_));
  }
  pending_ = octets.substr(convert(octets));
}

/// Converts all but the part of a character at the end. Returns how many octets that are.
std::size_t EncodingBuffer::convert(std::string_view octets) {
  octets = wholeOf(octets);
  const std::size_t size = octets.size();
  while (!octets.empty()) {
    const std::string_view run = octets.substr(0, faithful_.lengthOfRun(octets));
    write(run);
    scanner_.take(run);
    octets.remove_prefix(run.size());
    if (octets.empty()) break;
    const std::string_view character = firstOf(octets);
    write(replacementOf(character));
    // The scanner need not see that, but what came before is no part of what follows.
    scanner_.take("x");
    octets.remove_prefix(character.size());
  }
  return size;
}

/// Passes on characters that the encoding has.
void EncodingBuffer::write(std::string_view octets) {
  using Outcome = Recoding::Outcome;
  char block[4096];
  Outcome outcome = octets.empty() ? Outcome::Done : Outcome::NoRoom;
  while (outcome == Outcome::NoRoom) {
    char* to = block;
    std::size_t room = sizeof block;
    outcome = recoding_.convert(octets, to, room);
    out_.write(block, static_cast<std::streamsize>(sizeof block - room));
  }
  if (outcome == Outcome::Done) return;
  throw Tavrin::SAXException("Text that cannot be written in " + encoding_);
}

/// What stands for a character that the encoding lacks.
std::string EncodingBuffer::replacementOf(std::string_view character) const {
  using Place = MarkupScanner::Place;
  const unsigned code = codePointOf(character);
  const Place place = scanner_.place();
  char number[16];
  if (place != Place::Content && place != Place::Value && place != Place::Section) {
    std::snprintf(number, sizeof number, "U+%04X", code);
    throw Tavrin::SAXException(std::string(number) + " does not exist in " + encoding_ + ", and " +
                               std::string(describe(place)) + " cannot have references");
  }
  std::snprintf(number, sizeof number, "&#x%X;", code);
  const std::string reference = number;
  return place == Place::Section ? "]]>" + reference + "<![CDATA[" : reference;
}

void EncodingBuffer::finish() {
  char block[64];
  char* to = block;
  std::size_t room = sizeof block;
  recoding_.finish(to, room);
  out_.write(block, static_cast<std::streamsize>(sizeof block - room));
}

EncodedStream::EncodedStream(const std::string& encoding, std::ostream& target)
    : std::ostream(nullptr), buffer_(encoding, target) {
  rdbuf(&buffer_);
  exceptions(std::ios_base::badbit);
}

}  // namespace tool
