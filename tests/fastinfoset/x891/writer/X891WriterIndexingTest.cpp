#include <HexOctets.h>
#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "EventLog.h"
#include "X891NaiveDecoder.h"
#include "X891WriterSupport.h"
#include "fastinfoset/x891/ValueTally.h"

// Which values and chunks are added to their tables as a document goes on.

namespace x891_test {
namespace {

using namespace Tavrin;
using Tally = fastinfoset::ValueTally;

constexpr unsigned kWindow = Tally::kWindow;

/// The number-th of a sequence of different texts of eight octets.
std::string textAt(std::size_t number) { return std::to_string(10000000 + number); }

/// An index of an attribute value (C.26), below 8256.
std::string indexOctets(std::size_t index) {
  if (index < 64) return {static_cast<char>(0x80 + index)};
  const std::size_t field = index - 64;
  return {static_cast<char>(0xC0 + field / 256), static_cast<char>(field % 256)};
}

/// A root `a` with elements `b`, each with an attribute `c`, beside the octets that must come of
/// them.
class Values {
 public:
  Values() { begin(); }
  explicit Values(const char* indexing) {
    writer.set(properties::valueIndexing, std::string(indexing));
    begin();
  }

  void add(const std::string& value) { send(value, '\x47' + value); }
  void pass(const std::string& value) { send(value, '\x07' + value); }
  void refer(const std::string& value, std::size_t index) { send(value, indexOctets(index)); }
  /// New values: so many.
  void addNew(std::size_t count) {
    while (count-- > 0) add(textAt(next_++));
  }
  void passNew(std::size_t count) {
    while (count-- > 0) pass(textAt(next_++));
  }
  /// A window of values of which so many are those of the first one.
  void addWindow(std::size_t found) {
    addNew(kWindow - found);
    while (found-- > 0) refer(textAt(0), 0);
  }

  void check() {
    writer.end("a");
    writer.endDocument();
    expected_ += octets("FF");
    EXPECT_TRUE(writer.text() == expected_);  // Not EXPECT_EQ: it would print them.
    std::vector<std::string> read;
    for (const std::string& line : x891::decode(writer.text()).lines) {
      const std::string_view begin = "startElement(, b, b, [{, c, c, CDATA, ";
      const std::string_view end = "}])";
      if (!line.starts_with(begin)) continue;
      read.push_back(line.substr(begin.size(), line.size() - begin.size() - end.size()));
    }
    EXPECT_TRUE(read == values_);
  }

  WriterWithOutput<XMLWriter_X891> writer;

 private:
  void begin() {
    writer.startDocument();
    writer.start("a");
    expected_ = octets("E0 00 00 01 00 3C 00 'a'");
  }
  void send(const std::string& value, const std::string& written) {
    static const std::string first = octets("7C 00 'b' 78 00 'c'");
    static const std::string later = octets("41 00");
    expected_ += (values_.empty() ? first : later) + written + '\xFF';
    writer.leaf("b", {{"c", value}});
    values_.push_back(value);
  }

  std::string expected_;
  std::vector<std::string> values_;
  std::size_t next_ = 0;
};

TEST(X891WriterIndexing, StopsWhereTooFewComeBackAndBeginsAgain) {
  Values values;
  values.addNew(kWindow);
  values.passNew(kWindow - 2);
  values.refer(textAt(1), 1);  // What is there is used.
  values.pass("the same");
  // The pause has ended, and the same value comes again and again.
  values.add("the same");
  for (unsigned i = 1; i < 3 * kWindow; ++i) values.refer("the same", kWindow);
  // These three windows have found enough. A whole one must be without any before it stops again.
  values.addNew(kWindow);
  values.passNew(kWindow);
  values.addNew(1);
  values.refer(textAt(2), 2);
  values.check();
}

TEST(X891WriterIndexing, PausesLongerEachTime) {
  Values values;
  for (unsigned pause = kWindow; pause <= 4 * kWindow; pause *= 2) {
    values.addNew(kWindow);
    values.passNew(pause);
  }
  // Enough are found: the next pause is a short one.
  values.addWindow(Tally::kMost);
  values.addWindow(0);
  values.passNew(kWindow);
  values.addNew(1);
  values.check();
}

/// How many values are added, or passed over, until that changes.
unsigned run(Tally& tally, bool isFound) {
  const bool adds = tally.adds();
  unsigned count = 0;
  for (; tally.adds() == adds; ++count) tally.count(isFound);
  return count;
}

TEST(ValueTally, HasTheNumbersOfItsDocumentation) {
  EXPECT_EQ(Tally::kWindow, 2048U);
  EXPECT_EQ(Tally::kFewest, 8U);
  EXPECT_EQ(Tally::kMore, 16U);
  EXPECT_EQ(Tally::kMost, 256U);
  EXPECT_EQ(Tally::kLongestPause, 131072U);
}

TEST(ValueTally, HasALongestPause) {
  Tally tally;
  for (unsigned pause = kWindow; pause < Tally::kLongestPause; pause *= 2) {
    EXPECT_EQ(run(tally, false), kWindow);
    EXPECT_EQ(run(tally, true), pause);
  }
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(run(tally, false), kWindow);
    EXPECT_EQ(run(tally, true), Tally::kLongestPause);
  }
  for (unsigned i = 0; i < kWindow; ++i) tally.count(true);
  EXPECT_EQ(run(tally, false), kWindow);
  EXPECT_EQ(run(tally, false), kWindow);
}

TEST(X891WriterIndexing, NeedsMoreInEachWindow) {
  Values values;
  unsigned needed = Tally::kFewest;
  for (; needed < Tally::kMost; needed += Tally::kMore) values.addWindow(needed);
  values.addWindow(Tally::kMost);
  values.addWindow(Tally::kMost);
  values.addWindow(Tally::kMost - 1);
  values.passNew(kWindow);
  // It begins with few again.
  values.addWindow(Tally::kFewest);
  values.addWindow(Tally::kFewest + Tally::kMore - 1);
  values.passNew(2 * kWindow);  // No window since the last pause had found the most.
  values.addNew(1);
  values.check();
}

TEST(X891WriterIndexing, NeedsAFewInTheFirstWindow) {
  Values values;
  values.addWindow(Tally::kFewest - 1);
  values.passNew(1);
  values.check();
}

TEST(X891WriterIndexing, CountsOnlyWhatMayBeAdded) {
  Values values;
  values.addNew(kWindow - 1);
  const auto count = [&](const std::string& value) {
    values.writer.news();
    values.writer.leaf("b", {{"c", value}});
    return values.writer.news();
  };
  EXPECT_EQ(count(""), hex("41 00 FF FF"));
  EXPECT_EQ(count(textOf(33)), hex("41 00 08 18 '" + textOf(33) + "' FF"));
  EXPECT_EQ(thrown([&] { count("\x01"); }),
            "SAXException: You cannot put character U+0001 into an attribute value");
  EXPECT_EQ(count("xy"), hex("41 00 41 'xy' FF"));
  EXPECT_EQ(count("yz"), hex("41 00 01 'yz' FF"));
}

TEST(X891WriterIndexing, IsOfEachAttributeAndEachElement) {
  Writer writer;
  writer.startDocument();
  writer.start("a");
  for (unsigned i = 0; i <= kWindow; ++i) {
    writer.start("b", {{"c", textAt(i)}});
    writer.characters(textAt(i));
    writer.end("b");
  }
  writer.news();
  // Elements have their own text, in whichever order they come.
  writer.characters("in a");
  writer.start("b", {{"c", "xy"}, {"d", "yz"}});
  writer.characters("in b");
  writer.start("e", {{"c", "zx"}});
  writer.characters("in e");
  writer.end("e");
  writer.characters("and b");
  writer.end("b");
  writer.characters("and a");
  writer.end("a");
  writer.endDocument();
  EXPECT_EQ(writer.news(),
            hex("F0 92 01 'in a' 41 00 01 'xy' 78 00 'd' 41 'yz' F0 82 01 'in b'"
                "7C 00 'e' 00 01 'zx' F0 92 01 'in e' F0 82 02 'and b' F0 92 02 'and a' FF"));
}

TEST(X891WriterIndexing, IsOnlyAboutTheDocument) {
  const auto write = [](Writer& writer) {
    writer.startDocument();
    writer.start("a");
    for (unsigned i = 0; i < 2 * kWindow; ++i) {
      writer.characters(textAt(i));
      writer.leaf("b", {{"c", textAt(i)}});
    }
    writer.end("a");
    writer.endDocument();
  };
  OwnedVocabulary vocabulary;
  vocabulary.addElementName("", "a", "a");
  vocabulary.addElementName("", "b", "b");
  vocabulary.addAttributeName("", "c");
  // Records of many names are kept from one document to the next.
  for (int i = 0; i < 100; ++i) vocabulary.addAttributeName("", "c" + std::to_string(i));
  for (const bool isShared : {false, true}) {
    Writer writer;
    if (isShared) writer.setExternalVocabulary("u", vocabulary);
    write(writer);
    const std::string first = writer.output.news();
    writer.reset();
    write(writer);
    EXPECT_TRUE(writer.output.news() == first);
    writer.reset();
    writer.startDocument();  // One that is broken off within a pause.
    writer.start("a");
    for (unsigned i = 0; i <= kWindow; ++i) writer.leaf("b", {{"c", textAt(i)}});
    writer.output.news();
    writer.reset();
    write(writer);
    EXPECT_TRUE(writer.output.news() == first);
  }
}

TEST(X891WriterIndexing, UsesVocabulariesAtAllTimes) {
  OwnedVocabulary vocabulary;
  vocabulary.addAttributeValue("known");
  vocabulary.addCharacters("chunk");
  for (const bool isExternal : {false, true}) {
    for (const char* const indexing : {"always", "never", "adaptive"}) {
      Writer writer;
      if (isExternal) {
        writer.setExternalVocabulary("u", vocabulary);
      } else {
        writer.setInitialVocabulary(vocabulary);
      }
      writer.set(properties::valueIndexing, std::string(indexing));
      writer.startDocument();
      writer.start("a");
      for (unsigned i = 0; i < kWindow; ++i) {
        writer.characters(textAt(i));
        writer.leaf("b", {{"c", textAt(i)}});
      }
      writer.news();
      writer.characters("chunk");
      writer.leaf("b", {{"c", "known"}});
      EXPECT_EQ(writer.news(), hex("A0 41 00 80 FF"));
      writer.characters("xy");
      writer.leaf("b", {{"c", "xy"}});
      EXPECT_EQ(writer.news(), hex(indexing == std::string("always") ? "91 'xy' 41 00 41 'xy' FF"
                                                                     : "81 'xy' 41 00 01 'xy' FF"));
    }
  }
}

// --- The property ---

TEST(X891WriterIndexing, MayBeForAllValues) {
  Values values("always");
  values.addNew(8000);
  values.refer(textAt(7999), 7999);
  values.check();
}

TEST(X891WriterIndexing, MayBeForNoValue) {
  Values values("never");
  values.passNew(10);
  values.pass(textAt(0));
  values.writer.news();
  values.writer.characters("xy");
  values.writer.comment("xy");
  values.writer.characters("xy");
  values.writer.processingInstruction("t", "xy");
  EXPECT_EQ(values.writer.news(), hex("81 'xy' E2 01 'xy' 81 'xy' E1 00 't' 01 'xy'"));
}

TEST(X891WriterIndexing, ChangesAtOnce) {
  Values values;
  values.writer.set(properties::valueIndexing, std::string("never"));
  values.passNew(2);
  values.writer.set(properties::valueIndexing, std::string("always"));
  values.addNew(kWindow + 1);
  values.writer.setProperty(properties::valueIndexing, nullptr);
  values.addNew(kWindow);  // Those before have not been counted.
  values.passNew(1);
  values.check();
}

TEST(X891WriterIndexing, IsAProperty) {
  XMLWriter_X891 writer;
  const auto value = [&] {
    return *static_cast<std::string*>(writer.getProperty(properties::valueIndexing));
  };
  EXPECT_EQ(value(), "adaptive");
  for (std::string mode : {"always", "never", "adaptive", "always"}) {
    writer.setProperty(properties::valueIndexing, &mode);
    EXPECT_EQ(value(), mode);
  }
  for (std::string wrong : {"", "Always", "sometimes", "always "}) {
    EXPECT_EQ(thrown([&] { writer.setProperty(properties::valueIndexing, &wrong); }),
              "SAXException: Property \"http://tavrin/fastinfoset/properties/value-indexing\" must "
              "be always, never or adaptive");
    EXPECT_EQ(value(), "always");
  }
  writer.reset();
  EXPECT_EQ(value(), "always");
  writer.setProperty(properties::valueIndexing, nullptr);
  EXPECT_EQ(value(), "adaptive");
  std::string mode = "always";
  XMLWriter_FI other;
  EXPECT_EQ(thrown([&] { other.setProperty(properties::valueIndexing, &mode); }),
            "SAXNotRecognizedException: Property "
            "\"http://tavrin/fastinfoset/properties/value-indexing\" not recognized");
}

// --- Agreement ---

TEST(X891WriterIndexing, IsReadByEveryReader) {
  const auto send = [](ContentHandler& to) {
    to.startDocument();
    to.startElement("", "a", "a", AttributesImpl());
    for (std::size_t i = 0; i < 5 * kWindow; ++i) {
      // New ones, then the same again, then new ones.
      const std::size_t number = i / kWindow % 3 == 1 ? i % 50 : i;
      AttributesImpl attributes;
      attributes.addAttribute("", "c", "c", "CDATA", textAt(number));
      attributes.addAttribute("", "d", "d", "CDATA", textAt(i % 300));
      to.startElement("", "b", "b", attributes);
      to.characters(textAt(number));
      to.endElement("", "b", "b");
    }
    to.endElement("", "a", "a");
    to.endDocument();
  };
  EventLog sent;
  sent.showLocator = false;
  send(sent);
  for (std::string mode : {"always", "never", "adaptive"}) {
    std::ostringstream out;
    XMLWriter_X891 writer;
    writer.setProperty(properties::valueIndexing, &mode);
    writer.setOutputStream(&out);
    send(writer);
    const std::string document = out.str();
    for (const char* const type : {"X891", "FI"}) {
      const auto reader = XMLReaderFactory::createXMLReader(type);
      EventLog read;
      read.showLocator = false;
      reader->setContentHandler(&read);
      std::istringstream in(document);
      reader->parse(in);
      EXPECT_TRUE(read.text() == sent.text()) << mode << ' ' << type;
    }
    XMLReader_X891 reader;
    EventLog read;
    read.showLocator = false;
    reader.setContentHandler(&read);
    constexpr std::size_t kBlock = 7;
    for (std::size_t at = 0; at < document.size(); at += kBlock) {
      reader.parse(document.data() + at, std::min(kBlock, document.size() - at),
                   at + kBlock >= document.size());
    }
    EXPECT_TRUE(read.text() == sent.text()) << mode;
  }
}

}  // namespace
}  // namespace x891_test
