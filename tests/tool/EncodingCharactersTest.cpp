#include "Encoded.h"
#include "Workplace.h"

namespace {

/// What an encoding does not give back as it was.
class EncodingCharacters : public Workplace {
 protected:
  Result convert(const std::string& document, const std::string& encoding) const {
    return run({"convert", "--encoding", encoding, "-"}, document);
  }
};

std::string declared(const std::string& encoding) {
  return "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>";
}

/// What is written, with its references already in place.
Result written(const std::string& content, const std::string& encoding) {
  return {0, encoded(declared(encoding) + content, encoding), ""};
}

Result refused(const std::string& encoding) {
  return {2, "", "tavrin: --encoding " + encoding + ": there is no such encoding for XML text\n"};
}

Result lacks(const std::string& character, const std::string& encoding, const std::string& where) {
  return {1, "",
          "-:1:" + where.substr(0, where.find(' ')) + ": " + character + " does not exist in " +
              encoding + ", and " + where.substr(where.find(' ') + 1) +
              " cannot have references\n"};
}

std::string inUTF8(unsigned code) {
  const auto octet = [code](int shift, unsigned mark) {
    return static_cast<char>(mark | (code >> shift & (mark == 0x80 ? 0x3F : 0xFF)));
  };
  if (code < 0x80) return {octet(0, 0)};
  if (code < 0x800) return {octet(6, 0xC0), octet(0, 0x80)};
  if (code < 0x10000) return {octet(12, 0xE0), octet(6, 0x80), octet(0, 0x80)};
  return {octet(18, 0xF0), octet(12, 0x80), octet(6, 0x80), octet(0, 0x80)};
}

/// An element for each character that XML has, from the first to the last.
std::string characters(unsigned first, unsigned last) {
  std::string elements;
  for (unsigned code = first; code <= last; ++code) {
    const bool isCharacter =
        code == 0x9 || code == 0xA || code == 0xD ||
        (code >= 0x20 && (code < 0xD800 || code > 0xDFFF) && code != 0xFFFE && code != 0xFFFF);
    if (!isCharacter) continue;
    const bool isMarkup = code == '&' || code == '<' || code == '\r';
    elements += "<c>" + (isMarkup ? "&#" + std::to_string(code) + ";" : inUTF8(code)) + "</c>";
  }
  return elements;
}

}  // namespace

TEST_F(EncodingCharacters, ThatIconvWritesOthersForAreReferences) {
  const std::string path = "<a b='\\'>C:\\temp ~ ¥</a>";
  EXPECT_EQ(convert(path, "Shift_JIS"),
            written("<a b='&#x5C;'>C:&#x5C;temp &#x7E; ¥</a>", "Shift_JIS"));
  EXPECT_EQ(convert(path, "IBM939"), written("<a b='&#x5C;'>C:&#x5C;temp &#x7E; ¥</a>", "IBM939"));
  for (const std::string encoding : {"EUC-JP", "CP932"}) {
    EXPECT_EQ(convert(path, encoding), written("<a b='\\'>C:\\temp ~ &#xA5;</a>", encoding));
  }
  EXPECT_EQ(convert("<a>₩\\</a>", "EUC-KR"), written("<a>&#x20A9;\\</a>", "EUC-KR"));
  // In one octet, this encoding has a character that says that there is none.
  EXPECT_EQ(convert("<a>é本\xF0\x9F\x98\x80</a>", "IBM939"),
            written("<a>&#xE9;本&#x1F600;</a>", "IBM939"));
}

TEST_F(EncodingCharacters, ThatDoNotComeBackEndSections) {
  EXPECT_EQ(convert("<a><![CDATA[a\\]]>\\<![CDATA[\\]]]]></a>", "Shift_JIS"),
            written("<a><![CDATA[a]]>&#x5C;<![CDATA[]]>&#x5C;<![CDATA[]]>&#x5C;<![CDATA[]]]]></a>",
                    "Shift_JIS"));
}

TEST_F(EncodingCharacters, ThatIconvTakesApartAreReferences) {
  // What is written apart in the document stays so.
  EXPECT_EQ(convert("<a>\uFB2A ש\u05C1</a>", "CP1255"),
            (Result{0, declared("CP1255") + "<a>&#xFB2A; \xF9\xD1</a>", ""}));
  EXPECT_EQ(convert("<a>\u1EA5 \u00E2\u0301</a>", "CP1258"),
            (Result{0, declared("CP1258") + "<a>&#x1EA5; \xE2\xEC</a>", ""}));
}

TEST_F(EncodingCharacters, ThatIconvLeavesOutAreReferences) {
  const std::string tags = inUTF8(0xE0001) + inUTF8(0xE0041);
  EXPECT_EQ(convert("<a>" + tags + "日</a>", "IBM939"),
            written("<a>&#xE0001;&#xE0041;日</a>", "IBM939"));
}

TEST_F(EncodingCharacters, ThatDoNotComeBackFailWhereThereAreNoReferences) {
  EXPECT_EQ(convert("<a><!--C:\\temp--></a>", "Shift_JIS"),
            lacks("U+005C", "Shift_JIS", "4 comments"));
  EXPECT_EQ(convert("<a><?p C:\\temp?></a>", "Shift_JIS"),
            lacks("U+005C", "Shift_JIS", "4 processing instructions"));
  EXPECT_EQ(convert("<\u1EA5/>", "CP1258"), lacks("U+1EA5", "CP1258", "1 names"));
  EXPECT_EQ(convert("<a><!--\\~--></a>", "EUC-JP"), written("<a><!--\\~--></a>", "EUC-JP"));
}

TEST_F(EncodingCharacters, OfMarkupAreNeeded) {
  for (const std::string encoding : {"BRF", "UK", "FR", "CP423", "EBCDIC-FR", "EBCDIC-US", "INIS",
                                     "LATIN-GREEK-1", "ISO_5427", "UTF-7"}) {
    EXPECT_EQ(convert("<a>&amp;€</a>", encoding), refused(encoding));
  }
}

// Each character alone comes back. Together, those of Tamil are in another order.
TEST_F(EncodingCharacters, AreNeededTogether) {
  for (const std::string encoding : {"TSCII", "ISO-2022-CN"}) {
    EXPECT_EQ(convert("<a>\u0BC7\u0BA9</a>", encoding), refused(encoding));
  }
}

TEST_F(EncodingCharacters, OfAllPlanesComeBack) {
  writeFile("in.xml", "<a>" + characters(0, 0xFFFF) + characters(0x1F600, 0x1F620) +
                          characters(0x20000, 0x20100) + characters(0xE0000, 0xE0080) +
                          characters(0x10FFF0, 0x10FFFD) + "</a>");
  for (const std::string encoding :
       {"Shift_JIS", "EUC-JP", "CP932", "EUC-KR", "CP1255", "CP1258", "GB18030", "ISO-8859-1",
        "ISO-2022-JP", "IBM037", "IBM939", "UTF-16", "UTF-32"}) {
    SCOPED_TRACE(encoding);
    EXPECT_EQ(run({"convert", "--force", "--encoding", encoding, "in.xml", "out.xml"}), silent(0));
    EXPECT_EQ(run({"diff", "in.xml", "out.xml"}), silent(0));
  }
}

TEST_F(EncodingCharacters, NeedADeclaration) {
  const auto convert = [this](const std::vector<std::string>& features) {
    ToolProcess::Arguments arguments = {"convert", "--encoding", "EUC-JP", "-"};
    for (const std::string& feature : features) arguments.push_back("--feature=" + feature);
    return run(arguments, "<a>日</a>");
  };
  const Result undeclared = {
      2, "", "tavrin: --encoding EUC-JP: without an XML declaration nothing tells the encoding\n"};
  EXPECT_EQ(convert({"xml-declaration=off"}), undeclared);
  EXPECT_EQ(convert({"xml-declaration", "empty-tags", "xml-declaration=off"}), undeclared);
  EXPECT_EQ(convert({"xml-declaration=off", "xml-declaration=on"}), written("<a>日</a>", "EUC-JP"));
  EXPECT_EQ(convert({"empty-tags=off"}), written("<a>日</a>", "EUC-JP"));
}
