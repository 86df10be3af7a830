#include "octets/Scanner.h"

#include <algorithm>

// What the scanning of documents, vocabularies, elements and strings has in common.

namespace tool::octets {

std::optional<Break> Scanner::scan() {
  try {
    do {
      scanDocument();
      if (hasTables_) writeTables();
    } while (!cursor_.isAtEnd());
  } catch (const Break& broken) {
    writeRest(broken);
    return broken;
  }
  return std::nullopt;
}

/// @param ahead how many octets precede the one that is not as expected
void Scanner::fail(const std::string& expected, std::size_t ahead) {
  const std::string_view octets = cursor_.view(ahead + 1);
  if (octets.size() <= ahead) fail(expected, octets.size(), "the file ends");
  const auto octet = static_cast<unsigned char>(octets[ahead]);
  fail(expected, ahead, std::string("found ") + kDigits[octet >> 4] + kDigits[octet & 0xF]);
}

void Scanner::fail(const std::string& expected, std::size_t ahead, const std::string& found) {
  throw Break{cursor_.offset() + ahead + 1, "expected " + expected + ", but " + found,
              cursor_.offset()};
}

unsigned Scanner::octetAhead(std::size_t ahead, const char* expected) {
  const std::string_view octets = cursor_.view(ahead + 1);
  if (octets.size() <= ahead) fail(expected, ahead);
  return static_cast<unsigned char>(octets[ahead]);
}

Scanner::Number Scanner::numberAhead(const format::Integer& integer, std::size_t ahead,
                                     const char* expected) {
  const unsigned octet = octetAhead(ahead, expected);
  const auto failHere = [&] { fail(std::string(expected) + " (" + integer.clause + ")", ahead); };
  const format::Form* const form = format::findForm(integer, octet);
  if (form == nullptr) failHere();
  std::uint64_t field = octet & ((1U << form->fieldBits) - 1);
  for (std::size_t i = 1; i <= form->more; ++i) {
    field = field << 8 | octetAhead(ahead + i, expected);
  }
  const bool isLongest = form == &integer.forms[integer.count - 1];
  if (isLongest && (field & ~std::uint64_t{integer.longestField}) != 0) {
    fail("padding of zero bits (" + std::string(integer.clause) + ")", ahead + 1);
  }
  return {field + form->least, std::size_t{1} + form->more};
}

void Scanner::writeAt(std::size_t level, std::size_t size) {
  if (form_.isWanted(cursor_.offset())) {
    form_.line(cursor_.offset(), cursor_.view(size).substr(0, size), level, note_);
  }
  cursor_.pass(size);
}

void Scanner::writeRest(const Break& broken) {
  form_.forgetRemark();
  form_.comment(0, note_.failure("octet " + std::to_string(broken.octet) + ": " + broken.message));
  for (;;) {
    std::string_view octets = cursor_.view(TextForm::kMostOctets);
    octets = octets.substr(0, TextForm::kMostOctets);
    if (octets.empty()) return;
    std::string shown(octets);
    std::ranges::replace_if(
        shown, [](char c) { return c < 0x20 || c > 0x7E; }, '.');
    note_.clear();
    note_.add(shown);
    if (form_.isWanted(cursor_.offset())) form_.line(cursor_.offset(), octets, 0, note_);
    cursor_.pass(octets.size());
  }
}

// --- Tables ---

void Scanner::writeTables() {
  for (const StringTable& table : tables_.all) writeTable(table);
  writeTable(tables_.elements);
  writeTable(tables_.attributes);
}

void Scanner::writeTable(const StringTable& table) {
  if (table.own().empty()) return;
  form_.comment(0, note_.begin(table.name(), {}));
  std::uint64_t index = table.first();
  for (const Excerpt& entry : table.own()) {
    note_.clear();
    form_.comment(1, note_.add("", index++).add("  ").quote(entry));
  }
}

void Scanner::writeTable(const NameTable& table) {
  if (table.own().empty()) return;
  form_.comment(0, note_.begin(table.name(), {}));
  std::uint64_t index = 1;
  for (const Name& name : table.own()) {
    note_.clear();
    note_.add("", index++).add("  ").quote({tables_.qualifiedNameOf(name)});
    if (name.namespaceName != Name::kAbsent) {
      note_.add("  ");
      const Excerpt* const uri = tables_.strings(kNamespaceNames).find(name.namespaceName);
      if (uri != nullptr) {
        note_.quote(*uri);
      } else {
        note_.add("?");
      }
    }
    form_.comment(1, note_);
  }
}

}  // namespace tool::octets
