#include <Tavrin/Tavrin.h>
#include <gtest/gtest.h>

#include <string>

#include "FilteredText.h"
#include "HexOctets.h"

// Text that becomes typed content by rules.

namespace {

using namespace Tavrin;
using filtered::rulesOf;
using filtered::told;
using filtered::written;

std::string document(const std::string& body) { return octets("E0 00 00 01 00 " + body); }

std::string start(const std::string& name) {
  return "startElement(, " + name + ", " + name + ", [])\n";
}
std::string end(const std::string& name) { return "endElement(, " + name + ", " + name + ")\n"; }

// --- Octets ---

TEST(TypedContentFilter, ContentIsWrittenAsItsType) {
  const auto expect = [](const std::string& type, const std::string& text,
                         const std::string& chunk) {
    EXPECT_EQ(document("3C 00 'a' " + chunk + " FF"), written("a " + type, "<a>" + text + "</a>"))
        << type;
  };
  expect("hexadecimal", "00ff", "8C 01 00 FF");
  expect("base64", "TWFu", "8C 06 00 'Man'");
  expect("short", "1 -1 +02", "8C 0A 03 00 01 FF FF 00 02");
  expect("int", "1 -1", "8C 0E 05 00 00 00 01 FF FF FF FF");
  expect("long", "\n 1\n", "8C 12 05 00 00 00 00 00 00 00 01");
  expect("boolean", "true false 1", "8C 14 1A");
  expect("float", "1.5", "8C 1A 01 3F C0 00 00");
  expect("double", "1.5", "8C 1E 05 3F F8 00 00 00 00 00 00");
  expect("uuid", "F81d4fae-7dec-11d0-a765-00a0c91e6bf6",
         "8C 22 0D F8 1D 4F AE 7D EC 11 D0 A7 65 00 A0 C9 1E 6B F6");
  expect("cdata", "x", "8C 24 'x'");
}

TEST(TypedContentFilter, AttributesAreWrittenAsTheirType) {
  EXPECT_EQ(document("7C 00 'a' 78 00 'b' 30 23 00 01 00 02 78 00 'c' 40 'x' FF F0"),
            written("a/@b short", "<a b='1 2' c='x'/>"));
  EXPECT_EQ(document("7C 00 'a' 78 00 'b' 30 63 3F C0 00 00 78 00 'c' 30 50 1A FF F0"),
            written("@b float\n@c boolean", "<a b=' 1.50 ' c='true false 1'/>"));
}

TEST(TypedContentFilter, TextWithoutItemsStaysText) {
  EXPECT_EQ(document("3C 00 'a' FF"), written("a int", "<a></a>"));
  EXPECT_EQ(document("3C 00 'a' 91 '  ' FF"), written("a int", "<a>  </a>"));
  EXPECT_EQ(document("7C 00 'a' 78 00 'b' FF FF F0"), written("@b int", "<a b=''/>"));
  EXPECT_EQ(document("3C 00 'a' 8C 25 '  ' FF"), written("a cdata", "<a>  </a>"));
}

// --- Events ---

TEST(TypedContentFilter, EventsKeepTheirOrder) {
  EXPECT_EQ(
      "startPrefixMapping(p, u)\n"
      "startElement(u, a, p:a, [{u, x, p:x, CDATA, 1 2, , 3, IntData{1 2}}, "
      "{, y, y, CDATA, 1 2}])\n" +
          start("b") + "object(, 3, IntData{3})\n" + end("b") + "characters(text)\n" +
          "endElement(u, a, p:a)\n"
          "endPrefixMapping(p)\n",
      told("a/@p:x int\nb int", "<p:a xmlns:p='u' p:x='1 2' y='1 2'><b>3</b>text</p:a>"));
}

TEST(TypedContentFilter, AnAttributeHasTheTextThatItHad) {
  EXPECT_EQ("startElement(, a, a, [{, x, x, CDATA, +01, , 3, IntData{1}}])\n" + end("a"),
            told("@x int", "<a x='+01'/>"));
}

TEST(TypedContentFilter, OnlyAnElementThatHasNothingButTextIsTyped) {
  const std::string inner[] = {"<c/>", "<!--c-->", "<![CDATA[2]]>", "<?t d?>"};
  const std::string events[] = {start("c") + end("c"), "comment(c)\n",
                                "startCDATA()\ncharacters(2)\nendCDATA()\n",
                                "processingInstruction(t, d)\n"};
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(start("a") + events[i] + "characters(1)\n" + end("a"),
              told("a int", "<a>" + inner[i] + "1</a>"));
    EXPECT_EQ(start("a") + "characters(1)\n" + events[i] + end("a"),
              told("a int", "<a>1" + inner[i] + "</a>"));
    EXPECT_EQ(start("a") + "characters(1)\n" + events[i] + "characters(3)\n" + end("a"),
              told("a int", "<a>1" + inner[i] + "3</a>"));
  }
}

TEST(TypedContentFilter, AnEntityThatIsReportedIsNotOnlyText) {
  const std::string type = "<!DOCTYPE a [<!ENTITY e SYSTEM 'f'>]>";
  const std::string begin = "startDTD(a, , )\nendDTD()\n" + start("a") + "characters(1)\n";
  const auto connectTo = [](XMLReader& reader, EventLog& log) {
    log.attachTo(reader);
    log.attachAlgorithmsTo(reader);
    reader.setEntityResolver(nullptr);
  };
  EXPECT_EQ(begin + "skippedEntity(e)\ncharacters(2)\n" + end("a"),
            told("a int", type + "<a>1&e;2</a>", connectTo));
  EXPECT_EQ(begin + "resolveEntity(, f)\nstartEntity(e)\ncharacters(2)\nendEntity(e)\n" + end("a"),
            told("a int", type + "<a>1&e;</a>", [&](XMLReader& reader, EventLog& log) {
              connectTo(reader, log);
              log.entities = {{"f", "2"}};
              reader.setEntityResolver(&log);
            }));
}

TEST(TypedContentFilter, ReferencesThatAreNotReportedAreText) {
  const std::string typed = start("a") + "object(, 3, IntData{12 34})\n" + end("a");
  EXPECT_EQ(typed, told("a int", "<a>1&#50;&#xA;34</a>"));
  EXPECT_EQ("startDTD(a, , )\nendDTD()\n" + typed,
            told("a int", "<!DOCTYPE a [<!ENTITY e '2 3'>]><a>1&e;4</a>"));
}

TEST(TypedContentFilter, ChildrenAreTypedOneByOne) {
  EXPECT_EQ(start("a") + start("b") + "object(, 3, IntData{1})\n" + end("b") + "characters( )\n" +
                start("b") + "object(, 3, IntData{2})\n" + end("b") + end("a"),
            told("b int\na int", "<a><b>1</b> <b>2</b></a>"));
}

TEST(TypedContentFilter, ContentGoesWhereReadersReportIt) {
  const std::string text = "<a><b>1 2</b><c>f81d4fae-7dec-11d0-a765-00a0c91e6bf6</c><d>x</d></a>";
  const std::string rules = "b int\nc uuid\nd cdata";
  const auto expected = [](const std::string& b, const std::string& c, const std::string& d) {
    return start("a") + start("b") + b + end("b") + start("c") + c + end("c") + start("d") + d +
           end("d") + end("a");
  };
  const std::string uuid = "f81d4fae-7dec-11d0-a765-00a0c91e6bf6";
  const std::string section = "startCDATA()\ncharacters(x)\nendCDATA()\n";
  EXPECT_EQ(expected("ints(1 2)\n", "characters(" + uuid + ")\n", section),
            told(rules, text, [](XMLReader& reader, EventLog& log) {
              log.attachTo(reader);
              log.attachPrimitiveTypesTo(reader);
            }));
  EXPECT_EQ(expected("ints(1 2)\n", "object(, 8, EncodedData{" + uuid + "})\n", section),
            told(rules, text, [](XMLReader& reader, EventLog& log) {
              log.attachTo(reader);
              log.attachPrimitiveTypesTo(reader);
              log.attachAlgorithmsTo(reader);
            }));
  EXPECT_EQ(expected("object(, 3, IntData{1 2})\n", "object(, 8, EncodedData{" + uuid + "})\n",
                     "object(, 9, CDATAData{x})\n"),
            told(rules, text, [](XMLReader& reader, EventLog& log) {
              reader.setContentHandler(&log);
              log.attachAlgorithmsTo(reader);
            }));
  EXPECT_EQ(expected("characters(1 2)\n", "characters(" + uuid + ")\n", section),
            told(rules, text, [](XMLReader& reader, EventLog& log) { log.attachTo(reader); }));
  EXPECT_EQ(
      expected("characters(1 2)\n", "characters(" + uuid + ")\n", "characters(x)\n"),
      told(rules, text, [](XMLReader& reader, EventLog& log) { reader.setContentHandler(&log); }));
}

TEST(TypedContentFilter, WithoutRulesAllPassesAsItIs) {
  const std::string text = "<a x='1'>1<b/><!--c--><![CDATA[d]]>2</a>";
  const std::string plain = told("", text);
  EXPECT_EQ("startElement(, a, a, [{, x, x, CDATA, 1}])\ncharacters(1)\n" + start("b") + end("b") +
                "comment(c)\nstartCDATA()\ncharacters(d)\nendCDATA()\ncharacters(2)\n" + end("a"),
            plain);
  EXPECT_EQ(plain, told("c int\n@y int", text));
}

TEST(TypedContentFilter, AttributesWithoutARuleAreNotCopied) {
  struct Lists : DefaultHandler {
    void startElement(const std::string& /*uri*/, const std::string& /*localName*/,
                      const std::string& /*qName*/, const Attributes& attributes) override {
      lists.push_back(&attributes);
    }
    std::vector<const Attributes*> lists;
  } handler;
  TypedContentFilter filter(rulesOf("@x int\n@* auto"));
  filter.setContentHandler(&handler);
  AttributesImpl attributes;
  attributes.addAttribute("", "y", "y", "CDATA", "1");
  filter.startDocument();
  filter.startElement("", "a", "a", attributes);
  ASSERT_EQ(1U, handler.lists.size());
  EXPECT_EQ(&attributes, handler.lists[0]);
}

TEST(TypedContentFilter, TypedValuesOfTheParentPass) {
  std::ostringstream out;
  XMLWriter_X891 writer;
  writer.setOutputStream(&out);
  writer.startDocument();
  EncodingAlgorithmAttributesImpl list;
  list.addAttribute("", "x", "x", "CDATA", "", algorithms::shortInteger,
                    std::make_unique<ShortData>(std::vector<short>{1}));
  list.addAttribute("", "y", "y", "CDATA", "2");
  writer.startElement("", "a", "a", list);
  writer.characters("3");
  writer.floats({4});
  writer.endElement("", "a", "a");
  writer.endDocument();

  TypedContentFilter filter(rulesOf("@* int\na int"));
  XMLReader_X891 reader;
  filter.setParent(&reader);
  EventLog log;
  log.showLocator = false;
  log.showAlgorithms = true;
  log.attachTo(filter);
  log.attachAlgorithmsTo(filter);
  std::istringstream stream(out.str());
  filter.parse(stream);
  EXPECT_EQ(
      "startDocument()\nstartElement(, a, a, [{, x, x, CDATA, 1, , 2, ShortData{1}}, "
      "{, y, y, CDATA, 2, , 3, IntData{2}}])\ncharacters(3)\nobject(, 6, FloatData{4})\n" +
          end("a") + "endDocument()\n",
      log.text());
}

// --- Paths ---

/// The elements and attributes of a document that a path selects, by their texts.
std::string selected(const std::string& path, const std::string& text) {
  const bool isAttribute = path.find('@') != std::string::npos;
  struct Selected : DefaultHandler {
    void startElement(const std::string& /*uri*/, const std::string& /*localName*/,
                      const std::string& /*qName*/, const Attributes& attributes) override {
      const auto* list = dynamic_cast<const EncodingAlgorithmAttributes*>(&attributes);
      for (int i = 0; list != nullptr && i < list->getLength(); ++i) {
        if (list->getAlgorithmData(i) != nullptr) texts += ' ' + list->getValue(i);
      }
    }
    void object(const std::string& /*uri*/, int /*index*/, const EncodedData& data) override {
      texts += ' ' + data.toString();
    }
    std::string texts;
  } handler;
  TypedContentFilter filter(rulesOf(path + " int"));
  XMLReader_XML10 reader;
  filter.setParent(&reader);
  filter.setContentHandler(&handler);
  if (!isAttribute) {
    filter.setProperty(properties::encodingAlgorithmContentHandler,
                       static_cast<EncodingAlgorithmContentHandler*>(&handler));
  }
  std::istringstream stream(text);
  filter.parse(stream);
  return handler.texts;
}

TEST(TypedContentFilter, PathsMatchAtTheEnd) {
  const std::string text =
      "<a><b>1</b><c><b>2</b><a><b>3</b></a></c><b><b>4</b></b><a><c><b>5</b></c></a></a>";
  EXPECT_EQ(" 1 2 3 4 5", selected("b", text));
  EXPECT_EQ(" 1 3", selected("a/b", text));
  EXPECT_EQ(" 1", selected("/a/b", text));
  EXPECT_EQ(" 2 5", selected("c/b", text));
  EXPECT_EQ(" 2 5", selected("a/c/b", text));
  EXPECT_EQ(" 5", selected("a/a/c/b", text));
  EXPECT_EQ(" 5", selected("/a/a/c/b", text));
  EXPECT_EQ(" 4", selected("b/b", text));
  EXPECT_EQ(" 1 2 3 4 5", selected("*", text));
  EXPECT_EQ(" 1 2 3 4 5", selected("*/b", text));
  EXPECT_EQ(" 2 3 4 5", selected("*/*/b", text));
  EXPECT_EQ(" 2 4", selected("/*/*/b", text));
  EXPECT_EQ(" 3 5", selected("a/*/*/b", text));
  EXPECT_EQ("", selected("/b", text));
  EXPECT_EQ("", selected("b/c", text));
  EXPECT_EQ("", selected("x/b", text));
}

TEST(TypedContentFilter, TheSameNameMayFollowItself) {
  const std::string text = "<a><a><a><a>1</a></a></a></a>";
  for (const char* path : {"a", "a/a", "a/a/a", "a/a/a/a", "/a/a/a/a", "*/a/*/a"}) {
    EXPECT_EQ(" 1", selected(path, text)) << path;
  }
  EXPECT_EQ("", selected("a/a/a/a/a", text));
  EXPECT_EQ("", selected("/a/a/a", text));
}

TEST(TypedContentFilter, PathsOfAttributes) {
  const std::string text = "<a x='1' y='2'><b x='3'><a x='4'/></b><c y='5'/></a>";
  EXPECT_EQ(" 1 3 4", selected("@x", text));
  EXPECT_EQ(" 1 2 3 4 5", selected("@*", text));
  EXPECT_EQ(" 1 4", selected("a/@x", text));
  EXPECT_EQ(" 1", selected("/a/@x", text));
  EXPECT_EQ(" 3 5", selected("a/*/@*", text));
  EXPECT_EQ(" 1 2 4", selected("a/@*", text));
  EXPECT_EQ("", selected("c/@x", text));
}

TEST(TypedContentFilter, NamesHaveThreeForms) {
  const std::string text =
      "<a><b>1</b><b xmlns='u'>2</b><p:b xmlns:p='u'>3</p:b><p:b xmlns:p='v'>4</p:b></a>";
  EXPECT_EQ(" 1 2 3 4", selected("b", text));
  EXPECT_EQ(" 2 3", selected("{u}b", text));
  EXPECT_EQ(" 1", selected("{}b", text));
  EXPECT_EQ(" 3 4", selected("p:b", text));
  EXPECT_EQ(" 2 3", selected("a/{u}*", text));
  EXPECT_EQ("", selected("q:b", text));
  const std::string attributes = "<a xmlns:p='u' xmlns:q='v' x='1' p:x='2' q:x='3'/>";
  EXPECT_EQ(" 1 2 3", selected("@x", attributes));
  EXPECT_EQ(" 1", selected("@{}x", attributes));
  EXPECT_EQ(" 2", selected("@{u}x", attributes));
  EXPECT_EQ(" 3", selected("@q:x", attributes));
  EXPECT_EQ(" 3", selected("@{v}*", attributes));
}

TEST(TypedContentFilter, NamesOfAReaderWithoutNamespacesMatch) {
  TypedContentFilter filter(rulesOf("b int\nc/@x int"));
  XMLReader_XML10 reader;
  reader.setFeature(features::namespaces, false);
  reader.setFeature(features::namespacePrefixes, true);
  filter.setParent(&reader);
  EventLog log;
  log.showLocator = false;
  log.showAlgorithms = true;
  log.attachTo(filter);
  log.attachAlgorithmsTo(filter);
  std::istringstream stream("<p:a xmlns:p='u'><p:b>1</p:b><p:c p:x='2'/></p:a>");
  filter.parse(stream);
  EXPECT_EQ(
      "startDocument()\nstartElement(, , p:a, [{, , xmlns:p, CDATA, u}])\n"
      "startElement(, , p:b, [])\nobject(, 3, IntData{1})\nendElement(, , p:b)\n"
      "startElement(, , p:c, [{, , p:x, CDATA, 2, , 3, IntData{2}}])\nendElement(, , p:c)\n"
      "endElement(, , p:a)\nendDocument()\n",
      log.text());
}

TEST(TypedContentFilter, DeclarationsOfNamespacesAreNoAttributes) {
  TypedContentFilter filter(rulesOf("@* int"));
  XMLReader_XML10 reader;
  reader.setFeature(features::namespacePrefixes, true);
  filter.setParent(&reader);
  EventLog log;
  log.attachTo(filter);
  std::istringstream stream("<a xmlns='u' xmlns:p='v'/>");
  EXPECT_EQ("nothing", thrown([&] { filter.parse(stream); }));
}

TEST(TypedContentFilter, OfRulesThatMatchTheFirstCounts) {
  const std::string text = "<a><b x='1'>1</b></a>";
  const auto types = [&](const std::string& rules) { return told(rules, text); };
  const auto expected = [](const std::string& list, const std::string& content) {
    return start("a") + "startElement(, b, b, [{, x, x, CDATA, 1, , " + list + "}])\nobject(, " +
           content + ")\n" + end("b") + end("a");
  };
  const std::string intAttribute = "3, IntData{1}";
  const std::string longAttribute = "4, LongData{1}";
  EXPECT_EQ(expected(intAttribute, "3, IntData{1}"), types("b int\n* long\nb/@x int\n@* long"));
  EXPECT_EQ(expected(longAttribute, "4, LongData{1}"), types("* long\nb int\n@* long\nb/@x int"));
  EXPECT_EQ(expected(intAttribute, "4, LongData{1}"),
            types("a/b long\n/a/b int\na/@x long\na/b/@x int"));
}

// --- Failures ---

TEST(TypedContentFilter, TextThatIsNotOfItsTypeFails) {
  const std::string message =
      "The text of the element \"p:b\" cannot be typed: Invalid short text: \"99999\" at offset 2 "
      "is out of range";
  EXPECT_EQ(start("a") +
                "characters(\\n)\nstartPrefixMapping(p, u)\nstartElement(u, b, p:b, [])\n"
                "fatalError(" +
                message + ", 2, 25)\nSAXParseException: " + message + " (2:25)",
            told("b short", "<a>\n<p:b xmlns:p='u'>1 99999</p:b></a>"));
}

TEST(TypedContentFilter, AnAttributeThatIsNotOfItsTypeFails) {
  const std::string message =
      "The attribute \"p:x\" of the element \"b\" cannot be typed: Invalid float text: \"one\" at "
      "offset 0 is no number";
  EXPECT_EQ(start("a") + "characters(\\n)\nstartPrefixMapping(p, u)\nfatalError(" + message +
                ", 2, 1)\nSAXParseException: " + message + " (2:1)",
            told("@p:x float", "<a>\n<b xmlns:p='u' p:x='one'/></a>"));
}

TEST(TypedContentFilter, LeavesWhatIsNotOfItsType) {
  TypedContentFilter::Options lenient;
  lenient.lenient = true;
  EXPECT_EQ("startElement(, a, a, [{, x, x, CDATA, one}])\n" + start("b") + "characters(two)\n" +
                end("b") + start("b") + "object(, 3, IntData{3})\n" + end("b") + end("a"),
            told("@x int\nb int", "<a x='one'><b>two</b><b>+3</b></a>", lenient));
}

TEST(TypedContentFilter, InExactModeOnlyTextThatPrintsAsItWasIsTyped) {
  TypedContentFilter::Options exact;
  exact.exact = true;
  const auto content = [&](const std::string& type, const std::string& text) {
    const std::string events = told("a " + type, "<a>" + text + "</a>", exact);
    return events.substr(start("a").size(), events.size() - start("a").size() - end("a").size());
  };
  for (const std::string text : {"+1", "01", "-0", "-01", " 1", "1 ", "1  2", "1\n2"}) {
    EXPECT_EQ("characters(" + EventLog::show(text) + ")\n", content("int", text));
  }
  EXPECT_EQ("object(, 3, IntData{-1 0 10})\n", content("int", "-1 0 10"));
  for (const std::string text : {"1.0", "+1", "01", "1e3", "1E2", ".5", "100000", "0.10", "1e+5"}) {
    EXPECT_EQ("characters(" + text + ")\n", content("float", text));
  }
  EXPECT_EQ("object(, 6, FloatData{0.1 1e+05 -0 INF NaN})\n",
            content("float", "0.1 1e+05 -0 INF NaN"));
  EXPECT_EQ("characters(0.100000000000000001)\n", content("double", "0.100000000000000001"));
  EXPECT_EQ("characters(true 1)\n", content("boolean", "true 1"));
  EXPECT_EQ("characters(ab)\n", content("hexadecimal", "ab"));
  EXPECT_EQ("object(, 0, HexadecimalData{AB})\n", content("hexadecimal", "AB"));
  EXPECT_EQ("characters(TW Fu)\n", content("base64", "TW Fu"));
  EXPECT_EQ("characters(F81d4fae-7dec-11d0-a765-00a0c91e6bf6)\n",
            content("uuid", "F81d4fae-7dec-11d0-a765-00a0c91e6bf6"));
  EXPECT_NE(std::string::npos,
            told("a int", "<a>one</a>", exact).find("\"one\" at offset 0 is no integer"));
}

TEST(TypedContentFilter, TextLongerThanTheLimitFails) {
  TypedContentFilter::Options options;
  options.maximumTextOctets = 5;
  EXPECT_EQ(start("a") + "object(, 3, IntData{12345})\n" + end("a"),
            told("a int", "<a>12345</a>", options));
  const std::string message =
      "The text of the element \"a\" cannot be typed: it is longer than 5 octets "
      "(maximumTextOctets)";
  EXPECT_EQ(
      start("a") + "fatalError(" + message + ", 1, 4)\nSAXParseException: " + message + " (1:4)",
      told("a int", "<a>12 456</a>", options));
  options.lenient = true;
  EXPECT_EQ(start("a") + "characters(12 456&7)\n" + end("a"),
            told("a int", "<a>12 456&amp;7</a>", options));
  options.maximumTextOctets = 0;
  EXPECT_EQ(start("a") + "characters(1)\n" + end("a"), told("a int", "<a>1</a>", options));
}

TEST(TypedContentFilter, ReadsAgainAfterAFailure) {
  TypedContentFilter filter(rulesOf("a/b int"));
  XMLReader_XML10 reader;
  filter.setParent(&reader);
  EventLog log;
  log.showLocator = false;
  const auto told = [&](const std::string& text) {
    log.clear();
    std::istringstream stream(text);
    thrown([&] { filter.parse(stream); });
    return log.text();
  };
  log.attachTo(filter);
  log.attachAlgorithmsTo(filter);
  const std::string good = told("<a><b>1</b></a>");
  EXPECT_EQ("startDocument()\n" + start("a") + start("b") + "object(, 3, IntData{1})\n" + end("b") +
                end("a") + "endDocument()\n",
            good);
  for (const char* bad : {"<a><b>x</b></a>", "<a><b>1", "<a><a><b>1<", "<x><a><b>1</b></y>"}) {
    told(bad);
    EXPECT_EQ(good, told("<a><b>1</b></a>")) << bad;
    EXPECT_EQ("startDocument()\n" + start("b") + "characters(1)\n" + end("b") + "endDocument()\n",
              told("<b>1</b>"));
  }
}

TEST(TypedContentFilter, TextComesBeforeAFailureOfTheParent) {
  const std::string document = "<a><b>12 34</c></a>";
  EXPECT_EQ(told("", document), told("b int", document));
  EXPECT_EQ(told("", document), told("* auto", document));
}

TEST(TypedContentFilter, TakesBlocks) {
  TypedContentFilter filter(rulesOf("a int"));
  XMLReader_XML10 reader;
  filter.setParent(&reader);
  EventLog log;
  log.showLocator = false;
  log.attachTo(filter);
  log.attachAlgorithmsTo(filter);
  const std::string text = "<a>12 34 56</a>";
  for (std::size_t i = 0; i < text.size(); ++i) filter.parse(&text[i], 1, i + 1 == text.size());
  EXPECT_EQ("startDocument()\n" + start("a") + "object(, 3, IntData{12 34 56})\n" + end("a") +
                "endDocument()\n",
            log.text());
}

TEST(TypedContentFilter, SurvivesEventsInNoOrder) {
  TypedContentFilter filter(rulesOf("a int\na/b int"));
  EventLog log;
  log.attachTo(filter);
  log.attachAlgorithmsTo(filter);
  filter.endElement("", "a", "a");
  filter.characters("1");
  filter.startElement("", "a", "a", AttributesImpl());
  filter.characters("2");
  filter.endElement("", "a", "a");
  filter.endElement("", "a", "a");
  EXPECT_EQ(
      end("a") + "characters(1)\n" + start("a") + "object(, 3, IntData{2})\n" + end("a") + end("a"),
      log.text());
}

// --- Hostile documents ---

TEST(TypedContentFilter, DeepDocumentsAreNoBurden) {
  constexpr int kDepth = 100000;
  std::string text;
  for (int i = 0; i < kDepth; ++i) text += "<a>";
  text += "<b>1</b>";
  for (int i = 0; i < kDepth; ++i) text += "</a>";
  EXPECT_EQ(" 1", selected("a/*/*/a/b", text));
  EXPECT_EQ("", selected("/a/b", text));
}

TEST(TypedContentFilter, ManyItemsAreOneValue) {
  std::string text = "<a>";
  for (int i = 0; i < 1000000; ++i) text += "1\n";
  const std::string octets = written("a short", text + "</a>");
  EXPECT_EQ(document("3C 00 'a' 8C 0B 00 1E 83 7D"), octets.substr(0, 14));
  EXPECT_EQ(14U + 2000000U + 1U, octets.size());
}

}  // namespace
