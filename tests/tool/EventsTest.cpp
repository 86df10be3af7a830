#include <gmock/gmock.h>

#include "Workplace.h"

namespace {

class Events : public Workplace {
 protected:
  Result events(const std::string& document, const ToolProcess::Arguments& options = {}) {
    ToolProcess::Arguments arguments = {"events", "-"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return run(arguments, document);
  }
};

/// Every event that a text document has without declarations.
const std::string kDocument =
    "<?xml version='1.0'?>\n"
    "<!--before-->\n"
    "<!DOCTYPE p:a PUBLIC 'pub' 'a.dtd' [<!--within--><?in it?>%gone;]>\n"
    "<?target some data?>\n"
    "<p:a xmlns:p='urn:x' xmlns='urn:d' id='1' p:longer='2' note='&quot;&#9;'>"
    "<b/>text<![CDATA[<]]>&late;<?alone?></p:a>\n"
    "<!---->";

}  // namespace

TEST_F(Events, AreOneALine) {
  EXPECT_EQ(events(kDocument), (Result{0,
                                       R"(startDocument()
comment("before")
startDTD("p:a", "pub", "a.dtd")
comment("within")
processingInstruction("in", "it")
skippedEntity("%gone")
resolveEntity("pub", "a.dtd")
skippedEntity("[dtd]")
endDTD()
processingInstruction("target", "some data")
startPrefixMapping("p", "urn:x")
startPrefixMapping("", "urn:d")
startElement("urn:x", "a", "p:a", [{"", "id", "id", "CDATA", "1"}, {"urn:x", "longer", "p:longer", "CDATA", "2"}, {"", "note", "note", "CDATA", "\"\t"}])
startElement("urn:d", "b", "b", [])
endElement("urn:d", "b", "b")
characters("text")
startCDATA()
characters("<")
endCDATA()
skippedEntity("late")
processingInstruction("alone", "")
endElement("urn:x", "a", "p:a")
endPrefixMapping("")
endPrefixMapping("p")
comment("")
endDocument()
)",
                                       ""}));
}

TEST_F(Events, AreOneObjectALineInJSON) {
  EXPECT_EQ(events(kDocument, {"--json"}), (Result{0,
                                                   R"({"event":"startDocument"}
{"event":"comment","text":"before"}
{"event":"startDTD","name":"p:a","publicId":"pub","systemId":"a.dtd"}
{"event":"comment","text":"within"}
{"event":"processingInstruction","target":"in","data":"it"}
{"event":"skippedEntity","name":"%gone"}
{"event":"resolveEntity","publicId":"pub","systemId":"a.dtd"}
{"event":"skippedEntity","name":"[dtd]"}
{"event":"endDTD"}
{"event":"processingInstruction","target":"target","data":"some data"}
{"event":"startPrefixMapping","prefix":"p","uri":"urn:x"}
{"event":"startPrefixMapping","prefix":"","uri":"urn:d"}
{"event":"startElement","uri":"urn:x","localName":"a","qName":"p:a","attributes":[{"uri":"","localName":"id","qName":"id","type":"CDATA","value":"1"},{"uri":"urn:x","localName":"longer","qName":"p:longer","type":"CDATA","value":"2"},{"uri":"","localName":"note","qName":"note","type":"CDATA","value":"\"\t"}]}
{"event":"startElement","uri":"urn:d","localName":"b","qName":"b","attributes":[]}
{"event":"endElement","uri":"urn:d","localName":"b","qName":"b"}
{"event":"characters","text":"text"}
{"event":"startCDATA"}
{"event":"characters","text":"<"}
{"event":"endCDATA"}
{"event":"skippedEntity","name":"late"}
{"event":"processingInstruction","target":"alone","data":""}
{"event":"endElement","uri":"urn:x","localName":"a","qName":"p:a"}
{"event":"endPrefixMapping","prefix":""}
{"event":"endPrefixMapping","prefix":"p"}
{"event":"comment","text":""}
{"event":"endDocument"}
)",
                                                   ""}));
}

TEST_F(Events, IncludeDeclarationsOnlyWhereTheyAreWanted) {
  const std::string document =
      "<!DOCTYPE a [<!ELEMENT a (b|c)*><!ELEMENT b EMPTY><!ELEMENT c (#PCDATA)>"
      "<!ATTLIST a x CDATA #IMPLIED y (on|off) 'on' z NMTOKEN #FIXED 'z'>"
      "<!ENTITY e 'a \"text\"'><!ENTITY % p 'q'>]><a/>";
  const std::string end =
      "endDTD()\n"
      "startElement(\"\", \"a\", \"a\", [{\"\", \"y\", \"y\", \"NMTOKEN\", \"on\"}, "
      "{\"\", \"z\", \"z\", \"NMTOKEN\", \"z\"}])\n"
      "endElement(\"\", \"a\", \"a\")\n"
      "endDocument()\n";
  EXPECT_EQ(events(document), (Result{0,
                                      "startDocument()\n"
                                      "startDTD(\"a\", \"\", \"\")\n" +
                                          end,
                                      ""}));
  EXPECT_EQ(events(document, {"--declarations"}), (Result{0,
                                                          R"-(startDocument()
startDTD("a", "", "")
elementDecl("a", "(b|c)*")
elementDecl("b", "EMPTY")
elementDecl("c", "(#PCDATA)")
attributeDecl("a", "x", "CDATA", "#IMPLIED", "")
attributeDecl("a", "y", "(on|off)", "", "on")
attributeDecl("a", "z", "NMTOKEN", "#FIXED", "z")
internalEntityDecl("e", "a \"text\"")
internalEntityDecl("%p", "q")
)-" + end,
                                                          ""}));
}

TEST_F(Events, NameTheArgumentsOfDeclarationsInJSON) {
  EXPECT_EQ(events("<!DOCTYPE a [<!ELEMENT a ANY><!ATTLIST a x CDATA #FIXED '1'><!ENTITY e '2'>]>"
                   "<a/>",
                   {"--declarations", "--json"}),
            (Result{0,
                    R"({"event":"startDocument"}
{"event":"startDTD","name":"a","publicId":"","systemId":""}
{"event":"elementDecl","name":"a","model":"ANY"}
{"event":"attributeDecl","eName":"a","aName":"x","type":"CDATA","mode":"#FIXED","value":"1"}
{"event":"internalEntityDecl","name":"e","value":"2"}
{"event":"endDTD"}
{"event":"startElement","uri":"","localName":"a","qName":"a","attributes":[{"uri":"","localName":"x","qName":"x","type":"CDATA","value":"1"}]}
{"event":"endElement","uri":"","localName":"a","qName":"a"}
{"event":"endDocument"}
)",
                    ""}));
}

TEST_F(Events, StopAtDeclarationsWithASystemIdentifierInTheReaderExpat) {
  const std::string start = "startDocument()\nstartDTD(\"a\", \"\", \"\")\n";
  for (const std::string declaration :
       {"<!NOTATION n SYSTEM 'n'>", "<!ENTITY e SYSTEM 'e'>", "<!ENTITY % p SYSTEM 'p'>"}) {
    SCOPED_TRACE(declaration);
    const std::string document = "<!DOCTYPE a [" + declaration + "]><a/>";
    EXPECT_EQ(events(document, {"--from", "Expat"}),
              (Result{0,
                      start + "endDTD()\n"
                              "startElement(\"\", \"a\", \"a\", [])\n"
                              "endElement(\"\", \"a\", \"a\")\n"
                              "endDocument()\n",
                      ""}));
    const Result result = events(document, {"--from", "Expat", "--declarations"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, start);
    // The column is where expat stood when it was told to stop.
    EXPECT_THAT(result.err, testing::MatchesRegex("-:1:[0-9]+: parsing aborted\n"));
  }
}

TEST_F(Events, IncludeDeclarationsWithASystemIdentifier) {
  EXPECT_EQ(events("<!DOCTYPE a [<!NOTATION n PUBLIC 'p'><!ENTITY e PUBLIC 'p' 'e'>"
                   "<!ENTITY % p SYSTEM 'p'><!ENTITY u SYSTEM 'u' NDATA n>]><a/>",
                   {"--declarations"}),
            (Result{0,
                    "startDocument()\n"
                    "startDTD(\"a\", \"\", \"\")\n"
                    "notationDecl(\"n\", \"p\", \"\")\n"
                    "externalEntityDecl(\"e\", \"p\", \"e\")\n"
                    "externalEntityDecl(\"%p\", \"\", \"p\")\n"
                    "unparsedEntityDecl(\"u\", \"\", \"u\", \"n\")\n"
                    "endDTD()\n"
                    "startElement(\"\", \"a\", \"a\", [])\n"
                    "endElement(\"\", \"a\", \"a\")\n"
                    "endDocument()\n",
                    ""}));
}

TEST_F(Events, ShowReferencesToExternalEntities) {
  EXPECT_EQ(events("<!DOCTYPE a [<!ENTITY e PUBLIC 'p' 's'>]><a>&e;</a>"),
            (Result{0,
                    "startDocument()\n"
                    "startDTD(\"a\", \"\", \"\")\n"
                    "endDTD()\n"
                    "startElement(\"\", \"a\", \"a\", [])\n"
                    "resolveEntity(\"p\", \"s\")\n"
                    "skippedEntity(\"e\")\n"
                    "endElement(\"\", \"a\", \"a\")\n"
                    "endDocument()\n",
                    ""}));
}

TEST_F(Events, NeverBreakTheLine) {
  const std::string document =
      "<a b='&#10;&#13;&#9;&#x7F;&#x9B;\\'>&#x85;&#x2028;&#x2029;\xC3\xA4\xE2\x82\xAC"
      "\xF0\x9F\x98\x80&quot;/</a>";
  const std::string value = R"("\n\r\t\u007F\u009B\\")";
  EXPECT_EQ(events(document),
            (Result{0,
                    "startDocument()\n"
                    "startElement(\"\", \"a\", \"a\", [{\"\", \"b\", \"b\", \"CDATA\", " +
                        value +
                        "}])\n"
                        "characters(\"\\u0085\")\n"
                        "characters(\"\\u2028\")\n"
                        "characters(\"\\u2029\")\n"
                        "characters(\"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\")\n"
                        "characters(\"\\\"\")\n"
                        "characters(\"/\")\n"
                        "endElement(\"\", \"a\", \"a\")\n"
                        "endDocument()\n",
                    ""}));
  EXPECT_EQ(events(document, {"--json"}),
            (Result{0,
                    "{\"event\":\"startDocument\"}\n"
                    "{\"event\":\"startElement\",\"uri\":\"\",\"localName\":\"a\",\"qName\":\"a\","
                    "\"attributes\":[{\"uri\":\"\",\"localName\":\"b\",\"qName\":\"b\","
                    "\"type\":\"CDATA\",\"value\":" +
                        value +
                        "}]}\n"
                        "{\"event\":\"characters\",\"text\":\"\\u0085\"}\n"
                        "{\"event\":\"characters\",\"text\":\"\\u2028\"}\n"
                        "{\"event\":\"characters\",\"text\":\"\\u2029\"}\n"
                        "{\"event\":\"characters\",\"text\":"
                        "\"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\"}\n"
                        "{\"event\":\"characters\",\"text\":\"\\\"\"}\n"
                        "{\"event\":\"characters\",\"text\":\"/\"}\n"
                        "{\"event\":\"endElement\",\"uri\":\"\",\"localName\":\"a\","
                        "\"qName\":\"a\"}\n"
                        "{\"event\":\"endDocument\"}\n",
                    ""}));
}

TEST_F(Events, ArePrintedUpToAFailure) {
  EXPECT_EQ(events("<a>\n<b></a>"), (Result{1,
                                            "startDocument()\n"
                                            "startElement(\"\", \"a\", \"a\", [])\n"
                                            "characters(\"\\n\")\n"
                                            "startElement(\"\", \"b\", \"b\", [])\n",
                                            "-:2:6: mismatched tag: expected </b> of line 2\n"}));
  EXPECT_EQ(events("", {"--json"}), (Result{1, "{\"event\":\"startDocument\"}\n",
                                            "-:1:1: no element found (the input is empty)\n"}));
}

TEST_F(Events, ComeBeforeTheFailureWhereBothGoToOnePlace) {
  EXPECT_EQ(run({"events", "-"}, "<a>", [] { dup2(STDOUT_FILENO, STDERR_FILENO); }),
            (Result{1,
                    "startDocument()\n"
                    "startElement(\"\", \"a\", \"a\", [])\n"
                    "-:1:4: no element found: <a> of line 1 is not closed\n",
                    ""}));
}

TEST_F(Events, ReportThatTheyCannotBeWritten) {
  const auto fullOutput = [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); };
  const Result full = {2, "", "tavrin: standard output: No space left on device\n"};
  EXPECT_EQ(run({"events", "-"}, "<a/>", fullOutput), full);
  EXPECT_EQ(run({"events", "--json", "-"}, "<a>", fullOutput), full);
}

TEST_F(Events, AreNotReadOnOnceTheyCannotBeWritten) {
  ToolProcess process({"events", "-"}, directory_,
                      [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); });
  std::string document = "<a>";
  for (int i = 0; i < 500000; ++i) document += "<b/>";
  process.write(document);
  EXPECT_EQ(process.waitWithOpenInput(),
            (Result{2, "", "tavrin: standard output: No space left on device\n"}));
}
