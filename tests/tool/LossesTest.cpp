#include "Workplace.h"

namespace {

/// References in attribute values to entities that are not read.
class Losses : public Workplace {
 protected:
  Losses() {
    writeFile("in.xml", "<!DOCTYPE a SYSTEM 'a.dtd'>\n<a><b match='a[&x;]'/>\n<c d='&y;'/></a>");
  }
};

const std::string kX =
    "The entity \"x\" was not read: a reference to it in an attribute value is lost";
const std::string kY =
    "The entity \"y\" was not read: a reference to it in an attribute value is lost";
const std::string kCopy = "<!DOCTYPE a SYSTEM \"a.dtd\"><a><b match='a[]'/>\n<c d=''/></a>";

}  // namespace

TEST_F(Losses, EndAConversion) {
  for (const std::string& out : {std::string("out.xml"), std::string("out.fi")}) {
    EXPECT_EQ(run({"convert", "in.xml", out}),
              (Result{1, "", "in.xml:2:16: " + kX + " (see --entities and --lossy)\n"}));
    EXPECT_FALSE(std::filesystem::exists(path(out)));
  }
}

TEST_F(Losses, CanBeAllowed) {
  EXPECT_EQ(
      run({"convert", "--lossy", "--no-declaration", "in.xml"}),
      (Result{0, kCopy, "in.xml:2:16: warning: " + kX + "\nin.xml:3:7: warning: " + kY + "\n"}));
  EXPECT_EQ(run({"convert", "--lossy", "--no-declaration", "-"}, "<a b='c'/>"),
            (Result{0, "<a b='c'/>", ""}));
}

TEST_F(Losses, AreNoneOfWhatIsRead) {
  writeFile("a.dtd", "<!ENTITY x '1'><!ENTITY y '2'>");
  EXPECT_EQ(run({"convert", "--entities", "--no-declaration", "in.xml"}),
            (Result{0, "<!DOCTYPE a SYSTEM \"a.dtd\"><a><b match='a[1]'/>\n<c d='2'/></a>", ""}));
  EXPECT_EQ(run({"diff", "--entities", "in.xml", "in.xml"}), silent(0));
}

TEST_F(Losses, AreToldOfByCheck) {
  EXPECT_EQ(run({"check", "in.xml"}),
            (Result{0, "in.xml: well-formed\n",
                    "in.xml:2:16: warning: " + kX + "\nin.xml:3:7: warning: " + kY + "\n"}));
  // Another warning than of a loss is told of by that command alone.
  writeFile("1.1.xml", "<?xml version='1.1'?><a/>");
  EXPECT_EQ(run({"check", "1.1.xml"}),
            (Result{0, "1.1.xml: well-formed\n",
                    "1.1.xml:1:1: warning: XML 1.1 is read by the rules of XML 1.0\n"}));
  EXPECT_EQ(run({"convert", "--no-declaration", "1.1.xml"}), (Result{0, "<a/>", ""}));
}

TEST_F(Losses, AreToldOfBesideEvents) {
  const Result result = run({"events", "in.xml"});
  EXPECT_EQ(result.status, 0);
  EXPECT_NE(result.out.find("\"match\", \"CDATA\", \"a[]\""), std::string::npos);
  EXPECT_EQ(result.err, "in.xml:2:16: warning: " + kX + "\nin.xml:3:7: warning: " + kY + "\n");
  writeFile("a.dtd", "<!ENTITY x '1'><!ENTITY y '2'>");
  EXPECT_EQ(run({"events", "--entities", "in.xml"}).err, "");
}

// The size is that of the copy that convert makes, which makes none.
TEST_F(Losses, LeaveNoCopyWhoseSizeCouldBeTold) {
  const Result result = run({"stat", "in.xml"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out.substr(result.out.find("  as Fast Infoset")),
            "  as Fast Infoset          impossible: in.xml:2:16: " + kX + "\n");
  EXPECT_EQ(result.err, "");
  writeFile("a.dtd", "<!ENTITY x '1'><!ENTITY y '2'>");
  const std::string read = run({"stat", "--entities", "in.xml"}).out;
  EXPECT_EQ(read.find("impossible"), std::string::npos) << read;
}

TEST_F(Losses, CannotBeCompared) {
  const std::string message = ":2:16: " + kX + ", and cannot be compared (see --entities)\n";
  writeFile("copy.xml", kCopy);
  for (const bool lexical : {false, true}) {
    ToolProcess::Arguments arguments = {"diff", "in.xml", "copy.xml"};
    if (lexical) arguments.emplace_back("--lexical");
    EXPECT_EQ(run(arguments), (Result{1, "", "in.xml" + message}));
  }
  writeFile("same.xml", readFile("in.xml"));
  EXPECT_EQ(run({"diff", "in.xml", "same.xml"}),
            (Result{1, "", "in.xml" + message + "same.xml" + message}));
  // A difference in front of it is one.
  writeFile("other.xml", "<a>\n</a>");
  EXPECT_EQ(run({"diff", "in.xml", "other.xml"}),
            (Result{1,
                    "in.xml:2:4: startElement(\"\", \"b\", \"b\", [{\"\", \"match\", \"match\", "
                    "\"CDATA\", \"a[]\"}])\nother.xml:1:4: characters(\"\\n\")\n",
                    ""}));
}

// --- Declarations behind what is not read ---

TEST_F(Losses, AreNoneOfDeclarations) {
  const std::string document =
      "<!DOCTYPE a [  <!ENTITY % ents SYSTEM \"e.ent\">%ents;  <!ENTITY v \"1.0&#38;x;\">"
      "  <!ATTLIST a b (c|d) 'c'>]><a>&v;</a>";
  EXPECT_EQ(run({"convert", "--no-declaration", "-"}, document), (Result{0, document, ""}));
}

// --- Depth ---

TEST_F(Losses, DoNotIncludeWhatIsTooDeep) {
  EXPECT_EQ(run({"check", "--limit", "maximum-depth=2", "-"}, "<a><b><c/></b></a>"),
            (Result{1, "", "-:1:7: Elements nested deeper than 2 (see --limit maximum-depth)\n"}));
  EXPECT_EQ(run({"check", "--limit", "maximum-depth=3", "-"}, "<a><b><c/></b></a>").status, 0);
}
