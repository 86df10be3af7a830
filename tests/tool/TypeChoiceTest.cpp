#include "TypedDocuments.h"
#include "Workplace.h"

namespace {

using TypeChoice = Workplace;

/// An element `a` in Fast Infoset, and what stands in front of its number of octets in a message.
const std::string kBinary = octets("E0 00 00 01 00 3C 00 'a' FF");

}  // namespace

// X.891, 12.3: a document may begin with one of these, and is no XML text then.
TEST_F(TypeChoice, TakesTheXMLDeclarationsOfFastInfosetForIt) {
  for (const std::string declaration : {
           "<?xml encoding='finf'?>",
           "<?xml encoding='finf' standalone='yes'?>",
           "<?xml encoding='finf' standalone='no'?>",
           "<?xml version='1.0' encoding='finf'?>",
           "<?xml version='1.0' encoding='finf' standalone='yes'?>",
           "<?xml version='1.0' encoding='finf' standalone='no'?>",
           "<?xml version='1.1' encoding='finf'?>",
           "<?xml version='1.1' encoding='finf' standalone='yes'?>",
           "<?xml version='1.1' encoding='finf' standalone='no'?>",
       }) {
    SCOPED_TRACE(declaration);
    writeFile("in.xml", declaration + kBinary);
    // Octets are counted from the first of the declaration.
    const std::string begun = ": octet " + std::to_string(declaration.size() + 5);
    const bool isOther = declaration.find("1.1") != std::string::npos;
    const std::string warning =
        isOther ? begun + ": warning: XML 1.1 is read by the rules of XML 1.0\n" : "";
    EXPECT_EQ(run({"check", "in.xml"}),
              (Result{0, "in.xml: well-formed\n", isOther ? "in.xml" + warning : ""}));
    EXPECT_EQ(run({"convert", "--no-declaration", "in.xml"}), (Result{0, "<a/>", ""}));
    EXPECT_EQ(run({"convert", "--no-declaration", "-"}, declaration + kBinary),
              (Result{0, "<a/>", ""}));
    const std::string cut = declaration + kBinary.substr(0, 8);
    EXPECT_EQ(run({"check", "-"}, cut),
              (Result{1, "",
                      (isOther ? "-" + warning : "") + "-: octet " + std::to_string(cut.size()) +
                          ": Unexpected end of document\n"}));
  }
}

TEST_F(TypeChoice, TakesAnythingElseForText) {
  EXPECT_EQ(run({"check", "-"}, "<?xml version=\"1.0\" encoding='finf'?>" + kBinary),
            (Result{1, "", "-:1:31: unknown encoding \"finf\"\n"}));
  EXPECT_EQ(run({"check", "-"}, "\xE0" + kBinary),
            (Result{1, "", "-:1:1: not well-formed (invalid token)\n"}));
  EXPECT_EQ(run({"check", "-"}, " " + kBinary),
            (Result{1, "", "-:1:2: not well-formed (invalid token)\n"}));
}

TEST_F(TypeChoice, GoesByTheNameOfTheFileThatIsWritten) {
  writeFile("in.xml", "<a/>");
  for (const std::string name : {"a.fi", "a.finf", "a.x3db", "a.xml.fi", ".x3db"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(run({"convert", "in.xml", name}), silent(0));
    EXPECT_EQ(readFile(name), kBinary);
  }
  for (const std::string name : {"a.xml", "a.x3d", "a.x3dv", "a.X3DB", "a.fi.bak", "a", "x3db"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(run({"convert", "--no-declaration", "in.xml", name}), silent(0));
    EXPECT_EQ(readFile(name), "<a/>");
  }
}

// What the types do differently tells which one is at work: "Expat" stops at xmlns="", and "FI" has
// no text for a chunk of UTF-16.
TEST_F(TypeChoice, GoesByTheOptionFromInEveryCommand) {
  writeFile("in.xml", "<a xmlns=''/>");
  const Result aborted = {1, "", "in.xml:1:14: parsing aborted\n"};
  // Nothing is aborted where nobody hears of namespaces.
  EXPECT_EQ(run({"check", "--from", "Expat", "in.xml"}), (Result{0, "in.xml: well-formed\n", ""}));
  EXPECT_EQ(run({"convert", "--from", "Expat", "in.xml", "out.xml"}), aborted);
  EXPECT_EQ(run({"stat", "--from", "Expat", "in.xml"}), aborted);
  EXPECT_EQ(run({"events", "--from", "Expat", "in.xml"}),
            (Result{1,
                    "startDocument()\n"
                    "startElement(\"\", \"a\", \"a\", [])\n"
                    "endElement(\"\", \"a\", \"a\")\n"
                    "endPrefixMapping(\"\")\n",
                    aborted.err}));
  const std::string inExpat = "in.xml:1:1: startElement(\"\", \"a\", \"a\", [])\n";
  const std::string inXML10 = "in.xml:1:1: startPrefixMapping(\"\", \"\")\n";
  EXPECT_EQ(run({"diff", "--from-a", "Expat", "in.xml", "in.xml"}),
            (Result{1, inExpat + inXML10, ""}));
  EXPECT_EQ(run({"diff", "--from-b", "eXPAT", "in.xml", "in.xml"}),
            (Result{1, inXML10 + inExpat, ""}));
  for (const std::string type : {"XML10", "xml10"}) {
    EXPECT_EQ(run({"check", "--from", type, "in.xml"}), (Result{0, "in.xml: well-formed\n", ""}));
    EXPECT_EQ(run({"convert", "--no-declaration", "--from", type, "in.xml"}),
              (Result{0, "<a xmlns=''/>", ""}));
    EXPECT_EQ(run({"diff", "--from-a", type, "--from-b", type, "in.xml", "in.xml"}), silent(0));
  }
  EXPECT_EQ(run({"check", "--from", "X891", "in.xml"}),
            (Result{1, "", "in.xml: octet 2: Not a Fast Infoset document\n"}));
  EXPECT_EQ(run({"check", "--from", "FI", "in.xml"}),
            (Result{1, "", "in.xml: octet 1: Not a Fast Infoset document\n"}));
  EXPECT_EQ(files(), Names{"in.xml"});
}

// It counts for all of the files.
TEST_F(TypeChoice, GoesByTheOptionFromForAllFiles) {
  writeFile("a.xml", "<a/>");
  writeFile("a.fi", kBinary);
  EXPECT_EQ(run({"check", "a.xml", "a.fi"}),
            (Result{0, "a.xml: well-formed\na.fi: well-formed\n", ""}));
  EXPECT_EQ(run({"check", "--from", "XML10", "a.xml", "a.fi"}),
            (Result{1, "a.xml: well-formed\n", "a.fi:1:3: not well-formed (invalid token)\n"}));
}

// "FI" has no prefix of its own for such a name, and "XML" a line feed in it.
TEST_F(TypeChoice, GoesByTheOptionTo) {
  writeFile("in.xml", "<a xml:lang='en'/>");
  EXPECT_EQ(run({"convert", "--to", "X891", "in.xml", "out.xml"}), silent(0));
  EXPECT_EQ(readFile("out.xml"),
            octets("E0 00 00 01 00 7C 00 'a' 7B 80 80 03 'lang' 41 'en' FF F0"));
  EXPECT_EQ(run({"convert", "--to", "XML10", "--no-declaration", "in.xml", "out.fi"}), silent(0));
  EXPECT_EQ(readFile("out.fi"), "<a xml:lang='en'/>");
  EXPECT_EQ(run({"convert", "--from", "Expat", "--to", "FI", "in.xml", "old.xml"}), silent(0));
  EXPECT_EQ(readFile("old.xml"),
            octets("E0 00 00 01 00 7C 00 'a' 79 80 07 'lang' 0A 'xml' 41 'en' FF F0"));
}
