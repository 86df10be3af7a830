#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "PullLog.h"
#include "X891ReaderValues.h"

// Typed content and attributes that are pulled.

namespace {

using namespace Tavrin;

using Floats = std::vector<float>;

/// `a` with the typed attribute `n`, floats, a CDATA section and booleans.
std::string typedDocument() {
  std::ostringstream stream;
  XMLWriter_X891 writer;
  writer.setOutputStream(&stream);
  writer.startDocument();
  EncodingAlgorithmAttributesImpl attributes;
  attributes.addAttribute("", "n", "n", "CDATA", "", algorithms::integer,
                          std::make_unique<IntData>(std::vector<long>{1, -2}));
  writer.startElement("", "a", "a", attributes);
  writer.floats({1.5F, -0.25F});
  writer.startCDATA();
  writer.characters("<c>");
  writer.endCDATA();
  writer.booleans({true, false});
  writer.endElement("", "a", "a");
  writer.endDocument();
  return stream.str();
}

TEST(PullTyped, ValuesAreThereAsTheyAreAndAsText) {
  const std::string octets = typedDocument();
  MemoryStream stream(octets);
  PullReader reader(stream);
  ASSERT_TRUE(reader.nextElement());
  EXPECT_EQ("1 -2", reader.attribute("n"));
  EXPECT_EQ("1 -2", reader.attribute("", "n"));
  EXPECT_EQ(std::nullopt, reader.attribute("m"));
  const auto* const typed = dynamic_cast<const EncodingAlgorithmAttributes*>(&reader.attributes());
  ASSERT_NE(nullptr, typed);
  EXPECT_EQ((std::vector<long>{1, -2}),
            dynamic_cast<const IntData&>(*typed->getAlgorithmData(0)).data_);
  EXPECT_EQ(nullptr, reader.value());
  EXPECT_EQ(-1, reader.algorithmIndex());

  ASSERT_TRUE(reader.next());
  EXPECT_EQ(PullEvent::characters, reader.event());
  ASSERT_NE(nullptr, reader.value<Floats>());
  EXPECT_EQ((Floats{1.5F, -0.25F}), *reader.value<Floats>());
  EXPECT_EQ(nullptr, reader.value<std::vector<double>>());
  EXPECT_EQ("1.5 -0.25", reader.text());
  EXPECT_EQ("", reader.part(0));
  EXPECT_EQ(algorithms::floatNumber, reader.algorithmIndex());
  EXPECT_EQ("", reader.algorithmURI());

  ASSERT_TRUE(reader.next());
  EXPECT_EQ(PullEvent::startCDATA, reader.event());
  EXPECT_EQ("", reader.text());
  ASSERT_TRUE(reader.next());
  EXPECT_EQ(PullEvent::characters, reader.event());
  EXPECT_EQ("<c>", reader.text());
  EXPECT_EQ(nullptr, reader.value());
  EXPECT_EQ(-1, reader.algorithmIndex());
  ASSERT_TRUE(reader.next());
  EXPECT_EQ(PullEvent::endCDATA, reader.event());

  ASSERT_TRUE(reader.next());
  ASSERT_NE(nullptr, reader.value<std::vector<bool>>());
  EXPECT_EQ("true false", reader.text());
  ASSERT_TRUE(reader.next());
  EXPECT_EQ(PullEvent::endElement, reader.event());
  EXPECT_EQ(nullptr, reader.value());
  EXPECT_EQ(0, reader.attributes().getLength());
}

TEST(PullTyped, ContentIsTextForWhoAsksForText) {
  const std::string octets = typedDocument();
  MemoryStream handlers(octets);
  EventLog expected;
  expected.showLocator = false;
  expected.showAlgorithms = true;
  XMLReader_X891 pushing;
  expected.attachTo(pushing);
  pushing.parse(handlers);

  MemoryStream stream(octets);
  PullReader reader(stream);
  PullLog log(reader);
  log.isTyped = false;
  log.pull();
  EXPECT_EQ(expected.text(), log.log.text());

  MemoryStream again(octets);
  PullReader texts(again);
  ASSERT_TRUE(texts.nextElement());
  EXPECT_EQ("1.5 -0.25<c>true false", texts.readText());
}

// The octets of unknown algorithms as they stand; what comes again does so by its index.
TEST(PullTyped, OctetsOfUnknownAlgorithmsAreAnEventOfTheirOwn) {
  const std::string octets = x891_test::withAlgorithmURI(
      "7C 00 'a' 78 00 'b' 71 F2 'abc' F0 9C 7E 00 'abc' 90 't' 9C 7C FF A0 A1 A2 A0 FF");
  const std::string raw = "CDATA, YWJj, urn:reversed, 31, EncodedData{YWJj}}";
  const std::string abc = "octets(urn:reversed, 31, 61 62 63)\n";
  const std::string ff = "octets(urn:reversed, 31, FF)\n";
  MemoryStream stream(octets);
  PullReader reader(stream);
  dynamic_cast<XMLReader_X891&>(reader.reader()).setRawOctets(true);
  PullLog log(reader);
  log.pull();
  EXPECT_EQ("startDocument()\nstartElement(, a, a, [{, b, b, " + raw + "])\n" + abc +
                "characters(t)\n" + ff + abc + "characters(t)\n" + ff + abc +
                "endElement(, a, a)\nendDocument()\n",
            log.log.text());

  // They are no text.
  MemoryStream again(octets);
  PullReader texts(again);
  dynamic_cast<XMLReader_X891&>(texts.reader()).setRawOctets(true);
  ASSERT_TRUE(texts.nextElement());
  EXPECT_EQ("YWJj", texts.attribute("b"));
  ASSERT_TRUE(texts.next());
  EXPECT_EQ(PullEvent::octets, texts.event());
  EXPECT_EQ("abc", texts.octets());
  EXPECT_EQ("urn:reversed", texts.algorithmURI());
  EXPECT_EQ(31, texts.algorithmIndex());
  EXPECT_EQ("", texts.text());
}

TEST(PullTyped, TextIsRefusedAtItsLimit) {
  std::ostringstream out;
  XMLWriter_X891 writer;
  writer.setOutputStream(&out);
  writer.startDocument();
  writer.startElement("", "a", "a", AttributesImpl());
  writer.booleans(std::vector<bool>(1000));
  writer.endElement("", "a", "a");
  writer.endDocument();
  const std::string octets = out.str();
  MemoryStream stream(octets);
  PullReader reader(stream);
  XMLReader_X891::Limits limits;
  limits.maximumLiteralOctets = 1000;
  dynamic_cast<XMLReader_X891&>(reader.reader()).setLimits(limits);
  ASSERT_TRUE(reader.nextElement());
  ASSERT_TRUE(reader.next());
  EXPECT_EQ(1000u, reader.value<std::vector<bool>>()->size());
  EXPECT_THROW(reader.text(), SAXParseException);
  ASSERT_TRUE(reader.next());
  EXPECT_EQ(PullEvent::endElement, reader.event());
}

}  // namespace
