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
      {"<!DOCTYPE a [<!ATTLIST a c NMTOKEN #IMPLIED>]>", false},
      {"<!DOCTYPE a [<!ATTLIST x y CDATA 'z'>]>", false},
      {"<!DOCTYPE a [<!ATTLIST a f CDATA 'g' c ID #IMPLIED>]>", false},
      {"<!DOCTYPE a [<!ATTLIST a xmlns:q CDATA #FIXED 'w'>]>", false},
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
  while (reader.next()) {
    if (reader.event() != PullEvent::characters || reader.text() != "t") continue;
    return reader.text().data() == text.data() + text.find(">t") + 1;
  }
  return false;
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
            "<a xmlns:p='u'><b><![CDATA[x\x01]]></b></a>", "<a/><b/>", "<a/><!DOCTYPE a>"}) {
        const std::string text = sample.prolog + content;
        if (isShort) {
          expectSameInBlocks(text, &ways == kWays.data() ? 1 : 7, ways);
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
      "<!ATTLIST a b CDATA #IMPLIED><?q r?>]>\n<p:a xmlns:p='v' y='w'>\n\ttext&lt;<b c='&#10;'/>"
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

}  // namespace
