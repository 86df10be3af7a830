#include "TypedDocuments.h"
#include "Workplace.h"

namespace {

/// What a copy keeps of a document type, and of what a document states of itself.
class Declarations : public Workplace {
 protected:
  Result text(const std::string& document) {
    return run({"convert", "--no-declaration", "-"}, document);
  }
  Result binary(const std::string& document) {
    return run({"convert", "--to", "X891", "-"}, document);
  }
};

Result printed(const std::string& document) { return {0, document, ""}; }

// A notation, an unparsed entity and identifiers of the document type. Each string is the first of
// its table or a later one: "s" is the first of other URIs, "p" the second, and so on.
const std::string kNotations =
    "<!DOCTYPE a SYSTEM \"s\" [  <!NOTATION n PUBLIC \"p\">"
    "  <!ENTITY u SYSTEM \"u.gif\" NDATA n>]><a/>";

}  // namespace

TEST_F(Declarations, AreCopiedToText) {
  const std::string document =
      "<!DOCTYPE a PUBLIC 'p' \"s\" ["
      "<!ELEMENT a (b|c)*><!ELEMENT b EMPTY><!ELEMENT c (#PCDATA)>\n"
      "<!ATTLIST a x CDATA #IMPLIED y (on | off) 'on' z NMTOKEN #FIXED \"z\" r ID #REQUIRED>"
      "<!--comment--><?target data?>"
      "<!ENTITY e 'a \"text\" &#38;amp;'><!ENTITY % p 'q'>"
      "<!ENTITY x PUBLIC 'p' 'x.xml'><!ENTITY % y SYSTEM 'y.ent'>"
      "<!NOTATION n SYSTEM 'n'><!NOTATION m PUBLIC 'm'><!NOTATION o PUBLIC 'm' 'n'>"
      "<!ENTITY u SYSTEM 'u.gif' NDATA n><!ATTLIST b t NOTATION (n|m) #IMPLIED>"
      "]><a r='1'/>";
  const std::string copy =
      "<!DOCTYPE a PUBLIC \"p\" \"s\" ["
      "  <!ELEMENT a (b|c)*>  <!ELEMENT b EMPTY>  <!ELEMENT c (#PCDATA)>"
      "  <!ATTLIST a x CDATA #IMPLIED>  <!ATTLIST a y (on|off) 'on'>"
      "  <!ATTLIST a z NMTOKEN #FIXED 'z'>  <!ATTLIST a r ID #REQUIRED>"
      "<!--comment--><?target data?>"
      "  <!ENTITY e \"a &#34;text&#34; &#38;amp;\">  <!ENTITY % p \"q\">"
      "  <!ENTITY x PUBLIC \"p\" \"x.xml\">  <!ENTITY % y SYSTEM \"y.ent\">"
      "  <!NOTATION n SYSTEM \"n\">  <!NOTATION m PUBLIC \"m\">"
      "  <!NOTATION o PUBLIC \"m\" \"n\">"
      "  <!ENTITY u SYSTEM \"u.gif\" NDATA n>  <!ATTLIST b t NOTATION (n|m) #IMPLIED>"
      "]><a r='1' y='on' z='z'/>";
  EXPECT_EQ(text(document), printed(copy));
  EXPECT_EQ(text(copy), printed(copy));
}

// Others stop at some declarations, or write what is not well-formed.
TEST_F(Declarations, AreLeftToTheTypesThatFollowTheStandards) {
  const std::string document =
      "<!DOCTYPE a [<!ATTLIST a x CDATA #IMPLIED><!NOTATION n PUBLIC 'p'><!--c-->]><a/>";
  const std::string without = "<!DOCTYPE a [<!--c-->]><a/>";
  EXPECT_EQ(run({"convert", "--to", "XML", "--no-declaration", "-"}, document), printed(without));
  EXPECT_EQ(run({"convert", "--from", "Expat", "--no-declaration", "-"}, document),
            printed(without));
  EXPECT_EQ(run({"convert", "--to", "FI", "-"}, document),
            printed(octets("E0 00 00 01 00 E2 40 'c' 3C 00 'a' FF")));
}

TEST_F(Declarations, OfNotationsAndUnparsedEntitiesAreKeptInFastInfoset) {
  writeFile("in.xml", kNotations);
  EXPECT_EQ(run({"convert", "in.xml", "out.fi"}), silent(0));
  // Which components there are: notations and unparsed entities (X.891, C.2). Lists end with F0.
  EXPECT_EQ(readFile("out.fi"), octets("E0 00 00 01 18 "
                                       "C1 00 'n' 00 'p' F0 "
                                       "D0 00 'u' 04 'u.gif' 80 F0 "
                                       "C6 00 's' F0 3C 00 'a' FF"));
  EXPECT_EQ(run({"convert", "--no-declaration", "out.fi"}), printed(kNotations));
  EXPECT_EQ(run({"events", "--declarations", "out.fi"}),
            printed("startDocument()\n"
                    "startDTD(\"a\", \"\", \"s\")\n"
                    "notationDecl(\"n\", \"p\", \"\")\n"
                    "unparsedEntityDecl(\"u\", \"\", \"u.gif\", \"n\")\n"
                    "endDTD()\n"
                    "startElement(\"\", \"a\", \"a\", [])\n"
                    "endElement(\"\", \"a\", \"a\")\n"
                    "endDocument()\n"));
}

TEST_F(Declarations, ThatFastInfosetHasNoFormForAreLeftOut) {
  EXPECT_EQ(binary("<!DOCTYPE a [<!ELEMENT a ANY><!--c--><?p d?><!ENTITY e '1'>]><a>&e;</a>"),
            printed(octets("E0 00 00 01 00 C4 E1 00 'p' 40 'd' F0 3C 00 'a' 90 '1' FF")));
}

// The size that stat tells is that of the copy, with its declarations.
TEST_F(Declarations, CountInTheSizeOfTheOtherForm) {
  writeFile("in.xml", "<?xml version='1.0' standalone='yes'?>" + kNotations);
  EXPECT_EQ(run({"convert", "in.xml", "out.fi"}), silent(0));
  EXPECT_EQ(run({"convert", "out.fi", "out.xml"}), silent(0));
  const auto lastLine = [](const Result& result) {
    return result.out.substr(result.out.rfind("  as "));
  };
  EXPECT_EQ(lastLine(run({"stat", "in.xml"})),
            "  as Fast Infoset          " + std::to_string(readFile("out.fi").size()) + "\n");
  EXPECT_EQ(lastLine(run({"stat", "out.fi"})),
            "  as XML text              " + std::to_string(readFile("out.xml").size()) + "\n");
  // A reference that is kept does not make the copy impossible.
  EXPECT_EQ(lastLine(run({"stat", "-"}, "<!DOCTYPE a [<!ENTITY e SYSTEM 's'>]><a>&e;</a>")),
            "  as Fast Infoset          16\n");
}

TEST_F(Declarations, OfBeingStandaloneAreCopied) {
  const std::string start = "<?xml version=\"1.0\" encoding=\"UTF-8\"";
  const struct {
    const char* stated;
    const char* inText;
    const char* inBinary;
  } cases[] = {
      {"", "", "00"},
      {" standalone='yes'", " standalone=\"yes\"", "02 01"},
      {" standalone='no'", " standalone=\"no\"", "02 00"},
  };
  for (const auto& [stated, inText, inBinary] : cases) {
    SCOPED_TRACE(stated);
    const std::string document = "<?xml version='1.0'" + std::string(stated) + "?><a/>";
    const std::string copy = start + inText + "?><a/>";
    EXPECT_EQ(run({"convert", "-"}, document), printed(copy));
    const std::string written = octets("E0 00 00 01 " + std::string(inBinary) + " 3C 00 'a' FF");
    EXPECT_EQ(binary(document), printed(written));
    EXPECT_EQ(run({"convert", "-"}, written), printed(copy));
    EXPECT_EQ(binary(written), printed(written));
  }
}

// What is read can also be copied.
TEST_F(Declarations, OfLaterVersionsAreCheckedAndConvertedAlike) {
  for (const std::string version : {"1.1", "1.7"}) {
    const std::string document = "<?xml version='" + version + "'?><a/>";
    const std::string warning = "warning: XML " + version + " is read by the rules of XML 1.0\n";
    const Result ofText = {0, "-: well-formed\n", "-:1:1: " + warning};
    EXPECT_EQ(run({"check", "-"}, document), ofText);
    EXPECT_EQ(text(document), printed("<a/>"));
    const std::string written = octets("E0 00 00 01 01 02 '" + version + "' 3C 00 'a' FF");
    EXPECT_EQ(binary(document), printed(written));
    const Result ofOctets = {0, "-: well-formed\n", "-: octet 9: " + warning};
    EXPECT_EQ(run({"check", "-"}, written), ofOctets);
    EXPECT_EQ(binary(written), printed(written));
  }
  // Newer versions of expat refuse it themselves.
  const Result refused = run({"check", "-"}, "<?xml version='2.0'?><a/>");
  if (refused != Result{1, "", "-:1:16: XML declaration not well-formed\n"}) {
    EXPECT_EQ(refused, (Result{1, "", "-:1:1: \"2.0\" is not a version of XML\n"}));
  }
  EXPECT_EQ(binary("<?xml version='2.0'?><a/>"), refused);
  EXPECT_EQ(text("<?xml version='2.0'?><a/>"), refused);
}

// Text is XML 1.0, whatever it comes from; what that does not allow is refused.
TEST_F(Declarations, OfTheVersionAreCopiedToFastInfosetOnly) {
  const std::string document = octets("E0 00 00 01 01 02 '1.1' 3C 00 'a' FF");
  EXPECT_EQ(binary(document), printed(document));
  EXPECT_EQ(text(document), printed("<a/>"));
  // A prefix that is undeclared (Namespaces in XML 1.1).
  const std::string undeclared = octets(
      "E0 00 00 01 01 02 '1.1' 38 CF 00 'p' 00 'u' F0 3C 00 'a' 38 CE 81 F0 3C 00 'b' FF F0");
  EXPECT_EQ(binary(undeclared), printed(undeclared));
  EXPECT_EQ(run({"check", "-"}, undeclared),
            (Result{0, "-: well-formed\n",
                    "-: octet 9: warning: XML 1.1 is read by the rules of XML 1.0\n"}));
  writeFile("in.fi", undeclared);
  EXPECT_EQ(run({"convert", "in.fi", "out.xml"}),
            (Result{1, "", "in.fi: octet 26: The prefix \"p\" cannot be undeclared\n"}));
  EXPECT_EQ(files(), Names{"in.fi"});
}

// A notation is declared once (XML 1.0, section 4.7), be it where the copy refers to.
TEST_F(Declarations, OfTheExternalSubsetStayThere) {
  writeFile("a.dtd", "<!NOTATION m SYSTEM 'm'><!ENTITY u SYSTEM 'u' NDATA m><!ENTITY e 'E'>");
  const std::string document =
      "<!DOCTYPE a SYSTEM \"a.dtd\" [  <!NOTATION n SYSTEM \"n\">"
      "  <!ENTITY % p SYSTEM \"p\">%p;]><a>E</a>";
  writeFile("p", "<!NOTATION o SYSTEM 'o'>");
  writeFile("in.xml", document);
  const std::string inFastInfoset =
      "<!DOCTYPE a SYSTEM \"a.dtd\" [  <!NOTATION n SYSTEM \"n\">  <!NOTATION o SYSTEM \"o\">]>"
      "<a>E</a>";
  EXPECT_EQ(run({"convert", "--entities", "--no-declaration", "in.xml"}),
            (Result{0, document, ""}));
  EXPECT_EQ(run({"convert", "--entities", "in.xml", "out.fi"}), silent(0));
  EXPECT_EQ(run({"convert", "--no-declaration", "out.fi"}), (Result{0, inFastInfoset, ""}));
  EXPECT_EQ(run({"diff", "--entities", "in.xml", "out.fi"}), silent(0));
}
