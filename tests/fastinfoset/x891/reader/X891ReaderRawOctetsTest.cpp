#include <Tavrin/Tavrin.h>
#include <gtest/gtest.h>

#include "X891ReaderValues.h"

// What unknown algorithms have made, and unknown external vocabularies, with the property
// raw-octets.

namespace x891_test {
namespace {

namespace properties = Tavrin::properties;

const char* const kUnknown =
    "Unknown encoding algorithm - urn:reversed (add it to the property "
    "registered-encoding-algorithms, or set raw-octets)";

struct RawReader : X891Reader {
  explicit RawReader(bool hasHandler = true) {
    reader.setRawOctets(true);
    if (hasHandler) log.attachAlgorithmsTo(reader);
  }
};

std::string readRaw(const std::string& document, bool hasHandler = true) {
  const std::string told = RawReader(hasHandler).read(document);
  // In blocks of an octet, nothing else is told.
  RawReader blocks(hasHandler);
  const std::string outcome = outcomeOf([&] {
    for (const char octet : document) blocks.reader.parse(&octet, 1, false);
    blocks.reader.parse(nullptr, 0, true);
  });
  EXPECT_EQ(told, blocks.log.text() + (outcome == "done" ? "" : outcome + "\n"));
  return told;
}

std::string refused(const std::string& read, const std::string& message,
                    const EventLog::Lines& events) {
  return failure(events, message, read.size());
}

TEST(X891RawOctets, AreAProperty) {
  Tavrin::XMLReader_X891 reader;
  EXPECT_FALSE(reader.getRawOctets());
  bool value = true;
  reader.setProperty(properties::rawOctets, &value);
  EXPECT_TRUE(reader.getRawOctets());
  EXPECT_TRUE(*static_cast<bool*>(reader.getProperty(properties::rawOctets)));
  reader.setProperty(properties::rawOctets, nullptr);
  EXPECT_FALSE(reader.getRawOctets());
}

TEST(X891RawOctets, AreReportedBesideText) {
  const std::string document =
      withAlgorithmURI("3C 00 'a' 81 C3 A4 8C 7E 00 'abc' 80 'z' 8C 7C 00 FF");
  EXPECT_EQ(wholeContent({"characters(\xC3\xA4)", "octets(urn:reversed, 31, 61 62 63)",
                          "characters(z)", "octets(urn:reversed, 31, 00)"}),
            readRaw(document));
  EXPECT_EQ(wholeContent(
                {"characters(\xC3\xA4)", "characters(YWJj)", "characters(z)", "characters(AA==)"}),
            readRaw(document, false));
}

TEST(X891RawOctets, KeepTheirPlaceInTheTable) {
  const std::string document =
      withAlgorithmURI("3C 00 'a' 9C 7E 00 'abc' 90 't' 9C 7C FF A0 A1 A2 A0 FF");
  const std::string abc = "octets(urn:reversed, 31, 61 62 63)";
  const std::string ff = "octets(urn:reversed, 31, FF)";
  EXPECT_EQ(wholeContent({abc, "characters(t)", ff, abc, "characters(t)", ff, abc}),
            readRaw(document));
  EXPECT_EQ(
      wholeContent({"characters(YWJj)", "characters(t)", "characters(/w==)", "characters(YWJj)",
                    "characters(t)", "characters(/w==)", "characters(YWJj)"}),
      readRaw(document, false));
  // The next document has none of them.
  RawReader reader;
  reader.read(document);
  EXPECT_EQ(failure({"startDocument()", "startElement(, a, a, [])"},
                    "Error when decoding character chunk - invalid index", 9),
            reader.read(documentOfContent("A0 FF")));
}

TEST(X891RawOctets, AreInAttributes) {
  const std::string raw = "CDATA, YWJj, urn:reversed, 31, EncodedData{YWJj}}";
  EXPECT_EQ(whole({"startElement(, a, a, [{, b, b, " + raw + ", {, c, c, CDATA, d}, {, e, e, " +
                       raw + ", {, f, f, CDATA, d}])",
                   "startElement(, g, g, [{, b, b, " + raw + "])", "endElement(, g, g)",
                   "endElement(, a, a)"}),
            readRaw(withAlgorithmURI("7C 00 'a' 78 00 'b' 71 F2 'abc' 78 00 'c' 40 'd' "
                                     "78 00 'e' 80 78 00 'f' 81 F0 7C 00 'g' 00 80 FF FF")));
}

TEST(X891RawOctets, HaveTheNumberOfTheirURI) {
  std::string uris = "20 04 00 80 00 60";  // 225: the long form holds the number less 129.
  for (int i = 0; i < 225; ++i) uris += i == 0 ? " 00 'u'" : i == 1 ? " 00 'v'" : " 00 'w'";
  const std::string document = fromComponents(uris + "3C 00 'a' 8C 7C 01 8C 80 02 8F FC 03 FF");
  RawReader reader;
  EXPECT_EQ(wholeContent({"octets(u, 31, 01)", "octets(v, 32, 02)", "octets(w, 255, 03)"}),
            reader.read(document));
  const auto& named = *static_cast<std::vector<std::string>*>(
      reader.reader.getProperty(properties::encodingAlgorithmURIs));
  ASSERT_EQ(named.size(), 225U);
  EXPECT_EQ(named[0] + named[1] + named[2] + named[224], "uvww");
  reader.read(documentOfContent("FF"));
  EXPECT_TRUE(named.empty());
}

TEST(X891RawOctets, StandInInitialVocabularies) {
  const std::string vocabulary =
      "20 04 1C 00 0B 'urn:reversed' 00 31 F2 'abc' 00 31 F2 'xyz' "
      "01 00 'o' 31 F2 'pqr' ";
  EXPECT_EQ(whole({"startElement(, a, a, [{, b, b, CDATA, YWJj, urn:reversed, 31, "
                   "EncodedData{YWJj}}])",
                   "octets(urn:reversed, 31, 78 79 7A)", "comment(o)", "endElement(, a, a)"}),
            readRaw(fromComponents(vocabulary + "7C 00 'a' 78 00 'b' 80 F0 A0 E2 80 FF")));
  const std::string comment = fromComponents(vocabulary + "3C 00 'a' E2 81");
  EXPECT_EQ(refused(comment, std::string(kUnknown) + ", because its text is needed",
                    {"startDocument()", "startElement(, a, a, [])"}),
            readRaw(comment + octets("FF")));
}

TEST(X891RawOctets, AreRefusedWhereOnlyTextCanBe) {
  const EventLog::Lines started = {"startDocument()", "startElement(, a, a, [])"};
  const std::string comment = withAlgorithmURI("3C 00 'a' E2 31 F2");
  EXPECT_EQ(refused(comment, kUnknown, started), readRaw(comment + "abc" + octets("FF")));
  for (int number = 11; number <= 31; ++number) {
    const std::string field = bigEndian(0x8C00UL | static_cast<unsigned>(number - 1) << 2, 2);
    const std::string document = withAlgorithmURI("3C 00 'a'") + field;
    EXPECT_EQ(refused(document, "Reserved encoding algorithm " + std::to_string(number), started),
              readRaw(document + octets("00 FF")));
  }
  const std::string unnamed = withAlgorithmURI("3C 00 'a' 8C 80");
  EXPECT_EQ(refused(unnamed, "No URI for the encoding algorithm 33 in the vocabulary", started),
            readRaw(unnamed + octets("00 FF")));
}

TEST(X891RawOctets, CountForTheLimits) {
  const auto read = [](const Tavrin::XMLReader_X891::Limits& limits, const std::string& document) {
    RawReader reader(false);
    reader.reader.setLimits(limits);
    reader.read(document);
    return reader.outcome.substr(0, reader.outcome.rfind(" (-1:"));
  };
  Tavrin::XMLReader_X891::Limits limits;
  limits.maximumLiteralOctets = 27;
  const std::string document = withAlgorithmURI("3C 00 'a' 8C 7E 11 'abcdefghijklmnopqrst' FF");
  EXPECT_EQ(read(limits, document),
            "SAXParseException: Literal longer than 27 octets (property maximum-literal-octets)");
  limits.maximumLiteralOctets = 28;
  EXPECT_EQ(read(limits, document), "done");

  limits = {};
  limits.amplificationFactor = 1;
  limits.amplificationThreshold = 100;
  const std::string amplified =
      "SAXParseException: More octets delivered for each octet read than the limit allows "
      "(property amplification-factor)";
  std::string again = "3C 00 'a' 9C 7E 00 'abc'";
  for (int i = 0; i < 100; ++i) again += " A0";
  EXPECT_EQ(read(limits, withAlgorithmURI(again + " FF")), amplified);
  std::string attributes = "7C 00 'a' 78 00 'b' 71 F2 'abc'";
  for (char c = 'c'; c <= 'z'; ++c) attributes += std::string(" 78 00 '") + c + "' 80";
  EXPECT_EQ(read(limits, withAlgorithmURI(attributes + " FF F0")), amplified);

  limits = {};
  limits.maximumTableOctets = 1000;
  std::string many = "3C 00 'a'";
  for (int i = 0; i < 10; ++i) many += " 9C 7C 01";
  EXPECT_EQ(read(limits, withAlgorithmURI(many + " FF")),
            "SAXParseException: Tables larger than 1000 octets (property maximum-table-octets)");
}

TEST(X891RawOctets, AreCopiedByTheWriter) {
  const std::string document = withAlgorithmURI(
      "7C 00 'a' 78 00 'b' 31 F2 'abc' F0 8C 7E 00 'abc' 80 'z' 8C 7C 00 7C 00 'c' 00 31 F0 01 FF "
      "FF");
  struct Copy : Tavrin::XMLWriter_X891 {
    explicit Copy(Tavrin::XMLReader& from) : reader(from) {}
    void startDocument() override {
      setProperty(properties::encodingAlgorithmURIs,
                  reader.getProperty(properties::encodingAlgorithmURIs));
      XMLWriter_X891::startDocument();
    }
    Tavrin::XMLReader& reader;
  };
  Tavrin::XMLReader_X891 reader;
  reader.setRawOctets(true);
  std::ostringstream copied;
  Copy writer(reader);
  // Text is written without adding it to the tables, as the document has it.
  std::uint64_t none = 0;
  writer.setProperty(properties::indexedChunkLength, &none);
  writer.setOutputStream(&copied);
  Tavrin::connect(reader, writer);
  std::istringstream stream(document);
  reader.parse(stream);
  EXPECT_EQ(document, copied.str());
}

TEST(X891RawOctets, AreBase64AsText) {
  Tavrin::XMLReader_X891 reader;
  reader.setRawOctets(true);
  std::ostringstream copied;
  Tavrin::XMLWriter_XML10 writer;
  writer.setOutputStream(&copied);
  Tavrin::connect(reader, writer);
  std::istringstream stream(
      withAlgorithmURI("7C 00 'a' 78 00 'b' 31 F2 'abc' F0 8C 7E 00 'abc' 80 'z' FF"));
  reader.parse(stream);
  EXPECT_EQ("<?xml version=\"1.0\" encoding=\"UTF-8\"?><a b='YWJj'>YWJjz</a>", copied.str());
}

TEST(X891RawOctets, AreHeldInAHolder) {
  Tavrin::RawData raw(std::string("\0\xFF", 2));
  EXPECT_EQ(raw.toString(), "AP8=");
  EXPECT_EQ(Tavrin::RawData().toString(), "");
  const auto copy = raw.copy();
  EXPECT_EQ(copy->toString(), "AP8=");
  const auto taken = raw.clone();
  EXPECT_EQ(taken->toString(), "AP8=");
  EXPECT_EQ(raw.data_, "");
}

TEST(X891RawOctets, LetAWriterWriteNamedOnesOnly) {
  std::ostringstream written;
  Tavrin::XMLWriter_X891 writer;
  writer.setOutputStream(&written);
  std::vector<std::string> uris = {"", "u", "u"};
  writer.setProperty(properties::encodingAlgorithmURIs, &uris);
  writer.startDocument();
  Tavrin::EncodingAlgorithmAttributesImpl list;
  list.addAttribute("", "b", "b", "CDATA", "", 31, std::make_unique<Tavrin::RawData>("x"));
  list.addAttribute("", "c", "c", "CDATA", "u", 99, std::make_unique<Tavrin::RawData>());
  writer.startElement("", "a", "a", list);
  writer.object("u", 0, Tavrin::RawData("yz"));
  writer.octets("u", 0, "");
  EXPECT_THROW(writer.object("v", 31, Tavrin::RawData("y")), Tavrin::EncodingAlgorithmException);
  EXPECT_THROW(writer.object("", 32, Tavrin::RawData("y")), Tavrin::EncodingAlgorithmException);
  EXPECT_THROW(writer.object("", 3, Tavrin::RawData("y")), std::bad_cast);
  writer.endElement("", "a", "a");
  writer.endDocument();
  EXPECT_EQ(fromComponents("20 04 00 00 00 'u' 7C 00 'a' 78 00 'b' 31 F0 'x' 78 00 'c' FF F0 "
                           "8C 7D 'yz' FF"),
            written.str());
}

// --- Unknown external vocabularies ---

std::string withVocabulary(const std::string& written) {
  return fromComponents("20 10 00 00 'v' " + written);
}

TEST(X891RawOctets, OfUnknownVocabulariesNothingIsMadeUp) {
  const std::string in = " (with the unknown external vocabulary v)";
  const EventLog::Lines started = {"startDocument()", "startElement(, a, a, [])"};
  EXPECT_EQ(whole({"startPrefixMapping(p, u)",
                   "startElement(, a, a, [{http://www.w3.org/XML/1998/namespace, b, xml:b, CDATA, "
                   "}])",
                   "characters(t)", "endElement(, a, a)", "endPrefixMapping(p)"}),
            readRaw(withVocabulary("78 CF 00 'p' 00 'u' F0 3C 00 'a' 7B 80 80 00 'b' FF F0 90 't' "
                                   "FF")));
  const auto expectRefused = [&](const std::string& item, const std::string& message) {
    const std::string document = withVocabulary("3C 00 'a' " + item);
    EXPECT_EQ(refused(document, message + in, started), readRaw(document + octets("FF FF")));
  };
  expectRefused("A0", "Error when decoding character chunk - invalid index");
  expectRefused("00", "Error when decoding element name - invalid index");
  expectRefused("E2 80", "Error when decoding string - invalid index");
  expectRefused("E1 80", "Error when decoding string - invalid index");
  expectRefused("7C 00 'b' 00", "Error when decoding attribute name - invalid index");
  expectRefused("8C 7C",
                "No URI for the encoding algorithm 32 in the vocabulary (the external one is in "
                "the property external-vocabularies)");
}

TEST(X891RawOctets, TheURIOfTheVocabularyIsKnown) {
  X891Reader reader;
  const auto uri = [&reader] {
    const auto* const value =
        static_cast<std::string*>(reader.reader.getProperty(properties::externalVocabulary));
    return value == nullptr ? "none" : *value;
  };
  EXPECT_EQ(uri(), "none");
  const std::string document = withVocabulary("3C 00 'a' E2 80 FF");
  reader.read(document);
  EXPECT_EQ(uri(), "v");
  EXPECT_EQ(reader.outcome,
            "SAXParseException: Unknown external vocabulary - v (add it to the property "
            "external-vocabularies) (-1:9)");
  // A program finds the vocabulary, and reads again.
  const char* const comments[] = {"c"};
  Tavrin::ExternalVocabulary vocabulary;
  vocabulary.otherStrings = {comments, 1, 1};
  Tavrin::ExternalVocabularyMap map = {{uri(), &vocabulary}};
  reader.reader.setProperty(properties::externalVocabularies, &map);
  EXPECT_EQ(wholeContent({"comment(c)"}), reader.read(document));
  EXPECT_EQ(uri(), "v");
  reader.read(documentOfContent("FF"));
  EXPECT_EQ(uri(), "none");
  std::string value;
  EXPECT_EQ(outcomeOf([&] { reader.reader.setProperty(properties::externalVocabulary, &value); }),
            "SAXException: Property \"http://tavrin/fastinfoset/properties/external-vocabulary\" "
            "can only be asked");
}

}  // namespace
}  // namespace x891_test
