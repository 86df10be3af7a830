#include "octets/Note.h"

#include "printing/Text.h"

namespace tool::octets {

Excerpt Excerpt::of(std::string_view text) {
  if (text.size() <= kMost) return {std::string(text)};
  std::size_t size = kMost;
  while ((static_cast<unsigned char>(text[size]) & 0xC0) == 0x80) --size;  // Within a character.
  return {std::string(text.substr(0, size)), false};
}

void Note::paint(const char* colour) {
  if (isColoured_) text_ += colour;
}

Note& Note::begin(std::string_view what, std::string_view clauses) {
  text_.clear();
  paint(colour::kWhat);
  text_ += what;
  paint(colour::kOff);
  if (clauses.empty()) return *this;
  paint(colour::kDim);
  text_ += " (";
  text_ += clauses;
  text_ += ')';
  paint(colour::kOff);
  return *this;
}

Note& Note::add(std::string_view words) {
  text_ += words;
  return *this;
}

Note& Note::add(std::string_view words, std::uint64_t number) {
  text_ += words;
  text_ += std::to_string(number);
  return *this;
}

Note& Note::quote(const Excerpt& text) {
  paint(colour::kValue);
  appendQuoted(text_, text.text);
  if (!text.isWhole) text_ += "...";
  paint(colour::kOff);
  return *this;
}

Note& Note::value(std::string_view words) {
  paint(colour::kValue);
  text_ += words;
  paint(colour::kOff);
  return *this;
}

Note& Note::entry(std::string_view table, std::uint64_t index) {
  text_ += " = ";
  paint(colour::kTable);
  text_ += table;
  text_ += '[';
  text_ += std::to_string(index);
  text_ += ']';
  paint(colour::kOff);
  return *this;
}

Note& Note::adds(std::string_view table, std::uint64_t index) {
  text_ += " -> ";
  paint(colour::kTable);
  text_ += table;
  text_ += index == 0 ? "[full]" : "[" + std::to_string(index) + "]";
  paint(colour::kOff);
  return *this;
}

Note& Note::path(std::string_view path) {
  if (path.empty()) return *this;
  text_ += "  ";
  paint(colour::kPath);
  text_ += path;
  paint(colour::kOff);
  return *this;
}

Note& Note::failure(std::string_view words) {
  text_.clear();
  paint(colour::kFailure);
  text_ += "! ";
  text_ += escaped(words);
  paint(colour::kOff);
  return *this;
}

}  // namespace tool::octets
