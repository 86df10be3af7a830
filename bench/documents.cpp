#include "documents.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>

namespace documents {

namespace {

constexpr char kDeclaration[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

constexpr const char* kWords[] = {"the",  "river",  "carries", "more",  "than",        "water",
                                  "when", "spring", "comes",   "from",  "high",        "valleys",
                                  "and",  "nobody", "counts",  "what",  "it",          "leaves",
                                  "on",   "either", "bank",    "&amp;", "caf\xC3\xA9", "stone"};

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

std::string table(unsigned rows) {
  static const char* const places[] = {"Lisbon", "Reykjavik", "Wellington", "Ulaanbaatar", "Quito"};
  static const char* const states[] = {"open", "closed", "on hold"};
  constexpr std::uint64_t kKeys = 9999991;  // A prime, so that multiples of another are distinct.
  std::mt19937 random(11);
  std::string text = std::string(kDeclaration) + "<table>\n";
  for (unsigned i = 0; i < rows; ++i) {
    text += "  <row key=\"K-" + std::to_string(10000000 + i * std::uint64_t{7368787} % kKeys) +
            "\"><place>" + pick(places, random) + "</place><state>" + pick(states, random) +
            "</state><n>" + std::to_string(random() % 10) + "</n></row>\n";
  }
  return text + "</table>\n";
}

std::string message() {
  return std::string(kDeclaration) +
         R"xml(<soap:Envelope xmlns:soap="http://www.w3.org/2003/05/soap-envelope" xmlns:wsa="http://www.w3.org/2005/08/addressing">
  <soap:Header>
    <wsa:Action soap:mustUnderstand="true">urn:icons/Publish</wsa:Action>
    <wsa:MessageID>urn:uuid:6f2d4c1e-93a7-4b11-8c55-0d6b1f2a7e90</wsa:MessageID>
    <wsa:To>https://icons.example/service</wsa:To>
    <wsa:ReplyTo><wsa:Address>http://www.w3.org/2005/08/addressing/anonymous</wsa:Address></wsa:ReplyTo>
    <s:Security xmlns:s="urn:example:security" s:level="signed">
      <s:Timestamp><s:Created>2024-02-29T12:00:00Z</s:Created><s:Expires>2024-02-29T12:05:00Z</s:Expires></s:Timestamp>
    </s:Security>
  </soap:Header>
  <soap:Body>
    <publish xmlns="urn:example:icons">
      <collection>weather</collection><revision date="2024-02-28">17</revision><author>Ada</author><licence>CC0-1.0</licence>
      <svg xmlns="http://www.w3.org/2000/svg" width="24" height="24" viewBox="0 0 24 24" role="img" aria-label="rain">
        <title>Rain</title>
        <defs><linearGradient id="sky" gradientUnits="userSpaceOnUse" x1="0" y1="0" x2="0" y2="24">
          <stop offset="0" stop-color="#89b" stop-opacity="0.9"/><stop offset="1" stop-color="#cde"/></linearGradient></defs>
        <g id="cloud" transform="translate(1 2)" fill="none" stroke="currentColor" stroke-width="1.5" stroke-linecap="round">
          <path d="M4 14a5 5 0 0 1 1-9 7 7 0 0 1 13 2 4 4 0 0 1 1 8"/>
          <line class="drop" x1="8" y1="17" x2="7" y2="20"/><circle cx="12" cy="19" r="1"/>
          <rect x="15" y="17" rx="0.5" width="1" height="3"/><ellipse cx="18" cy="19" ry="1.5"/>
          <polyline points="2,22 6,21 10,22"/><text font-size="3" text-anchor="end"><tspan dx="1">mm</tspan></text>
        </g>
        <use href="#cloud" clip-path="url(#frame)"/>
      </svg>
    </publish>
  </soap:Body>
</soap:Envelope>
)xml";
}

std::string text(unsigned paragraphs) {
  std::mt19937 random(42);
  std::string text = std::string(kDeclaration) + "<book>\n";
  for (unsigned i = 0; i < paragraphs; ++i) addParagraph(text, kWords, " ", " indeed", random);
  return text + "</book>\n";
}

std::string prose(unsigned paragraphs) {
  constexpr unsigned kOfChapter = 100;
  std::mt19937 random(44);
  std::string text = std::string(kDeclaration) + "<novel><chapter>\n";
  for (unsigned i = 0; i < paragraphs; ++i) {
    if (i % kOfChapter == kOfChapter - 1) text += "</chapter><chapter>\n";
    text += "<para>";
    const auto lines = 1 + random() % 40;
    for (unsigned line = 0; line < lines; ++line) {
      for (int word = 0; word < 14; ++word) text += std::string(pick(kWords, random)) + ' ';
      text += '\n';
    }
    text += "</para>\n";
  }
  return text + "</chapter></novel>\n";
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
