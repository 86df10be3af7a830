#include "HexOctets.h"
#include "Workplace.h"

namespace {

constexpr char kKeyboards[] = "/usr/share/X11/xkb/rules/evdev.xml";  // From xkb-data.
// From dpkg: a text in many languages.
constexpr char kPolicy[] = "/usr/share/polkit-1/actions/org.dpkg.pkexec.update-alternatives.policy";

/// Documents that do not come through the types "FI" as they are. What comes out is fixed all the
/// same: reader and writer agree on it octet for octet. Text is read by "Expat" and written by
/// "XML".
class FastInfosetUnfaithful : public Workplace {
 protected:
  /// The octets of a document behind the header.
  std::string encoded(const std::string& document) {
    const Result result = run({"convert", "--from", "Expat", "--to", "FI", "-"}, document);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out.substr(0, 5), octets("E0 00 00 01 00"));
    return result.out.substr(5);
  }

  Result decoded(const std::string& written) {
    return run({"convert", "--from", "FI", "--to", "XML", "--no-declaration", "-"},
               octets("E0 00 00 01 00 " + written));
  }
};

Result printed(const std::string& document) { return {0, document, ""}; }

/// Elements with one text each: "A", "B" and so on.
std::string letters(int count) {
  std::string content;
  for (int i = 0; i < count; ++i)
    content += "<b>" + std::string(1, static_cast<char>('A' + i)) + "</b>";
  return content;
}

/// The same in Fast Infoset: the first element brings its name, every text is new.
std::string encodedLetters(int count) {
  std::string content = octets("3C 00 'b' 90 'A'");
  for (int i = 1; i < count; ++i) content += octets("F0 01 90") + static_cast<char>('A' + i);
  return content;
}

}  // namespace

TEST_F(FastInfosetUnfaithful, TakesTheFirstSixteenShortTextsAgain) {
  const std::string document = "<a>" + letters(16) + "<b>P</b></a>";
  EXPECT_EQ(encoded(document), octets("3C 00 'a'") + encodedLetters(16) + octets("F0 01 AF FF F0"));
  EXPECT_EQ(run({"convert", "--from", "Expat", "--to", "FI", "-", "copy.fi"}, document), silent(0));
  EXPECT_EQ(run({"diff", "--from-a", "FI", "--from-b", "Expat", "copy.fi", "-"}, document),
            silent(0));
}

// Index 16 is written as A0 00: index 0, then an element of the first name.
TEST_F(FastInfosetUnfaithful, TakesTheSeventeenthForTheFirstAndAnElement) {
  const std::string document = "<a>" + letters(17) + "<b>Q</b></a>";
  EXPECT_EQ(encoded(document),
            octets("3C 00 'a'") + encodedLetters(17) + octets("F0 01 A0 00 FF F0"));
  EXPECT_EQ(run({"convert", "--from", "Expat", "--to", "FI", "-", "copy.fi"}, document), silent(0));
  // 5 octets of header, 3 and 5 up to the first text, 4 for each of the others.
  EXPECT_EQ(run({"diff", "--from-a", "Expat", "--from-b", "FI", "-", "copy.fi"}, document),
            (Result{1, "-:1:143: characters(\"Q\")\ncopy.fi: octet 80: characters(\"A\")\n", ""}));
}

TEST_F(FastInfosetUnfaithful, CannotReadTheKeyboardRegistryBack) {
  ASSERT_TRUE(std::filesystem::exists(kKeyboards)) << "install Debian's package xkb-data";
  EXPECT_EQ(run({"convert", "--from", "Expat", "--to", "FI", kKeyboards, "copy.fi"}), silent(0));
  EXPECT_EQ(readFile("copy.fi").substr(0, 5), octets("E0 00 00 01 00"));
  const Result failed = run({"convert", "--from", "FI", "--to", "XML", "copy.fi", "copy.xml"});
  EXPECT_EQ(failed.status, 1);
  EXPECT_EQ(failed.out, "");
  EXPECT_TRUE(failed.err.starts_with("copy.fi: octet "));
  EXPECT_TRUE(failed.err.ends_with(": Error when decoding element name - invalid index\n"));
  EXPECT_EQ(files(), Names{"copy.fi"});
}

// The reader of text does not split such a name. In Fast Infoset it stays as it is, a line feed
// within; in the text that is written from it, it stands in the tag.
TEST_F(FastInfosetUnfaithful, HasALineFeedInTheNameOfAnAttributeShorterThanItsNamespace) {
  EXPECT_EQ(encoded("<a xml:lang='en'/>"),
            octets("7C 00 'a' 79 80 07 'lang' 0A 'xml' 41 'en' FF F0"));
  EXPECT_EQ(encoded("<a xmlns:p='urn:x' p:b='1'/>"),
            octets("78 CF 00 'p' 04 'urn:x' F0 3C 00 'a' 79 81 02 'b' 0A 'p' 40 '1' FF F0"));
  EXPECT_EQ(decoded("7C 00 'a' 79 80 07 'lang' 0A 'xml' 41 'en' FF F0"),
            printed("<a lang\nxml='en'/>"));
}

// Where the prefix is kept apart, as other writers of Fast Infoset do, it comes out right.
TEST_F(FastInfosetUnfaithful, ReadsSuchANameWhereItIsWrittenInItsParts) {
  EXPECT_EQ(decoded("7C 00 'a' 7B 80 80 03 'lang' 41 'en' FF F0"), printed("<a xml:lang='en'/>"));
}

TEST_F(FastInfosetUnfaithful, CannotReadTheTextOfAPolicyInManyLanguages) {
  ASSERT_TRUE(std::filesystem::exists(kPolicy)) << kPolicy << " is missing: Debian's package dpkg";
  EXPECT_EQ(run({"convert", "--from", "Expat", "--to", "FI", kPolicy, "copy.fi"}), silent(0));
  EXPECT_EQ(run({"diff", "--from-a", "Expat", "--from-b", "FI", kPolicy, "copy.fi"}), silent(0));
  EXPECT_EQ(run({"convert", "--from", "FI", "--to", "XML", "copy.fi", "copy.xml"}), silent(0));
  // The ninth line has the first of these names, and is the seventh now; the name goes on in the
  // next.
  EXPECT_EQ(run({"check", "--from", "Expat", "copy.xml"}),
            (Result{1, "", "copy.xml:8:1: not well-formed (invalid token)\n"}));
}

TEST_F(FastInfosetUnfaithful, LacksTheDocumentType) {
  const std::string document =
      "<!DOCTYPE a PUBLIC 'p' 's' [<!--1--><?p 2?><!ENTITY e '3'>]><a>&e;</a>";
  const std::string written = "E2 40 '1' E1 00 'p' 40 '2' 3C 00 'a' 90 '3' FF";
  EXPECT_EQ(encoded(document), octets(written));
  EXPECT_EQ(decoded(written), printed("<!--1--><?p 2?><a>3</a>"));
}

// Fast Infoset has no place for the name, and the text that is written without it cannot be read.
TEST_F(FastInfosetUnfaithful, HasNoNameForTheDocumentType) {
  const Result result = decoded("83 00 's' 00 'p' F0 3C 00 'a' FF");
  EXPECT_EQ(result, printed("<!DOCTYPE  PUBLIC \"p\" \"s\"><a/>"));
  EXPECT_EQ(run({"check", "--from", "Expat", "-"}, result.out).status, 1);
}

TEST_F(FastInfosetUnfaithful, HasTheTextInFrontOfACDATASectionInIt) {
  EXPECT_EQ(encoded("<a>1<![CDATA[2]]>3</a>"), octets("3C 00 'a' 8C 25 '12' 90 '3' FF"));
  EXPECT_EQ(decoded("3C 00 'a' 8C 25 '12' 90 '3' FF"), printed("<a><![CDATA[12]]>3</a>"));
  EXPECT_EQ(encoded("<a>1<![CDATA[]]>3</a>"), octets("3C 00 'a' 8C 24 '1' 90 '3' FF"));
  EXPECT_EQ(encoded("<a><![CDATA[]]></a>"), octets("3C 00 'a' FF"));
}

// The end of a CDATA section may stand in text, but not in the section that text becomes part of.
TEST_F(FastInfosetUnfaithful, CannotWriteTextThatWouldEndACDATASection) {
  EXPECT_EQ(run({"convert", "--from", "Expat", "--to", "FI", "-", "copy.fi"},
                "<a>]]&gt;<![CDATA[1]]></a>"),
            silent(0));
  EXPECT_EQ(run({"convert", "--from", "FI", "--to", "XML", "copy.fi", "copy.xml"}),
            (Result{1, "", "copy.fi: octet 15: You cannot put \"]]>\" into a CDATA section\n"}));
  EXPECT_EQ(files(), Names{"copy.fi"});
}

// A prefix that is declared again gets no new index: the names of the later elements tell their
// namespace, so nothing is lost.
TEST_F(FastInfosetUnfaithful, IsFaithfulToPrefixesThatAreDeclaredAgain) {
  const std::string document = "<p:a xmlns:p='urn:1'><p:b xmlns:p='urn:2'><p:c/></p:b><p:d/></p:a>";
  EXPECT_EQ(encoded(document), octets("38 CF 00 'p' 04 'urn:1' F0 3F 81 81 00 'a' "
                                      "38 CF 80 04 'urn:2' F0 3F 81 82 00 'b' 3F 81 82 00 'c' FF "
                                      "3F 81 81 00 'd' FF F0"));
  EXPECT_EQ(run({"convert", "--from", "Expat", "--to", "FI", "-", "copy.fi"}, document), silent(0));
  EXPECT_EQ(run({"convert", "--from", "FI", "--to", "XML", "--no-declaration", "copy.fi"}),
            printed(document));
}
