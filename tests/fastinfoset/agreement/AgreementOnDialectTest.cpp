#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "AgreementLog.h"
#include "EventLog.h"
#include "FIWriterProbe.h"
#include "HexOctets.h"
#include "RandomDocuments.h"

// Where what comes back is not what went in: exactly what comes back instead.

namespace agreement {
namespace {

using namespace Tavrin;
using writer_test::Probe;
using writer_test::shortText;

/// The octets of a document whose root, `r`, has some content.
std::string withContent(const std::function<void(Probe&)>& content) {
  Probe writer;
  writer.startDocument();
  writer.start("r");
  content(writer);
  writer.end("r");
  writer.endDocument();
  return writer.output.text();
}

/// The log of such a document that is read to its end.
std::string contentLog(const EventLog::Lines& lines) {
  return "startDocument()\nstartElement(, r, r, [])\n" + join(lines) +
         "endElement(, r, r)\nendDocument()\n";
}

/// Texts of 1 to 6 octets, all different, each followed by a comment.
void writeShortTexts(Probe& writer, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    writer.characters(shortText(i));
    writer.comment("");
  }
}

/// The same as lines of a log.
std::string shortTextLog(std::size_t count) {
  std::string log;
  for (std::size_t i = 0; i < count; ++i) log += "characters(" + shortText(i) + ")\ncomment()\n";
  return log;
}

TEST(AgreementOnLateChunks, HoldsForTheSixteenth) {
  const std::string octets = withContent([](Probe& writer) {
    writeShortTexts(writer, 16);
    writer.characters(shortText(15));
  });
  const std::string events = "startDocument()\nstartElement(, r, r, [])\n" + shortTextLog(16) +
                             "characters(p)\nendElement(, r, r)\nendDocument()\n";
  EXPECT_EQ(readBack(octets, TypedAs::text), events);
  EXPECT_EQ(decoded(octets, TypedAs::text), events);
}

TEST(AgreementOnLateChunks, MakesTheSeventeenthTheFirstAndAnElement) {
  const std::string octets = withContent([](Probe& writer) {
    writeShortTexts(writer, 17);
    writer.characters(shortText(16));  // A0 00: the first chunk; an element of the first name.
  });
  EXPECT_EQ(readBack(octets, TypedAs::text),
            "startDocument()\nstartElement(, r, r, [])\n" + shortTextLog(17) +
                "characters(a)\nstartElement(, r, r, [])\nendElement(, r, r)\nendElement(, r, r)\n"
                "SAXException: Unexpected end of document\n");
  EXPECT_EQ(decoded(octets, TypedAs::text),
            "the end at octet " + std::to_string(octets.size()) + "\n");
}

TEST(AgreementOnLateChunks, MakesAnotherTheFirstAndATerminator) {
  const std::string octets = withContent([](Probe& writer) {
    writeShortTexts(writer, 16 + 0xF0 + 1);
    writer.characters(shortText(16 + 0xF0));  // A0 F0
  });
  // A document that can be read, and is another one.
  const std::string events = "startDocument()\nstartElement(, r, r, [])\n" +
                             shortTextLog(16 + 0xF0 + 1) +
                             "characters(a)\nendElement(, r, r)\nendDocument()\n";
  EXPECT_EQ(readBack(octets, TypedAs::text), events);
  EXPECT_EQ(decoded(octets, TypedAs::text), events);
}

TEST(AgreementOnLateChunks, MakesOneOfTheThirdFormTheFirstAndTwoElements) {
  const std::string octets = withContent([](Probe& writer) {
    writeShortTexts(writer, 1041);
    writer.characters(shortText(1040));  // A0 00 00
    writer.comment("done");
  });
  EXPECT_EQ(
      readBack(octets, TypedAs::text),
      "startDocument()\nstartElement(, r, r, [])\n" + shortTextLog(1041) +
          "characters(a)\nstartElement(, r, r, [])\nstartElement(, r, r, [])\ncomment(done)\n"
          "endElement(, r, r)\nendElement(, r, r)\nSAXException: Unexpected end of document\n");
}

/// The last texts of a document.
class LastTexts : public ContentHandler {
 public:
  std::string last() const { return join({texts_.begin(), texts_.end()}); }

  void characters(const std::string& text) override {
    texts_.push_back(text);
    if (texts_.size() > 3) texts_.pop_front();
  }

 private:
  std::deque<std::string> texts_;
};

TEST(AgreementOnLateChunks, HoldsAgainInTheFourthForm) {
  constexpr std::size_t kFourth = 263184;
  const std::string octets = withContent([](Probe& writer) {
    writeShortTexts(writer, kFourth + 2);
    for (const std::size_t number : {kFourth, kFourth + 1, std::size_t{15}}) {
      writer.characters(shortText(number));
      writer.comment("");
    }
  });
  LastTexts texts;
  XMLReader_FI reader;
  reader.setContentHandler(&texts);
  std::istringstream stream(octets);
  reader.parse(stream);
  EXPECT_EQ(texts.last(), join({shortText(kFourth), shortText(kFourth + 1), shortText(15)}));
}

TEST(AgreementOnTypedContent, CutsIntegersToTheirLow32Bits) {
  const std::string octets = withContent([](Probe& writer) {
    writer.ints({2147483647, 2147483648, 4294967296, 4294967301, -2147483648, -2147483649});
  });
  const std::string events =
      contentLog({"ints(2147483647 -2147483648 0 5 -2147483648 2147483647)"});
  EXPECT_EQ(readBack(octets, TypedAs::primitives), events);
  EXPECT_EQ(decoded(octets, TypedAs::primitives), events);
}

TEST(AgreementOnTypedContent, MakesAttributesThatAreEmptyText) {
  EncodingAlgorithmAttributesImpl list;
  list.addAttribute("", "a", "a", "ID", "", 3, std::make_unique<IntData>());
  list.addAttribute("", "b", "b", "CDATA", "", 3, std::make_unique<IntData>(std::vector<long>{1}));
  Probe writer;
  writer.startDocument();
  writer.startElement("", "r", "r", list);
  writer.endElement("", "r", "r");
  writer.endDocument();
  EXPECT_EQ(readBack(writer.output.text(), TypedAs::text),
            "startDocument()\n"
            "startElement(, r, r, [{, a, a, CDATA, }, {, b, b, CDATA, 1, , 3, IntData{1}}])\n"
            "ints(1)\n"  // The second attribute once more.
            "endElement(, r, r)\nendDocument()\n");
}

/// What comes back of octets that are written with a field.
std::string fieldRead(int field, const std::string& data) {
  const std::string octets =
      withContent([&](Probe& writer) { writer.octets("urn:x", field, data); });
  return readBack(octets, TypedAs::objects);
}

TEST(AgreementOnOctets, IsByTheNumberAlone) {
  EXPECT_EQ(fieldRead(0, octets("00 FF")), contentLog({"object(, 0, HexadecimalData{00FF})"}));
  EXPECT_EQ(fieldRead(1, "Man"), contentLog({"object(, 1, Base64Data{TWFu})"}));
  EXPECT_EQ(fieldRead(2, octets("FF FE")), contentLog({"object(, 2, ShortData{-2})"}));
  EXPECT_EQ(fieldRead(3, octets("00 00 01 00")), contentLog({"object(, 3, IntData{256})"}));
  EXPECT_EQ(fieldRead(4, octets("FF FF FF FF FF FF FF FE")),
            contentLog({"object(, 4, LongData{-2})"}));
  EXPECT_EQ(fieldRead(5, octets("1A")), contentLog({"object(, 5, BooleanData{true false true})"}));
  EXPECT_EQ(fieldRead(6, octets("3F C0 00 00")), contentLog({"object(, 6, FloatData{1.5})"}));
  EXPECT_EQ(fieldRead(7, octets("C0 00 00 00 00 00 00 00")),
            contentLog({"object(, 7, DoubleData{-2})"}));
  EXPECT_EQ(fieldRead(9, "<&>"), contentLog({"startCDATA()", "characters(<&>)", "endCDATA()"}));
  EXPECT_EQ(fieldRead(8, "x"), contentLog({"octets(, 8, 78)"}));
  for (int field = 10; field < 32; ++field) {
    EXPECT_EQ(fieldRead(field, "x"), contentLog({"octets(, " + std::to_string(field) + ", 78)"}));
  }
}

TEST(AgreementOnOctets, LosesOneBitOfTheNumber) {
  EXPECT_EQ(fieldRead(64, octets("00 FF")), contentLog({"object(, 0, HexadecimalData{00FF})"}));
  EXPECT_EQ(fieldRead(67, octets("00 00 01 00")), contentLog({"object(, 3, IntData{256})"}));
  EXPECT_EQ(fieldRead(72, "x"), contentLog({"octets(, 8, 78)"}));
  EXPECT_EQ(fieldRead(95, "x"), contentLog({"octets(, 31, 78)"}));
}

TEST(AgreementOnOctets, EndsWhereTheReaderWouldNeedAURI) {
  const std::string failure =
      "startDocument()\nstartElement(, r, r, [])\n"
      "SAXException: Error when decoding string - invalid index\n";
  for (const int field : {32, 63, 96, 127, 128, 191, 192, 255}) {
    EXPECT_EQ(fieldRead(field, "x"), failure) << field;
  }
}

TEST(AgreementOnOctets, HoldsForAReaderThatHasTheURIsFromAnEarlierDocument) {
  // An initial vocabulary with two algorithms. The reader keeps them.
  std::istringstream vocabulary(
      octets("E0 00 00 01 20 04 00 02 04 'urn:x' 04 'urn:y' 3C 00 'r' FF"));
  std::istringstream document(withContent([](Probe& writer) {
    writer.octets("", 32, "x");
    writer.octets("", 33, "y");
    writer.octets("", 97, "z");
  }));
  ExactLog log;
  XMLReader_FI reader;
  reader.parse(vocabulary);
  log.attachTo(reader);
  log.attachAlgorithmsTo(reader);
  reader.parse(document);
  EXPECT_EQ(log.text(), contentLog({"octets(urn:x, 32, 78)", "octets(urn:y, 33, 79)",
                                    "octets(urn:y, 33, 7A)"}));
}

TEST(AgreementOnNames, TakesTheLocalNameAndThePrefixOfTheQualifiedName) {
  Probe writer;
  writer.startDocument();
  writer.startPrefixMapping("p", "u");
  writer.startPrefixMapping("a:b", "v");
  writer.startElement("u", "r", "p:another", attributes({}));
  writer.startElement("v", "e", "a:b:e", attributes({}));
  writer.startElement("u", "f", ":f", attributes({}));
  writer.endElement("u", "f", ":f");
  writer.endElement("v", "e", "a:b:e");
  writer.endElement("u", "r", "p:another");
  writer.endDocument();
  const std::string events =
      "startDocument()\nstartPrefixMapping(p, u)\nstartPrefixMapping(a:b, v)\n"
      "startElement(u, r, p:r, [])\nstartElement(v, e, a:b:e, [])\nstartElement(u, f, f, [])\n"
      "endElement(u, f, f)\nendElement(v, e, a:b:e)\nendElement(u, r, p:r)\n"
      "endPrefixMapping(p)\nendPrefixMapping(a:b)\nendDocument()\n";
  EXPECT_EQ(readBack(writer.output.text(), TypedAs::text), events);
  EXPECT_EQ(decoded(writer.output.text(), TypedAs::text), events);
}

TEST(AgreementOnNames, EndsAtAPrefixWithoutANamespace) {
  const std::string octets = withContent([](Probe& writer) {
    writer.startPrefixMapping("p", "");
    writer.startElement("", "e", "p:e", attributes({}));
    writer.endElement("", "e", "p:e");
  });
  EXPECT_EQ(readBack(octets, TypedAs::text),
            "startDocument()\nstartElement(, r, r, [])\nstartPrefixMapping(p, )\n"
            "SAXException: Qualified name with a prefix, but without a namespace\n");
}

TEST(AgreementOnPlaces, EndsAtTextInFrontOfTheRoot) {
  Probe writer;
  writer.startDocument();
  writer.start("r");
  writer.characters("hi");
  writer.reset();
  writer.output.news();
  writer.startDocument();
  writer.leaf("r");
  writer.endDocument();
  // In this place the chunk is a document type with a public identifier.
  EXPECT_EQ(readBack(writer.output.news(), TypedAs::text),
            "startDocument()\nSAXException: Error when parsing identifier\n");
}

TEST(AgreementOnPlaces, EndsAtTypedContentInFrontOfTheRoot) {
  Probe writer;
  writer.startDocument();
  writer.shorts({1});
  writer.leaf("r");
  writer.endDocument();
  EXPECT_EQ(readBack(writer.output.text(), TypedAs::primitives),
            "startDocument()\nstartDTD(, , )\nSAXException: Error while parsing DTD\n");
}

/// Everything that comes back changed but agreed upon, in one document.
template <typename Handlers>
void sendEverything(Handlers& to) {
  to.startDocument();
  to.startDTD("r", "p", "s");
  to.notationDecl("n", "p", "s");
  to.comment("in the DTD");
  to.endDTD();
  to.startPrefixMapping("p", "u");
  to.startPrefixMapping("", "u");
  EncodingAlgorithmAttributesImpl list;
  list.addAttribute("http://www.w3.org/2000/xmlns/", "p", "xmlns:p", "CDATA", "u");
  list.addAttribute("u", "a", "p:a", "ID", "1");
  list.addAttribute("", "f", "f", "CDATA", "", 6,
                    std::make_unique<FloatData>(std::vector<float>{0.1F}));
  to.startElement("u", "r", "r", list);
  to.characters("a");
  to.ignorableWhitespace(" ");
  to.characters("b");
  to.startCDATA();
  to.characters("c");
  to.endCDATA();
  to.startCDATA();
  to.endCDATA();
  to.characters("d");
  to.bytes("Man");
  to.shorts({});
  to.ints({4294967301});
  to.booleans({true, false});
  to.doubles({0.1});
  to.object("", 0, HexadecimalData("Man"));
  to.object("", 9, CDATAData("e"));
  to.octets("urn:x", 0x40 | 8, "f");
  to.endElement("u", "r", "r");
  to.endPrefixMapping("");
  to.endPrefixMapping("p");
  to.ignorableWhitespace("\n");
  to.endDocument();
}

std::string everything(const EventLog::Lines& typed) {
  return "startDocument()\ncomment(in the DTD)\n"
         "startPrefixMapping(p, u)\nstartPrefixMapping(, u)\n"
         "startElement(u, r, r, [{u, a, p:a, CDATA, 1}, {, f, f, CDATA, 0.1, , 6, "
         "FloatData{0.1}}])\n"
         "floats(0.100000001)\n"
         "startCDATA()\ncharacters(abc)\nendCDATA()\ncharacters(d)\n" +
         join(typed) +
         "endElement(u, r, r)\nendPrefixMapping(p)\nendPrefixMapping()\nendDocument()\n";
}

TEST(AgreementOnEverything, IsWhatTheRulesSayInEveryWayToHearTypedContent) {
  Probe writer;
  sendEverything(writer);
  const auto check = [&writer](TypedAs typedAs, const std::string& events) {
    ExpectedEvents expected(typedAs);
    sendEverything(expected);
    EXPECT_EQ(expected.text(), events);
    EXPECT_EQ(readBack(writer.output.text(), typedAs), events);
    EXPECT_EQ(decoded(writer.output.text(), typedAs), events);
  };
  check(TypedAs::primitives,
        everything({"bytes(4D 61 6E)", "ints(5)", "booleans(1 0)", "doubles(0.10000000000000001)",
                    "bytes(4D 61 6E)", "startCDATA()", "characters(e)", "endCDATA()"}));
  check(TypedAs::objects,
        everything({"object(, 1, Base64Data{TWFu})", "object(, 3, IntData{5})",
                    "object(, 5, BooleanData{true false})", "object(, 7, DoubleData{0.1})",
                    "object(, 0, HexadecimalData{4D616E})", "startCDATA()", "characters(e)",
                    "endCDATA()", "octets(, 8, 66)"}));
  check(TypedAs::text, everything({"characters(TWFu)", "characters(5)", "characters(true false)",
                                   "characters(0.1)", "characters(4D616E)", "startCDATA()",
                                   "characters(e)", "endCDATA()"}));
}

}  // namespace
}  // namespace agreement
