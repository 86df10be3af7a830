#include <gtest/gtest.h>

#include "XML10ReaderSupport.h"

// What failures name: entities, prefixes, attributes and tags.

namespace {

/// How a document fails, "message, line, column", however it arrives.
std::string failureOf(const std::string& text,
                      const std::map<std::string, std::string>& entities = {}) {
  const auto read = [&](const auto& parse) {
    EventLog log;
    log.entities = entities;
    Tavrin::XMLReader_XML10 reader;
    log.attachTo(reader);
    return parse(reader);
  };
  std::vector<std::string> octets = cutEvenly(text, 1);
  octets.emplace_back();
  const std::string failure = read([&](auto& reader) { return parseText(reader, text); });
  EXPECT_EQ(failure, read([&](auto& reader) { return parseBlocks(reader, {text}); }));
  EXPECT_EQ(failure, read([&](auto& reader) { return parseBlocks(reader, octets); }));
  EXPECT_EQ(
      failure, read([&](auto& reader) {
        return parseBlocks(reader, {text.substr(0, text.size() / 2), text.substr(text.size() / 2)});
      }));
  // Nobody needs to listen.
  Tavrin::XMLReader_XML10 silent;
  EventLog log;
  log.entities = entities;
  silent.setEntityResolver(&log);
  EXPECT_EQ(failure, parseText(silent, text));
  return failure;
}

std::string failed(const std::string& message) { return "SAXParseException(" + message + ")"; }

std::string utf16(const std::u16string& text, bool isBigEndian) {
  std::string octets;
  for (const char16_t unit : u"\uFEFF" + text) {
    const char high = static_cast<char>(unit >> 8);
    const char low = static_cast<char>(unit & 0xFF);
    octets += isBigEndian ? high : low;
    octets += isBigEndian ? low : high;
  }
  return octets;
}

TEST(XML10FailureMessages, OfTagsNameTheOneThatIsOpen) {
  EXPECT_EQ(failureOf("<a><b></c></a>"), failed("mismatched tag: expected </b> of line 1, 1, 9"));
  EXPECT_EQ(failureOf("<a>\n\r\n <b\n x='1'>\r<c/><d>\n</d></a>"),
            failed("mismatched tag: expected </b> of line 3, 6, 7"));
  EXPECT_EQ(failureOf("<p:a xmlns:p='u'><q:b xmlns:q='u'><c xmlns='v'>\n</p:a>"),
            failed("mismatched tag: expected </c> of line 1, 2, 3"));
  EXPECT_EQ(failureOf("<p:a xmlns:p='u'>\n<q:b xmlns:q='u'></p:b>"),
            failed("mismatched tag: expected </q:b> of line 2, 2, 20"));
  EXPECT_EQ(failureOf("<a>\n<b><!-- \n --></b>\n<b>"),
            failed("no element found: <b> of line 4 is not closed, 4, 4"));
  EXPECT_EQ(failureOf("\n\n<a>"), failed("no element found: <a> of line 3 is not closed, 3, 4"));
  EXPECT_EQ(failureOf(""), failed("no element found, 1, 1"));
  EXPECT_EQ(failureOf("<?p?>\n"), failed("no element found, 2, 1"));
  EXPECT_EQ(failureOf("<a/><b></a>"), failed("junk after document element, 1, 5"));
}

TEST(XML10FailureMessages, OfTagsNameTheLineWhereverItIs) {
  const std::string lines(100000, '\n');
  EXPECT_EQ(failureOf("\n<a>" + lines + "<b/></c>"),
            failed("mismatched tag: expected </a> of line 2, 100002, 7"));
  EXPECT_EQ(failureOf(lines + "<a><b>" + lines + "<c></d>"),
            failed("mismatched tag: expected </c> of line 200001, 200001, 6"));
}

TEST(XML10FailureMessages, NameWhatOtherEncodingsHold) {
  for (const bool isBigEndian : {false, true}) {
    EXPECT_EQ(failureOf(utf16(u"<a>\n\r\n<\u00E4\u4E00></b>", isBigEndian)),
              failed("mismatched tag: expected </\u00E4\u4E00> of line 3, 3, 7"));
    EXPECT_EQ(failureOf(utf16(u"<a>&\u4E00;</a>", isBigEndian)),
              failed("undefined entity: \"\u4E00\", 1, 5"));
    EXPECT_EQ(failureOf(utf16(u"<a \u00E4='1' \u00E4=''/>", isBigEndian)),
              failed("duplicate attribute: \"\u00E4\", 1, 11"));
  }
  const std::string latin = "<?xml version='1.0' encoding='iso-8859-1'?><\xE4>";
  EXPECT_EQ(failureOf(latin + "&\xE4;</\xE4>"), failed("undefined entity: \"\u00E4\", 1, 47"));
  EXPECT_EQ(failureOf(latin + "</a>"),
            failed("mismatched tag: expected </\u00E4> of line 1, 1, 49"));
  const std::string greek = "<?xml version='1.0' encoding='iso-8859-7'?><a>";
  EXPECT_EQ(failureOf(greek + "<\xE1:b/></a>"), failed("unbound prefix: \"\u03B1\", 1, 47"));
}

TEST(XML10FailureMessages, ShortenNames) {
  const std::string hundred(100, 'n');
  EXPECT_EQ(failureOf("<" + hundred + ">"),
            failed("no element found: <" + hundred + "> of line 1 is not closed, 1, 103"));
  EXPECT_EQ(failureOf("<" + hundred + "n>"),
            failed("no element found: <" + hundred + "...> of line 1 is not closed, 1, 104"));
  std::string wide;
  for (int i = 0; i < 5000; ++i) wide += "\u4E00";
  EXPECT_EQ(failureOf("<a>&" + wide + ";</a>"),
            failed("undefined entity: \"" + wide.substr(0, 300) + "...\", 1, 4"));
  EXPECT_EQ(failureOf("<a>&" + wide),
            failed("unclosed token: &" + wide.substr(0, 297) + "..., 1, 4"));
}

// An element is named by its octets, cut or not, in any encoding and however deep it is.
TEST(XML10FailureMessages, NameElementsHoweverTheDocumentIsCut) {
  constexpr int kDepth = 1000;
  std::string open;
  std::string close;
  for (int i = 0; i < kDepth; ++i) {
    open += "\n<n" + std::to_string(i) + " x='>'>";
    if (i >= 10) close = "</n" + std::to_string(i) + ">" + close;
  }
  const std::string document = open + close + "</m>";
  const std::string message =
      failed("mismatched tag: expected </n9> of line 11, 1001, " +
             std::to_string(std::string(" x='>'>").size() + 5 + close.size() + 3));
  EXPECT_EQ(failureOf(document), message);
  const std::u16string wide(document.begin(), document.end());
  EXPECT_EQ(failureOf(utf16(wide, true)), message);
  EXPECT_EQ(failureOf(utf16(wide, false)), message);

  // Longer than what is kept of it, which would end within a character.
  std::string name = "x";
  for (int i = 0; i < 1000; ++i) name += "\u4E00";
  const std::string shown = name.substr(0, 1 + 99 * 3) + "...";
  EXPECT_EQ(failureOf("<a><" + name + "></a>"),
            failed("mismatched tag: expected </" + shown + "> of line 1, 1, 1009"));
}

TEST(XML10FailureMessages, OfTokensShowHowTheyBegin) {
  EXPECT_EQ(failureOf("<a><bc d='1'"), failed("unclosed token: <bc, 1, 4"));
  EXPECT_EQ(failureOf("<a>\n</a"), failed("unclosed token: </a, 2, 1"));
  EXPECT_EQ(failureOf("<a><!-- c"), failed("unclosed token: <!--, 1, 4"));
  EXPECT_EQ(failureOf("<a>&am"), failed("unclosed token: &am, 1, 4"));
  EXPECT_EQ(failureOf("<a><?p d"), failed("unclosed token: <?p, 1, 4"));
  EXPECT_EQ(failureOf("<"), failed("unclosed token: <, 1, 1"));
  EXPECT_EQ(failureOf("<a>&#0;</a>"), failed("reference to invalid character number: &#0;, 1, 4"));
  EXPECT_EQ(failureOf("<a>&#xFFFFFFFF;</a>"),
            failed("reference to invalid character number: &#xFFFFFFFF;, 1, 4"));
}

TEST(XML10FailureMessages, OfAttributesNameThem) {
  EXPECT_EQ(failureOf("<a b='1' c='' b='2'/>"), failed("duplicate attribute: \"b\", 1, 15"));
  EXPECT_EQ(failureOf("<a x:b='1' x:b = '2' xmlns:x='u'/>"),
            failed("duplicate attribute: \"x:b\", 1, 12"));
  EXPECT_EQ(failureOf("<a xmlns:p='u' xmlns:q='u'><b c='>' p:c='1' q:d='' p:d='2'\n/></a>"),
            failed("duplicate attribute: \"q:d\" and \"p:d\", 1, 28"));
  EXPECT_EQ(failureOf("<a xmlns:p='u'>\n<b p:c='1' q:c='2' xmlns:q='u'/></a>"),
            failed("duplicate attribute: \"p:c\" and \"q:c\", 2, 1"));
}

TEST(XML10FailureMessages, OfPrefixesNameThem) {
  EXPECT_EQ(failureOf("<p:a/>"), failed("unbound prefix: \"p\", 1, 1"));
  EXPECT_EQ(failureOf("<p:a>"), failed("unbound prefix: \"p\", 1, 1"));
  EXPECT_EQ(failureOf("<p:a q:b='/>' xml:lang='' xmlns='u' xmlns:r='s'/>"),
            failed("unbound prefix: \"q\", 1, 1"));
  EXPECT_EQ(failureOf("<a><b xmlns:p='u'/>\n<c xmlns:q='u' q:d='' p:d=''/></a>"),
            failed("unbound prefix: \"p\", 2, 1"));
  EXPECT_EQ(failureOf("<a><b xmlns:p='u'/>\n<c p:d='' xmlns:q='u' q:d=''></c></a>"),
            failed("unbound prefix: \"p\", 2, 1"));
  EXPECT_EQ(failureOf("<a xmlns:q='' b='c'/>"), failed("must not undeclare prefix: \"q\", 1, 1"));
  EXPECT_EQ(failureOf("<a b='' xmlns:q='http://www.w3.org/2000/xmlns/'/>"),
            failed("prefix must not be bound to one of the reserved namespace names: \"xmlns:q\", "
                   "1, 1"));
  EXPECT_EQ(failureOf("<a xmlns='http://www.w3.org/XML/1998/namespace'/>"),
            failed("prefix must not be bound to one of the reserved namespace names: \"xmlns\", "
                   "1, 1"));
  EXPECT_EQ(failureOf("<a xmlns:xml='u'/>"),
            failed("reserved prefix (xml) must not be undeclared or bound to another namespace "
                   "name, 1, 1"));
  EXPECT_EQ(failureOf("<a xmlns:xmlns='u'/>"),
            failed("reserved prefix (xmlns) must not be declared or undeclared, 1, 1"));
}

TEST(XML10FailureMessages, OfEntitiesNameTheRightOne) {
  const std::string declared =
      "<!DOCTYPE a [<!ENTITY e '<b>&amp;&f;</b>'><!ENTITY f '&g;&f;'><!ENTITY g 'h'>"
      "<!NOTATION n SYSTEM 'n'><!ENTITY pic SYSTEM 'p' NDATA n><!ENTITY x SYSTEM 'x'>"
      "<!ENTITY i '&g;&y;&z;'><!ENTITY j '&g;&x;'><!ENTITY k '&pic;'>]>\n";
  EXPECT_EQ(failureOf("<a>\n&u;</a>"), failed("undefined entity: \"u\", 2, 1"));
  EXPECT_EQ(failureOf(declared + "<a>&g;&u;</a>"), failed("undefined entity: \"u\", 2, 7"));
  EXPECT_EQ(failureOf(declared + "<a>&i;</a>"),
            failed("undefined entity: \"y\" (in the text of the entity \"i\"), 2, 4"));
  EXPECT_EQ(failureOf(declared + "<a b='&g;&u;&v;'/>"), failed("undefined entity: \"u\", 2, 1"));
  EXPECT_EQ(failureOf(declared + "<a b='&g;&i;&v;'/>"),
            failed("undefined entity: \"y\" (in the text of the entity \"i\"), 2, 1"));
  EXPECT_EQ(failureOf(declared + "<a>&f;</a>"), failed("recursive entity reference: \"f\", 2, 4"));
  EXPECT_EQ(failureOf(declared + "<a>&e;</a>"),
            failed("recursive entity reference: \"f\" (in the text of the entity \"e\"), 2, 4"));
  EXPECT_EQ(failureOf(declared + "<a b='&g;&f;'/>"),
            failed("recursive entity reference: \"f\", 2, 1"));
  EXPECT_EQ(failureOf(declared + "<a>&pic;</a>"),
            failed("reference to binary entity: \"pic\", 2, 4"));
  EXPECT_EQ(failureOf(declared + "<a>&k;</a>"),
            failed("reference to binary entity: \"pic\" (in the text of the entity \"k\"), 2, 4"));
  EXPECT_EQ(failureOf(declared + "<a b='&g;&pic;'/>"),
            failed("reference to binary entity: \"pic\", 2, 10"));
  EXPECT_EQ(failureOf(declared + "<a b='&g;&x;'/>"),
            failed("reference to external entity in attribute: \"x\", 2, 10"));
  EXPECT_EQ(failureOf(declared + "<a b='&j;'/>"),
            failed("reference to external entity in attribute: \"x\" (in the text of the entity "
                   "\"j\"), 2, 1"));
  EXPECT_EQ(failureOf("<!DOCTYPE a [<!ATTLIST a b CDATA 'c&u;'>]><a/>"),
            failed("undefined entity: \"u\", 1, 34"));
  EXPECT_EQ(failureOf("<!DOCTYPE a [<!ENTITY % p 'q'><!ENTITY e '%p;'>]><a/>"),
            failed("illegal parameter entity reference: \"%p\", 1, 43"));
  EXPECT_EQ(failureOf("<?xml version='1.0' standalone='yes'?><!DOCTYPE a [%u;]><a/>"),
            failed("undefined entity: \"%u\", 1, 52"));
}

TEST(XML10FailureMessages, InInternalEntitiesNameTheEntity) {
  const auto inEntity = [](const std::string& text) {
    return failureOf("<!DOCTYPE a [<!ENTITY e '" + text + "'>]><a>\n&e;</a>");
  };
  const std::string in = " (in the text of the entity \"e\"), 2, 1";
  EXPECT_EQ(inEntity("<b></c>"), failed("mismatched tag" + in));
  EXPECT_EQ(inEntity("<b>"), failed("asynchronous entity" + in));
  EXPECT_EQ(inEntity("</a>"), failed("asynchronous entity" + in));
  EXPECT_EQ(inEntity("<p:b/>"), failed("unbound prefix" + in));
  EXPECT_EQ(inEntity("<b c=\"\" c=\"\"/>"), failed("duplicate attribute" + in));
  EXPECT_EQ(inEntity("<b"), failed("unclosed token" + in));
}

TEST(XML10FailureMessages, InExternalEntitiesNameBoth) {
  const auto inEntity = [](const std::string& text) {
    return failureOf("<!DOCTYPE a [<!ENTITY e SYSTEM 's'>]><a>&e;</a>", {{"s", text}});
  };
  const auto in = [](const std::string& message, const std::string& position) {
    return failed(message + " (in the entity e, \"s\"), " + position);
  };
  EXPECT_EQ(inEntity("\n<b>\n</c>"), in("mismatched tag: expected </b> of line 2", "3, 3"));
  EXPECT_EQ(inEntity("\n</a>"), in("asynchronous entity: </a>", "2, 1"));
  EXPECT_EQ(inEntity("<b/><c>\n"), in("asynchronous entity: <c> of line 1 is not closed", "2, 1"));
  EXPECT_EQ(inEntity("<b "), in("unclosed token: <b", "1, 1"));
  EXPECT_EQ(inEntity("\n&u;"), in("undefined entity: \"u\"", "2, 1"));
  EXPECT_EQ(inEntity("&e;"), in("recursive entity reference: \"e\"", "1, 1"));
  EXPECT_EQ(inEntity("<p:b/>"), in("unbound prefix: \"p\"", "1, 1"));
  EXPECT_EQ(inEntity("<b c='' c=''/>"), in("duplicate attribute: \"c\"", "1, 9"));
}

TEST(XML10FailureMessages, AreTheSameInTheDocumentAfterwards) {
  Tavrin::XMLReader_XML10 reader;
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(parseText(reader, "<a><b xmlns:p='u'></a>"),
              failed("mismatched tag: expected </b> of line 1, 1, 21"));
    EXPECT_EQ(parseText(reader, "<c p:d=''>"), failed("unbound prefix: \"p\", 1, 1"));
    EXPECT_EQ(parseText(reader, "<c/>"), "done");
  }
  reader.setFeature(Tavrin::features::namespaces, false);
  EXPECT_EQ(parseText(reader, "<p:a></b>"),
            failed("mismatched tag: expected </p:a> of line 1, 1, 8"));
}

}  // namespace
