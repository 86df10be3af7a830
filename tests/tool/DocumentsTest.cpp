#include "TypedDocuments.h"
#include "Workplace.h"

namespace {

/// Files in which documents follow each other.
class Documents : public Workplace {
 protected:
  Documents() {
    writeFile("three.fi", one() + two() + one());
    writeFile("one.fi", one());
  }

  /// Of 15 octets: header, element, text, end.
  static std::string one() { return octets("E0 00 00 01 00 3C 00 'a' 92 01 'text' FF"); }
  /// Of 32 octets: a declaration, header, element, end.
  static std::string two() {
    return "<?xml encoding='finf'?>" + octets("E0 00 00 01 00 3C 00 'b' FF");
  }
};

Result failed(const std::string& message) { return {1, "", message + "\n"}; }

Result printed(const std::string& text) { return {0, text, ""}; }

const std::string kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";

const std::string kEventsOfOne =
    "startDocument()\n"
    "startElement(\"\", \"a\", \"a\", [])\n"
    "characters(\"text\")\n"
    "endElement(\"\", \"a\", \"a\")\n"
    "endDocument()\n";

const std::string kEventsOfTwo =
    "startDocument()\n"
    "startElement(\"\", \"b\", \"b\", [])\n"
    "endElement(\"\", \"b\", \"b\")\n"
    "endDocument()\n";

std::string block(const std::string& head, int octets, int text, int asText) {
  return head + "\n  octets                   " + std::to_string(octets) +
         "\n  elements                 1"
         "\n  attributes               0"
         "\n  distinct names           1"
         "\n  text octets              " +
         std::to_string(text) +
         "\n  attribute value octets   0"
         "\n  comments                 0"
         "\n  processing instructions  0"
         "\n  depth                    1"
         "\n  typed values             0"
         "\n  typed items              0"
         "\n  as XML text              " +
         std::to_string(asText) + "\n";
}

}  // namespace

TEST_F(Documents, AreAllChecked) {
  ASSERT_EQ(one().size(), 15U);
  ASSERT_EQ(two().size(), 32U);
  EXPECT_EQ(run({"check", "three.fi", "one.fi", "-"}, one() + one()),
            printed("three.fi: well-formed (3 documents)\n"
                    "one.fi: well-formed\n"
                    "-: well-formed (2 documents)\n"));
  EXPECT_EQ(run({"check", "--from", "X891", "three.fi"}),
            printed("three.fi: well-formed (3 documents)\n"));
  EXPECT_EQ(run({"check", "--from", "FI", "-"}, one() + one()),
            printed("-: well-formed (2 documents)\n"));
}

TEST_F(Documents, MayBeVeryMany) {
  std::string all;
  for (int i = 0; i < 20000; ++i) all += one();
  EXPECT_EQ(run({"check", "-"}, all), printed("-: well-formed (20000 documents)\n"));
  EXPECT_EQ(run({"convert", "--to", "X891", "-"}, all), printed(all));
}

// A place is an octet of the file, whichever document it is in.
TEST_F(Documents, HaveOctetsThatAreCountedThroughTheFile) {
  // The 16th octet begins a second document, whose 8th is no beginning of a name.
  writeFile("bad.fi", one() + octets("E0 00 00 01 00 3C 00 '1' FF"));
  const std::string line = "bad.fi: octet 23 (document 2): Invalid name \"1\"";
  EXPECT_EQ(run({"check", "bad.fi"}), failed(line));
  EXPECT_EQ(run({"convert", "bad.fi", "out.fi"}), failed(line));
  EXPECT_EQ(run({"convert", "--document", "2", "bad.fi", "out.xml"}), failed(line));
  EXPECT_EQ(run({"convert", "--document", "3", "bad.fi", "out.xml"}), failed(line));
  EXPECT_EQ(run({"diff", "bad.fi", "three.fi"}), failed(line));
  EXPECT_EQ(run({"stat", "bad.fi"}),
            (Result{1, block("bad.fi, document 1", 15, 4, 49), line + "\n"}));
  EXPECT_EQ(
      run({"events", "bad.fi"}),
      (Result{1, kEventsOfOne + "--- document 2: octet 16 ---\nstartDocument()\n", line + "\n"}));
  EXPECT_EQ(files(), (Names{"bad.fi", "one.fi", "three.fi"}));
  // Cut off, by the reader whose failures have no place of their own, too.
  EXPECT_EQ(run({"check", "-"}, one() + one().substr(0, 9)),
            failed("-: octet 24 (document 2): Unexpected end of document"));
  EXPECT_EQ(run({"check", "--from", "FI", "-"}, one() + one().substr(0, 9)),
            failed("-: octet 24 (document 2): Unexpected end of document"));
}

TEST_F(Documents, AreAllThatMayStandInAFile) {
  for (const std::string& behind :
       {std::string("\n"), std::string(1, '\0'), std::string("rubbish"), std::string("<a/>"),
        std::string("\xE0"), octets("F0"), std::string("<?xml version='1.0'?><a/>")}) {
    SCOPED_TRACE(behind);
    const std::string line = "bad.fi: octet 16: No Fast Infoset document begins here";
    writeFile("bad.fi", one() + behind);
    EXPECT_EQ(run({"check", "bad.fi"}), failed(line));
    EXPECT_EQ(run({"convert", "bad.fi", "out.fi"}), failed(line));
    EXPECT_EQ(run({"convert", "bad.fi", "out.xml"}), failed(line));
    EXPECT_EQ(run({"diff", "bad.fi", "one.fi"}), failed(line));
    EXPECT_EQ(run({"diff", "one.fi", "bad.fi"}), failed(line));
    EXPECT_EQ(run({"events", "bad.fi"}), (Result{1, kEventsOfOne, line + "\n"}));
    EXPECT_EQ(run({"stat", "bad.fi"}),
              (Result{1, block("bad.fi, document 1", 15, 4, 49), line + "\n"}));
  }
  EXPECT_EQ(run({"check", "-"}, one() + std::string("\xE0\0\0\0", 4)),
            failed("-: octet 19 (document 2): Not a Fast Infoset document"));
  EXPECT_EQ(run({"check", "--from", "FI", "-"}, one() + "\n"),
            failed("-: octet 16 (document 2): Not a Fast Infoset document"));
  EXPECT_EQ(files(), (Names{"bad.fi", "one.fi", "three.fi"}));
}

// A document of text ends with the file (XML 1.0, production 1).
TEST_F(Documents, OfTextStandAlone) {
  EXPECT_EQ(run({"check", "-"}, "<a/>\n<!--c--><?p d?>\n"), printed("-: well-formed\n"));
  EXPECT_EQ(run({"check", "-"}, "<a/><?xml version='1.0'?><a/>"),
            failed("-:1:5: junk after document element"));
  EXPECT_EQ(run({"check", "-"}, "<a/>" + one()), failed("-:1:5: not well-formed (invalid token)"));
}

TEST_F(Documents, HaveTheirEventsBehindALine) {
  EXPECT_EQ(run({"events", "three.fi"}),
            printed(kEventsOfOne + "--- document 2: octet 16 ---\n" + kEventsOfTwo +
                    "--- document 3: octet 48 ---\n" + kEventsOfOne));
  EXPECT_EQ(run({"events", "one.fi"}), printed(kEventsOfOne));
  EXPECT_EQ(run({"events", "--json", "-"}, two() + two()),
            printed("{\"event\":\"startDocument\"}\n"
                    "{\"event\":\"startElement\",\"uri\":\"\",\"localName\":\"b\",\"qName\":\"b\","
                    "\"attributes\":[]}\n"
                    "{\"event\":\"endElement\",\"uri\":\"\",\"localName\":\"b\",\"qName\":\"b\"}\n"
                    "{\"event\":\"endDocument\"}\n"
                    "{\"document\":2,\"octet\":33}\n"
                    "{\"event\":\"startDocument\"}\n"
                    "{\"event\":\"startElement\",\"uri\":\"\",\"localName\":\"b\",\"qName\":\"b\","
                    "\"attributes\":[]}\n"
                    "{\"event\":\"endElement\",\"uri\":\"\",\"localName\":\"b\",\"qName\":\"b\"}\n"
                    "{\"event\":\"endDocument\"}\n"));
}

TEST_F(Documents, HaveABlockOfCountsEach) {
  EXPECT_EQ(run({"stat", "three.fi", "one.fi"}),
            printed(block("three.fi, document 1", 15, 4, 49) + "\n" +
                    block("three.fi, document 2", 32, 0, 42) + "\n" +
                    block("three.fi, document 3", 15, 4, 49) + "\n" + block("one.fi", 15, 4, 49)));
}

TEST_F(Documents, AreComparedOneByOne) {
  EXPECT_EQ(run({"diff", "three.fi", "three.fi"}), silent(0));
  EXPECT_EQ(run({"diff", "three.fi", "-"}, one() + two() + one()), silent(0));
  EXPECT_EQ(run({"diff", "three.fi", "one.fi"}), (Result{1,
                                                         "three.fi: octet 16: document 2 begins\n"
                                                         "one.fi: end of the document\n",
                                                         ""}));
  EXPECT_EQ(run({"diff", "-", "three.fi"}, one() + two()),
            (Result{1,
                    "-: end of document 2, the last\n"
                    "three.fi: octet 48: document 3 begins\n",
                    ""}));
  EXPECT_EQ(run({"diff", "-", "three.fi"}, "<a>text</a>"),
            (Result{1,
                    "-: end of the document\n"
                    "three.fi: octet 16: document 2 begins\n",
                    ""}));
  // The header of the second has 5 octets, and a declaration in one of the files.
  EXPECT_EQ(run({"diff", "three.fi", "-"}, one() + one()),
            (Result{1,
                    "three.fi: octet 44 (document 2): startElement(\"\", \"b\", \"b\", [])\n"
                    "-: octet 21 (document 2): startElement(\"\", \"a\", \"a\", [])\n",
                    ""}));
  // What is behind the border of one stands in front of it in the other.
  EXPECT_EQ(run({"diff", "three.fi", "-"}, octets("E0 00 00 01 00 3C 00 'a' 92 01 'text' F0") +
                                               octets("E2 00 'c' F0") + one()),
            (Result{1,
                    "three.fi: octet 16: document 2 begins\n"
                    "-: octet 16: comment(\"c\")\n",
                    ""}));
}

TEST_F(Documents, AreAllCopiedToFastInfoset) {
  EXPECT_EQ(run({"convert", "three.fi", "out.fi"}), silent(0));
  // The declaration in front of the second is a matter of writing.
  EXPECT_EQ(readFile("out.fi"), one() + two().substr(two().find('\xE0')) + one());
  EXPECT_EQ(run({"diff", "three.fi", "out.fi"}), silent(0));
  EXPECT_EQ(run({"convert", "--to", "FI", "-"}, one() + one()), printed(one() + one()));
}

// What one document states of itself is not said of the next.
TEST_F(Documents, AreCopiedEachForItself) {
  const std::string all = octets("E0 00 00 01 03 01 02 '1.1' 3C 00 'a' FF") +
                          octets("E0 00 00 01 00 3C 00 'a' FF") +
                          octets("E0 00 00 01 02 00 3C 00 'a' FF");
  EXPECT_EQ(run({"convert", "--to", "X891", "-"}, all), printed(all));
}

TEST_F(Documents, AreNotCopiedToTextWhereThereAreSeveral) {
  const std::string line =
      "three.fi: octet 16: A second document begins here, and XML text holds one (see --document)";
  EXPECT_EQ(run({"convert", "three.fi", "out.xml"}), failed(line));
  EXPECT_EQ(run({"convert", "--to", "XML", "three.fi", "out.fi"}), failed(line));
  writeFile("out.xml", "old");
  EXPECT_EQ(run({"convert", "--force", "three.fi", "out.xml"}), failed(line));
  EXPECT_EQ(readFile("out.xml"), "old");
  EXPECT_EQ(files(), (Names{"one.fi", "out.xml", "three.fi"}));
}

TEST_F(Documents, MayBeCopiedAlone) {
  EXPECT_EQ(run({"convert", "--document", "1", "three.fi"}), printed(kDeclaration + "<a>text</a>"));
  EXPECT_EQ(run({"convert", "--document", "2", "three.fi"}), printed(kDeclaration + "<b/>"));
  EXPECT_EQ(run({"convert", "--document", "3", "three.fi", "out.fi"}), silent(0));
  EXPECT_EQ(readFile("out.fi"), one());
  EXPECT_EQ(run({"convert", "--document", "1", "-"}, "<a/>"), printed(kDeclaration + "<a/>"));
  // What stands behind it is not read.
  EXPECT_EQ(run({"convert", "--document", "1", "-"}, one() + "rubbish"),
            printed(kDeclaration + "<a>text</a>"));
  EXPECT_EQ(run({"convert", "--document", "2", "-"}, one() + "rubbish"),
            failed("-: octet 16: No Fast Infoset document begins here"));
  // What stands in front of it need not be copied.
  EXPECT_EQ(run({"convert", "--document", "2", "-"}, typed::unknownOfApplication() + two()),
            printed(kDeclaration + "<b/>"));
}

TEST_F(Documents, AreMissedWhereThereAreFewer) {
  EXPECT_EQ(run({"convert", "--document", "4", "three.fi", "out.xml"}),
            failed("three.fi: There is no document 4"));
  EXPECT_EQ(run({"convert", "--document", "2", "-", "out.xml"}, "<a/>"),
            failed("-: There is no document 2"));
  EXPECT_EQ(files(), (Names{"one.fi", "three.fi"}));
}
