#include "TypedDocuments.h"
#include "Workplace.h"

namespace {

class Diff : public Workplace {
 protected:
  /// Compares two documents as files.
  Result diff(const std::string& a, const std::string& b,
              const ToolProcess::Arguments& options = {}) {
    writeFile("a", a);
    writeFile("b", b);
    ToolProcess::Arguments arguments = {"diff", "a", "b"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return run(arguments);
  }

  void expectSame(const std::string& a, const std::string& b) {
    SCOPED_TRACE(a + " and " + b);
    EXPECT_EQ(diff(a, b), silent(0));
    EXPECT_EQ(diff(b, a), silent(0));
  }
};

Result difference(const std::string& a, const std::string& b) {
  return {1, a + "\n" + b + "\n", ""};
}

std::string binary(const std::string& written) { return octets("E0 00 00 01 00 " + written); }

std::string repeated(const std::string& text, int count) {
  std::string result;
  for (int i = 0; i < count; ++i) result += text;
  return result;
}

}  // namespace

TEST_F(Diff, FindsDocumentsTheSameThatDifferInTheirWriting) {
  const struct {
    const char* a;
    const char* b;
  } cases[] = {
      {"<a/>", "<a/>"},
      {"<?xml version='1.0'?>\n<a ></a>\n", "<a/>"},
      {"<a x=\"1\"  y='2'/>", "<a x='1'\ny='2'/>"},
      {"<a>1<![CDATA[<]]>2</a>", "<a>1&lt;2</a>"},
      {"<a><![CDATA[]]></a>", "<a/>"},
      {"<a>&#65;\r\n</a>", "<a>A\n</a>"},
      {"<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE4</a>", "<a>\xC3\xA4</a>"},
      {"<!DOCTYPE a PUBLIC 'p' 's'><a/>", "<a/>"},
      {"<!DOCTYPE a SYSTEM 's' [<!ENTITY % p SYSTEM 'p'>%p; %q;]><a/>", "<!DOCTYPE b><a/>"},
      {"<!DOCTYPE a [<!--c--><?p d?>]><a/>", "<!DOCTYPE a [<?p d?><!--e-->]><a/>"},
      {"<!DOCTYPE a [<?p d?>]><a/>", "<?p d?><a/>"},
      {"<!DOCTYPE a [<!ENTITY e '<b/>1'>]><a>&e;</a>", "<a><b/>1</a>"},
      {"<!DOCTYPE a [<!ATTLIST a x CDATA '1'>]><a/>", "<a x='1'/>"},
      {"<!DOCTYPE a SYSTEM 's'><a>1&e;2</a>", "<!DOCTYPE b SYSTEM 't'><a>1&e;2</a>"},
  };
  for (const auto& [a, b] : cases) expectSame(a, b);
}

TEST_F(Diff, FindsACopyTheSameThatDoesNotDeclareTheXmlPrefix) {
  const std::string document =
      "<a xmlns:xml='http://www.w3.org/XML/1998/namespace' xml:lang='en'/>";
  writeFile("a.xml", document);
  for (const char* copy : {"copy.xml", "copy.fi"}) {
    EXPECT_EQ(run({"convert", "a.xml", copy}), silent(0));
    EXPECT_EQ(run({"diff", "a.xml", copy}), silent(0));
    EXPECT_EQ(run({"diff", copy, "a.xml"}), silent(0));
  }
  expectSame(document, "<a xml:lang='en'/>");
}

TEST_F(Diff, FindsDocumentsTheSameInWhateverEncoding) {
  const std::string text =
      "<?p d?><a xmlns='u' xmlns:p='v' id='1'><p:b p:cc='2'>text</p:b><!--c--></a>";
  EXPECT_EQ(run({"convert", "-", "out.fi"}, text), silent(0));
  expectSame(text, readFile("out.fi"));
  expectSame(readFile("out.fi"), readFile("out.fi"));
  expectSame(typed::document(), typed::kDocumentAsText);
  expectSame(typed::document(), typed::document());
}

// Chunks, an index among them, typed values and a CDATA section make one text.
TEST_F(Diff, TakesTextTogether) {
  expectSame(typed::element("90 'x' 91 'yz' A0 8C 0A 01 0001 FFFE 90 ' ' 8C 24 '<' 80 '.'"),
             "<a>xyzx1 -2 &lt;.</a>");
  // A chunk of UTF-16.
  expectSame(typed::element("86 01 20AC 0078 92 01 'text'"), "<a>\xE2\x82\xACxtext</a>");
  // The reader "FI" has empty text for such a chunk, and takes its octets for the next item.
  writeFile("a", typed::element("84 E2 40 'c'"));
  writeFile("b", "<a><!--c--></a>");
  EXPECT_EQ(run({"diff", "--from-a", "FI", "a", "b"}), silent(0));
  EXPECT_EQ(run({"diff", "--from-b", "fi", "b", "a"}), silent(0));
}

TEST_F(Diff, ShowsTheFirstDifference) {
  const struct {
    const char* a;
    const char* b;
    const char* inA;
    const char* inB;
  } cases[] = {
      {"<a/>", "<b/>", "1:1: startElement(\"\", \"a\", \"a\", [])",
       "1:1: startElement(\"\", \"b\", \"b\", [])"},
      {"<a>\n  <b/></a>", "<a>\n  </a>", "2:3: startElement(\"\", \"b\", \"b\", [])",
       "2:3: endElement(\"\", \"a\", \"a\")"},
      {"<a><b/></a>", "<a><c/></a>", "1:4: startElement(\"\", \"b\", \"b\", [])",
       "1:4: startElement(\"\", \"c\", \"c\", [])"},
      {"<a>\nt</a>", "<a><b/></a>", "1:4: characters(\"\\nt\")",
       "1:4: startElement(\"\", \"b\", \"b\", [])"},
      {"<a>t<![CDATA[u]]></a>", "<a>tv</a>", "1:4: characters(\"tu\")", "1:4: characters(\"tv\")"},
      {"<a> </a>", "<a></a>", "1:4: characters(\" \")", "1:4: endElement(\"\", \"a\", \"a\")"},
      {"<a x='1' y='2'/>", "<a y='2' x='1'/>",
       "1:1: startElement(\"\", \"a\", \"a\", [{\"\", \"x\", \"x\", \"CDATA\", \"1\"}, "
       "{\"\", \"y\", \"y\", \"CDATA\", \"2\"}])",
       "1:1: startElement(\"\", \"a\", \"a\", [{\"\", \"y\", \"y\", \"CDATA\", \"2\"}, "
       "{\"\", \"x\", \"x\", \"CDATA\", \"1\"}])"},
      {"<a x='1'/>", "<a/>",
       "1:1: startElement(\"\", \"a\", \"a\", [{\"\", \"x\", \"x\", \"CDATA\", \"1\"}])",
       "1:1: startElement(\"\", \"a\", \"a\", [])"},
      {"<a xmlns='u'/>", "<a xmlns='v'/>", "1:1: startPrefixMapping(\"\", \"u\")",
       "1:1: startPrefixMapping(\"\", \"v\")"},
      {"<p:a xmlns:p='u'/>", "<q:a xmlns:q='u'/>", "1:1: startPrefixMapping(\"p\", \"u\")",
       "1:1: startPrefixMapping(\"q\", \"u\")"},
      {"<p:a xmlns:p='u' xmlns:q='u'/>", "<q:a xmlns:p='u' xmlns:q='u'/>",
       "1:1: startElement(\"u\", \"a\", \"p:a\", [])",
       "1:1: startElement(\"u\", \"a\", \"q:a\", [])"},
      {"<!--1--><a/>", "<!--2--><a/>", "1:1: comment(\"1\")", "1:1: comment(\"2\")"},
      {"<a><?p 1?></a>", "<a><?p 2?></a>", "1:4: processingInstruction(\"p\", \"1\")",
       "1:4: processingInstruction(\"p\", \"2\")"},
      {"<!DOCTYPE a SYSTEM 's'><a>&e;</a>", "<!DOCTYPE a SYSTEM 's'><a>&f;</a>",
       "1:27: skippedEntity(\"e\")", "1:27: skippedEntity(\"f\")"},
      {"<!DOCTYPE a [<!ENTITY e PUBLIC 'p' 's'>]>\n<a>&e;</a>", "\n<a></a>",
       "2:4: skippedEntity(\"e\")", "2:4: endElement(\"\", \"a\", \"a\")"},
      {"<a/>", "<a/>\n<!--c-->", " end of the document", "2:1: comment(\"c\")"},
  };
  for (const auto& [a, b, inA, inB] : cases) {
    SCOPED_TRACE(std::string(a) + " and " + b);
    EXPECT_EQ(diff(a, b), difference(std::string("a:") + inA, std::string("b:") + inB));
    EXPECT_EQ(diff(b, a), difference(std::string("a:") + inB, std::string("b:") + inA));
  }
}

TEST_F(Diff, CountsOctetsInFastInfoset) {
  // Octets 1 to 5 are the header, 6 to 8 and 9 to 11 the elements.
  EXPECT_EQ(diff(binary("3C 00 'a' FF"), binary("3C 00 'a' 3C 00 'b' FF F0")),
            difference("a: octet 9: endElement(\"\", \"a\", \"a\")",
                       "b: octet 9: startElement(\"\", \"b\", \"b\", [])"));
  // One octet ends both elements of the first document.
  EXPECT_EQ(
      diff(binary("3C 00 'a' 3C 00 'b' FF F0"), binary("3C 00 'a' 3C 00 'b' F0 3C 00 'c' FF F0")),
      difference("a: octet 12: endElement(\"\", \"a\", \"a\")",
                 "b: octet 13: startElement(\"\", \"c\", \"c\", [])"));
  // Text begins where its first chunk does.
  EXPECT_EQ(diff(binary("3C 00 'a' 90 'x' 90 'y' FF"), "<a>xz</a>"),
            difference("a: octet 9: characters(\"xy\")", "b:1:4: characters(\"xz\")"));
  EXPECT_EQ(diff("<a/><!--c-->", binary("3C 00 'a' FF")),
            difference("a:1:5: comment(\"c\")", "b: end of the document"));
  EXPECT_EQ(diff(binary("E2 40 'c' 3C 00 'a' FF"), binary("E2 40 'd' 3C 00 'a' FF")),
            difference("a: octet 6: comment(\"c\")", "b: octet 6: comment(\"d\")"));
}

TEST_F(Diff, ComparesTheOctetsOfUnknownAlgorithms) {
  // 5 octets of header, 9 of the vocabulary, 3 of the element.
  expectSame(typed::unknownOfApplication(), typed::unknownOfApplication());
  EXPECT_EQ(diff(typed::unknownOfApplication("ABCD"), typed::unknownOfApplication("ABCE")),
            difference("a: octet 18: octets(\"urn:u\", 31, \"q80=\")",
                       "b: octet 18: octets(\"urn:u\", 31, \"q84=\")"));
  EXPECT_EQ(diff(typed::unknownOfApplication(), "<a/>"),
            difference("a: octet 18: octets(\"urn:u\", 31, \"q80=\")",
                       "b:1:5: endElement(\"\", \"a\", \"a\")"));
  const ToolProcess::Arguments old = {"--from-a", "FI", "--from-b", "FI"};
  EXPECT_EQ(diff(typed::unknownBuiltIn(), typed::unknownBuiltIn(), old), silent(0));
  EXPECT_EQ(
      diff(typed::unknownBuiltIn("AB"), typed::unknownBuiltIn("CD"), old),
      difference("a: octet 9: octets(\"\", 8, \"qw==\")", "b: octet 9: octets(\"\", 8, \"zQ==\")"));
  EXPECT_EQ(
      diff(typed::unknownBuiltIn("AB"), "<a/>", {"--from-a", "FI"}),
      difference("a: octet 9: octets(\"\", 8, \"qw==\")", "b:1:5: endElement(\"\", \"a\", \"a\")"));
}

TEST_F(Diff, ComparesTheLexicalFormOnDemand) {
  const ToolProcess::Arguments lexical = {"--lexical"};
  EXPECT_EQ(diff("<!DOCTYPE a SYSTEM 's'><a><![CDATA[1]]></a>",
                 "<!DOCTYPE a  SYSTEM \"s\" ><a><![CDATA[1]]></a>", lexical),
            silent(0));
  // Of a document type the reader knows where its tag goes on or ends.
  EXPECT_EQ(
      diff("<!DOCTYPE a><a/>", "<!DOCTYPE b><a/>", lexical),
      difference("a:1:12: startDTD(\"a\", \"\", \"\")", "b:1:12: startDTD(\"b\", \"\", \"\")"));
  EXPECT_EQ(diff("<!DOCTYPE a><a/>", "<a/>", lexical),
            difference("a:1:12: startDTD(\"a\", \"\", \"\")",
                       "b:1:1: startElement(\"\", \"a\", \"a\", [])"));
  EXPECT_EQ(diff("<a><![CDATA[1]]></a>", "<a>1</a>", lexical),
            difference("a:1:4: startCDATA()", "b:1:4: characters(\"1\")"));
  EXPECT_EQ(diff("<a><![CDATA[1]]>2</a>", "<a><![CDATA[12]]></a>", lexical),
            difference("a:1:13: characters(\"1\")", "b:1:13: characters(\"12\")"));
  EXPECT_EQ(diff("<!DOCTYPE a [<!ENTITY % p SYSTEM 'p'>%p;]><a/>", "<!DOCTYPE a []><a/>", lexical),
            difference("a:1:38: skippedEntity(\"%p\")", "b:1:15: endDTD()"));
  writeFile("a", "<!DOCTYPE a [<!ENTITY % p SYSTEM 'p'>%p;]><a/>");
  EXPECT_EQ(run({"diff", "--lexical", "--from-a", "Expat", "a", "b"}),
            difference("a:1:38: resolveEntity(\"\", \"p\")", "b:1:15: endDTD()"));
}

TEST_F(Diff, ShowsThePartOfALongTextThatDiffers) {
  const std::string x100(100, 'x'), x30(30, 'x'), y100(100, 'y'), y49(49, 'y');
  EXPECT_EQ(diff("<a>" + x100 + "A" + y100 + "</a>", "<a>" + x100 + "B" + y100 + "</a>"),
            difference("a:1:4: characters(...\"" + x30 + "A" + y49 + "\"...)",
                       "b:1:4: characters(...\"" + x30 + "B" + y49 + "\"...)"));
  // At the beginning and at the end.
  EXPECT_EQ(diff("<a>A" + y100 + "</a>", "<a>B</a>"),
            difference("a:1:4: characters(\"A" + y49 + "\"...)", "b:1:4: characters(\"B\")"));
  EXPECT_EQ(diff("<a>" + x100 + "A</a>", "<a>" + x100 + "</a>"),
            difference("a:1:4: characters(...\"" + x30 + "A\")",
                       "b:1:4: characters(...\"" + x30 + "\")"));
  EXPECT_EQ(diff("<a>" + x100 + "</a>", "<a></a>"),
            difference("a:1:4: characters(\"" + std::string(50, 'x') + "\"...)",
                       "b:1:4: endElement(\"\", \"a\", \"a\")"));
  EXPECT_EQ(
      diff("<!--" + x100 + "A--><a/>", "<!--" + x100 + "B--><a/>"),
      difference("a:1:1: comment(...\"" + x30 + "A\")", "b:1:1: comment(...\"" + x30 + "B\")"));
  // Up to 80 octets are not long.
  const std::string x79(79, 'x');
  EXPECT_EQ(diff("<a>" + x79 + "A</a>", "<a>" + x79 + "AB</a>"),
            difference("a:1:4: characters(\"" + x79 + "A\")",
                       "b:1:4: characters(...\"" + std::string(29, 'x') + "AB\")"));
}

TEST_F(Diff, CutsNoCharacterInTwo) {
  const std::string face = "\xF0\x9F\x98\x80";
  const std::string faces = repeated(face, 30);
  EXPECT_EQ(
      diff("<a>" + faces + "A" + faces + "</a>", "<a>" + faces + "B" + faces + "</a>"),
      difference(
          "a:1:4: characters(...\"" + repeated(face, 8) + "A" + repeated(face, 13) + "\"...)",
          "b:1:4: characters(...\"" + repeated(face, 8) + "B" + repeated(face, 13) + "\"...)"));
}

// --- Documents that cannot be read ---

TEST_F(Diff, ReportsADocumentThatCannotBeRead) {
  EXPECT_EQ(diff("<a><b>", "<a><b/></a>"),
            (Result{1, "", "a:1:7: no element found: <b> of line 1 is not closed\n"}));
  EXPECT_EQ(diff("<a><b/></a>", "<a><b>"),
            (Result{1, "", "b:1:7: no element found: <b> of line 1 is not closed\n"}));
  EXPECT_EQ(diff(binary("3C 00 'a'"), "<a/>"),
            (Result{1, "", "a: octet 8: Unexpected end of document\n"}));
  EXPECT_EQ(diff("", "<a/>"), (Result{1, "", "a:1:1: no element found (the input is empty)\n"}));
  EXPECT_EQ(diff("<a>", binary("3C 00 'a'")),
            (Result{1, "",
                    "a:1:4: no element found: <a> of line 1 is not closed\nb: octet 8: Unexpected "
                    "end of document\n"}));
}

TEST_F(Diff, ShowsADifferenceThatComesBeforeAFailure) {
  EXPECT_EQ(diff("<a><b/>", "<a><c/></a>"),
            difference("a:1:4: startElement(\"\", \"b\", \"b\", [])",
                       "b:1:4: startElement(\"\", \"c\", \"c\", [])"));
  EXPECT_EQ(diff("<a>abc", "<a>abd</a>"),
            difference("a:1:4: characters(\"abc\")", "b:1:4: characters(\"abd\")"));
  // What a text that is cut off lacks is no difference.
  EXPECT_EQ(diff("<a>abc", "<a>abcdef</a>"),
            (Result{1, "", "a:1:7: no element found: <a> of line 1 is not closed\n"}));
  EXPECT_EQ(diff("<a>abcdef</a>", "<a>abc"),
            (Result{1, "", "b:1:7: no element found: <a> of line 1 is not closed\n"}));
  EXPECT_EQ(diff("<a>abc", "<a>abc</a>"),
            (Result{1, "", "a:1:7: no element found: <a> of line 1 is not closed\n"}));
}

TEST_F(Diff, ReportsAFileThatCannotBeOpened) {
  writeFile("a.xml", "<a/>");
  const Result missing = {2, "", "tavrin: missing: No such file or directory\n"};
  EXPECT_EQ(run({"diff", "a.xml", "missing"}), missing);
  EXPECT_EQ(run({"diff", "missing", "a.xml"}), missing);
  EXPECT_EQ(run({"diff", "missing", "missing"}), missing);
  EXPECT_EQ(run({"diff", ".", "a.xml"}), (Result{2, "", "tavrin: .: Is a directory\n"}));
}

// --- Streams ---

TEST_F(Diff, ReadsStandardInput) {
  writeFile("a.xml", "<a/>");
  EXPECT_EQ(run({"diff", "a.xml", "-"}, "<a></a>"), silent(0));
  EXPECT_EQ(run({"diff", "-", "a.xml"}, "<a></a>"), silent(0));
  EXPECT_EQ(run({"diff", "-", "a.xml"}, "\n<b/>"),
            difference("-:2:1: startElement(\"\", \"b\", \"b\", [])",
                       "a.xml:1:1: startElement(\"\", \"a\", \"a\", [])"));
}

TEST_F(Diff, ComparesADocumentWithItself) {
  writeFile("a.xml", "<a>text</a>");
  EXPECT_EQ(run({"diff", "a.xml", "a.xml"}), silent(0));
}

TEST_F(Diff, ReportsThatItCannotBeWritten) {
  writeFile("a", "<a/>");
  writeFile("b", "<b/>");
  EXPECT_EQ(run({"diff", "a", "b"}, "", [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); }),
            (Result{2, "", "tavrin: standard output: No space left on device\n"}));
}

// Many times what the queues hold.
TEST_F(Diff, ComparesLargeDocumentsUpToTheirEnd) {
  std::string content;
  for (int i = 0; i < 30000; ++i)
    content += "<item id='" + std::to_string(i) + "'>some text</item>\n";
  writeFile("in.xml", "<list>" + content + "</list>");
  EXPECT_EQ(run({"convert", "in.xml", "in.fi"}), silent(0));
  EXPECT_EQ(run({"diff", "in.xml", "in.fi"}), silent(0));
  EXPECT_EQ(run({"diff", "in.fi", "in.xml"}), silent(0));
  EXPECT_EQ(run({"diff", "-", "in.xml"}, "<list>" + content + "<end/></list>"),
            difference("-:30001:1: startElement(\"\", \"end\", \"end\", [])",
                       "in.xml:30001:1: endElement(\"\", \"list\", \"list\")"));
  // Both threads are at work, or wait, when the difference is found.
  EXPECT_EQ(
      run({"diff", "-", "in.fi"}, "<list><item/>" + content + "</list>"),
      difference("-:1:7: startElement(\"\", \"item\", \"item\", [])",
                 "in.fi: octet 12: startElement(\"\", \"item\", \"item\", [{\"\", \"id\", \"id\", "
                 "\"CDATA\", \"0\"}])"));
}

// Its number is a matter of the table that the document begins with.
TEST_F(Diff, KnowsAnApplicationsAlgorithmByItsURI) {
  const std::string numbered32 =
      octets("E0 00 00 01 20 04 00 01 04 'urn:v' 04 'urn:u' 3C 00 'a' 8C 81 ABCD FF");
  expectSame(typed::unknownOfApplication(), numbered32);
  EXPECT_EQ(diff(typed::unknownOfApplication("ABCE"), numbered32),
            difference("a: octet 18: octets(\"urn:u\", 31, \"q84=\")",
                       "b: octet 24: octets(\"urn:u\", 32, \"q80=\")"));
  const std::string other =
      octets("E0 00 00 01 20 04 00 01 04 'urn:v' 04 'urn:u' 3C 00 'a' 8C 7D ABCD FF");
  EXPECT_EQ(diff(typed::unknownOfApplication(), other),
            difference("a: octet 18: octets(\"urn:u\", 31, \"q80=\")",
                       "b: octet 24: octets(\"urn:v\", 31, \"q80=\")"));
}
