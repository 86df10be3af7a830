#include "Encoded.h"
#include "TypedDocuments.h"
#include "Workplace.h"

namespace {

class Encoding : public Workplace {
 protected:
  /// What is written of a document in an encoding, in UTF-8.
  std::string converted(const std::string& document, const std::string& encoding) const {
    const Result result = run({"convert", "--encoding", encoding, "-"}, document);
    EXPECT_EQ(result.status, 0) << result.err;
    return result.out;
  }
};

std::string declared(const std::string& encoding) {
  return "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>";
}

}  // namespace

TEST_F(Encoding, OfTheCopyHasItsNameInTheDeclaration) {
  const std::string content = "<文書 名='値'>表示<!--注--><?p 値?><![CDATA[値]]></文書>";
  for (const std::string encoding :
       {"Shift_JIS", "EUC-JP", "ISO-2022-JP", "GB18030", "UTF-16BE", "UTF-32LE", "UTF-8"}) {
    SCOPED_TRACE(encoding);
    const std::string expected = encoded(declared(encoding) + content, encoding);
    EXPECT_EQ(run({"convert", "--encoding", encoding, "-"}, content), (Result{0, expected, ""}));
    // And back.
    EXPECT_EQ(run({"convert", "-"}, expected), (Result{0, declared("UTF-8") + content, ""}));
  }
  EXPECT_EQ(converted("<a>ä€</a>", "ISO-8859-15"), declared("ISO-8859-15") + "<a>\xE4\xA4</a>");
}

TEST_F(Encoding, WritesReferencesToWhatItLacks) {
  EXPECT_EQ(converted("<a b='ä€'>ä€\xF0\x9F\x98\x80</a>", "ISO-8859-1"),
            declared("ISO-8859-1") + "<a b='\xE4&#x20AC;'>\xE4&#x20AC;&#x1F600;</a>");
  EXPECT_EQ(converted("<a><![CDATA[<€>]]]]><![CDATA[>]]></a>", "US-ASCII"),
            declared("US-ASCII") + "<a><![CDATA[<]]>&#x20AC;<![CDATA[>]]]]><![CDATA[>]]></a>");
  // What looks like other places is none.
  EXPECT_EQ(converted("<a b='&lt;!--' c='>'>]]€&gt;--><b/>€&lt;!--€</a>", "US-ASCII"),
            declared("US-ASCII") +
                "<a b='&lt;!--' c='>'>]]&#x20AC;&gt;--&gt;<b/>&#x20AC;&lt;!--&#x20AC;</a>");
  const std::string document =
      "<!DOCTYPE a [<!ENTITY e '€'><!ENTITY SYSTEM '€'><!ENTITY % p \"'€\">"
      "<!ATTLIST a b CDATA '€' c (d|e) 'd'><!--x-->]><a>&e;€</a>";
  std::string expected = run({"convert", "-"}, document).out;
  expected.replace(0, declared("UTF-8").size(), declared("US-ASCII"));
  for (std::size_t i = 0; (i = expected.find("€")) != std::string::npos;) {
    expected.replace(i, 3, "&#x20AC;");
  }
  EXPECT_EQ(converted(document, "US-ASCII"), expected);
}

TEST_F(Encoding, SwitchesBackBeforeAReference) {
  const std::string result = converted("<a>日ü本</a>", "ISO-2022-JP");
  EXPECT_EQ(result, declared("ISO-2022-JP") + "<a>\x1B$BF|\x1B(B&#xFC;\x1B$BK\\\x1B(B</a>");
}

TEST_F(Encoding, FailsWhereThereAreNoReferences) {
  const auto failure = [](const std::string& place, const std::string& what) {
    return Result{
        1, "",
        place + ": U+20AC does not exist in ISO-8859-1, and " + what + " cannot have references\n"};
  };
  const auto fails = [&](const std::string& document) {
    writeFile("in.xml", document);
    const Result result = run({"convert", "--encoding=ISO-8859-1", "in.xml", "out.xml"});
    EXPECT_FALSE(std::filesystem::exists(path("out.xml")));
    return result;
  };
  EXPECT_EQ(fails("<a>\n<!--ä€--></a>"), failure("in.xml:2:1", "comments"));
  EXPECT_EQ(fails("<a>\n<?p ä€?></a>"), failure("in.xml:2:1", "processing instructions"));
  EXPECT_EQ(fails("<!DOCTYPE a SYSTEM '€'><a/>"), failure("in.xml:1:23", "identifiers"));
  EXPECT_EQ(fails("<!DOCTYPE a [\n<!ENTITY e SYSTEM '€'>]><a/>"),
            failure("in.xml:2:22", "identifiers"));
}

TEST_F(Encoding, IsRefusedWhereThereIsNone) {
  writeFile("in.xml", "<a/>");
  const auto refused = [](const std::string& encoding, const std::string& message) {
    return Result{2, "", "tavrin: --encoding " + encoding + ": " + message + "\n"};
  };
  for (const std::string name : {"x-none", "UTF-8//TRANSLIT", "8859", "a b", "UTF-7"}) {
    EXPECT_EQ(run({"convert", "--encoding", name, "in.xml", "out.xml"}),
              refused(name, "there is no such encoding for XML text"));
  }
  EXPECT_EQ(run({"convert", "--encoding=KOI8-R", "in.xml", "out.fi"}),
            refused("KOI8-R", "the writer X891 has no encodings"));
  EXPECT_EQ(run({"convert", "--encoding=KOI8-R", "--no-declaration", "in.xml"}),
            refused("KOI8-R", "without an XML declaration nothing tells the encoding"));
  EXPECT_EQ(files(), Names{"in.xml"});
}

// A full disk, many events, and an event that is larger than any buffer.
TEST_F(Encoding, OfLargeDocumentsIsThatOfSmallOnes) {
  std::string content = "<a>" + std::string(300000, 'x');
  for (int i = 0; i < 30000; ++i) content += "<b c='日本" + std::to_string(i) + "'>表示ä</b>";
  for (int i = 0; i < 100000; ++i) content += "能ä";
  content += "</a>";
  writeFile("in.xml", content);
  EXPECT_EQ(run({"convert", "--encoding=EUC-JP", "in.xml", "out.xml"}), silent(0));
  EXPECT_EQ(run({"convert", "--encoding=Shift_JIS", "in.xml", "out.xml.gz"}), silent(0));
  EXPECT_EQ(run({"diff", "in.xml", "out.xml"}), silent(0));
  EXPECT_EQ(run({"diff", "in.xml", "out.xml.gz"}), silent(0));
  EXPECT_EQ(run({"convert", "--encoding=EUC-JP", "in.xml", "/dev/full"}),
            (Result{2, "", "tavrin: /dev/full: No space left on device\n"}));
}

TEST_F(Encoding, OfWhatIsReadIsAnyThatIconvKnows) {
  const std::string content = "<a>日本</a>";
  for (const std::string encoding : {"Shift_JIS", "GB18030", "Big5", "UTF-32BE", "ISO-2022-JP"}) {
    SCOPED_TRACE(encoding);
    const std::string document = encoded(declared(encoding) + content, encoding);
    EXPECT_EQ(run({"convert", "--no-declaration", "-"}, document), (Result{0, content, ""}));
    EXPECT_EQ(run({"check", "-"}, document), (Result{0, "-: well-formed\n", ""}));
  }
  EXPECT_EQ(run({"check", "-"}, declared("EUC-JP") + "\n<a>\xFF</a>"),
            (Result{1, "",
                    "-:2:4: not well-formed (invalid token): octet FF is not part of a character "
                    "of \"EUC-JP\"\n"}));
}

// An ampersand begins what is no ASCII there, so even the references of markup look otherwise.
TEST_F(Encoding, MayWriteMarkupInItsOwnWay) {
  const std::string document = "<a b='1 &amp; 2'>x~\\ €\n<b/>&lt;</a>";
  const std::string expected =
      declared("UTF-7-IMAP") + "<a b='1 &-amp; 2'>x~\\ &IKwACg-<b/>&-lt;</a>";
  EXPECT_EQ(converted(document, "UTF-7-IMAP"), expected);
  EXPECT_EQ(run({"convert", "--no-declaration", "-"}, expected), (Result{0, document, ""}));
  EXPECT_EQ(
      run({"check", "-"}, declared("UTF-7-IMAP") + "<a>&lt;</a>"),
      (Result{1, "",
              "-:1:47: not well-formed (invalid token): octet 3B is not part of a character of "
              "\"UTF-7-IMAP\"\n"}));
}
