#include <Allocations.h>
#include <gtest/gtest.h>

#include <cstdint>

#include "X891ReaderSupport.h"
#include "X891ReaderValues.h"

// Documents that make a reader keep something for nearly each of their octets. What it keeps counts
// before the memory is gone: no document takes more than the limit on tables says, beside a small
// multiple of its own size.

namespace x891_test {
namespace {

using Tavrin::properties::amplificationThreshold;
using Tavrin::properties::maximumTableOctets;

constexpr std::size_t kMebi = std::size_t{1} << 20;

struct Outcome {
  std::string end;
  std::size_t memory;
};

Outcome parse(const std::string& document, std::uint64_t tableOctets) {
  Tavrin::XMLReader_X891 reader;
  std::uint64_t anyNumber = UINT64_MAX;
  reader.setProperty(amplificationThreshold, &anyNumber);
  reader.setProperty(maximumTableOctets, &tableOctets);
  std::istringstream stream(document);
  const std::size_t before = allocations::inUse();
  allocations::resetPeak();
  std::string end = outcomeOf([&] { reader.parse(stream); });
  return {std::move(end), allocations::peak() - before};
}

/// Without the place.
std::string messageOf(const Outcome& outcome) {
  return outcome.end.substr(0, outcome.end.rfind(" ("));
}

/// So many times the octets, each time with another number in place of `#`.
std::string numbered(std::size_t count, const std::string& written) {
  const std::size_t sign = written.find('#');
  const std::string head = octets(written.substr(0, sign));
  const std::string tail = octets(written.substr(sign + 1));
  std::string all;
  for (std::size_t i = 0; i < count; ++i) all += head + std::to_string(1000000 + i) + tail;
  return all;
}

std::string again(std::size_t count, const std::string& written) {
  const std::string piece = octets(written);
  std::string all;
  for (std::size_t i = 0; i < count; ++i) all += piece;
  return all;
}

/// So many names n1000000, ..., as attributes of the root, which has children.
std::string withAttributes(std::size_t count) {
  return document("7C 00 'a'") + numbered(count, "78 07 'n' # FF") + octets("F0");
}

/// A start tag with all of them by their index.
std::string attributesByIndex(std::size_t count, const std::string& value) {
  std::string all = octets("40");
  for (std::size_t i = 0; i < count; ++i) {
    if (i < 64) {
      all += static_cast<char>(i);
    } else if (i < 8256) {
      all += static_cast<char>(0x40 | (i - 64) >> 8);
      all += static_cast<char>(i - 64);
    } else {
      all += static_cast<char>(0x60 | (i - 8256) >> 16);
      all += static_cast<char>((i - 8256) >> 8);
      all += static_cast<char>(i - 8256);
    }
    all += octets(value);
  }
  return all;
}

struct Document {
  const char* name;
  std::string octets;
};

/// Each would take some hundred octets for a few of its own, and more than it may.
std::vector<Document> greedy() {
  constexpr std::size_t kMany = 40000;
  return {
      {"DeclarationsInsideEachOther",
       document("38 CC F0 3C 00 'a'") + again(8 * kMany, "38 CC F0 00")},
      {"PrefixesOfOneElement", document("38") + numbered(kMany, "CF 07 'p' # 00 'u'")},
      {"PrefixesInsideEachOther", document("38 CF 07 'p1000000' 00 'u' F0 3C 00 'a'") +
                                      numbered(kMany, "38 CF 07 'q' # 81 F0 00")},
      {"NamespacesInsideEachOther",
       document("38 CF 00 'p' 00 'u' F0 3C 00 'a'") + numbered(kMany, "38 CF 81 06 # F0 00")},
      {"ElementNames", document("3C 00 'a'") + numbered(kMany, "3C 07 'n' # F0")},
      {"ElementNamesOfOneLocalName",
       document("38 CF 00 'p' 00 'u' F0 3C 00 'a'") + again(2 * kMany, "3F 81 81 80 F0")},
      {"AttributeNames", withAttributes(kMany)},
      {"Values", document("3C 00 'a'") + numbered(kMany, "7C 00 'e' 78 00 'k' 46 # FF")},
      {"Chunks", document("3C 00 'a'") + numbered(kMany, "92 04 #")},
      {"OneChunkAgainAndAgain", document("3C 00 'a'") + again(8 * kMany, "90 'x'")},
      {"Targets", document("3C 00 'a'") + numbered(kMany, "E1 07 't' # FF")},
      {"Identifiers", document("3C 00 'a'") + numbered(kMany, "CA 07 'e' # 00 's'")},
      {"HeldBackComments", document("C4 F0 E2 40 'x'") + again(8 * kMany, "E2 80")},
      {"HeldBackInstructions", document("C4 F0 E1 00 't' FF") + again(8 * kMany, "E1 80 FF")},
  };
}

class X891ReaderMemory : public testing::Test {
 protected:
  void SetUp() override {
    if (!allocations::areCounted()) GTEST_SKIP() << "valgrind has functions of its own in place";
  }
};

TEST_F(X891ReaderMemory, OfGreedyDocumentsIsLimited) {
  constexpr std::uint64_t kLimit = 4 * kMebi;
  for (const Document& document : greedy()) {
    const Outcome outcome = parse(document.octets, kLimit);
    EXPECT_EQ(
        "SAXParseException: Tables larger than 4194304 octets (property maximum-table-octets)",
        messageOf(outcome))
        << document.name;
    // Elements that are open take a few octets each; none is without an octet of its own.
    EXPECT_LT(outcome.memory, kLimit + 24 * document.octets.size() / 4) << document.name;
    EXPECT_GT(outcome.memory, kLimit / 16) << document.name << " is refused too early";
  }
}

TEST_F(X891ReaderMemory, OfATagIsLimitedAndGivenBack) {
  constexpr std::size_t kMany = 5000;
  std::string document = withAttributes(kMany);
  const std::size_t names = document.size();
  document += attributesByIndex(kMany, "FF") + octets("FF");
  // Both tags fit, one after the other: names count with 344 and 136, attributes with 256 in a tag.
  const std::uint64_t fits = 452 + kMany * (344 + 136 + 256);
  EXPECT_EQ("SAXParseException: Error when decoding element name - invalid index",
            messageOf(parse(document.substr(0, names) + octets("01"), fits)));
  EXPECT_EQ("SAXParseException: Unexpected end of document", messageOf(parse(document, fits)));
  EXPECT_EQ("SAXParseException: Tables larger than " + std::to_string(fits - 1) +
                " octets (property maximum-table-octets)",
            messageOf(parse(document, fits - 1)));
}

TEST_F(X891ReaderMemory, OfDeclarationsIsGivenBack) {
  // An element of a few hundred octets, again and again.
  std::string document = x891_test::document("38 CF 00 'p' 00 'u' F0 3C 00 'a'");
  document += again(1000, "38 CF 81 81 CD 81 F0 3C 80 FF");
  EXPECT_EQ("SAXParseException: The element", parse(document, kMebi).end.substr(0, 30));
  document = x891_test::document("38 CF 00 'p' 00 'u' F0 3C 00 'a'");
  document += again(100000, "38 CF 81 81 F0 00 F0");
  EXPECT_EQ("done", parse(document + octets("FF"), 2000).end);
}

TEST_F(X891ReaderMemory, OfValuesThatATagRefersToIsThatOfTheTable) {
  // One value of 100,000 octets for each of many attributes.
  constexpr std::size_t kMany = 5000;
  const std::string value = bigEndian(100000 - 265, 4) + std::string(100000, 'x');
  std::string document = withAttributes(kMany);
  document.insert(document.size() - 1, octets("78 00 'v' 4C") + value);
  document += attributesByIndex(kMany, "80") + octets("FF FF");
  const Outcome outcome = parse(document, 64 * kMebi);
  EXPECT_EQ("done", outcome.end);
  EXPECT_LT(outcome.memory, 8 * kMebi);
}

/// Keeps what it is told of attributes.
struct Values : Tavrin::ContentHandler {
  std::string text;
  void startElement(const std::string&, const std::string&, const std::string&,
                    const Tavrin::Attributes& attributes) override {
    for (int i = 0; i < attributes.getLength(); ++i) {
      text += attributes.getQName(i) + "=" + attributes.getValue(i) + ";";
    }
  }
};

TEST_F(X891ReaderMemory, OfTablesMayMoveWhileATagRefersToThem) {
  // Each attribute adds a value and refers to the first.
  std::string document = x891_test::document("7C 00 'a' 78 00 'v' 40 'f'");
  std::string expected = "v=f;";
  for (int i = 0; i < 1000; ++i) {
    const std::string number = std::to_string(1000 + i);
    document += octets("78 04 'm'") + number + octets("43") + number + octets("78 04 'n'") +
                number + octets("80");
    expected += "m" + number + "=" + number + ";n" + number + "=f;";
  }
  Tavrin::XMLReader_X891 reader;
  Values values;
  reader.setContentHandler(&values);
  for (int i = 0; i < 2; ++i) {
    values.text.clear();
    std::istringstream stream(document + octets("FF F0"));
    reader.parse(stream);
    EXPECT_EQ(expected, values.text);
  }
}

// --- Text that takes more than its octets ---

/// A chunk of 100,000 octets that are all zero, in an alphabet of two characters.
std::string inTwoCharacters(const std::string& length) {
  return fromComponents("20 08 00 00 07") + "\xF0\x90\x80\x80\xF0\x90\x80\x81" +
         octets("3C 00 'a' 88 3F") + octets(length) + std::string(100000, '\0') + octets("FF");
}

TEST_F(X891ReaderMemory, OfDecodedTextIsLimited) {
  const std::string hundredThousand = EventLog::showOctets(bigEndian(100000 - 259, 4));
  const std::string alphabet = inTwoCharacters(hundredThousand);
  // An octet holds four of 4 octets each.
  const struct {
    std::string document;
    std::uint64_t textOctets;
  } cases[] = {
      {alphabet, 1600000},
      // Booleans: eight words of 6 octets, with the space; the first octet holds four.
      {document("3C 00 'a' 8C 17") + bigEndian(100000 - 259, 4) + std::string(100000, '\0') +
           octets("FF"),
       6 * (8 * 100000 - 4)},
      {document("3C 00 'a' E2 30 5C") + bigEndian(100000 - 265, 4) + std::string(100000, '\0') +
           octets("FF"),
       6 * (8 * 100000 - 4)},
  };
  for (const auto& each : cases) {
    for (const std::uint64_t missing : {0, 1}) {
      Tavrin::XMLReader_X891 reader;
      Tavrin::ContentHandler handler;
      reader.setContentHandler(&handler);
      std::uint64_t most = each.textOctets - missing;
      reader.setProperty(Tavrin::properties::maximumLiteralOctets, &most);
      std::istringstream stream(each.document);
      allocations::resetPeak();
      const std::size_t before = allocations::inUse();
      const std::string outcome = outcomeOf([&] { reader.parse(stream); });
      if (missing == 0) {
        EXPECT_EQ("done", outcome);
      } else {
        EXPECT_EQ("SAXParseException: Literal longer than " + std::to_string(most) +
                      " octets (property maximum-literal-octets)",
                  outcome.substr(0, outcome.rfind(" (")));
        EXPECT_LT(allocations::peak() - before, kMebi / 2);
      }
    }
    // It counts like text from tables, beyond the octets that it was made of.
    Tavrin::XMLReader_X891 reader;
    Tavrin::ContentHandler handler;
    reader.setContentHandler(&handler);
    double factor = 2;
    std::uint64_t threshold = 0;
    reader.setProperty(Tavrin::properties::amplificationFactor, &factor);
    reader.setProperty(amplificationThreshold, &threshold);
    std::istringstream stream(each.document);
    const std::string outcome = outcomeOf([&] { reader.parse(stream); });
    EXPECT_EQ(
        "SAXParseException: More octets delivered for each octet read than the limit allows "
        "(property amplification-factor)",
        outcome.substr(0, outcome.rfind(" (")));
  }
}

// --- Text of attributes, which is kept as long as their tag ---

/// Asks for the text of each attribute, as whoever writes it does.
struct Asking : Tavrin::ContentHandler {
  std::uint64_t textOctets = 0;
  void startElement(const std::string&, const std::string&, const std::string&,
                    const Tavrin::Attributes& attributes) override {
    for (int i = 0; i < attributes.getLength(); ++i) textOctets += attributes.getValue(i).size();
  }
};

TEST_F(X891ReaderMemory, OfDecodedTextInATagIsLimited) {
  constexpr std::size_t kSize = 10000;
  constexpr std::size_t kCount = 64;
  const std::string length = bigEndian(kSize - 265, 4);
  const std::string twoCharacters =
      "20 0C 00 00 07 F0 90 80 80 F0 90 80 81 00 04 'urn:p' ";  // And an algorithm.
  std::string han;
  while (han.size() < kSize) han += octets("4E 2D");
  const std::string zeros(kSize, '\0');
  const struct {
    const char* name;
    std::string value;
    std::uint64_t textOctets;
  } cases[] = {
      // Eight words of 6 octets in each, the last without a space; the first octet holds four.
      {"Booleans", octets("30 5C") + length + zeros, 6 * (8 * kSize - 4) - 1},
      // Four characters of 4 octets in each.
      {"Alphabet", octets("20 FC") + length + zeros, 16 * kSize},
      {"UTF16", octets("1C") + length + han, 3 * kSize / 2},
      {"Application", octets("31 FC") + length + zeros, 20 * kSize},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    ScriptedAlgorithm padding([](std::uint32_t size, std::istream& stream) {
      stream.ignore(size);
      return std::string(20 * std::size_t{size}, ' ');
    });
    Tavrin::EncodingAlgorithmMap algorithms = {{"urn:p", &padding}};
    const auto read = [&](const std::string& content, std::uint64_t most) {
      Tavrin::XMLReader_X891 reader;
      Asking asking;
      reader.setContentHandler(&asking);
      reader.setProperty(Tavrin::properties::registeredEncodingAlgorithms, &algorithms);
      reader.setProperty(maximumTableOctets, &most);
      std::istringstream stream(fromComponents(twoCharacters) + content);
      const std::size_t before = allocations::inUse();
      allocations::resetPeak();
      std::string end = outcomeOf([&] { reader.parse(stream); });
      EXPECT_LT(allocations::peak() - before, most + 3 * (kCount * kSize + each.textOctets));
      return end == "done" ? end + " " + std::to_string(asking.textOctets)
                           : end.substr(0, end.rfind(" ("));
    };
    std::string one = octets("7C 00 'a'");
    std::string many = octets("3C 00 'a'");
    for (std::size_t i = 0; i < kCount; ++i) {
      const std::string attribute = octets("78 02 'k'") + std::to_string(10 + i) + each.value;
      one += attribute;
      many += octets("7C 00 'b'") + attribute + octets("FF");
    }
    // What the text takes beyond its octets.
    const std::uint64_t beyond = kCount * (each.textOctets - kSize);
    const std::string done = "done " + std::to_string(kCount * each.textOctets);
    EXPECT_EQ("SAXParseException: Tables larger than " + std::to_string(beyond) +
                  " octets (property maximum-table-octets)",
              read(one + octets("FF F0"), beyond));
    EXPECT_EQ(done, read(one + octets("FF F0"), 2 * beyond));
    EXPECT_EQ(done, read(many + octets("FF"), beyond / 2));
  }
}

// --- Depth ---

TEST(X891ReaderDepth, IsLimited) {
  using Tavrin::properties::maximumDepth;
  X891Reader reader;
  EXPECT_EQ(UINT64_MAX, *static_cast<std::uint64_t*>(reader.reader.getProperty(maximumDepth)));
  std::uint64_t most = 2;
  reader.reader.setProperty(maximumDepth, &most);
  const EventLog::Lines two = {"startElement(, a, a, [])", "startElement(, a, a, [])"};
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(whole({"startElement(, a, a, [])", "startElement(, a, a, [])", "endElement(, a, a)",
                     "startElement(, a, a, [])", "endElement(, a, a)", "endElement(, a, a)"}),
              reader.read(document("3C 00 'a' 00 F0 00 FF F0")));
    const std::string deep = document("3C 00 'a' 00 00");
    EXPECT_EQ(failure({"startDocument()", two[0], two[1]},
                      "Elements nested deeper than 2 (property maximum-depth)", deep.size()),
              reader.read(deep + octets("FF FF")));
  }
  // Elements without children count, too, and nothing of theirs is read.
  EXPECT_EQ(failure({"startDocument()", two[0], two[1]},
                    "Elements nested deeper than 2 (property maximum-depth)", 10),
            reader.read(document("3C 00 'a' 00 7C 00 'b'")));
  most = 0;
  reader.reader.setProperty(maximumDepth, &most);
  EXPECT_EQ(
      failure({"startDocument()"}, "Elements nested deeper than 0 (property maximum-depth)", 6),
      reader.read(document("3C 00 'a' FF")));
  reader.reader.setProperty(maximumDepth, nullptr);
  EXPECT_EQ(UINT64_MAX, *static_cast<std::uint64_t*>(reader.reader.getProperty(maximumDepth)));
}

TEST_F(X891ReaderMemory, OfALevelIsAFewOctets) {
  constexpr std::size_t kDepth = 1000000;
  const std::string document = x891_test::document("3C 00 'a'") + std::string(kDepth - 1, '\0') +
                               std::string(kDepth / 2, '\xFF') + "\xF0";
  const Outcome outcome = parse(document, 4096);
  EXPECT_EQ("done", outcome.end);
  EXPECT_LT(outcome.memory, 26 * kDepth);
}

TEST_F(X891ReaderMemory, OfALevelWithAnExternalNameIsAFewOctets) {
  constexpr std::size_t kDepth = 1000000;
  static const char* const names[1][3] = {{nullptr, nullptr, "e"}};
  Tavrin::ExternalVocabulary vocabulary;
  vocabulary.elementNameSurrogates = {names, 1, 1};
  Tavrin::ExternalVocabularyMap vocabularies = {{"urn:v", &vocabulary}};
  Tavrin::XMLReader_X891 reader;
  reader.setProperty(Tavrin::properties::externalVocabularies, &vocabularies);
  std::istringstream stream(fromComponents("20 10 00 04 'urn:v'") + std::string(kDepth, '\0') +
                            std::string(kDepth / 2, '\xFF') + "\xF0");
  const std::size_t before = allocations::inUse();
  allocations::resetPeak();
  EXPECT_EQ("done", outcomeOf([&] { reader.parse(stream); }));
  EXPECT_LT(allocations::peak() - before, 74 * kDepth);
}

}  // namespace
}  // namespace x891_test
