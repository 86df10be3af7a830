// What inspect and assemble do with much: long strings, many names, deep elements.
#include <Tavrin/Tavrin.h>
#include <gtest/gtest.h>

#include <sstream>

#include "Allocations.h"
#include "HexOctets.h"
#include "OctetsSupport.h"

namespace {

using tool::octets::Finding;
using tool::octets::Inspection;

/// A document with one chunk of a length, without holding it.
class LongChunk {
 public:
  explicit LongChunk(std::uint32_t length) : length_(length) {
    start_ = octets("E0 00 00 01 00 3C 00 'a' 83");
    for (const unsigned shift : {24U, 16U, 8U, 0U}) {
      start_ += static_cast<char>((length - 259) >> shift);
    }
  }

  std::size_t operator()(char* target, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
      if (position_ == start_.size() + length_ + 1) return i;
      target[i] = position_ < start_.size()             ? start_[position_]
                  : position_ < start_.size() + length_ ? 'x'
                                                        : '\xFF';
      ++position_;
    }
    return size;
  }

 private:
  std::string start_;
  std::uint64_t length_;
  std::uint64_t position_ = 0;
};

}  // namespace

TEST(OctetsScale, TakesNoMoreMemoryForALongString) {
  if (!allocations::areCounted()) GTEST_SKIP() << "allocations are not counted";
  // Strings up to 16 MiB are judged, and thus read as a whole.
  const auto peakFor = [](std::uint32_t length) {
    return allocations::peakOf([length] {
      std::uint64_t octets = 0;
      tool::octets::Assembler assembler("text",
                                        [&](std::string_view part) { octets += part.size(); });
      Inspection inspection({}, LongChunk(length),
                            [&](std::string_view text) { assembler.read(text); });
      EXPECT_FALSE(inspection.run());
      assembler.end();
      EXPECT_EQ(octets, length + 14);
    });
  };
  constexpr std::uint32_t kJudged = 16U << 20U;
  const std::size_t small = peakFor(100000);
  EXPECT_LT(small, 2U << 20U);
  EXPECT_LT(peakFor(kJudged + 1), 2 * small);
}

// Names, values and texts from the first to the longest form of an index that documents need.
TEST(OctetsScale, NamesTheEntriesOfLargeTables) {
  constexpr int kCount = 8500;
  std::ostringstream stream;
  {
    Tavrin::XMLWriter_X891 writer;
    writer.setOutputStream(&stream);
    writer.startDocument();
    writer.startElement("", "r", "r", Tavrin::AttributesImpl());
    for (int round = 0; round < 2; ++round) {
      for (int i = 0; i < kCount; ++i) {
        const std::string number = std::to_string(i);
        Tavrin::AttributesImpl attributes;
        attributes.addAttribute("", "a" + number, "a" + number, "CDATA", "v" + number);
        writer.startElement("", "e" + number, "e" + number, attributes);
        writer.characters("t" + number);
        writer.endElement("", "e" + number, "e" + number);
      }
    }
    writer.endElement("", "r", "r");
    writer.endDocument();
  }
  const std::string document = stream.str();
  const Inspected shown = inspected(document);
  ASSERT_FALSE(shown.finding) << shown.finding->message;
  EXPECT_TRUE(assembled(shown.text) == document);
  std::size_t place = 0;
  const auto expectNext = [&](const std::string& text) {
    place = shown.text.find(text, place);
    ASSERT_NE(place, std::string::npos) << text;
  };
  for (int round = 0; round < 2; ++round) {
    const std::string arrow = round == 0 ? " -> " : " = ";
    for (int i = 0; i < kCount; ++i) {
      const std::string number = std::to_string(i);
      const std::string index = "[" + std::to_string(i + 1) + "]";
      const auto words = [&](const char* table) { return arrow + table + index; };
      ASSERT_NO_FATAL_FAILURE(expectNext(arrow + "ELEMENT NAME[" + std::to_string(i + 2) + "]"));
      ASSERT_NO_FATAL_FAILURE(expectNext("  /r/e" + number + "\n"));
      ASSERT_NO_FATAL_FAILURE(expectNext(words("ATTRIBUTE NAME")));
      ASSERT_NO_FATAL_FAILURE(expectNext("  /r/e" + number + "/@a" + number + "\n"));
      ASSERT_NO_FATAL_FAILURE(expectNext("\"v" + number + "\"" + words("ATTRIBUTE VALUE")));
      ASSERT_NO_FATAL_FAILURE(expectNext("\"t" + number + "\"" + words("CONTENT CHARACTER CHUNK")));
    }
  }
}

// A path that is cut is the same, whether elements were opened or closed before.
TEST(OctetsScale, ShowsThePathOfDeepElements) {
  constexpr int kDepth = 3000;
  std::string document = octets("E0 00 00 01 00 3C 00 'a' 3C 01 'bb'");
  for (int i = 2; i < kDepth; ++i) document += static_cast<char>(i % 2);
  for (int i = 0; i < kDepth; ++i) document += '\xF0';
  document += '\xF0';
  const Inspected shown = inspected(document);
  ASSERT_FALSE(shown.finding) << shown.finding->message;
  EXPECT_TRUE(assembled(shown.text) == document);
  std::vector<std::string> paths;
  std::istringstream lines(shown.text);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t place = line.find("  /") != line.npos ? line.find("  /") : line.find("  ...");
    if (place != line.npos) paths.push_back(line.substr(place + 2));
  }
  ASSERT_EQ(paths.size(), 2U * kDepth);
  std::string whole;
  for (int i = 0; i < kDepth; ++i) {
    whole += i % 2 == 0 ? "/a" : "/bb";
    std::string path = whole;
    if (path.size() > 80) {
      path = path.substr(path.size() - 80);
      path = "..." + path.substr(path.find('/'));
    }
    ASSERT_EQ(paths[static_cast<std::size_t>(i)], path);
    ASSERT_EQ(paths[2 * kDepth - 1 - static_cast<std::size_t>(i)], path);
  }
}
