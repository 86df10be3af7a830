#include "TypedDocuments.h"
#include "Workplace.h"

namespace {

using TypedContent = Workplace;

}  // namespace

TEST_F(TypedContent, IsShownAsValues) {
  EXPECT_EQ(run({"events", "-"}, typed::document()), (Result{0,
                                                             R"-(startDocument()
startElement("", "a", "a", [{"", "x", "x", "CDATA", "7", "", 3}, {"", "y", "y", "CDATA", "1"}])
shorts([1, -2])
ints([1, -1])
longs([-1])
booleans([true, false, true])
floats([0.1, "nan", "inf", "-inf"])
doubles([0.1, -2])
bytes("AQID")
bytes("/wD+")
startCDATA()
characters("<")
endCDATA()
endElement("", "a", "a")
endDocument()
)-",
                                                             ""}));
}

TEST_F(TypedContent, IsShownAsJSONArrays) {
  EXPECT_EQ(run({"events", "--json", "-"}, typed::document()), (Result{0,
                                                                       R"-({"event":"startDocument"}
{"event":"startElement","uri":"","localName":"a","qName":"a","attributes":[{"uri":"","localName":"x","qName":"x","type":"CDATA","value":"7","algorithmURI":"","algorithmIndex":3},{"uri":"","localName":"y","qName":"y","type":"CDATA","value":"1"}]}
{"event":"shorts","values":[1,-2]}
{"event":"ints","values":[1,-1]}
{"event":"longs","values":[-1]}
{"event":"booleans","values":[true,false,true]}
{"event":"floats","values":[0.1,"nan","inf","-inf"]}
{"event":"doubles","values":[0.1,-2]}
{"event":"bytes","data":"AQID"}
{"event":"bytes","data":"/wD+"}
{"event":"startCDATA"}
{"event":"characters","text":"<"}
{"event":"endCDATA"}
{"event":"endElement","uri":"","localName":"a","qName":"a"}
{"event":"endDocument"}
)-",
                                                                       ""}));
}

// The shortest form that reads back as the same number, in the type that it has.
TEST_F(TypedContent, ShowsNumbersThatReadBackAsTheyAre) {
  const struct {
    const char* content;
    const char* event;
  } cases[] = {
      {"8C 1A 01 3EAAAAAB", "floats([0.33333334])"},
      {"8C 1A 01 80000000", "floats([-0])"},
      {"8C 1A 01 7F7FFFFF", "floats([3.4028235e+38])"},
      {"8C 1A 01 00000001", "floats([1e-45])"},
      {"8C 1A 01 FFC00000", "floats([\"nan\"])"},
      {"8C 1E 05 3FD5555555555555", "doubles([0.3333333333333333])"},
      {"8C 1E 05 7FEFFFFFFFFFFFFF", "doubles([1.7976931348623157e+308])"},
      {"8C 1E 05 0000000000000001", "doubles([5e-324])"},
      {"8C 1E 05 FFF0000000000000", "doubles([\"-inf\"])"},
      {"8C 12 05 8000000000000000", "longs([-9223372036854775808])"},
      {"8C 12 05 7FFFFFFFFFFFFFFF", "longs([9223372036854775807])"},
      {"8C 0E 01 80000000", "ints([-2147483648])"},
      {"8C 09 8000", "shorts([-32768])"},
  };
  for (const auto& [content, event] : cases) {
    SCOPED_TRACE(content);
    EXPECT_EQ(run({"events", "-"}, typed::element(content)),
              (Result{0,
                      "startDocument()\nstartElement(\"\", \"a\", \"a\", [])\n" +
                          std::string(event) + "\nendElement(\"\", \"a\", \"a\")\nendDocument()\n",
                      ""}));
  }
}

TEST_F(TypedContent, OfUnknownAlgorithmsIsShownAsOctets) {
  const std::string start = "startDocument()\nstartElement(\"\", \"a\", \"a\", [])\n";
  const std::string end = "endElement(\"\", \"a\", \"a\")\nendDocument()\n";
  EXPECT_EQ(run({"events", "--from", "FI", "-"}, typed::unknownBuiltIn()),
            (Result{0, start + "octets(\"\", 8, \"qw==\")\n" + end, ""}));
  EXPECT_EQ(run({"events", "-"}, typed::unknownOfApplication()),
            (Result{0, start + "octets(\"urn:u\", 31, \"q80=\")\n" + end, ""}));
  EXPECT_EQ(run({"events", "--json", "-"}, typed::unknownOfApplication()),
            (Result{0,
                    "{\"event\":\"startDocument\"}\n"
                    "{\"event\":\"startElement\",\"uri\":\"\",\"localName\":\"a\",\"qName\":\"a\","
                    "\"attributes\":[]}\n"
                    "{\"event\":\"octets\",\"uri\":\"urn:u\",\"index\":31,\"data\":\"q80=\"}\n"
                    "{\"event\":\"endElement\",\"uri\":\"\",\"localName\":\"a\",\"qName\":\"a\"}\n"
                    "{\"event\":\"endDocument\"}\n",
                    ""}));
}

TEST_F(TypedContent, BecomesTextInText) {
  EXPECT_EQ(run({"convert", "--no-declaration", "-"}, typed::document()),
            (Result{0, typed::kDocumentAsText, ""}));
}

TEST_F(TypedContent, BecomesTextInTextByTheReaderFI) {
  EXPECT_EQ(run({"convert", "--from", "FI", "--to", "XML", "--no-declaration", "-"},
                typed::element("8C 1A 0D 3DCCCCCD 7FC00000 7F800000 FF800000")),
            (Result{0, "<a>0.1 nan inf -inf</a>", ""}));
}

// The shortest text that reads back as the same number, in the type that it has; as XML Schema
// spells it.
TEST_F(TypedContent, HasTheTextOfExactlyItsNumbers) {
  const struct {
    const char* content;
    const char* text;
  } cases[] = {
      {"8C 1A 01 3EAAAAAB", "0.33333334"},
      {"8C 1A 01 3DCCCCCD", "0.1"},
      {"8C 1A 01 80000000", "-0"},
      {"8C 1A 01 7F7FFFFF", "3.4028235e+38"},
      {"8C 1A 01 00000001", "1e-45"},
      {"8C 1A 01 7FC00000", "NaN"},
      {"8C 1E 05 3FB999999999999A", "0.1"},
      {"8C 1E 05 3FD5555555555555", "0.3333333333333333"},
      {"8C 1E 05 7FEFFFFFFFFFFFFF", "1.7976931348623157e+308"},
      {"8C 1E 05 0000000000000001", "5e-324"},
      {"8C 1E 05 FFF0000000000000", "-INF"},
      {"8C 0E 01 80000000", "-2147483648"},
      {"8C 12 05 8000000000000000", "-9223372036854775808"},
  };
  for (const auto& [content, text] : cases) {
    SCOPED_TRACE(content);
    const std::string document = typed::element(content);
    EXPECT_EQ(run({"convert", "--no-declaration", "-"}, document),
              (Result{0, "<a>" + std::string(text) + "</a>", ""}));
    EXPECT_EQ(run({"convert", "--to", "X891", "-"}, document), (Result{0, document, ""}));
  }
}

TEST_F(TypedContent, MayBeUUIDs) {
  const std::string uuids =
      "F81D4FAE 7DEC 11D0 A765 00A0C91E6BF6 00000000 0000 0000 0000 000000000000";
  // An attribute with one of them, and content of two.
  const std::string document = octets(typed::kHeader + "7C 00 'a' 78 00 'x' 30 88 07 " +
                                      uuids.substr(0, 36) + " F0 8C 22 1D " + uuids + " FF");
  const std::string first = "f81d4fae-7dec-11d0-a765-00a0c91e6bf6";
  const std::string both = first + " 00000000-0000-0000-0000-000000000000";
  EXPECT_EQ(run({"convert", "--no-declaration", "-"}, document),
            (Result{0, "<a x='" + first + "'>" + both + "</a>", ""}));
  EXPECT_EQ(run({"convert", "--to", "X891", "-"}, document), (Result{0, document, ""}));
  EXPECT_EQ(run({"events", "-"}, document),
            (Result{0,
                    "startDocument()\n"
                    "startElement(\"\", \"a\", \"a\", [{\"\", \"x\", \"x\", \"CDATA\", \"" +
                        first + "\", \"\", 8}])\nobject(\"\", 8, \"" + both +
                        "\")\nendElement(\"\", \"a\", \"a\")\nendDocument()\n",
                    ""}));
  writeFile("text.xml", "<a x='" + first + "'>" + both + "</a>");
  EXPECT_EQ(run({"diff", "text.xml", "-"}, document), silent(0));
}

// Hexadecimal and base64, too: they are the same octets, but not the same text.
TEST_F(TypedContent, StaysWhatItIsInFastInfoset) {
  EXPECT_EQ(run({"convert", "--to", "X891", "-"}, typed::document()),
            (Result{0, typed::document(), ""}));
  EXPECT_EQ(run({"convert", "--to", "FI", "-"}, typed::document()),
            (Result{0, typed::document(), ""}));
}

TEST_F(TypedContent, OfAnUnknownBuiltInAlgorithmIsKeptByTheTypesFIOnly) {
  writeFile("in.fi", typed::unknownBuiltIn());
  EXPECT_EQ(run({"convert", "--from", "FI", "--to", "FI", "in.fi", "out.fi"}), silent(0));
  EXPECT_EQ(readFile("out.fi"), typed::unknownBuiltIn());
  // 5 octets of header, 3 of the element, 3 of the content.
  EXPECT_EQ(run({"convert", "--from", "FI", "in.fi", "out.xml"}),
            (Result{1, "",
                    "in.fi: octet 11: encoding algorithm 8 is unknown, so the copy would lack its "
                    "content\n"}));
  EXPECT_EQ(files(), (Names{"in.fi", "out.fi"}));
}

TEST_F(TypedContent, OfAnApplicationsAlgorithmIsNotCopied) {
  writeFile("in.fi", typed::unknownOfApplication());
  const Result failed = {1, "",
                         "in.fi: octet 21: encoding algorithm 31 \"urn:u\" is unknown, so the copy "
                         "would lack its content\n"};
  EXPECT_EQ(run({"convert", "in.fi", "out.xml"}), failed);
  EXPECT_EQ(run({"convert", "in.fi", "out.fi"}), failed);
  EXPECT_EQ(run({"check", "in.fi"}), (Result{0, "in.fi: well-formed\n", ""}));
  EXPECT_EQ(files(), Names{"in.fi"});
}
