#include "TypedDocuments.h"
#include "Workplace.h"

namespace {

// Text becomes typed content on the way to Fast Infoset.
class TypedConversion : public Workplace {
 protected:
  /// Converts text to Fast Infoset by rules in a file.
  Result typed(const std::string& text, const std::string& rules,
               const ToolProcess::Arguments& options = {}) {
    writeFile("rules", rules);
    writeFile("in.xml", text);
    ToolProcess::Arguments arguments = {"convert", "--force", "--typed",
                                        "rules",   "in.xml",  "out.fi"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return run(arguments);
  }

  /// The octets of out.fi behind the header and the first element.
  std::string content() const {
    const std::string document = readFile("out.fi");
    const std::string start = octets(typed::kHeader + "3C 00 'a'");
    EXPECT_EQ(document.substr(0, start.size()), start);
    return document.substr(start.size());
  }
};

Result misuse(const std::string& message) { return {2, "", message + "\n"}; }

const std::string kKnown =
    "hexadecimal, base64, short, int, long, boolean, float, double, uuid, cdata, auto";

}  // namespace

TEST_F(TypedConversion, WritesTheTextOfElementsAsTheRulesTell) {
  const struct {
    const char* type;
    const char* text;
    std::string octets;
  } cases[] = {
      {"short", "1 -2", "8C 0A 01 0001 FFFE"},
      {"int", "1 -1", "8C 0E 05 00000001 FFFFFFFF"},
      {"long", " -01\n", "8C 12 05 FFFFFFFFFFFFFFFF"},
      {"boolean", "true 0 1", "8C 14 1A"},
      {"float", "0.1 1e0", "8C 1A 05 3DCCCCCD 3F800000"},
      {"double", "0.1", "8C 1E 05 3FB999999999999A"},
      {"hexadecimal", "010203", "8C 02 00 010203"},
      {"base64", "/wD+", "8C 06 00 FF00FE"},
      {"cdata", "&lt;", "8C 24 '<'"},
      {"uuid", "F81D4FAE-7DEC-11D0-A765-00A0C91E6BF6",
       "8C 22 0D F81D4FAE 7DEC 11D0 A765 00A0C91E6BF6"},
  };
  for (const auto& [type, text, expected] : cases) {
    SCOPED_TRACE(type);
    EXPECT_EQ(typed("<a>" + std::string(text) + "</a>", std::string("a ") + type), silent(0));
    EXPECT_EQ(content(), octets(expected + " FF"));
  }
}

TEST_F(TypedConversion, WritesAttributesAsTheRulesTell) {
  EXPECT_EQ(typed("<a x='7' y='1'/>", "a/@x int # the seventh"), silent(0));
  EXPECT_EQ(readFile("out.fi"),
            octets(typed::kHeader + "7C 00 'a' 78 00 'x' 30 33 00000007 78 00 'y' 40 '1' FF F0"));
}

TEST_F(TypedConversion, TheFirstRuleThatMatchesCounts) {
  EXPECT_EQ(typed("<a>1</a>", "# numbers\n\n/b/a int\n/a short\na int\n"), silent(0));
  EXPECT_EQ(content(), octets("8C 09 0001 FF"));
}

TEST_F(TypedConversion, WithoutARuleTextStays) {
  EXPECT_EQ(typed("<a>1</a>", "# nothing\n"), silent(0));
  EXPECT_EQ(content(), octets("90 '1' FF"));
  EXPECT_EQ(typed("<a>1</a>", ""), silent(0));
  EXPECT_EQ(content(), octets("90 '1' FF"));
}

TEST_F(TypedConversion, TypesWhatPrintsBackByItself) {
  const std::string floats = "0.0625 -0.25 1.5 0.0625 0.0625 0.0625 0.0625 0.0625 0.0625";
  writeFile("in.xml", "<a>" + floats + "</a>");
  EXPECT_EQ(run({"convert", "--typed=auto", "in.xml", "out.fi"}), silent(0));
  EXPECT_EQ(content(), octets("8C 1A 21 3D800000 BE800000 3FC00000 3D800000 3D800000 3D800000 "
                              "3D800000 3D800000 3D800000 FF"));
  EXPECT_EQ(run({"diff", "in.xml", "out.fi"}), silent(0));
  EXPECT_EQ(run({"convert", "--no-declaration", "out.fi"}), (Result{0, readFile("in.xml"), ""}));
}

TEST_F(TypedConversion, LeavesTextByItselfThatDoesNotPrintBack) {
  for (const std::string text :
       {"0.50 -0.25 1.5 0.5 0.5 0.5 0.5 0.5 0.5", "1 2\n3 4 5 6 7 8 9 10 11 12 13 14 15 16",
        "+1 2 3 4 5 6 7 8 9 10 11 12 13 14 15", "1 2 3"}) {
    SCOPED_TRACE(text);
    writeFile("in.xml", "<a>" + text + "</a>");
    EXPECT_EQ(run({"convert", "in.xml", "plain.fi", "--force"}), silent(0));
    EXPECT_EQ(run({"convert", "--typed", "auto", "in.xml", "out.fi", "--force"}), silent(0));
    EXPECT_EQ(readFile("out.fi"), readFile("plain.fi"));
  }
}

TEST_F(TypedConversion, TypesDocumentsOfFastInfoset) {
  writeFile("rules", "a int");
  const std::string untyped = typed::element("90 '7'");
  writeFile("in.fi", untyped + untyped);
  EXPECT_EQ(run({"convert", "--typed=rules", "in.fi", "out.fi"}), silent(0));
  const std::string typed = typed::element("8C 0E 01 00000007");
  EXPECT_EQ(readFile("out.fi"), typed + typed);
  EXPECT_EQ(run({"diff", "in.fi", "out.fi"}), silent(0));
}

TEST_F(TypedConversion, LeavesWhatIsTypedAlready) {
  writeFile("rules", "* auto\n@* float");
  EXPECT_EQ(
      run({"convert", "--typed=rules", "--to", "X891", "-"},
          octets(typed::kHeader + "7C 00 'a' 78 00 'x' 30 33 00000007 F0 8C 0E 01 00000007 FF")),
      (Result{0,
              octets(typed::kHeader + "7C 00 'a' 78 00 'x' 30 33 00000007 F0 8C 0E 01 00000007 FF"),
              ""}));
}

TEST_F(TypedConversion, ChangesNothingInText) {
  const std::string document =
      "<!DOCTYPE a [<!ENTITY e SYSTEM 'e'>]>\n<a x=\"01\">&e; 1.50<b> no number </b><!--c--></a>";
  writeFile("rules", "a float\nb int\n@x int");
  const Result plain = run({"convert", "-"}, document);
  EXPECT_EQ(plain.status, 0);
  EXPECT_EQ(run({"convert", "--typed=rules", "-"}, document), plain);
  EXPECT_EQ(run({"convert", "--typed=auto", "-"}, document), plain);
}

TEST_F(TypedConversion, TypesOnlyElementsThatHaveNothingButText) {
  EXPECT_EQ(typed("<a>1<!--c--></a>", "a int"), silent(0));
  EXPECT_EQ(content(), octets("90 '1' E2 40 'c' FF"));
}

// --- What is not of its type ---

TEST_F(TypedConversion, RefusesTextOfAnotherType) {
  EXPECT_EQ(typed("<a>\n<b>one</b></a>", "b int"),
            (Result{1, "",
                    "in.xml:2:7: The text of the element \"b\" cannot be typed: Invalid int text: "
                    "\"one\" at offset 0 is no integer\n"}));
  EXPECT_EQ(files(), (Names{"in.xml", "rules"}));
  EXPECT_EQ(typed("<a x='70000'/>", "@x short"),
            (Result{1, "",
                    "in.xml:1:1: The attribute \"x\" of the element \"a\" cannot be typed: Invalid "
                    "short text: \"70000\" at offset 0 is out of range\n"}));
}

TEST_F(TypedConversion, LeavesTextOfAnotherTypeOnDemand) {
  EXPECT_EQ(typed("<a>one</a>", "a int", {"--typed-lenient"}), silent(0));
  EXPECT_EQ(content(), octets("92 00 'one' FF"));
}

TEST_F(TypedConversion, LeavesTextOfAnotherFormOnDemand) {
  EXPECT_EQ(typed("<a>1.50</a>", "a float", {"--typed-exact"}), silent(0));
  EXPECT_EQ(content(), octets("92 01 '1.50' FF"));
  EXPECT_EQ(typed("<a>1.5</a>", "a float", {"--typed-exact"}), silent(0));
  EXPECT_EQ(content(), octets("8C 1A 01 3FC00000 FF"));
}

// --- Rules that are none ---

TEST_F(TypedConversion, NamesThePlaceOfARuleThatIsNone) {
  const struct {
    const char* rules;
    std::string message;
  } cases[] = {
      {"a int\n  b flaot\n",
       "rules:2:5: Unknown type \"flaot\", did you mean \"float\"? Known are " + kKnown},
      {"a thing", "rules:1:3: Unknown type \"thing\"; known are " + kKnown},
      {"\n\na", "rules:3:2: A rule is a path and a type"},
      {"a int b", "rules:1:7: A rule is a path and a type"},
      {"a//b int", "rules:1:1: The path \"a//b\" lacks a name"},
      {"@a cdata",
       "rules:1:1: The path \"@a\" is that of an attribute, which cannot be a CDATA "
       "section"},
  };
  for (const auto& [rules, message] : cases) {
    EXPECT_EQ(typed("<a/>", rules), misuse(message));
    EXPECT_EQ(files(), (Names{"in.xml", "rules"}));
  }
}

TEST_F(TypedConversion, NamesAFileOfRulesThatCannotBeRead) {
  writeFile("in.xml", "<a/>");
  EXPECT_EQ(run({"convert", "--typed", "missing", "in.xml", "out.fi"}),
            misuse("tavrin: missing: No such file or directory"));
  EXPECT_EQ(run({"convert", "--typed", ".", "in.xml", "out.fi"}),
            misuse("tavrin: .: Is a directory"));
  EXPECT_EQ(files(), Names{"in.xml"});
}

TEST_F(TypedConversion, ReadsRulesFromStandardInput) {
  writeFile("in.xml", "<a>1</a>");
  EXPECT_EQ(run({"convert", "--typed", "-", "in.xml", "out.fi"}, "a int"), silent(0));
  EXPECT_EQ(content(), octets("8C 0E 01 00000001 FF"));
  EXPECT_EQ(run({"convert", "--typed", "-", "-", "more.fi"}),
            misuse("tavrin: only one of the document and the rules can be standard input"));
}

TEST_F(TypedConversion, NeedsRulesForItsOtherOptions) {
  EXPECT_EQ(run({"convert", "--typed-exact", "-"}, "<a/>"),
            misuse("tavrin: --typed-exact requires --typed (see tavrin convert --help)"));
}
