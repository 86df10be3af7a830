#include "explaining/FileKinds.h"

#include <algorithm>

#include "files/Failure.h"

namespace tool {

using namespace std::string_view_literals;

namespace {

/// Octets that a function can be made for.
template <std::size_t Size>
struct Octets {
  // A string stands where they are expected: NOLINTNEXTLINE(google-explicit-constructor)
  constexpr Octets(const char (&literal)[Size]) { std::copy_n(literal, Size, octets); }
  constexpr std::string_view view() const { return {octets, Size - 1}; }
  char octets[Size]{};
};

template <Octets Beginning>
bool beginsWith(std::string_view file) {
  return file.starts_with(Beginning.view());
}

std::string_view withoutBlanks(std::string_view text) {
  const std::size_t blanks = text.find_first_not_of(" \t\r\n");
  return text.substr(std::min(blanks, text.size()));
}

std::string_view withoutMark(std::string_view file) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  return file.starts_with(kByteOrderMark) ? file.substr(kByteOrderMark.size()) : file;
}

bool isEmpty(std::string_view file) { return file.empty(); }

/// RFC 8259, section 2: an object, or an array whose first value begins.
bool isJSON(std::string_view file) {
  const std::string_view text = withoutBlanks(withoutMark(file));
  if (text.empty() || (text[0] != '{' && text[0] != '[')) return false;
  const std::string_view rest = withoutBlanks(text.substr(1));
  if (rest.empty()) return true;
  return (text[0] == '{' ? "\"}"sv : "\"]{[-0123456789tfn"sv).find(rest[0]) !=
         std::string_view::npos;
}

/// Compares letters in either case with lower ones.
bool beginsWithLetters(std::string_view text, std::string_view letters) {
  return text.size() >= letters.size() &&
         std::equal(letters.begin(), letters.end(), text.begin(), [](char lower, char c) {
           return lower == (c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c);
         });
}

bool isHTML(std::string_view file) {
  const std::string_view text = withoutBlanks(withoutMark(file));
  return beginsWithLetters(text, "<!doctype html") || beginsWithLetters(text, "<html") ||
         beginsWithLetters(text, "<head") || beginsWithLetters(text, "<body");
}

/// EXI 1.0, section 5.2: a stream may begin with the distinguishing bits 10 alone.
bool mayBeEXI(std::string_view file) {
  return !file.empty() && (static_cast<unsigned char>(file[0]) & 0xC0U) == 0x80;
}

/// Every other octet of the first ones is null.
bool isWideText(std::string_view file) {
  constexpr std::size_t kOctets = 16;
  const std::string_view beginning = file.substr(0, kOctets);
  const auto isAlternating = [&](std::size_t nullAt) {
    for (std::size_t i = 0; i < beginning.size(); ++i) {
      if ((beginning[i] == '\0') != (i % 2 == nullAt)) return false;
    }
    return beginning.size() >= 4;
  };
  return isAlternating(0) || isAlternating(1);
}

constexpr auto kSure = FileKind::Certainty::Sure;
constexpr auto kProbable = FileKind::Certainty::Probable;

/// The first that fits counts.
constexpr FileKind kKinds[] = {
    {"the input is empty", kProbable, isEmpty},
    {"a bzip2 file", kSure, beginsWith<"BZh">},
    {"an xz file", kSure,
     beginsWith<"\xFD"
                "7zXZ">},
    {"a zip file, as those of offices are", kSure, beginsWith<"PK\x03\x04">},
    {"an empty zip file", kSure, beginsWith<"PK\x05\x06">},
    {"a 7z file", kSure, beginsWith<"7z\xBC\xAF\x27\x1C">},
    {"an EXI document", kSure, beginsWith<"$EXI">},
    {"a PDF document", kSure, beginsWith<"%PDF-">},
    {"a PNG image", kSure, beginsWith<"\x89PNG">},
    {"a JPEG image", kSure, beginsWith<"\xFF\xD8\xFF">},
    {"a GIF image", kSure, beginsWith<"GIF8">},
    {"a program", kSure,
     beginsWith<"\x7F"
                "ELF">},
    {"a SQLite database", kSure, beginsWith<"SQLite format 3">},
    {"a file of an old office program", kSure, beginsWith<"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1">},
    {"JSON", kSure, isJSON},
    {"this may be HTML", kProbable, isHTML},
    {"this may be an EXI document without its cookie", kProbable, mayBeEXI},
    {"this may be text in UTF-16 without a byte order mark", kProbable, isWideText},
};

}  // namespace

const FileKind* kindOf(std::string_view firstOctets) {
  const auto found = std::find_if(std::begin(kKinds), std::end(kKinds),
                                  [&](const FileKind& kind) { return kind.isOne(firstOctets); });
  return found == std::end(kKinds) ? nullptr : found;
}

void refuseKind(const FileKind* kind, const std::string& file) {
  if (kind == nullptr || kind->certainty != kSure) return;
  const std::string name = kind->name;
  throw Failure::document(file, "This is " + name + ", and neither XML nor Fast Infoset");
}

std::string withKind(const FileKind* kind, const std::string& message) {
  return kind ? message + " (" + kind->name + ")" : message;
}

}  // namespace tool
