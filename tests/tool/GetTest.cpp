#include "TypedDocuments.h"
#include "Workplace.h"

namespace {

/// What tavrin get prints.
class Get : public Workplace {
 protected:
  Get() {
    writeFile("menu.xml", kMenu);
    run({"convert", "menu.xml", "menu.fi"});
  }

  /// What it prints of a document, be it text or Fast Infoset. Both have to be the same.
  Result get(const Names& arguments) const {
    const Result result = getFrom("menu.xml", arguments);
    EXPECT_EQ(getFrom("menu.fi", arguments), result);
    return result;
  }

  Result getFrom(const std::string& file, Names arguments, const std::string& input = {}) const {
    arguments.insert(arguments.begin(), "get");
    arguments.push_back(file);
    return run(arguments, input);
  }

  static constexpr char kMenu[] =
      "<?xml version='1.0'?>\n"
      "<!DOCTYPE m:menu [<?in dtd?>]>\n"
      "<!--first--><m:menu xmlns:m='urn:m' xmlns='urn:d'>\n"
      "<m:dish price='3' m:id='a'><m:name>Fish &amp; chips</m:name>"
      "<m:dish price='1'><m:name>bread</m:name></m:dish></m:dish>"
      "<m:dish><m:name xml:lang='de'>K\u00e4se</m:name><!--c--><?t d e?>tail</m:dish>"
      "<plain xmlns=''><dish/>one<b/>two</plain>"
      "</m:menu><?last?>";
};

Result printed(const std::string& text) { return {0, text, ""}; }

const Result kNothing = silent(1);

const std::string kNS = "xmlns:m='urn:m' xmlns='urn:d'";

}  // namespace

TEST_F(Get, PrintsElementsThatAreWellFormedAlone) {
  EXPECT_EQ(get({"--ns", "m=urn:m", "/m:menu/m:dish[2]"}),
            printed("<m:dish " + kNS +
                    "><m:name xml:lang='de'>K\u00e4se</m:name><!--c--><?t d e?>tail</m:dish>\n"));
  EXPECT_EQ(get({"//dish"}), printed("<dish xmlns:m='urn:m'/>\n"));
  EXPECT_EQ(get({"//plain"}),
            printed("<plain xmlns:m='urn:m' xmlns=''><dish/>one<b/>two</plain>\n"));
}

TEST_F(Get, PrintsElementsInsideOfResultsBehindThem) {
  const std::string inner = "<m:name>bread</m:name></m:dish>";
  EXPECT_EQ(get({"--ns", "m=urn:m", "//m:dish[@price]|//m:dish/m:name/text()|//m:dish/@price"}),
            printed("<m:dish " + kNS +
                    " price='3' m:id='a'><m:name>Fish &amp; chips</m:name><m:dish price='1'>" +
                    inner + "</m:dish>\n3\nFish & chips\n<m:dish " + kNS + " price='1'>" + inner +
                    "\n1\nbread\nK\u00e4se\n"));
}

TEST_F(Get, PrintsWhatEachInnerElementNeedsAlone) {
  writeFile("a.xml",
            "<a xmlns='it&apos;s &lt; \"&#10;&#9;&#13;' xmlns:q='1'><a xmlns:q='1' q:x='&apos;'>"
            "<a xmlns=''/><q:b xmlns:q='2'/></a></a>");
  const std::string d = "xmlns='it&apos;s &lt; \"&#xA;&#x9;&#xD;'";
  EXPECT_EQ(getFrom("a.xml", {"//*"}),
            printed("<a " + d +
                    " xmlns:q='1'><a xmlns:q='1' q:x='&apos;'><a xmlns=''/><q:b xmlns:q='2'/></a>"
                    "</a>\n"
                    "<a " +
                    d +
                    " xmlns:q='1' q:x='&apos;'><a xmlns=''/><q:b xmlns:q='2'/></a>\n"
                    "<a xmlns:q='1' xmlns=''/>\n"
                    "<q:b " +
                    d + " xmlns:q='2'/>\n"));
}

TEST_F(Get, PrintsValues) {
  EXPECT_EQ(get({"//@*"}), printed("3\na\n1\nde\n"));
  EXPECT_EQ(get({"--ns", "m=urn:m", "//@m:*"}), printed("a\n"));
  EXPECT_EQ(get({"--ns", "m=urn:m", "//@m:id"}), printed("a\n"));
  EXPECT_EQ(get({"//@xml:lang"}), printed("de\n"));
  EXPECT_EQ(get({"//@id"}), kNothing);
  EXPECT_EQ(get({"//*:name/text()"}), printed("Fish & chips\nbread\nK\u00e4se\n"));
  EXPECT_EQ(get({"//plain/text()[2]"}), printed("two\n"));
  EXPECT_EQ(get({"//text()[position()>1]"}), printed("two\n"));
  EXPECT_EQ(get({"//comment()"}), printed("first\nc\n"));
  EXPECT_EQ(get({"/comment()"}), printed("first\n"));
  EXPECT_EQ(get({"//processing-instruction()"}), printed("d e\n\n"));
  EXPECT_EQ(get({"//processing-instruction('t')"}), printed("d e\n"));
  EXPECT_EQ(get({"//processing-instruction('in')"}), kNothing);
  EXPECT_EQ(get({"/processing-instruction()[1]"}), printed("\n"));
}

TEST_F(Get, CountsPositionsInEachParent) {
  writeFile("a.xml", "<a><b>1</b><b x=''>2</b><c><b x=''>3</b><d/><b>4</b><b x=''>5</b></c></a>");
  const auto texts = [&](const std::string& path) {
    return getFrom("a.xml", {"--text", path}).out;
  };
  EXPECT_EQ(texts("//b[2]"), "2\n4\n");
  EXPECT_EQ(texts("/a/b[2]"), "2\n");
  EXPECT_EQ(texts("//b[@x][2]"), "5\n");
  EXPECT_EQ(texts("//b[2][@x]"), "2\n");
  EXPECT_EQ(texts("//b[@x][position()!=1]"), "5\n");
  EXPECT_EQ(texts("//b[position()>=2]"), "2\n4\n5\n");
  EXPECT_EQ(texts("//b[position()<=2][2]"), "2\n4\n");
  EXPECT_EQ(texts("//b[position() < 2]"), "1\n3\n");
  EXPECT_EQ(texts("//b[position()>1][1]"), "2\n4\n");
  EXPECT_EQ(texts("//*[3]/b[3]"), "5\n");
  EXPECT_EQ(texts("//*[2]/text()"), "2\n");
  EXPECT_EQ(texts("//b[0]"), "");
  EXPECT_EQ(texts("//b[99999999999999999999999999]"), "");
  EXPECT_EQ(texts("//b[1]|//b[2]|//b[1]"), "1\n2\n3\n4\n");
  EXPECT_EQ(texts("/*[1]/c[1]/b[position()=3]"), "5\n");
}

TEST_F(Get, ComparesAttributes) {
  writeFile("a.xml", "<a x='1' p:x='2' xmlns:p='u'><b y=\"it's\"/><b x='1'/><c x=''/></a>");
  const auto count = [&](const std::string& path) {
    return getFrom("a.xml", {"--count", "--ns", "q=u", path}).out;
  };
  EXPECT_EQ(count("//*[@x]"), "3\n");
  EXPECT_EQ(count("//*[@x='1']"), "2\n");
  EXPECT_EQ(count("//*[@x!='1']"), "1\n");
  EXPECT_EQ(count("//*[@q:x='2']"), "1\n");
  EXPECT_EQ(count("//*[@q:x='1']"), "0\n");
  EXPECT_EQ(count("//*[@q:*][@x='1']"), "1\n");
  EXPECT_EQ(count("//*[@*='1']"), "2\n");
  // One attribute that is not equal is enough.
  EXPECT_EQ(count("//*[@*!='1']"), "3\n");
  EXPECT_EQ(count("//b[@y=\"it's\"]"), "1\n");
  EXPECT_EQ(count(" // b [ @y = \"it's\" ] | // c [ 1 ] "), "2\n");
  EXPECT_EQ(count("//*[@x='']"), "1\n");
}

TEST_F(Get, FollowsSteps) {
  writeFile("a.xml", "<a><a><b/><a><b/><c><b/></c></a></a></a>");
  const auto count = [&](const std::string& path) {
    return getFrom("a.xml", {"--count", path}).out;
  };
  EXPECT_EQ(count("/a"), "1\n");
  EXPECT_EQ(count("//a"), "3\n");
  EXPECT_EQ(count("/a/a/b"), "1\n");
  EXPECT_EQ(count("//a//b"), "3\n");
  EXPECT_EQ(count("//a/b"), "2\n");
  EXPECT_EQ(count("/a//a/a//b"), "2\n");
  EXPECT_EQ(count("/b"), "0\n");
  EXPECT_EQ(count("/*/*/*"), "2\n");
  EXPECT_EQ(count("//*"), "7\n");
  EXPECT_EQ(count("/a/b|//c/b"), "1\n");
  EXPECT_EQ(count("//c|//*|/a"), "7\n");
}

TEST_F(Get, TakesTextAsXPathDoes) {
  writeFile("a.xml",
            "<!DOCTYPE a [<!ENTITY e 'ent'>]><a>x<![CDATA[<y>]]>&e;&#122;<!---->2<?p?>3<b/></a>");
  EXPECT_EQ(getFrom("a.xml", {"/a/text()"}), printed("x<y>entz\n2\n3\n"));
  EXPECT_EQ(getFrom("a.xml", {"/a/text()[2]"}), printed("2\n"));
  EXPECT_EQ(getFrom("a.xml", {"--count", "//text()"}), printed("3\n"));
  EXPECT_EQ(getFrom("a.xml", {"/a"}), printed("<a>x<![CDATA[<y>]]>entz<!---->2<?p ?>3<b/></a>\n"));
}

TEST_F(Get, PrintsElementsAsTheirText) {
  EXPECT_EQ(get({"--text", "--ns", "m=urn:m", "//m:dish"}),
            printed("Fish & chipsbread\nbread\nK\u00e4setail\n"));
  EXPECT_EQ(get({"--text", "--json", "//plain|//b|//*:name"}),
            printed("\"Fish & chips\"\n\"bread\"\n\"K\u00e4se\"\n\"onetwo\"\n\"\"\n"));
}

TEST_F(Get, PrintsJSON) {
  EXPECT_EQ(
      get({"--json", "--ns", "m=urn:m", "//m:dish[@price]|//m:dish[2]|//@price"}),
      printed(
          "{\"name\":\"m:dish\",\"uri\":\"urn:m\",\"attributes\":{\"price\":\"3\",\"m:id\":\"a\"},"
          "\"content\":[{\"name\":\"m:name\",\"uri\":\"urn:m\",\"content\":[\"Fish & chips\"]},"
          "{\"name\":\"m:dish\",\"uri\":\"urn:m\",\"attributes\":{\"price\":\"1\"},\"content\":["
          "{\"name\":\"m:name\",\"uri\":\"urn:m\",\"content\":[\"bread\"]}]}]}\n"
          "\"3\"\n"
          "{\"name\":\"m:dish\",\"uri\":\"urn:m\",\"attributes\":{\"price\":\"1\"},\"content\":["
          "{\"name\":\"m:name\",\"uri\":\"urn:m\",\"content\":[\"bread\"]}]}\n"
          "\"1\"\n"
          "{\"name\":\"m:dish\",\"uri\":\"urn:m\",\"content\":[{\"name\":\"m:name\",\"uri\":"
          "\"urn:m\",\"attributes\":{\"xml:lang\":\"de\"},\"content\":[\"K\u00e4se\"]},"
          "{\"comment\":\"c\"},{\"target\":\"t\",\"data\":\"d e\"},\"tail\"]}\n"));
  EXPECT_EQ(get({"--json", "//plain|//b"}),
            printed("{\"name\":\"plain\",\"content\":[{\"name\":\"dish\",\"content\":[]},\"one\","
                    "{\"name\":\"b\",\"content\":[]},\"two\"]}\n"
                    "{\"name\":\"b\",\"content\":[]}\n"));
  EXPECT_EQ(getFrom("-", {"--json", "//text()"}, "<a>\"\\\n\xC2\x85</a>"),
            printed("\"\\\"\\\\\\n\\u0085\"\n"));
}

TEST_F(Get, EndsResultsAsAsked) {
  EXPECT_EQ(getFrom("-", {"//text()"}, "<a>1\n2<b/>3</a>"), printed("1\n2\n3\n"));
  EXPECT_EQ(getFrom("-", {"-0", "//text()"}, "<a>1\n2<b/>3</a>"),
            printed(std::string("1\n2\0003\0", 6)));
  EXPECT_EQ(getFrom("-", {"--null", "//a"}, "<a><a/></a>"),
            printed(std::string("<a><a/></a>\0<a/>\0", 17)));
}

TEST_F(Get, NamesFilesWhereThereAreSeveral) {
  writeFile("a.xml", "<a>1</a>");
  writeFile("b.xml", "<b/>");
  EXPECT_EQ(run({"get", "/a/text()", "a.xml", "b.xml", "a.xml"}), printed("1\n1\n"));
  EXPECT_EQ(run({"get", "--json", "/*|//text()", "a.xml", "b.xml"}),
            printed("{\"file\":\"a.xml\",\"value\":{\"name\":\"a\",\"content\":[\"1\"]}}\n"
                    "{\"file\":\"a.xml\",\"value\":\"1\"}\n"
                    "{\"file\":\"b.xml\",\"value\":{\"name\":\"b\",\"content\":[]}}\n"));
  EXPECT_EQ(run({"get", "--count", "//a", "a.xml", "b.xml"}), printed("a.xml: 1\nb.xml: 0\n"));
  EXPECT_EQ(run({"get", "--count", "--json", "//a", "a.xml", "b.xml"}),
            printed("{\"file\":\"a.xml\",\"value\":1}\n{\"file\":\"b.xml\",\"value\":0}\n"));
  EXPECT_EQ(run({"get", "--count", "--json", "//c", "a.xml"}), (Result{1, "0\n", ""}));
}

TEST_F(Get, TellsByTheExitStatus) {
  writeFile("bad.xml", "<a><a>1</a><b>2");
  const std::string bad = "bad.xml:1:16: no element found: <b> of line 1 is not closed\n";
  const std::string missing = "tavrin: missing.xml: No such file or directory\n";
  EXPECT_EQ(get({"//nothing"}), kNothing);
  EXPECT_EQ(run({"get", "//a/text()", "bad.xml"}), (Result{1, "1\n", bad}));
  EXPECT_EQ(run({"get", "//b/text()", "bad.xml", "menu.xml"}), (Result{1, "2", bad}));
  EXPECT_EQ(run({"get", "--count", "//b", "bad.xml", "menu.xml"}),
            (Result{1, "menu.xml: 1\n", bad}));
  EXPECT_EQ(run({"get", "//b", "missing.xml", "menu.xml"}),
            (Result{2, "<b xmlns:m='urn:m'/>\n", missing}));
  EXPECT_EQ(run({"get", "//b", "menu.xml", "menu.fi", "bad.xml"}, "",
                [] { dup2(STDOUT_FILENO, STDERR_FILENO); }),
            (Result{1, "<b xmlns:m='urn:m'/>\n<b xmlns:m='urn:m'/>\n<b>2" + bad, ""}));
}

TEST_F(Get, ReadsNoFurtherThanAsked) {
  const std::string broken = "<a><a>1</a><a>2</a><a>3</a><";
  EXPECT_EQ(getFrom("-", {"--max", "2", "/a/a/text()"}, broken), printed("1\n2\n"));
  EXPECT_EQ(getFrom("-", {"--max", "1", "/a/a"}, broken), printed("<a>1</a>\n"));
  EXPECT_EQ(getFrom("-", {"--max", "1", "/a/@x"}, "<a x='1' y='2'><"), printed("1\n"));
  EXPECT_EQ(getFrom("-", {"--max", "2", "--count", "//a"}, broken), printed("2\n"));
  EXPECT_EQ(getFrom("-", {"--max", "1", "//comment()"}, "<!--1--><a><"), printed("1\n"));
  EXPECT_EQ(getFrom("-", {"--max", "2", "//a"}, "<a><a>1</a><a>2</a></a><"),
            printed("<a><a>1</a><a>2</a></a>\n<a>1</a>\n"));
  EXPECT_EQ(getFrom("-", {"--max", "2", "//@*"}, "<a x='1' y='2' z='3'><"), printed("1\n2\n"));
  EXPECT_EQ(run({"get", "--max", "1", "//*:name/text()", "menu.xml", "menu.fi"}),
            printed("Fish & chips\nFish & chips\n"));
  // The input stays open: it is not read to its end.
  ToolProcess process({"get", "--max", "1", "/a/b/text()", "-"}, directory_);
  process.write("<!--" + std::string(300, ' ') + "--><a><b>1</b>\n<b>2</b>\n");
  EXPECT_EQ(process.waitWithOpenInput(), printed("1\n"));
}

TEST_F(Get, ReadsAllDocumentsOfAFile) {
  const std::string one = octets("E0 00 00 01 00 3C 00 'a' 92 01 'text' FF");
  EXPECT_EQ(getFrom("-", {"/a/text()"}, one + one), printed("text\ntext\n"));
  EXPECT_EQ(getFrom("-", {"--count", "/a[1]"}, one + one + one), printed("3\n"));
  EXPECT_EQ(getFrom("-", {"--max", "1", "/a"}, one + "no document"), printed("<a>text</a>\n"));
  EXPECT_EQ(getFrom("-", {"/a"}, one + "no document"),
            (Result{1, "<a>text</a>\n", "-: octet 16: No Fast Infoset document begins here\n"}));
}

TEST_F(Get, PrintsTypedContentAsText) {
  writeFile("typed.fi", typed::document());
  std::string text = typed::kContentsAsText;
  text.replace(text.find("<![CDATA["), std::string::npos, "<");
  EXPECT_EQ(getFrom("typed.fi", {"/a"}), printed(typed::kDocumentAsText + "\n"));
  EXPECT_EQ(getFrom("typed.fi", {"/a/@x|/a/text()"}), printed("7\n" + text + "\n"));
  EXPECT_EQ(getFrom("typed.fi", {"--text", "/a[@x='7']"}), printed(text + "\n"));
  EXPECT_EQ(getFrom("typed.fi", {"--count", "//text()[1]"}), printed("1\n"));
}

TEST_F(Get, RefusesContentOfUnknownAlgorithmsWhereItIsPrinted) {
  writeFile("u.fi", typed::unknownOfApplication());
  EXPECT_EQ(getFrom("u.fi", {"--count", "/a"}), printed("1\n"));
  EXPECT_EQ(getFrom("u.fi", {"/a/text()"}),
            (Result{1, "",
                    "u.fi: octet 21: encoding algorithm 31 \"urn:u\" is unknown, so the result "
                    "would lack its content\n"}));
}

TEST_F(Get, TellsOfEntitiesThatWereNotRead) {
  writeFile("e.xml", "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.ent'>]><a><b/>&e;&e;<c/></a>");
  writeFile("e.ent", "<c>in</c>");
  EXPECT_EQ(getFrom("e.xml", {"//c"}),
            (Result{0, "<c/>\n",
                    "e.xml:1:49: warning: entity \"e\" was not read: what it holds is not found "
                    "(see --entities)\n"}));
  EXPECT_EQ(getFrom("e.xml", {"/a"}),
            (Result{1, "<a><b/>",
                    "e.xml:1:49: entity \"e\" was not read, so the result would lack it (see "
                    "--entities)\n"}));
  EXPECT_EQ(getFrom("e.xml", {"--entities", "//c"}), printed("<c>in</c>\n<c>in</c>\n<c/>\n"));
}

TEST_F(Get, WorksWithEveryReader) {
  writeFile("a.xml", "<p:a xmlns:p='u' x='3'>one<b/>two</p:a>");
  for (const std::string type : {"Expat", "XML10"}) {
    SCOPED_TRACE(type);
    EXPECT_EQ(getFrom("a.xml", {"--from", type, "//*:a/text()"}), printed("one\ntwo\n"));
    EXPECT_EQ(getFrom("a.xml", {"--from", type, "--max", "1", "//b|//@x"}), printed("3\n"));
    EXPECT_EQ(getFrom("a.xml", {"--from", type, "//b|/*"}),
              printed("<p:a xmlns:p='u' x='3'>one<b/>two</p:a>\n<b xmlns:p='u'/>\n"));
  }
  EXPECT_EQ(run({"convert", "--to", "FI", "menu.xml", "old.fi"}).status, 0);
  EXPECT_EQ(getFrom("old.fi", {"--from", "FI", "--max", "1", "//plain/text()"}), printed("one\n"));
}

TEST_F(Get, StopsWhereResultsCannotBeWritten) {
  EXPECT_EQ(run({"get", "//*", "menu.xml", "menu.fi"}, "",
                [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); }),
            (Result{2, "", "tavrin: standard output: No space left on device\n"}));
}
