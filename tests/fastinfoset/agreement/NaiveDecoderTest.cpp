#include <gtest/gtest.h>

#include <string>

#include "AgreementLog.h"
#include "EventLog.h"
#include "FIWriterProbe.h"
#include "HexOctets.h"

// The naive decoder itself, on octets written by hand.

namespace agreement {
namespace {

std::string decodedBody(const std::string& body) {
  return decoded(octets("E0 00 00 01 00 " + body), TypedAs::primitives);
}

std::string document(const EventLog::Lines& lines) {
  return "startDocument()\n" + join(lines) + "endDocument()\n";
}

TEST(NaiveDecoder, DecodesTheSmallestDocuments) {
  EXPECT_EQ(decodedBody("F0"), document({}));
  EXPECT_EQ(decodedBody("FF"), document({}));
  EXPECT_EQ(decodedBody("3C 00 'r' FF"),
            document({"startElement(, r, r, [])", "endElement(, r, r)"}));
  EXPECT_EQ(decodedBody("3C 00 'r' F0 F0"),
            document({"startElement(, r, r, [])", "endElement(, r, r)"}));
}

TEST(NaiveDecoder, DecodesNamesAndAttributes) {
  EXPECT_EQ(decodedBody("78 CF 00 'p' 04 'urn:x' F0 3F 81 81 00 'a' 78 01 'id' 40 '1' FF F0"),
            document({"startPrefixMapping(p, urn:x)",
                      "startElement(urn:x, a, p:a, [{, id, id, CDATA, 1}])",
                      "endElement(urn:x, a, p:a)", "endPrefixMapping(p)"}));
  EXPECT_EQ(decodedBody("7C 00 'r' 7B 80 80 03 'lang' FF F0 40 00 30 23 00 01 FF FE F0 00 FF FF"),
            document({"startElement(, r, r, [{http://www.w3.org/XML/1998/namespace, lang, "
                      "xml:lang, CDATA, }])",
                      "startElement(, r, r, [{http://www.w3.org/XML/1998/namespace, lang, "
                      "xml:lang, CDATA, 1 -2, , 2, ShortData{1 -2}}])",
                      "shorts(1 -2)", "startElement(, r, r, [])", "endElement(, r, r)",
                      "endElement(, r, r)", "endElement(, r, r)"}));
}

TEST(NaiveDecoder, DecodesContent) {
  EXPECT_EQ(
      decodedBody("3C 00 'r' 91 'hi' A0 82 04 '1234567' E2 40 'c' E1 00 't' 80 8C 24 'x'"
                  "8C 0E 05 00 00 00 01 FF FF FF FE 8C 20 'y' FF"),
      document({"startElement(, r, r, [])", "characters(hi)", "characters(hi)",
                "characters(1234567)", "comment(c)", "processingInstruction(t, c)", "startCDATA()",
                "characters(x)", "endCDATA()", "ints(1 -2)", "endElement(, r, r)"}));
}

TEST(NaiveDecoder, DecodesEveryFormOfALength) {
  using writer_test::textOf;
  const std::string header = octets("E0 00 00 01 00");
  const auto logOf = [](const std::string& name, const std::string& comment,
                        const std::string& text) {
    return document({"startElement(, " + name + ", " + name + ", [])", "comment(" + comment + ")",
                     "characters(" + text + ")", "endElement(, " + name + ", " + name + ")"});
  };
  EXPECT_EQ(decoded(header + octets("3C 40 01") + textOf(66) + octets("E2 08 01") + textOf(10) +
                        octets("82 01") + textOf(4) + octets("FF"),
                    TypedAs::text),
            logOf(textOf(66), textOf(10), textOf(4)));
  EXPECT_EQ(
      decoded(header + octets("3C 60 00 00 00 01") + textOf(322) + octets("E2 0C 00 00 01 00") +
                  textOf(521) + octets("83 00 00 00 01") + textOf(260) + octets("FF"),
              TypedAs::text),
      logOf(textOf(322), textOf(521), textOf(260)));
}

TEST(NaiveDecoder, RefusesWhatIsNoDocument) {
  EXPECT_EQ(decoded("", TypedAs::text), "the end at octet 0\n");
  EXPECT_EQ(decoded(octets("E0 00 00 02 00 F0"), TypedAs::text), "another header at octet 4\n");
  EXPECT_EQ(decoded(octets("E0 00 00 01 20 F0"), TypedAs::text), "another header at octet 5\n");
  EXPECT_EQ(decodedBody("F0 F0"), "octets behind the document at octet 6\n");
  EXPECT_EQ(decodedBody("3C 00 'r'"), "the end at octet 8\n");
  EXPECT_EQ(decodedBody("3C 04 'r'"), "the end within a text at octet 7\n");
  EXPECT_EQ(decodedBody("3C 00 'r' F0 00 FF"), "a second root at octet 10\n");
  EXPECT_EQ(decodedBody("3C 00 'r' 01"), "an index beyond its table at octet 9\n");
  EXPECT_EQ(decodedBody("3C 00 'r' A0"), "an index beyond its table at octet 9\n");
  EXPECT_EQ(decodedBody("3C 00 'r' 90 'x' B9"), "no chunk begins so at octet 11\n");
  EXPECT_EQ(decodedBody("3C 00 'r' 90 'x' C0"), "no chunk begins so at octet 11\n");
  EXPECT_EQ(decodedBody("3E 00 'r'"), "a prefix without a namespace at octet 6\n");
  EXPECT_EQ(decodedBody("3D 81 00 'r'"), "an index beyond its table at octet 7\n");
  EXPECT_EQ(decodedBody("91 'hi' F0"), "no child begins so at octet 6\n");
  EXPECT_EQ(decodedBody("3C 00 'r' C8"), "no child begins so at octet 9\n");
  EXPECT_EQ(decodedBody("3C 00 'r' 8C 09 00 FF"), "the end at octet 12\n");
  EXPECT_EQ(decodedBody("3C 00 'r' 8C 0C 00 FF"), "half an integer\n");
}

}  // namespace
}  // namespace agreement
