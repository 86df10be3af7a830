#include "HexOctets.h"
#include "Workplace.h"

namespace {

using Check = Workplace;

}  // namespace

TEST_F(Check, NamesAWellFormedDocument) {
  writeFile("a.xml", "<a/>");
  EXPECT_EQ(run({"check", "a.xml"}), (Result{0, "a.xml: well-formed\n", ""}));
  EXPECT_EQ(run({"check", "./a.xml"}), (Result{0, "./a.xml: well-formed\n", ""}));
}

TEST_F(Check, TellsWhereADocumentIsNot) {
  const struct {
    const char* document;
    const char* message;
  } cases[] = {
      {"", "1:1: no element found (the input is empty)"},
      {" ", "1:2: no element found"},
      {"text", "1:1: syntax error"},
      {"<a>", "1:4: no element found: <a> of line 1 is not closed"},
      {"<a>\n\n", "3:1: no element found: <a> of line 1 is not closed"},
      {"<a>\r\n </b>", "2:4: mismatched tag: expected </a> of line 1"},
      {"<a b='1' b='2'/>", "1:10: duplicate attribute: \"b\""},
      {"<p:a/>", "1:1: unbound prefix: \"p\""},
      {"<a/><b/>", "1:5: junk after document element"},
      {"<a>&x;</a>", "1:4: undefined entity: \"x\""},
      {"<a>\xFF</a>", "1:4: not well-formed (invalid token)"},
      {"<a>\xC3\xA4\x01</a>", "1:5: not well-formed (invalid token)"},
      {"<?xml version='1.0' encoding='bogus'?><a/>", "1:31: unknown encoding \"bogus\""},
      {" <?xml version='1.0'?><a/>", "1:2: XML or text declaration not at start of entity"},
  };
  for (const auto& [document, message] : cases) {
    SCOPED_TRACE(document);
    writeFile("a.xml", document);
    EXPECT_EQ(run({"check", "a.xml"}), (Result{1, "", std::string("a.xml:") + message + "\n"}));
    EXPECT_EQ(run({"check", "-"}, document), (Result{1, "", std::string("-:") + message + "\n"}));
  }
}

TEST_F(Check, ChecksEveryFileAndEndsWithTheWorst) {
  writeFile("good.xml", "<a/>");
  writeFile("also good.xml", "<a/>");
  writeFile("bad.xml", "<a>");
  const std::string bad = "bad.xml:1:4: no element found: <a> of line 1 is not closed\n";
  const std::string missing = "tavrin: missing.xml: No such file or directory\n";
  EXPECT_EQ(run({"check", "good.xml", "also good.xml"}),
            (Result{0, "good.xml: well-formed\nalso good.xml: well-formed\n", ""}));
  EXPECT_EQ(run({"check", "good.xml", "bad.xml", "also good.xml"}),
            (Result{1, "good.xml: well-formed\nalso good.xml: well-formed\n", bad}));
  EXPECT_EQ(run({"check", "bad.xml", "bad.xml"}), (Result{1, "", bad + bad}));
  EXPECT_EQ(run({"check", "missing.xml", "bad.xml", "good.xml"}),
            (Result{2, "good.xml: well-formed\n", missing + bad}));
  EXPECT_EQ(run({"check", "bad.xml", "missing.xml"}), (Result{2, "", bad + missing}));
  EXPECT_EQ(run({"check", "good.xml", "-", "bad.xml"}, "<a>\n<b/></a>"),
            (Result{1, "good.xml: well-formed\n-: well-formed\n", bad}));
}

TEST_F(Check, FindsStandardInputUsedUpTheSecondTime) {
  EXPECT_EQ(run({"check", "-", "-"}, "<a/>"),
            (Result{1, "-: well-formed\n", "-:1:1: no element found (the input is empty)\n"}));
}

TEST_F(Check, PrintsTheLinesInTheOrderOfTheFiles) {
  writeFile("good.xml", "<a/>");
  writeFile("bad.xml", "<a>");
  EXPECT_EQ(run({"check", "good.xml", "bad.xml", "good.xml"}, "",
                [] { dup2(STDOUT_FILENO, STDERR_FILENO); }),
            (Result{1,
                    "good.xml: well-formed\n"
                    "bad.xml:1:4: no element found: <a> of line 1 is not closed\n"
                    "good.xml: well-formed\n",
                    ""}));
}

TEST_F(Check, FindsDocumentsWellFormedThatOldTypesRefuseToCopy) {
  writeFile("undeclared.xml", "<a xmlns='u'><b xmlns=''/></a>");
  writeFile("external.xml", "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.xml'>]><a>&e;</a>");
  writeFile("skipped.xml", "<!DOCTYPE a SYSTEM 'a.dtd'><a>&e;</a>");
  EXPECT_EQ(run({"check", "undeclared.xml", "external.xml", "skipped.xml"}),
            (Result{0,
                    "undeclared.xml: well-formed\n"
                    "external.xml: well-formed\n"
                    "skipped.xml: well-formed\n",
                    ""}));
}

// An entity that grows without bounds is refused, not expanded.
TEST_F(Check, RefusesEntitiesThatExplode) {
  std::string document = "<!DOCTYPE a [<!ENTITY e0 '0123456789'>\n";
  for (int i = 1; i < 12; ++i) {
    const std::string reference = "&e" + std::to_string(i - 1) + ";";
    document += "<!ENTITY e" + std::to_string(i) + " '";
    for (int n = 0; n < 10; ++n) document += reference;
    document += "'>\n";
  }
  document += "]>\n<a>&e11;</a>";
  EXPECT_EQ(run({"check", "-"}, document),
            (Result{1, "",
                    "-:14:4: limit on input amplification factor (from DTD and entities) "
                    "breached (see --limit "
                    "entity-amplification-factor)\n"}));
  EXPECT_EQ(run({"check", "-"}, "<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f '&e;'>]><a>&e;</a>"),
            (Result{1, "", "-:1:53: recursive entity reference: \"e\"\n"}));
}

TEST_F(Check, StopsWhereTheListCannotBeWritten) {
  writeFile("good.xml", "<a/>");
  writeFile("bad.xml", "<a>");
  EXPECT_EQ(run({"check", "good.xml", "bad.xml"}, "",
                [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); }),
            (Result{2, "", "tavrin: standard output: No space left on device\n"}));
}

// What other commands make of such a document is the same as of one of 1.0.
TEST_F(Check, WarnsOfOtherVersions) {
  const std::string warning = "warning: XML 1.1 is read by the rules of XML 1.0\n";
  writeFile("in.xml", "<?xml version='1.1'?>\n<a/>");
  EXPECT_EQ(run({"check", "in.xml"}),
            (Result{0, "in.xml: well-formed\n", "in.xml:1:1: " + warning}));
  EXPECT_EQ(run({"check", "--quiet", "in.xml"}), (Result{0, "", "in.xml:1:1: " + warning}));
  const std::string document = octets("E0 00 00 01 01 02 '1.1' 3C 00 'a' FF");
  EXPECT_EQ(run({"check", "-"}, document + document),
            (Result{0, "-: well-formed (2 documents)\n",
                    "-: octet 9: " + warning + "-: octet 22 (document 2): " + warning}));
}
