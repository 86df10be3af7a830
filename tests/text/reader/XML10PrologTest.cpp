#include <gtest/gtest.h>

#include <Tavrin/PullReader.h>

#include <random>

#include "BothScanners.h"

// Documents that expat reads up to the root element, and the scanner from there on.

namespace {

using namespace Tavrin;
using namespace bothways;

const std::string kContent =
    "<a xmlns='u' xmlns:p='v' c='d' p:e='&lt;'>t\r\n<p:b/>\xC3\xA4<![CDATA[x]]]>&#x20AC;<!--y-->"
    "<?z?></a>\n<!--after--><?last?>\n";

std::string manyAttributes(int count) {
  std::string declarations = "<!ATTLIST a";
  for (int i = 0; i < count; ++i) declarations += " x" + std::to_string(i) + " CDATA 'y'";
  return declarations + ">";
}

/// Declarations, and whether the scanner goes on behind them.
struct Sample {
  std::string prolog;
  bool isScanned;
};

const std::vector<Sample>& samples() {
  static const std::vector<Sample> all = {
      {"<!DOCTYPE a>", true},
      {"\xEF\xBB\xBF<?xml version='1.0'?>\r\n<!DOCTYPE a>\r\n", true},
      {"<?xml version='1.0' encoding='UTF-8' standalone='yes'?><!--c--> <!DOCTYPE a ><?p d?>\n\n ",
       true},
      {"<!DOCTYPE a SYSTEM 's'>", true},
      {"\n<!DOCTYPE a PUBLIC 'p' 's' [ ]>\n", true},
      {"<?xml version='1.0' standalone='no'?>\n<!DOCTYPE a\nSYSTEM 's'>\n", true},
      {"<!DOCTYPE a [<!ELEMENT a ANY><!ATTLIST a c CDATA #IMPLIED><!-- \xC3\xA4\r\n --><?p d?>]>",
       true},
      {"<!DOCTYPE a [<!NOTATION n SYSTEM 'n'><!ATTLIST x y CDATA #REQUIRED>]>\r", true},
      {"<!DOCTYPE a [" + std::string(5000, ' ') + "]>", true},
      {"<!DOCTYPE a>" + std::string(60000, '\n'), true},
      {"<!DOCTYPE a>" + std::string(70000, '\n'), false},
      {"<!DOCTYPE a [<!ATTLIST a c NMTOKEN #IMPLIED>]>", true},
      {"<!DOCTYPE a [<!ATTLIST x y CDATA 'z'>]>", true},
      {"<!DOCTYPE a [<!ATTLIST a f CDATA 'g' c ID #IMPLIED>]>", true},
      {"<!DOCTYPE a [<!ATTLIST a xmlns:q CDATA #FIXED 'w'>]>", true},
      {"<!DOCTYPE a [<!ATTLIST a p:e (x|y) 'x' p:z CDATA 'd' p:f NOTATION (n) #IMPLIED>]>", true},
      {"<!DOCTYPE a [<!ATTLIST a xmlns CDATA 'w' c NMTOKENS ' x  y ' xmlns:p NMTOKEN 'v'>]>", true},
      {"<!DOCTYPE a [<!ATTLIST p:b xmlns:r CDATA 'w' r:x CDATA '1&#10;&lt;' x ID #IMPLIED"
       " xml:lang CDATA 'en' xmlns:xml CDATA 'http://www.w3.org/XML/1998/namespace'>]>",
       true},
      {"<!DOCTYPE a [<!ATTLIST a c CDATA 'first' c NMTOKEN 'second'><!ATTLIST a c ID #REQUIRED>]>",
       true},
      {"<!DOCTYPE a [<!ATTLIST p:b p:e CDATA '1' q:e CDATA '2'>]>", true},
      {"<!DOCTYPE a [<!ATTLIST a xmlns:q CDATA 'v' q:e CDATA 'twice'>]>", false},
      {"<!DOCTYPE a [" + manyAttributes(64) + "]>", true},
      {"<!DOCTYPE a [" + manyAttributes(65) + "]>", false},
      {"<!DOCTYPE a [<!ENTITY e 'f'>]>", false},
      {"<!DOCTYPE a [<!ENTITY % e 'f'>]>", false},
      {"<!DOCTYPE a [<!ENTITY e SYSTEM 'f'>]>", false},
      {"<!DOCTYPE a [<!NOTATION n SYSTEM 'n'><!ENTITY e SYSTEM 'f' NDATA n>]>", false},
      {"<!DOCTYPE a [<!ENTITY % p SYSTEM 'p'>%p;<!ATTLIST a f CDATA 'g'>]>", false},
      {"<!DOCTYPE a [%e;<!ATTLIST a c CDATA #IMPLIED>]>", false},
      {"<!DOCTYPE a SYSTEM 'subset'>", false},
      {"<!DOCTYPE a SYSTEM 'empty'>", false},
  };
  return all;
}

/// Whether text of the block is handed out as it lies there. Only the scanner does.
bool isScanned(const std::string& text) {
  struct Resolver : EventLog {
    Resolver() { entities = {{"subset", ""}, {"empty", ""}, {"p", ""}}; }
  } resolver;
  PullReader reader("XML10");
  reader.reader().setEntityResolver(&resolver);
  reader.supply(text.data(), text.size(), true);
  try {
    while (reader.next()) {
      if (reader.event() != PullEvent::characters || reader.text() != "t") continue;
      return reader.text().data() == text.data() + text.find(">t") + 1;
    }
  } catch (const SAXParseException&) {
    // Not in all samples may an attribute be added.
  }
  return false;
}

void parsePulled(const std::string& text) {
  PullReader reader("XML10");
  reader.supply(text.data(), text.size(), true);
  while (reader.next()) {
  }
}

TEST(XML10Prolog, IsFollowedByTheScannerWhereNothingIsDeclaredThatItNeeds) {
  EXPECT_TRUE(isScanned(kContent));
  for (const Sample& sample : samples()) {
    EXPECT_EQ(sample.isScanned, isScanned(sample.prolog + kContent)) << sample.prolog.substr(0, 99);
  }
}

TEST(XML10Prolog, IsNotSeen) {
  for (const Sample& sample : samples()) {
    const bool isShort = sample.prolog.size() < 1000;
    for (const Ways& ways : kWays) {
      for (const char* const content :
           {kContent.c_str(), "<a/>", "<a>&none;</a>", "<a b='&none;'>\n<c>&none;</c></d>", "<a",
            "", "x", "<a><b>&amp;</b>\n\n<b c='1' c='2'/></a>", "<p:a/>", "<a>]]></a>",
            "<a xmlns:p='u'><b><![CDATA[x\x01]]></b></a>", "<a/><b/>", "<a/><!DOCTYPE a>",
            "<a c='  x \t\n y&#32;&#9; &#32;' p:e=' ' xmlns:p=' v '><a c=''/><p:b x=' ' y='  z '>"
            "&none;</p:b></a>"}) {
        const std::string text = sample.prolog + content;
        if (isShort) {
          expectSameInBlocks(text, &ways == kWays.data() ? 5 : 29, ways);
        } else {
          expectSame(text, {}, true, ways);
          expectSame(text, cutEvenly(text, 1000), false, ways);
        }
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST(XML10Prolog, IsNotSeenWhereItsRootElementIsCut) {
  const std::string prolog = "<!DOCTYPE a SYSTEM 's'>\n";
  for (const std::size_t blanks : {1, 2000, 2040, 5000, 70000}) {
    const std::string tag = "<a" + std::string(blanks, ' ') + "b='c'>";
    for (const std::string& text : {prolog + tag + "x</a>", prolog + tag + "&none;</a>",
                                    prolog + std::string(blanks, '\n') + tag + "</b>"}) {
      expectSame(text, {}, true);
      for (const std::size_t size : {512, 1999, 2048, 4096, 100000}) {
        expectSame(text, cutEvenly(text, size), true);
      }
      if (HasFatalFailure()) return;
    }
  }
}

TEST(XML10Prolog, IsNotSeenInMutatedDocuments) {
  const std::string seed =
      "<?xml version='1.0'?>\n<!--c--><!DOCTYPE p:a PUBLIC 'x' 's' [\n<!ELEMENT a (b|c)*>\r\n"
      "<!ATTLIST p:a b CDATA #IMPLIED c NMTOKENS ' 1  2' xmlns:q CDATA 'w'><?q r?>]>\n<p:a "
      "xmlns:p='v' y='w'>\n\ttext&lt;<b c='&#10;'/><p:a c=' 3  4&#32;' q:d=''/>"
      "\xC3\xA4</p:a><!--e-->\n";
  std::mt19937 numbers(29);
  for (int round = 0; round < 3000; ++round) {
    const std::string text = mutated(seed, numbers);
    const Ways& ways = kWays[numbers() % kWays.size()];
    expectSame(text, {}, true, ways);
    expectSame(text, cutEvenly(text, 1 + numbers() % 64), numbers() % 2 == 0, ways);
    if (HasFatalFailure()) return;
  }
}

TEST(XML10Prolog, BoundsWhatDefaultsAdd) {
  std::string text = "<!DOCTYPE a [<!ATTLIST b c CDATA '" + std::string(3000, 'x') + "'>]><a>\n";
  for (int i = 0; i < 5000; ++i) text += "<b/>";
  const std::string expected = toldBy(kExpat, text + "</a>", {}, {});
  EXPECT_NE(std::string::npos, expected.find("from defaults of attributes) breached"));
  EXPECT_EQ(expected, toldBy(kOwn, text + "</a>", {}, {}));
  EXPECT_EQ(expected.substr(expected.rfind("SAXParseException")),
            outcomeOf([&] { parsePulled(text + "</a>"); }));
}

}  // namespace
