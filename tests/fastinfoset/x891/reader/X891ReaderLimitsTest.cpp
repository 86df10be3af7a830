#include <Allocations.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "X891ReaderValues.h"

// The limits that an application can set, each with the attack that it stops, and the memory that
// documents take.

namespace x891_test {
namespace {

using Tavrin::properties::amplificationFactor;
using Tavrin::properties::amplificationThreshold;
using Tavrin::properties::maximumLiteralOctets;
using Tavrin::properties::maximumTableOctets;

const char* const kAmplified =
    "More octets delivered for each octet read than the limit allows (property "
    "amplification-factor)";
constexpr std::size_t kMebi = std::size_t{1} << 20;

template <typename Value>
Value get(Tavrin::XMLReader& reader, const char* property) {
  return *static_cast<Value*>(reader.getProperty(property));
}

template <typename Value>
void set(Tavrin::XMLReader& reader, const char* property, Value value) {
  reader.setProperty(property, &value);
}

/// Counts what it is told, without keeping it.
class Counter : public Tavrin::ContentHandler, public Tavrin::EncodingAlgorithmContentHandler {
 public:
  std::size_t elements = 0;
  std::size_t octets = 0;

  void startElement(const std::string&, const std::string&, const std::string&,
                    const Tavrin::Attributes& attributes) override {
    ++elements;
    for (int i = 0; i < attributes.getLength(); ++i) octets += attributes.getValue(i).size();
  }
  void characters(const std::string& text) override { octets += text.size(); }
};

/// How a parse ended, and the most memory that it took at a time.
struct Outcome {
  std::string end;
  std::size_t memory;
};

Outcome parse(Tavrin::XMLReader& reader, const std::string& document) {
  std::istringstream stream(document);
  const std::size_t before = allocations::inUse();
  allocations::resetPeak();
  std::string end = outcomeOf([&] { reader.parse(stream); });
  return {std::move(end), allocations::peak() - before};
}

// --- The properties ---

template <typename Value>
void checkLimit(const char* property, Value byDefault, Value other) {
  Tavrin::XMLReader_X891 reader;
  EXPECT_EQ(byDefault, get<Value>(reader, property));
  // The value is copied.
  set<Value>(reader, property, other);
  EXPECT_EQ(other, get<Value>(reader, property));
  reader.setProperty(property, nullptr);
  EXPECT_EQ(byDefault, get<Value>(reader, property));
}

TEST(X891ReaderLimits, AreProperties) {
  checkLimit<double>(amplificationFactor, 1000, 1);
  checkLimit<std::uint64_t>(amplificationThreshold, 8 * kMebi, 0);
  checkLimit<std::uint64_t>(maximumTableOctets, 512 * kMebi, 0);
  checkLimit<std::uint64_t>(maximumLiteralOctets, 1024 * kMebi, 0);
}

TEST(X891ReaderLimits, FactorIsAtLeastOne) {
  Tavrin::XMLReader_X891 reader;
  set(reader, amplificationFactor, 2.5);
  for (const double factor :
       {0.999, 0.0, -1.0, std::nan(""), -std::numeric_limits<double>::infinity()}) {
    EXPECT_EQ(
        std::string("SAXException: Property \"") + amplificationFactor + "\" must be at least 1",
        outcomeOf([&] { set(reader, amplificationFactor, factor); }));
    EXPECT_EQ(2.5, get<double>(reader, amplificationFactor));
  }
  set(reader, amplificationFactor, std::numeric_limits<double>::infinity());
  EXPECT_TRUE(std::isinf(get<double>(reader, amplificationFactor)));
}

TEST(X891ReaderLimits, OutliveDocuments) {
  X891Reader reader;
  set<std::uint64_t>(reader.reader, maximumLiteralOctets, 3);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(wholeContent({"characters(abc)"}), reader.read(documentOfContent("82 00 'abc'")));
    EXPECT_EQ(failure({"startDocument()", "startElement(, a, a, [])"},
                      "Literal longer than 3 octets (property maximum-literal-octets)", 10),
              reader.read(documentOfContent("82 01 'abcd'")));
  }
}

// --- Literals ---

TEST(X891ReaderLimits, LiteralsOfEachKindHaveALimit) {
  const char* const message = "Literal longer than 2 octets (property maximum-literal-octets)";
  const struct {
    const char* fits;
    const char* read;  ///< Up to where the longer one is refused.
    const char* rest;
    bool inElement;
  } cases[] = {
      {"3C 01 'ab' FF", "3C 02", "'abc' FF", false},
      {"3C 00 'a' 81 'ab' FF", "82 00", "'abc' FF", true},
      {"3C 00 'a' 85 00 'b' FF", "86 01", "00 'b' 00 'c' FF", true},
      {"3C 00 'a' 88 01 12 FF FF", "88 02 00", "12 34 56 FF", true},
      {"3C 00 'a' 8C 01 12 34 FF", "8C 02 00", "12 34 56 FF", true},
      {"3C 00 'a' E2 01 'ab' FF", "E2 02", "'abc' FF", true},
      {"3C 00 'a' E1 01 'ab' 01 'ab' FF", "E1 01 'ab' 02", "'abc' FF", true},
      {"7C 00 'a' 78 01 'bc' 01 'ab' FF F0", "7C 00 'a' 78 00 'b' 02", "'abc' FF F0", false},
  };
  for (const auto& each : cases) {
    X891Reader reader;
    set<std::uint64_t>(reader.reader, maximumLiteralOctets, 2);
    const std::string fits = reader.read(document(each.fits));
    EXPECT_EQ(std::string::npos, fits.find("Exception")) << fits;
    const std::string read =
        document((each.inElement ? "3C 00 'a' " : "") + std::string(each.read));
    EventLog::Lines events = {"startDocument()"};
    if (each.inElement) events.push_back("startElement(, a, a, [])");
    EXPECT_EQ(failure(events, message, read.size()), reader.read(read + octets(each.rest)));
  }
}

TEST(X891ReaderLimits, ClaimedLengthsTakeNoMemory) {
  for (const char* written :
       {"3C 60 FF FF FE BF", "3C 00 'a' 83 FF FF FE FD", "3C 00 'a' 87 FF FF FE FD",
        "3C 00 'a' 88 03 FF FF FE FD", "3C 00 'a' 8C 0F FF FF FE FC", "3C 00 'a' 8C 27 FF FF FE FC",
        "3C 00 'a' E2 0C FF FF FE F7"}) {
    Tavrin::XMLReader_X891 reader;
    set<std::uint64_t>(reader, maximumLiteralOctets, UINT64_MAX);
    const Outcome outcome = parse(reader, document(written) + "some octets");
    EXPECT_EQ("SAXParseException: Unexpected end of document", outcome.end.substr(0, 45));
    EXPECT_LT(outcome.memory, kMebi) << written;
  }
  // So do claimed numbers of items.
  for (const char* written : {"40 8F FF 7F 00 'i' 00 'd'", "20 00 04 8F FF 7F 00 'c'",
                              "20 00 82 00 00 'l' 8F FF 7F 00 00", "20 08 00 80 00 7F 01 'ab'"}) {
    Tavrin::XMLReader_X891 reader;
    const Outcome outcome = parse(reader, fromComponents(written));
    EXPECT_EQ("SAXParseException: Unexpected end of document", outcome.end.substr(0, 45));
    EXPECT_LT(outcome.memory, kMebi) << written;
  }
}

// --- Tables ---

TEST(X891ReaderLimits, TablesHaveALimitTogether) {
  const char* const message = "Tables larger than 582 octets (property maximum-table-octets)";
  // A string counts with its octets and 128, a name with three times them and 320.
  X891Reader reader;
  set<std::uint64_t>(reader.reader, maximumTableOctets, 129 + 323 + 130);
  EXPECT_EQ(wholeContent({"characters(x)"}), reader.read(documentOfContent("90 'x'")));    // 581
  EXPECT_EQ(wholeContent({"characters(xy)"}), reader.read(documentOfContent("91 'xy'")));  // 582
  EXPECT_EQ(failure({"startDocument()", "startElement(, a, a, [])"}, message, 13),
            reader.read(documentOfContent("92 00 'xyz'")));
  EXPECT_EQ(wholeContent({"characters(xyz)"}), reader.read(documentOfContent("82 00 'xyz'")));
  // Each document begins anew.
  EXPECT_EQ(wholeContent({"characters(xy)"}), reader.read(documentOfContent("91 'xy'")));
}

TEST(X891ReaderLimits, TablesOfAnInitialVocabularyCount) {
  for (const char* table :
       {"08 00", "04 00", "02 00", "01 00", "00 80", "00 40", "00 20", "00 10", "00 08", "00 04"}) {
    X891Reader reader;
    set<std::uint64_t>(reader.reader, maximumTableOctets, 2 * 129);
    const std::string two = fromComponents("20 " + std::string(table) + " 02 00 'x' 00 'y' 00 'z'");
    EXPECT_EQ(
        failure({}, "Tables larger than 258 octets (property maximum-table-octets)", two.size()),
        reader.read(two))
        << table;
  }
  // Names count with the strings that they are made of.
  X891Reader reader;
  set<std::uint64_t>(reader.reader, maximumTableOctets, 136 + 343);
  const std::string names = fromComponents("20 00 82 00 07 'longname' 00 00 00");
  EXPECT_EQ(
      failure({}, "Tables larger than 479 octets (property maximum-table-octets)", names.size()),
      reader.read(names));
}

TEST(X891ReaderLimits, WhatWaitsForTheRootElementCounts) {
  X891Reader reader;
  set<std::uint64_t>(reader.reader, maximumTableOctets, 1500);
  // 514 for each comment: the third is too much.
  EXPECT_EQ(failure({"startDocument()"},
                    "Tables larger than 1500 octets (property maximum-table-octets)", 19),
            reader.read(document("C4 F0 E2 01 'ab' E2 01 'cd' E2 01 'ef' 3C 00 'a' FF")));
  // Without a document type nothing waits.
  EXPECT_EQ(whole({"comment(ab)", "comment(cd)", "comment(ef)", "startElement(, a, a, [])",
                   "endElement(, a, a)"}),
            reader.read(document("E2 01 'ab' E2 01 'cd' E2 01 'ef' 3C 00 'a' FF")));
}

TEST(X891ReaderLimits, DocumentThatFillsTablesAloneIsStopped) {
  std::string document = x891_test::document("3C 00 'a'");
  for (int i = 0; i < 4000; ++i) document += octets("E2 48 F7") + std::string(256, 'x');
  Tavrin::XMLReader_X891 reader;
  set<std::uint64_t>(reader, maximumTableOctets, kMebi / 2);
  // 452 for the element; 384 a comment: 1364 fit into 524288.
  const Outcome outcome = parse(reader, document);
  EXPECT_EQ(
      "SAXParseException: Tables larger than 524288 octets (property maximum-table-octets) (-1:" +
          std::to_string(8 + 1365 * 259) + ")",
      outcome.end);
  EXPECT_LT(outcome.memory, 2 * kMebi);
}

// --- Amplification ---

/// A comment of that many octets, then the comment again and again.
std::string repeated(std::size_t size, std::size_t times) {
  std::string all = document("3C 00 'a' E2 4C") + bigEndian(size - 265, 4) + std::string(size, 'x');
  for (std::size_t i = 1; i < times; ++i) all += octets("E2 80");
  return all + octets("FF");
}

TEST(X891ReaderLimits, RepeatedStringIsStopped) {
  Tavrin::XMLReader_X891 reader;
  // The element counts 4 octets, both events of it, and the comment each time it comes from the
  // table. It is delivered until 8 MiB are passed, and until that is more than 1000 octets for each
  // that was read.
  constexpr std::size_t kSize = 100000;
  const std::size_t head = 8 + 6 + kSize;
  // After n comments, these many octets are from the table, and head + 2 * (n - 1) read.
  std::size_t n = 1;
  const auto fromTable = [&] { return 4 + (n - 1) * kSize; };
  while (fromTable() <= 8 * kMebi || fromTable() <= 1000 * (head + 2 * (n - 1))) ++n;
  EXPECT_EQ("SAXParseException: " + std::string(kAmplified) +
                " (-1:" + std::to_string(head + 2 * (n - 1)) + ")",
            parse(reader, repeated(kSize, 2000)).end);
  // 1000 times is what is allowed.
  EXPECT_EQ("done", parse(reader, repeated(kSize, 1000)).end);
}

TEST(X891ReaderLimits, ThresholdAndFactorDecideTogether) {
  Tavrin::XMLReader_X891 reader;
  set<double>(reader, amplificationFactor, 1);
  // 4 octets for the element, 300 a comment from the second on; 314 octets read behind the first.
  set<std::uint64_t>(reader, amplificationThreshold, 604);
  EXPECT_EQ("done", parse(reader, repeated(300, 3)).end);
  EXPECT_EQ("SAXParseException: " + std::string(kAmplified) + " (-1:320)",
            parse(reader, repeated(300, 4)).end);
  set<std::uint64_t>(reader, amplificationThreshold, 603);
  EXPECT_EQ("SAXParseException: " + std::string(kAmplified) + " (-1:318)",
            parse(reader, repeated(300, 3)).end);
  set<double>(reader, amplificationFactor, 1000);
  EXPECT_EQ("done", parse(reader, repeated(300, 4)).end);
  set<std::uint64_t>(reader, amplificationThreshold, 0);
  EXPECT_EQ("done", parse(reader, repeated(300, 4)).end);
}

/// Sets limits of amplification when it hears the second comment.
struct SettingLimits : Tavrin::LexicalHandler {
  Tavrin::XMLReader_X891& reader;
  double factor;
  std::uint64_t threshold;
  int comments = 0;

  SettingLimits(Tavrin::XMLReader_X891& of, double newFactor, std::uint64_t newThreshold)
      : reader(of), factor(newFactor), threshold(newThreshold) {}

  void comment(const std::string&) override {
    if (++comments != 2) return;
    set<double>(reader, amplificationFactor, factor);
    set<std::uint64_t>(reader, amplificationThreshold, threshold);
  }
};

TEST(X891ReaderLimits, OfAmplificationMayBeSetWithinADocument) {
  Tavrin::XMLReader_X891 reader;
  SettingLimits lower(reader, 1, 603);
  reader.setProperty(Tavrin::properties::lexicalHandler,
                     static_cast<Tavrin::LexicalHandler*>(&lower));
  EXPECT_EQ("SAXParseException: " + std::string(kAmplified) + " (-1:318)",
            parse(reader, repeated(300, 3)).end);
  EXPECT_EQ(lower.comments, 2);

  SettingLimits higher(reader, std::numeric_limits<double>::infinity(), 0);
  reader.setProperty(Tavrin::properties::lexicalHandler,
                     static_cast<Tavrin::LexicalHandler*>(&higher));
  set<std::uint64_t>(reader, amplificationThreshold, 304);
  EXPECT_EQ("done", parse(reader, repeated(300, 4)).end);
  EXPECT_EQ(higher.comments, 4);
}

/// A document in which one string of 10,000 octets is delivered again and again.
struct Attack {
  const char* name;
  std::string head;
  std::string again;
};

std::vector<Attack> attacks() {
  const std::string tenThousand = bigEndian(10000 - 321, 4) + std::string(10000, 'x');
  const std::string value = bigEndian(10000 - 265, 4) + std::string(10000, 'x');
  const std::string chunk = bigEndian(10000 - 259, 4) + std::string(10000, 'x');
  return {
      {"chunks", document("3C 00 'a' 93") + chunk, octets("A0")},
      {"comments", document("3C 00 'a' E2 4C") + value, octets("E2 80")},
      {"instructions", document("3C 00 'a' E1 00 'p' 4C") + value, octets("E1 80 80")},
      {"targets", document("3C 00 'a' E1 60") + tenThousand + octets("FF"), octets("E1 80 FF")},
      {"system identifiers", document("3C 00 'a' CA 00 'e' 60") + tenThousand, octets("CA 80 80")},
      {"URIs of algorithms", fromComponents("20 04 00 00 60") + tenThousand + octets("3C 00 'a'"),
       octets("8C 7C 'd'")},
      {"entities", document("3C 00 'a' C8 60") + tenThousand, octets("C8 80")},
      {"attribute values", document("3C 00 'a' 7C 00 'b' 78 00 'c' 4C") + value + octets("FF"),
       octets("41 00 80 FF")},
      {"element names", document("3C 60") + tenThousand, octets("00 F0")},
      {"element names inside each other", document("3C 60") + tenThousand, octets("00")},
      {"attribute names", document("7C 00 'a' 78 60") + tenThousand + octets("FF F0"),
       octets("40 00 FF FF")},
      {"namespace names",
       document("3C 00 'a' 38 CD 60") + tenThousand + octets("F0 3D 81 00 'b' F0"),
       octets("38 CD 81 F0 01 F0")},
      {"prefixes",
       document("3C 00 'a' 38 CF 60") + tenThousand + octets("00 'u' F0 3F 81 81 00 'b' F0"),
       octets("38 CF 81 81 F0 01 F0")},
  };
}

TEST(X891ReaderLimits, EachRepeatedStringIsStopped) {
  for (const Attack& attack : attacks()) {
    std::string document = attack.head;
    for (int i = 0; i < 1000; ++i) document += attack.again;
    Tavrin::XMLReader_X891 reader;
    Counter counter;
    reader.setContentHandler(&counter);
    reader.setProperty(Tavrin::properties::encodingAlgorithmContentHandler,
                       static_cast<Tavrin::EncodingAlgorithmContentHandler*>(&counter));
    set<double>(reader, amplificationFactor, 20);
    set<std::uint64_t>(reader, amplificationThreshold, kMebi);
    const Outcome outcome = parse(reader, document);
    EXPECT_EQ("SAXParseException: " + std::string(kAmplified),
              outcome.end.substr(0, 19 + std::string(kAmplified).size()))
        << attack.name << ": " << outcome.end;
    EXPECT_LT(outcome.memory, 4 * kMebi) << attack.name;
  }
}

TEST(X891ReaderLimits, ApplicationAlgorithmsMayNotAmplifyEither) {
  ScriptedAlgorithm huge([](std::uint32_t length, std::istream& stream) {
    stream.ignore(length);
    return std::string(100000, 'x');
  });
  Tavrin::EncodingAlgorithmMap map = {{"urn:reversed", &huge}};
  std::string document = withAlgorithmURI("3C 00 'a'");
  for (int i = 0; i < 20; ++i) document += octets("8C 7C 'd'");
  X891Reader reader;
  reader.reader.setProperty(Tavrin::properties::registeredEncodingAlgorithms, &map);
  set<double>(reader.reader, amplificationFactor, 2);
  set<std::uint64_t>(reader.reader, amplificationThreshold, kMebi);
  Counter counter;
  reader.reader.setContentHandler(&counter);
  reader.alsoInBlocks = false;  // It counts the text of one document.
  EXPECT_EQ(failure({}, kAmplified, withAlgorithmURI("3C 00 'a'").size() + std::size_t{11} * 3),
            reader.read(document));
  EXPECT_EQ(std::size_t{10} * 100000, counter.octets);
  // Their text in attributes and comments counts alike.
  for (const char* piece : {"7C 00 'b' 78 00 'k' 31 F0 'd' FF", "E2 31 F0 'd'"}) {
    document = withAlgorithmURI("3C 00 'a'");
    for (int i = 0; i < 20; ++i) document += octets(piece);
    document += octets("FF");
    EXPECT_EQ("SAXParseException: " + std::string(kAmplified),
              parse(reader.reader, document).end.substr(0, 19 + std::string(kAmplified).size()));
  }
}

// --- Honest documents ---

TEST(X891ReaderLimits, HonestDocumentsDoNotMeetThem) {
  // Many records with the same names, attributes and a text from a table: each octet gives
  // many.
  std::string document = x891_test::document(
      "3C 03 'list' 7C 05 'record' 78 03 'kind' 46 'regular' "
      "F0 92 09 'same content' F0");
  constexpr std::size_t kRecords = 200000;
  for (std::size_t i = 1; i < kRecords; ++i) document += octets("41 00 80 F0 A0 F0");
  document += octets("FF");
  Tavrin::XMLReader_X891 reader;
  Counter counter;
  reader.setContentHandler(&counter);
  EXPECT_EQ("done", parse(reader, document).end);
  EXPECT_EQ(kRecords + 1, counter.elements);
  EXPECT_EQ(kRecords * (7 + 12), counter.octets);
}

TEST(X891ReaderLimits, NestingIsBoundedByMemoryAlone) {
  constexpr std::size_t kDepth = 1000000;
  std::string document = x891_test::document("3C 00 'a'") + std::string(kDepth - 1, '\0');
  document += std::string(kDepth / 2, '\xFF') + "\xF0";
  Tavrin::XMLReader_X891 reader;
  Counter counter;
  reader.setContentHandler(&counter);
  const Outcome outcome = parse(reader, document);
  EXPECT_EQ("done", outcome.end);
  EXPECT_EQ(kDepth, counter.elements);
  EXPECT_LT(outcome.memory, std::size_t{512} * kMebi);
  // So is nesting of declarations.
  document = x891_test::document("38 CF 00 'p' 00 'u' F0 3C 00 'a'");
  for (std::size_t i = 1; i < kDepth / 10; ++i) document += octets("38 CF 81 81 F0 00");
  document += std::string(kDepth / 20, '\xFF') + "\xF0";
  EXPECT_EQ("done", parse(reader, document).end);
}

}  // namespace
}  // namespace x891_test
