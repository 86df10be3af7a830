#include <algorithm>
#include <utility>

#include "octets/Scanner.h"
#include "printing/Text.h"

// Strings (X.891, C.13 to C.15, C.19, C.20 and C.22 to C.29).

namespace tool::octets {

namespace {

using format::Encoding;

/// A boolean is a bit, and a word as text.
constexpr std::uint64_t kExcerptOfBooleans = 4;
/// No restricted alphabet has more octets: 2^20 characters, of four octets each.
constexpr std::size_t kLongestAlphabet = std::size_t{4} << 20;

std::string quoted(const Excerpt& text) {
  std::string result;
  appendQuoted(result, text.text);
  return text.isWhole ? result : result + "...";
}

constexpr const char* kClausesOfBuiltIn[] = {"10.2", "10.3", "10.4", "10.5",  "10.6",
                                             "10.7", "10.8", "10.9", "10.10", "10.11"};

}  // namespace

/// Notes the entry that an index names.
/// @return the index, or Name::kUnknown where nobody knows here which entry it is
std::uint32_t Scanner::noteEntry(unsigned table, std::uint64_t index) {
  const StringTable& strings = tables_.strings(table);
  if (tables_.hasUnknownEntries && !strings.isBuiltIn(index)) {
    note_.entry(strings.name(), index).add(" of or behind the external vocabulary");
    return Name::kUnknown;
  }
  const Excerpt* const entry = strings.find(index);
  if (entry == nullptr) {
    const std::uint64_t last = strings.first() + strings.own().size() - 1;
    fail("an index of " + std::string(strings.name()) + " up to " + std::to_string(last), 0,
         "found " + std::to_string(index));
  }
  note_.add(": ").quote(*entry).entry(strings.name(), index);
  return static_cast<std::uint32_t>(index);
}

/// Notes the place of an entry that was added.
void Scanner::noteAdded(std::string_view table, std::uint32_t index) {
  note_.adds(table, index);
  if (tables_.hasUnknownEntries) note_.add(" behind the external vocabulary");
}

// --- Identifying strings (C.13) ---

/// @param table kNoTable for octets that are no string of a table
Scanner::Identifier Scanner::peekIdentifier(const char* what, unsigned table, bool mayBeIndex) {
  const unsigned octet = octetAhead(0, what);
  if ((octet & format::kIndex) != 0) {
    if (table == kNoTable || !mayBeIndex) fail(std::string(what) + " behind a bit of zero (C.22)");
    const Number index = numberAhead(format::kNumber, 0, "an index");
    note_.begin(what, "C.13, C.25");
    return {noteEntry(table, index.value), std::nullopt, index.size};
  }
  const Number length = numberAhead(format::kOctetsLength, 0, "a length");
  note_.begin(what, table == kNoTable || !mayBeIndex ? "C.22" : "C.13, C.22");
  Literal literal = peekLiteral(length.size, length.value, Content(Content::Kind::UTF8));
  noteLiteral(literal);
  std::uint32_t index = 0;
  if (table != kNoTable) {
    index = tables_.strings(table).add(literal.excerpt);
    noteAdded(tables_.strings(table).name(), index);
  }
  return {index == 0 ? Name::kUnknown : index, std::move(literal), 0};
}

void Scanner::writeIdentifier(Identifier identifier) {
  if (identifier.literal) {
    writeLiteral(std::move(*identifier.literal));
  } else {
    write(identifier.size);
  }
}

std::uint32_t Scanner::scanIdentifier(const char* what, unsigned table) {
  Identifier identifier = peekIdentifier(what, table);
  const std::uint32_t index = identifier.index;
  writeIdentifier(std::move(identifier));
  return index;
}

// --- Non-identifying strings (C.14, C.19) ---

void Scanner::scanString(const char* what, const char* clause, unsigned table,
                         const std::string& path) {
  const unsigned octet = octetAhead(0, what);
  std::string clauses = clause;
  if (octet == format::kEmptyString) {
    note_.begin(what, clauses + ", C.26").add(": ").quote({}).path(path);
    return write(1);
  }
  if ((octet & format::kIndex) != 0) {
    const Number index = numberAhead(format::kNumberOrZero, 0, "an index");
    note_.begin(what, clauses + ", C.26");
    noteEntry(table, index.value);
    note_.path(path);
    return write(index.size);
  }
  Encoded encoded = encodedAhead(octet);
  scanEncoded(what, clauses + ", C.19", encoded, table, (octet & format::kStringAdds) != 0, path);
}

/// An encoded string that begins on the third bit of an octet (C.19).
Scanner::Encoded Scanner::encodedAhead(unsigned octet) {
  Encoded encoded{static_cast<Encoding>(octet >> 4 & 3), 0, {}, 1, "C.23"};
  if (encoded.encoding >= Encoding::Alphabet) {
    encoded.number = (octet & 0x0F) << 4 | octetAhead(1, "a number (C.29)") >> 4;
    encoded.head = 2;
  }
  encoded.length = numberAhead(format::kStringLength, encoded.head - 1, "a length");
  encoded.head += encoded.length.size - 1;
  return encoded;
}

// --- Character chunks (C.7, C.15, C.20) ---

void Scanner::scanChunk(unsigned octet) {
  constexpr const char* kWhat = "characters";
  if ((octet & format::kChunkIndex) != 0) {
    const Number index = numberAhead(format::kChunkNumber, 0, "an index");
    note_.begin(kWhat, "C.7, C.15, C.28");
    noteEntry(kChunks, index.value);
    note_.path(open_.path());
    return write(index.size);
  }
  Encoded encoded{static_cast<Encoding>(octet >> 2 & 3), 0, {}, 1, "C.24"};
  if (encoded.encoding >= Encoding::Alphabet) {
    encoded.number = (octet & 0x03) << 6 | octetAhead(1, "a number (C.29)") >> 2;
    encoded.head = 2;
  }
  encoded.length = numberAhead(format::kChunkLength, encoded.head - 1, "a length");
  encoded.head += encoded.length.size - 1;
  scanEncoded(kWhat, "C.7, C.15, C.20", encoded, kChunks, (octet & format::kChunkAdds) != 0,
              open_.path());
}

// --- Encoding formats ---

void Scanner::scanEncoded(const char* what, std::string clauses, const Encoded& encoded,
                          unsigned table, bool adds, const std::string& path) {
  clauses += std::string(", ") + encoded.clause;
  std::string format;
  const Content content = contentOf(encoded, clauses, format);
  const Literal literal = peekLiteral(encoded.head, encoded.length.value, content);
  note_.begin(what, clauses).add(format);
  noteLiteral(literal);
  if (adds) {
    noteAdded(tables_.strings(table).name(), tables_.strings(table).add(literal.excerpt));
  }
  note_.path(path);
  writeLiteral(literal);
}

/// What the octets of a literal are.
/// @param clauses get those that say so
/// @param format  gets the words for it
Content Scanner::contentOf(const Encoded& encoded, std::string& clauses, std::string& format) {
  switch (encoded.encoding) {
    case Encoding::UTF8:
      return Content(Content::Kind::UTF8);
    case Encoding::UTF16:
      format = ", UTF-16";
      return Content(Content::Kind::UTF16);
    case Encoding::Alphabet:
      break;
    case Encoding::Algorithm:
      return contentOfAlgorithm(encoded, clauses, format);
  }
  const unsigned number = encoded.number + 1;
  clauses += ", C.29";
  if (number <= format::kLastBuiltInAlphabet) clauses += number == 1 ? ", 9.1" : ", 9.2";
  format = ", restricted alphabet " + std::to_string(number);
  const auto found = alphabets_.find(number);
  if (found != alphabets_.end()) return Content(found->second);
  const bool isOwn = number >= format::kFirstOwnAlphabet;
  if (isOwn && tables_.hasUnknownEntries) return Content(Content::Kind::Hexadecimal);
  fail(isOwn ? "a restricted alphabet of the vocabulary (C.29)"
             : "a restricted alphabet that is not reserved (7.2.19)",
       0, "found " + std::to_string(number));
}

Content Scanner::contentOfAlgorithm(const Encoded& encoded, std::string& clauses,
                                    std::string& format) {
  const unsigned number = encoded.number + 1;
  const Excerpt* const name = tables_.strings(kAlgorithms).find(number);
  const bool isUnknown = number >= format::kFirstOwnAlgorithm && tables_.hasUnknownEntries;
  if (name == nullptr && !isUnknown) {
    fail(number >= format::kFirstOwnAlgorithm
             ? "an encoding algorithm of the vocabulary (C.29)"
             : "an encoding algorithm that is not reserved (7.2.20)",
         0, "found " + std::to_string(number));
  }
  clauses += ", C.29";
  format = ", algorithm " + std::to_string(number) + " ";
  if (number <= format::kLastBuiltInAlgorithm) {
    clauses += std::string(", ") + kClausesOfBuiltIn[number - 1];
    format += name->text;
  } else {
    format += isUnknown ? "of the external vocabulary" : quoted(*name);
  }
  const Content content = Content::ofAlgorithm(number);
  if (encoded.length.value % content.sizeOfValue() != 0) {
    fail("a length that is a multiple of " + std::to_string(content.sizeOfValue()),
         encoded.head - encoded.length.size, "found " + std::to_string(encoded.length.value));
  }
  return content;
}

// --- Literals ---

Scanner::Literal Scanner::peekLiteral(std::size_t head, std::uint64_t length,
                                      const Content& content) {
  const std::uint64_t most = content.isBoolean() ? kExcerptOfBooleans : Excerpt::kMost;
  const auto wanted = static_cast<std::size_t>(std::min(length, most));
  std::string_view octets = cursor_.view(head + wanted).substr(head);
  octets = octets.substr(0, wanted);
  Literal literal{head, length, content, {{}, octets.size() == length}};
  Content state = content;
  while (!octets.empty()) {
    const std::size_t size = state.sizeOfPiece(octets, literal.excerpt.isWhole);
    state.append(octets.substr(0, size), size == octets.size() && literal.excerpt.isWhole,
                 literal.excerpt.text);
    octets.remove_prefix(size);
    // What is left of an excerpt may be a part of a character.
    if (!literal.excerpt.isWhole && octets.size() < TextForm::kMostOctets) break;
  }
  return literal;
}

void Scanner::noteLiteral(const Literal& literal) {
  if (!literal.excerpt.isWhole) {
    note_.add(", ", literal.length).add(" octets");
  } else if (literal.content.isText()) {
    note_.add(": ").quote(literal.excerpt);
  } else {
    note_.add(": ").value(literal.excerpt.text);
  }
}

void Scanner::writeLiteral(Literal literal, std::string* whole) {
  const bool explainsItself = literal.excerpt.isWhole;
  if (explainsItself && whole != nullptr) *whole = literal.excerpt.text;
  if (explainsItself && literal.head + literal.length <= TextForm::kMostAligned) {
    return write(literal.head + static_cast<std::size_t>(literal.length));
  }
  if (literal.length > kLong) whenLong_();
  write(literal.head);
  ++extraLevels_;
  std::uint64_t left = literal.length;
  std::string text;
  while (left > 0) {
    std::string_view octets = cursor_.view(TextForm::kMostOctets).substr(0, TextForm::kMostOctets);
    if (octets.size() > left) octets = octets.substr(0, static_cast<std::size_t>(left));
    if (octets.empty()) fail(std::to_string(left) + " more octets");
    if (explainsItself) {
      left -= octets.size();
      if (form_.isWanted(cursor_.offset())) form_.line(cursor_.offset(), octets);
      cursor_.pass(octets.size());
      continue;
    }
    octets = octets.substr(0, literal.content.sizeOfPiece(octets, octets.size() == left));
    left -= octets.size();
    text.clear();
    literal.content.append(octets, left == 0, text);
    if (whole != nullptr && whole->size() <= kLongestAlphabet) whole->append(text);
    note_.clear();
    if (literal.content.isText()) {
      note_.quote({text});
    } else {
      note_.value(text);
    }
    write(octets.size());
  }
  --extraLevels_;
}

}  // namespace tool::octets
