#include "../Workplace.h"

namespace {

class ExtraTypes : public Workplace {
 protected:
  Result runWithTypes(const ToolProcess::Arguments& arguments, const std::string& input = {}) {
    return run(arguments, input, [] {
      setenv("LD_PRELOAD", TAVRIN_EXTRA_TYPES, 1);
      // The sanitizer, where there is one, comes with the types now.
      setenv("ASAN_OPTIONS", "verify_asan_link_order=0", 1);
    });
  }
};

const std::string kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";

}  // namespace

TEST_F(ExtraTypes, AreListed) {
  EXPECT_EQ(runWithTypes({"types"}), (Result{0,
                                             "reader Expat\n"
                                             "reader FI\n"
                                             "reader Plain\n"
                                             "reader X891\n"
                                             "reader xml10\n"
                                             "writer Chatty\n"
                                             "writer FI\n"
                                             "writer Refusing\n"
                                             "writer Silent\n"
                                             "writer X891\n"
                                             "writer XML\n"
                                             "writer XML10\n",
                                             ""}));
}

TEST_F(ExtraTypes, AreChosenByName) {
  EXPECT_EQ(runWithTypes({"convert", "--to", "silent", "-"}, "<a/>"), silent(0));
  EXPECT_EQ(runWithTypes({"convert", "--from", "expat", "-"}, "<a/>"),
            (Result{0, kDeclaration + "<a/>", ""}));
}

TEST_F(ExtraTypes, ShowEveryEventThereIs) {
  EXPECT_EQ(runWithTypes({"events", "--declarations", "-"}, "every event"),
            (Result{0,
                    R"(startDocument()
startDTD("n", "p", "s")
notationDecl("n", "p", "s")
unparsedEntityDecl("n", "p", "s", "o")
elementDecl("n", "m")
attributeDecl("e", "a", "t", "m", "v")
internalEntityDecl("n", "v")
externalEntityDecl("n", "p", "s")
endDTD()
startPrefixMapping("p", "u")
startElement("u", "l", "q", [{"u", "l", "q:l", "NMTOKEN", "v"}, {"", "", "", "", ""}])
startEntity("n")
startCDATA()
characters("t")
endCDATA()
endEntity("n")
ignorableWhitespace(" \n")
skippedEntity("n")
resolveEntity("p", "s")
comment("t")
processingInstruction("t", "d")
endElement("u", "l", "q")
endPrefixMapping("p")
endDocument()
)",
                    ""}));
  EXPECT_EQ(runWithTypes({"events", "--declarations", "--json", "-"}, "every event"),
            (Result{0,
                    R"({"event":"startDocument"}
{"event":"startDTD","name":"n","publicId":"p","systemId":"s"}
{"event":"notationDecl","name":"n","publicId":"p","systemId":"s"}
{"event":"unparsedEntityDecl","name":"n","publicId":"p","systemId":"s","notationName":"o"}
{"event":"elementDecl","name":"n","model":"m"}
{"event":"attributeDecl","eName":"e","aName":"a","type":"t","mode":"m","value":"v"}
{"event":"internalEntityDecl","name":"n","value":"v"}
{"event":"externalEntityDecl","name":"n","publicId":"p","systemId":"s"}
{"event":"endDTD"}
{"event":"startPrefixMapping","prefix":"p","uri":"u"}
{"event":"startElement","uri":"u","localName":"l","qName":"q","attributes":[{"uri":"u","localName":"l","qName":"q:l","type":"NMTOKEN","value":"v"},{"uri":"","localName":"","qName":"","type":"","value":""}]}
{"event":"startEntity","name":"n"}
{"event":"startCDATA"}
{"event":"characters","text":"t"}
{"event":"endCDATA"}
{"event":"endEntity","name":"n"}
{"event":"ignorableWhitespace","text":" \n"}
{"event":"skippedEntity","name":"n"}
{"event":"resolveEntity","publicId":"p","systemId":"s"}
{"event":"comment","text":"t"}
{"event":"processingInstruction","target":"t","data":"d"}
{"event":"endElement","uri":"u","localName":"l","qName":"q"}
{"event":"endPrefixMapping","prefix":"p"}
{"event":"endDocument"}
)",
                    ""}));
}

TEST_F(ExtraTypes, MayHaveTypedContentOfTheApplication) {
  const std::string start = "startDocument()\nstartElement(\"\", \"a\", \"a\", [])\n";
  const std::string end = "endElement(\"\", \"a\", \"a\")\nendDocument()\n";
  EXPECT_EQ(
      runWithTypes({"events", "-"}, "objects"),
      (Result{0, start + "object(\"\", 3, \"7\")\nobject(\"urn:app\", 40, \"1 2\")\n" + end, ""}));
  EXPECT_EQ(runWithTypes({"events", "--json", "-"}, "objects"), (Result{0,
                                                                        R"({"event":"startDocument"}
{"event":"startElement","uri":"","localName":"a","qName":"a","attributes":[]}
{"event":"object","uri":"","index":3,"text":"7"}
{"event":"object","uri":"urn:app","index":40,"text":"1 2"}
{"event":"endElement","uri":"","localName":"a","qName":"a"}
{"event":"endDocument"}
)",
                                                                        ""}));
  EXPECT_EQ(runWithTypes({"convert", "--no-declaration", "-"}, "objects"),
            (Result{0, "<a>71 2</a>", ""}));
  // The writer has no form for the application's algorithm. Octet 7 is the script's last.
  EXPECT_EQ(runWithTypes({"convert", "-", "out.fi"}, "objects"),
            (Result{1, "",
                    "-: octet 7: Unknown encoding algorithm - urn:app: it must be registered with "
                    "the property \"http://jvnet.org/fastinfoset/parser/properties/"
                    "registered-encoding-algorithms\" before the root element\n"}));
  writeFile("text.xml", "<a>71 2</a>");
  EXPECT_EQ(runWithTypes({"diff", "text.xml", "-"}, "objects"), silent(0));
  EXPECT_EQ(files(), Names{"text.xml"});
}

// What goes wrong in a thread comes out like anything else.
TEST_F(ExtraTypes, MayFailWhileTheyAreCompared) {
  writeFile("a.xml", "<a/>");
  EXPECT_EQ(runWithTypes({"diff", "a.xml", "-"}, "SAXParseException"),
            (Result{1, "", "-:7:8: the reader gives up\n"}));
  EXPECT_EQ(runWithTypes({"diff", "-", "a.xml"}, "bad_alloc"),
            (Result{2, "", "tavrin: not enough memory\n"}));
}

TEST_F(ExtraTypes, CannotBreakTheOutputWithOctetsThatAreNotUTF8) {
  const std::string texts[] = {
      "\\uDCFF",
      "a\\uDC80z",
      "\\uDCC1\\uDCBFz",
      "\\uDCE0\\uDC9F\\uDCBF",
      "\\uDCED\\uDCA0\\uDC80",
      "\\uDCF0\\uDC8F\\uDCBF\\uDCBF",
      "\\uDCF4\\uDC90\\uDC80\\uDC80",
      "\\uDCF5\\uDC80\\uDC80\\uDC80",
      "\\uDCC3",
      "\\uDCE2\\uDC82",
      "\\uDCF0\\uDC9F\\uDC98",
      "\\uDCE2\\uDC82z",
      "\\uDCC3\xC3\xA4",
      "a\\u0000b",
      "\\u007F\\u0080",
      "\xDF\xBF\xE0\xA0\x80",
      "\xED\x9F\xBF\xEE\x80\x80",
      "\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF",
  };
  std::string lines, objects;
  for (const std::string& text : texts) {
    lines += "characters(\"" + text + "\")\n";
    objects += "{\"event\":\"characters\",\"text\":\"" + text + "\"}\n";
  }
  EXPECT_EQ(runWithTypes({"events", "-"}, "not UTF-8"), (Result{0, lines, ""}));
  EXPECT_EQ(runWithTypes({"events", "--json", "-"}, "not UTF-8"), (Result{0, objects, ""}));
}

TEST_F(ExtraTypes, CannotPutDiagnosticsIntoADocument) {
  EXPECT_EQ(runWithTypes({"convert", "-"}, "print"),
            (Result{0, kDeclaration + "<a/>", "a diagnostic\n"}));
  EXPECT_EQ(runWithTypes({"convert", "--to", "Chatty", "-"}, "<a><b/></a>"),
            (Result{0, kDeclaration + "<a><b/></a>", "element a\nelement b\n"}));
  EXPECT_EQ(runWithTypes({"convert", "--to", "Chatty", "-", "out.xml"}, "<a><b/></a>"),
            (Result{0, "", "element a\nelement b\n"}));
  EXPECT_EQ(readFile("out.xml"), kDeclaration + "<a><b/></a>");
  EXPECT_EQ(runWithTypes({"events", "-"}, "print"), (Result{0,
                                                            "startDocument()\n"
                                                            "startElement(\"\", \"a\", \"a\", [])\n"
                                                            "endElement(\"\", \"a\", \"a\")\n"
                                                            "endDocument()\n",
                                                            "a diagnostic\n"}));
}

TEST_F(ExtraTypes, HaveTheirFailuresReportedInOneLine) {
  const struct {
    const char* script;
    int status;
    const char* message;
  } cases[] = {
      {"SAXException", 1, "-: octet 12: the reader\\ngives up\n"},
      {"SAXParseException", 1, "-:7:8: the reader gives up\n"},
      // In a format without lines the column is an octet.
      {"octet", 1, "-: octet 2147483647: the reader gives up\n"},
      {"EncodingAlgorithmException", 1, "-: octet 26: the data is broken\n"},
      {"bad_alloc", 2, "tavrin: not enough memory\n"},
  };
  for (const auto& [script, status, message] : cases) {
    SCOPED_TRACE(script);
    for (const std::string command : {"check", "events", "convert"}) {
      EXPECT_EQ(runWithTypes({command, "-"}, script), (Result{status, "", message}));
    }
    EXPECT_EQ(runWithTypes({"convert", "-", "out.xml"}, script), (Result{status, "", message}));
  }
  EXPECT_EQ(files(), Names{});
}

TEST_F(ExtraTypes, NeedNoLocatorToHaveASkippedEntityReported) {
  EXPECT_EQ(runWithTypes({"convert", "--to", "XML", "-", "out.xml"}, "skipped entity"),
            (Result{1, "", "-: octet 14: entity \"e\" was not read, so the copy would lack it\n"}));
  EXPECT_EQ(files(), Names{});
}

// The text reader drops what a handler throws; the tool does not.
TEST_F(ExtraTypes, HaveTheRefusalsOfAWriterReportedWhereTheyHappen) {
  const struct {
    const char* document;
    int status;
    const char* message;
  } cases[] = {
      {"<a>\n <!--c--><!--d--></a>", 2, "tavrin: not enough memory\n"},
      {"<a\n><!--c--><!--d--></a>", 1, "-:2:2: no comment\n"},
      {"<a\n/><?p d?>", 1, "-:2:3: no instruction\n"},
      {"<a/>\n", 1, "-:2:1: no end\n"},
      // The end of the empty element still comes; the first failure counts.
      {"<refused/>", 1, "-:1:1: no start\n"},
  };
  for (const auto& [document, status, message] : cases) {
    SCOPED_TRACE(document);
    EXPECT_EQ(runWithTypes({"convert", "--to", "Refusing", "-", "out.xml"}, document),
              (Result{status, "", message}));
  }
  EXPECT_EQ(files(), Names{});
}

TEST_F(ExtraTypes, HaveToKnowWhatIsAskedOfThem) {
  const auto unknown = [](const std::string& what) {
    return Result{2, "", "tavrin: " + what + " not recognized\n"};
  };
  EXPECT_EQ(runWithTypes({"convert", "--to", "Silent", "--indent", "-", "out.xml"}, "<a/>"),
            unknown("Feature \"http://tavrin/sax/features/auto-indent\""));
  EXPECT_EQ(runWithTypes({"convert", "--to", "Silent", "--no-declaration", "-"}, "<a/>"),
            unknown("Feature \"http://tavrin/sax/features/xml-declaration\""));
  EXPECT_EQ(runWithTypes({"convert", "--from", "Plain", "-", "out.xml"}, "<a/>"),
            unknown("Property \"http://xml.org/sax/properties/lexical-handler\""));
  EXPECT_EQ(files(), Names{});
}
