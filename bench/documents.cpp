#include "documents.h"

#include <array>
#include <charconv>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>

namespace documents {

namespace {

constexpr char kDeclaration[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

template <typename Words>
const char* pick(const Words& words, std::mt19937& random) {
  return words[random() % std::size(words)];
}

/// Adds sentences that end with an element.
template <typename Words>
void addParagraph(std::string& text, const Words& words, const char* between, const char* ending,
                  std::mt19937& random) {
  text += "<p>";
  for (int sentence = 0; sentence < 8; ++sentence) {
    for (int word = 0; word < 12; ++word) text += std::string(pick(words, random)) + between;
    text += std::string("<em>") + pick(words, random) + ending + "</em>. ";
  }
  text += "</p>\n";
}

}  // namespace

std::string records(unsigned count) {
  static const char* const kinds[] = {"order", "return", "refund", "exchange"};
  static const char* const places[] = {"Lisbon", "Reykjavik", "Wellington", "Ulaanbaatar", "Quito"};
  std::mt19937 random(20240229);
  std::string text = std::string(kDeclaration) + "<r:records xmlns:r=\"urn:records\">\n";
  for (unsigned i = 0; i < count; ++i) {
    text += "  <r:record id=\"R" + std::to_string(1000000 + i) + "\" kind=\"" +
            pick(kinds, random) + "\" r:revision-number=\"" + std::to_string(random() % 10) +
            "\">\n    <r:place>" + pick(places, random) +
            "</r:place>\n    <r:amount currency=\"EUR\">" +
            std::to_string(1000000 + random() % 1000000) + "</r:amount>\n  </r:record>\n";
  }
  return text + "</r:records>\n";
}

std::string text(unsigned paragraphs) {
  static const char* const words[] = {
      "the",   "river",  "carries", "more",    "than", "water",  "when",        "spring",
      "comes", "from",   "high",    "valleys", "and",  "nobody", "counts",      "what",
      "it",    "leaves", "on",      "either",  "bank", "&amp;",  "caf\xC3\xA9", "stone"};
  std::mt19937 random(42);
  std::string text = std::string(kDeclaration) + "<book>\n";
  for (unsigned i = 0; i < paragraphs; ++i) addParagraph(text, words, " ", " indeed", random);
  return text + "</book>\n";
}

std::string languages(unsigned paragraphs) {
  struct Language {
    std::array<const char*, 6> words;
    const char* between;
    const char* ending;
  };
  static const Language languages[] = {
      {{"река", "несёт", "больше", "воды", "чем", "весна"}, " ", " действительно"},
      {{"河流", "带来", "，", "春天", "的水", "：高山"}, "", "确实如此"},
      {{"강은", "봄에", "물을", "한없이", "더", "나른다"}, " ", " 정말로"},
      {{"नदी", "वसंत", "में", "अधिक", "पानी", "लाती"}, " ", " वास्तव में"},
      {{"แม่น้ำ", "พา", "น้ำ", "มากกว่า", "ฤดู", "ใบไม้ผลิ"}, "", "จริงๆ"},
      {{"river", "carries", "water 🌊", "spring 🌱", "nobody", "counts"}, " ", " indeed 🎉"}};
  std::mt19937 random(43);
  std::string text = std::string(kDeclaration) + "<book>\n";
  for (unsigned i = 0; i < paragraphs; ++i) {
    const auto& [words, between, ending] = languages[i % std::size(languages)];
    addParagraph(text, words, between, ending, random);
  }
  return text + "</book>\n";
}

std::string attributes(unsigned count) {
  static const char* const styles[] = {"solid", "dashed", "dotted"};
  std::mt19937 random(7);
  std::string text =
      std::string(kDeclaration) + "<d:drawing xmlns:d=\"u:d\" xmlns:s=\"u:s\" xmlns:m=\"u:m\">\n";
  for (unsigned i = 0; i < count; ++i) {
    text += "<d:shape";
    for (const char* name : {"left", "right", "upper", "lower"}) {
      text += std::string(" ") + name + "=\"" + std::to_string(random() % 2000) + "\"";
    }
    for (const char* name : {"s:stroke", "s:fill", "s:marker"}) {
      text += std::string(" ") + name + "=\"" + pick(styles, random) + "\"";
    }
    text += " m:identifier=\"shape-" + std::to_string(random() % 100000) + "\" m:layer=\"" +
            std::to_string(random() % 8) + "\"/>\n";
  }
  return text + "</d:drawing>\n";
}

std::string nested(unsigned elements, unsigned depth) {
  std::string text = std::string(kDeclaration) + "<chains>";
  for (unsigned count = 0; count == 0 || count + depth <= elements; count += depth) {
    for (unsigned i = 0; i < depth; ++i) text += "<link>";
    for (unsigned i = 0; i < depth; ++i) text += "</link>";
  }
  return text + "</chains>\n";
}

std::string crowded(unsigned attributes, unsigned length) {
  std::string text = std::string(kDeclaration) + "<crowd>";
  for (unsigned count = 0; count == 0 || count + length <= attributes; count += length) {
    text += "<group";
    for (unsigned i = 0; i < length; ++i) {
      text += " a" + std::to_string(i) + "='" + std::to_string(i % 100) + '\'';
    }
    text += "/>";
  }
  return text + "</crowd>\n";
}

std::vector<float> floats(unsigned count) {
  std::mt19937 random(3);
  std::vector<float> numbers;
  numbers.reserve(count);
  for (unsigned i = 0; i < count; ++i) {
    numbers.push_back(static_cast<float>(static_cast<int>(random() % 2000000) - 1000000) / 1000.0F);
  }
  return numbers;
}

std::string mesh(const std::vector<float>& numbers) {
  std::string text = std::string(kDeclaration) + "<mesh>";
  std::array<char, 32> digits;
  for (const float number : numbers) {
    if (text.back() != '>') text += ' ';
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    text.append(digits.data(), end);
  }
  return text + "</mesh>\n";
}

std::string file(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(stream), {}};
  if (!stream) throw std::runtime_error("cannot read " + path);
  return text;
}

}  // namespace documents
