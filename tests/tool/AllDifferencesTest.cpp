#include "TypedDocuments.h"
#include "Workplace.h"

namespace {

class AllDifferences : public Workplace {
 protected:
  Result diff(const std::string& a, const std::string& b,
              const ToolProcess::Arguments& options = {"--all"}) {
    writeFile("a", a);
    writeFile("b", b);
    ToolProcess::Arguments arguments = {"diff", "a", "b"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return run(arguments);
  }
};

Result differences(const std::string& lines) { return {1, lines, ""}; }

std::string binary(const std::string& written) { return octets("E0 00 00 01 00 " + written); }

std::string items(int begin, int end) {
  std::string text;
  for (int i = begin; i < end; ++i) {
    text += "<item id='" + std::to_string(i) + "'>text " + std::to_string(i) + "</item>";
  }
  return text;
}

}  // namespace

TEST_F(AllDifferences, AreNoneOfTheSameDocument) {
  EXPECT_EQ(diff("<a x='1'>b<c/></a>", "<a x='1'>b<c></c></a>"), silent(0));
  EXPECT_EQ(diff(typed::document(), typed::kDocumentAsText), silent(0));
  EXPECT_EQ(diff(typed::kDocumentAsText, typed::document()), silent(0));
}

TEST_F(AllDifferences, AreShownBelowTheirPaths) {
  EXPECT_EQ(diff("<list>\n<item id='1' n='x'>one</item>\n<item id='2'>two</item>\n<?p 1?></list>",
                 "<list>\n<item id='1'>one</item>\n<item id='3' m='y'>Two</item>\n<?p 2?></list>"),
            differences("/list/item[1]/@n\n"
                        "- a:2:1: \"x\"\n"
                        "/list/item[2]/@id\n"
                        "- a:3:1: \"2\"\n"
                        "+ b:3:1: \"3\"\n"
                        "/list/item[2]/@m\n"
                        "+ b:3:1: \"y\"\n"
                        "/list/item[2]/text()[1]\n"
                        "- a:3:14: characters(\"two\")\n"
                        "+ b:3:20: characters(\"Two\")\n"
                        "/list/processing-instruction()[1]\n"
                        "- a:4:1: processingInstruction(\"p\", \"1\")\n"
                        "+ b:4:1: processingInstruction(\"p\", \"2\")\n"));
}

TEST_F(AllDifferences, AreShownAsXMLTextOnDemand) {
  EXPECT_EQ(diff("<a><b x='1'/>t<!--c--><?p?><e/></a>", "<a><c x='1'/>u<!--d--><?p q?></a>",
                 {"--all", "--text"}),
            differences("/a/b[1]\n"
                        "- a:1:4: <b x=\"1\">\n"
                        "/a/c[1]\n"
                        "+ b:1:4: <c x=\"1\">\n"
                        "/a/text()[1]\n"
                        "- a:1:14: \"t\"\n"
                        "+ b:1:14: \"u\"\n"
                        "/a/comment()[1]\n"
                        "- a:1:15: <!--c-->\n"
                        "+ b:1:15: <!--d-->\n"
                        "/a/processing-instruction()[1]\n"
                        "- a:1:23: <?p?>\n"
                        "+ b:1:23: <?p q?>\n"
                        "/a/e[1]\n"
                        "- a:1:28: <e>\n"));
}

TEST_F(AllDifferences, TheFirstAloneIsShownAsXMLText) {
  const ToolProcess::Arguments text = {"--text"};
  EXPECT_EQ(diff("<a><b/></a>", "<a></a>", text), differences("a:1:4: <b>\nb:1:4: </a>\n"));
  EXPECT_EQ(diff("<a>1</a>", "<a>2<b/></a>", text), differences("a:1:4: \"1\"\nb:1:4: \"2\"\n"));
  EXPECT_EQ(diff("<a xmlns='u'/>", "<a xmlns:p='u'/>", text),
            differences("a:1:1: xmlns=\"u\"\nb:1:1: xmlns:p=\"u\"\n"));
  EXPECT_EQ(diff("<a/>", "<a/><!--\n-->", text),
            differences("a: end of the document\nb:1:5: <!--\\n-->\n"));
  // Of what is long, the part around the first difference.
  const std::string x100(100, 'x'), y100(100, 'y');
  EXPECT_EQ(
      diff("<a b='" + x100 + "1" + y100 + "'/>", "<a b='" + x100 + "2" + y100 + "'/>", text),
      differences("a:1:1: ..." + std::string(30, 'x') + "1" + std::string(49, 'y') +
                  "...\nb:1:1: ..." + std::string(30, 'x') + "2" + std::string(49, 'y') + "...\n"));
}

TEST_F(AllDifferences, FindsWhatOneDocumentHasMore) {
  EXPECT_EQ(diff("<a>" + items(0, 9) + "</a>", "<a>" + items(0, 3) + "<item id='new'><b/></item>" +
                                                   items(3, 5) + items(6, 9) + "</a>"),
            differences("/a/item[4]\n"
                        "+ b:1:82: startElement(\"\", \"item\", \"item\", [{\"\", \"id\", \"id\", "
                        "\"CDATA\", \"new\"}])\n"
                        "/a/item[6]\n"
                        "- a:1:134: startElement(\"\", \"item\", \"item\", [{\"\", \"id\", \"id\", "
                        "\"CDATA\", \"5\"}])\n"));
  EXPECT_EQ(diff("<a/>", "<a>t<b/></a>"),
            differences("/a/text()[1]\n"
                        "+ b:1:4: characters(\"t\")\n"
                        "/a/b[1]\n"
                        "+ b:1:5: startElement(\"\", \"b\", \"b\", [])\n"));
}

TEST_F(AllDifferences, KeepWhatIsChangedTogether) {
  EXPECT_EQ(diff("<a><b><c>1</c></b><d/></a>", "<a><b><c>2</c><e/></b><d/></a>"),
            differences("/a/b[1]/c[1]/text()[1]\n"
                        "- a:1:10: characters(\"1\")\n"
                        "+ b:1:10: characters(\"2\")\n"
                        "/a/b[1]/e[1]\n"
                        "+ b:1:15: startElement(\"\", \"e\", \"e\", [])\n"));
  EXPECT_EQ(diff("<a/>", "<b>t</b>"),
            differences("/a\n- a:1:1: startElement(\"\", \"a\", \"a\", [])\n"
                        "/b\n+ b:1:1: startElement(\"\", \"b\", \"b\", [])\n"));
}

TEST_F(AllDifferences, RecognizeElementsByTheirAttributes) {
  EXPECT_EQ(diff("<a><b id='1'>one</b><b id='2'>two</b></a>",
                 "<a><b id='0'/><b id='1'>One</b><b id='2'>Two</b></a>", {"--all", "--text"}),
            differences("/a/b[1]\n+ b:1:4: <b id=\"0\">\n"
                        "/a/b[1]/text()[1]\n- a:1:14: \"one\"\n+ b:1:25: \"One\"\n"
                        "/a/b[2]/text()[1]\n- a:1:31: \"two\"\n+ b:1:42: \"Two\"\n"));
}

TEST_F(AllDifferences, KnowNamespaces) {
  EXPECT_EQ(diff("<p:a xmlns:p='u' p:x='1'><p:b/></p:a>", "<p:a xmlns:p='v' p:x='1'><p:b/></p:a>"),
            differences("/p:a/@xmlns:p\n- a:1:1: \"u\"\n+ b:1:1: \"v\"\n"
                        "/p:a/@p:x\n- a:1:1: \"1\"\n/p:a/@p:x\n+ b:1:1: \"1\"\n"
                        "/p:a/p:b[1]\n"
                        "- a:1:26: startElement(\"u\", \"b\", \"p:b\", [])\n"
                        "+ b:1:26: startElement(\"v\", \"b\", \"p:b\", [])\n"));
}

TEST_F(AllDifferences, TellTheOrderOfAttributes) {
  EXPECT_EQ(diff("<a x='1' y='2'/>", "<a y='2' x='1'/>", {"--all", "--text"}),
            differences("/a\n- a:1:1: <a x=\"1\" y=\"2\">\n+ b:1:1: <a y=\"2\" x=\"1\">\n"));
}

TEST_F(AllDifferences, CompareEncodings) {
  EXPECT_EQ(diff("<a x='1'>t<b/></a>", binary("7C 00 'a' 78 00 'x' 40 '2' F0 90 'u' FF")),
            differences("/a/@x\n- a:1:1: \"1\"\n+ b: octet 6: \"2\"\n"
                        "/a/text()[1]\n- a:1:10: characters(\"t\")\n+ b: octet 15: "
                        "characters(\"u\")\n"
                        "/a/b[1]\n- a:1:11: startElement(\"\", \"b\", \"b\", [])\n"));
  // A typed value is its text.
  EXPECT_EQ(diff(typed::element("8C 0A 01 0001 FFFE"), "<a>1 -3</a>"),
            differences("/a/text()[1]\n- a: octet 9: characters(\"1 -2\")\n+ b:1:4: characters(\"1 "
                        "-3\")\n"));
}

TEST_F(AllDifferences, CompareDocumentsThatFollowEachOther) {
  const std::string one = binary("3C 00 'a' FF");
  const std::string two = binary("3C 00 'b' FF");
  EXPECT_EQ(diff(one + one, two + one),
            differences("/a\n- a: octet 6: startElement(\"\", \"a\", \"a\", [])\n"
                        "/b\n+ b: octet 6: startElement(\"\", \"b\", \"b\", [])\n"));
  EXPECT_EQ(
      diff(one, one + two + two),
      differences("/\n+ b: octet 10: document 2 begins\n/\n+ b: octet 19: document 3 begins\n"));
  EXPECT_EQ(diff(one + two, one), differences("/\n- a: octet 10: document 2 begins\n"));
}

TEST_F(AllDifferences, EndWhereADocumentCannotBeReadOn) {
  EXPECT_EQ(diff("<a><b>1</b><c>", "<a><b>2</b><d/></a>"),
            (Result{1,
                    "/a/b[1]/text()[1]\n- a:1:7: characters(\"1\")\n+ b:1:7: characters(\"2\")\n"
                    "/a/c[1]\n- a:1:12: startElement(\"\", \"c\", \"c\", [])\n"
                    "/a/d[1]\n+ b:1:12: startElement(\"\", \"d\", \"d\", [])\n",
                    "a:1:15: no element found: <c> of line 1 is not closed\n"}));
  EXPECT_EQ(diff("<a>abc", "<a>abcdef<b/></a>"),
            (Result{1, "", "a:1:7: no element found: <a> of line 1 is not closed\n"}));
}

// Many times what is looked ahead.
TEST_F(AllDifferences, AreFoundInLargeDocuments) {
  const std::string many = items(0, 20000);
  const std::string long1(300000, 'x');
  EXPECT_EQ(
      diff("<a>" + many + "<b>" + many + "</b><c>1</c><d>" + long1 + "1" + long1 + "</d></a>",
           "<a>" + many + "<c>2</c><d>" + long1 + "2" + long1 + "</d></a>", {"--all", "--text"}),
      differences("/a/b[1]\n- a:1:657784: <b>\n"
                  "/a/c[1]/text()[1]\n- a:1:1315574: \"1\"\n+ b:1:657787: \"2\"\n"
                  "/a/d[1]/text()[1]\n- a:1:1315582: ...\"" +
                  std::string(30, 'x') + "1" + std::string(49, 'x') + "\"...\n+ b:1:657795: ...\"" +
                  std::string(30, 'x') + "2" + std::string(49, 'x') + "\"...\n"));
}
