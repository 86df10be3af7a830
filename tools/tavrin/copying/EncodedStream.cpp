#include "copying/EncodedStream.h"

#include <Tavrin/Exceptions.h>
#include <Tavrin/XMLReader_XML10.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <new>
#include <stdexcept>

namespace tool {

using namespace std::string_view_literals;

namespace {

// iconv_open fails with the pointer that is all ones.
bool isOpen(iconv_t handle) { return reinterpret_cast<std::ptrdiff_t>(handle) != -1; }

iconv_t openConversion(const std::string& encoding) {
  iconv_t handle = iconv_open(encoding.c_str(), "UTF-8");
  if (!isOpen(handle) && errno == ENOMEM) throw std::bad_alloc();
  return handle;
}

/// The name of an encoding (XML 1.0, production 81). To iconv, options follow a slash.
bool isEncodingName(std::string_view name) {
  const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  return !name.empty() && isLetter(name[0]) && std::ranges::all_of(name, [&](char c) {
    return isLetter(c) || (c >= '0' && c <= '9') || c == '.' || c == '_' || c == '-';
  });
}

/// How many octets the first character has.
std::size_t lengthOf(std::string_view octets) {
  const auto first = static_cast<unsigned char>(octets[0]);
  const std::size_t length = first < 0xC0 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  return std::min(length, octets.size());
}

unsigned codePointOf(std::string_view character) {
  constexpr unsigned kFirstBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
  unsigned code = static_cast<unsigned char>(character[0]) & kFirstBits[character.size()];
  for (const char c : character.substr(1)) code = code << 6 | (static_cast<unsigned>(c) & 0x3F);
  return code;
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

}  // namespace

EncodingBuffer::EncodingBuffer(const std::string& encoding, std::ostream& out)
    : encoding_(encoding), out_(out), iconv_(openConversion(encoding)) {
  if (!isOpen(iconv_)) throw std::invalid_argument(encoding);
}

EncodingBuffer::~EncodingBuffer() { iconv_close(iconv_); }

bool EncodingBuffer::isUsable(const std::string& encoding) {
  if (!isEncodingName(encoding)) return false;
  iconv_t handle = openConversion(encoding);
  if (!isOpen(handle)) return false;
  iconv_close(handle);
  // A reader has to see what it is. Of UTF-7, for one, "<" is written in a way that none expects.
  Collected document;
  std::ostream collecting(&document);
  EncodedStream stream(encoding, collecting);
  stream << declaration("UTF-8") + "?>\n<a b='c'/>";
  stream.finish();
  try {
    Tavrin::XMLReader_XML10().parse(document.octets.data(), document.octets.size(), true);
    return true;
  } catch (const Tavrin::SAXException&) {
    return false;
  }
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

// A reference has no characters that an encoding lacks, so it is not replaced again.
// NOLINTBEGIN(misc-no-recursion)

/// Converts all but the part of a character at the end. Returns how many octets that are.
std::size_t EncodingBuffer::convert(std::string_view octets) {
  char block[4096];
  const std::string_view all = octets;
  std::size_t scanned = 0;
  for (;;) {
    char* to = block;
    std::size_t room = sizeof block;
    // iconv does not change it, whatever the type says.
    char* from = const_cast<char*>(octets.data());  // NOLINT(cppcoreguidelines-pro-type-const-cast)
    std::size_t left = octets.size();
    const bool failed = iconv(iconv_, &from, &left, &to, &room) == static_cast<std::size_t>(-1);
    const int error = failed ? errno : 0;
    out_.write(block, static_cast<std::streamsize>(sizeof block - room));
    octets.remove_prefix(octets.size() - left);
    if (error == E2BIG) continue;
    const std::size_t done = all.size() - octets.size();
    scanner_.take(all.substr(scanned, done - scanned));
    if (error != EILSEQ) return done;
    const std::string_view character = octets.substr(0, lengthOf(octets));
    replace(character);
    octets.remove_prefix(character.size());
    scanned = done + character.size();
  }
}

void EncodingBuffer::replace(std::string_view character) {
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
  std::string reference = number;
  if (place == Place::Section) reference = "]]>" + reference + "<![CDATA[";
  // The scanner need not see it, but what came before is no part of what follows.
  const MarkupScanner before = scanner_;
  convert(reference);
  scanner_ = before;
  scanner_.take("x");
}

// NOLINTEND(misc-no-recursion)

void EncodingBuffer::finish() {
  char block[64];
  char* to = block;
  std::size_t room = sizeof block;
  iconv(iconv_, nullptr, nullptr, &to, &room);
  out_.write(block, static_cast<std::streamsize>(sizeof block - room));
}

EncodedStream::EncodedStream(const std::string& encoding, std::ostream& target)
    : std::ostream(nullptr), buffer_(encoding, target) {
  rdbuf(&buffer_);
  exceptions(std::ios_base::badbit);
}

}  // namespace tool
