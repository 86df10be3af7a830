#include "Workplace.h"

namespace {

/// A document and the copy of it, without an XML declaration.
struct Case {
  const char* what;
  std::string document;
  std::string copy;
};

class SmallDocument : public Workplace {
 protected:
  void expectCopies(const std::vector<Case>& cases) {
    for (const auto& [what, document, copy] : cases) {
      SCOPED_TRACE(what);
      EXPECT_EQ(run({"convert", "--no-declaration", "-"}, document), (Result{0, copy, ""}));
      // A faithful copy is its own copy.
      EXPECT_EQ(run({"convert", "--no-declaration", "-"}, copy), (Result{0, copy, ""}));
    }
  }
};

std::string utf16(std::u16string_view text, bool bigEndian) {
  std::string octets;
  for (const char16_t unit : text) {
    const auto high = static_cast<char>(unit >> 8);
    const auto low = static_cast<char>(unit & 0xFF);
    octets += bigEndian ? high : low;
    octets += bigEndian ? low : high;
  }
  return octets;
}

}  // namespace

TEST_F(SmallDocument, KeepsElements) {
  expectCopies({
      {"empty", "<a/>", "<a/>"},
      {"start and end tag", "<a></a>", "<a/>"},
      {"blanks in tags", "<a ><b\n/></a\t>", "<a><b/></a>"},
      {"white space only", "<a> \n </a>", "<a> \n </a>"},
      {"mixed content", "<a>1<b>2</b>3<c/>4</a>", "<a>1<b>2</b>3<c/>4</a>"},
      {"around the root", "\n\n<a/>\n\n", "<a/>"},
      {"names", "<\xC3\xA4._-1><a.b/></\xC3\xA4._-1>", "<\xC3\xA4._-1><a.b/></\xC3\xA4._-1>"},
  });
}

TEST_F(SmallDocument, KeepsNamespaces) {
  expectCopies({
      {"prefix", "<p:a xmlns:p=\"urn:x\"/>", "<p:a xmlns:p='urn:x'/>"},
      {"default", "<a xmlns=\"urn:d\"><b/></a>", "<a xmlns='urn:d'><b/></a>"},
      {"in their order, before attributes",
       "<p:a id='1' xmlns='urn:d' q:longer='2' xmlns:q='urn:q' xmlns:p='urn:p'/>",
       "<p:a xmlns='urn:d' xmlns:q='urn:q' xmlns:p='urn:p' id='1' q:longer='2'/>"},
      {"declared again", "<p:a xmlns:p='urn:1'><p:b xmlns:p='urn:2'><p:c/></p:b><p:d/></p:a>",
       "<p:a xmlns:p='urn:1'><p:b xmlns:p='urn:2'><p:c/></p:b><p:d/></p:a>"},
      {"declared and not used", "<a xmlns:p='urn:x'/>", "<a xmlns:p='urn:x'/>"},
      {"declared twice over", "<a xmlns='u'><b xmlns='u'/></a>", "<a xmlns='u'><b xmlns='u'/></a>"},
      {"two prefixes, one namespace", "<p:a xmlns:p='u' xmlns:q='u'><q:b/></p:a>",
       "<p:a xmlns:p='u' xmlns:q='u'><q:b/></p:a>"},
      {"attribute as long as its namespace", "<a xmlns:p='urn:x' p:abcde='1'/>",
       "<a xmlns:p='urn:x' p:abcde='1'/>"},
      {"the xml prefix declared", "<a xmlns:xml='http://www.w3.org/XML/1998/namespace'/>", "<a/>"},
  });
}

TEST_F(SmallDocument, KeepsText) {
  expectCopies({
      {"escapes", "<a>&lt;&gt;&amp;&quot;&apos;\"'></a>", "<a>&lt;&gt;&amp;\"'\"'&gt;</a>"},
      {"character references", "<a>&#65;&#x20AC;&#10;&#9;</a>", "<a>A\xE2\x82\xAC\n\t</a>"},
      {"the end of a CDATA section", "<a>]]&gt;</a>", "<a>]]&gt;</a>"},
      {"line ends", "<a>1\r\n2\r3\n4\r\r\n</a>", "<a>1\n2\n3\n4\n\n</a>"},
      {"beyond the basic plane", "<a>&#x1F600;\xF0\x9F\x98\x80</a>",
       "<a>\xF0\x9F\x98\x80\xF0\x9F\x98\x80</a>"},
  });
}

TEST_F(SmallDocument, KeepsAttributes) {
  expectCopies({
      {"order", "<a z='1' y='2' x='3'/>", "<a z='1' y='2' x='3'/>"},
      {"empty", "<a x=\"\"/>", "<a x=''/>"},
      {"escapes", "<a x=\"&lt;&gt;&amp;&quot;&apos;>'\"/>", "<a x='&lt;>&amp;\"&apos;>&apos;'/>"},
      {"line feed by reference", "<a x='1&#10;2'/>", "<a x='1&#xA;2'/>"},
      {"white space", "<a x='1\n2\t3\r\n4'/>", "<a x='1 2 3 4'/>"},
      {"characters", "<a x='&#x20AC;\xC3\xA4'/>", "<a x='\xE2\x82\xAC\xC3\xA4'/>"},
  });
}

TEST_F(SmallDocument, KeepsCDATASections) {
  expectCopies({
      {"markup", "<a><![CDATA[<b>&amp;]]]]></a>", "<a><![CDATA[<b>&amp;]]]]></a>"},
      {"beside text", "<a>1<![CDATA[2]]>3</a>", "<a>1<![CDATA[2]]>3</a>"},
      {"side by side", "<a><![CDATA[]]]]><![CDATA[>]]></a>", "<a><![CDATA[]]]]><![CDATA[>]]></a>"},
      {"line ends", "<a><![CDATA[1\r\n2\r3]]></a>", "<a><![CDATA[1\n2\n3]]></a>"},
  });
}

TEST_F(SmallDocument, KeepsCommentsAndInstructions) {
  expectCopies({
      {"everywhere", "<!--1--><?p 2?>\n<a><!--3--><?p 4?></a>\n<!--5--><?p 6?>",
       "<!--1--><?p 2?><a><!--3--><?p 4?></a><!--5--><?p 6?>"},
      {"markup", "<a><!--<b>&amp;--><?p <b>&amp;?></a>", "<a><!--<b>&amp;--><?p <b>&amp;?></a>"},
      {"empty comment", "<a><!----></a>", "<a><!----></a>"},
      {"hyphens", "<a><!-- - - --></a>", "<a><!-- - - --></a>"},
      {"instruction without data", "<?p?><a/>", "<?p ?><a/>"},
      {"blanks before data", "<?p \t\n x ?><a/>", "<?p x ?><a/>"},
      {"around a document type", "<!--1--><!DOCTYPE a><!--2--><a/>",
       "<!--1--><!DOCTYPE a><!--2--><a/>"},
  });
}

TEST_F(SmallDocument, KeepsTheNameAndIdentifiersOfTheDocumentType) {
  expectCopies({
      {"name", "<!DOCTYPE a><a/>", "<!DOCTYPE a><a/>"},
      {"name of another element", "<!DOCTYPE p:b []><a/>", "<!DOCTYPE p:b><a/>"},
      {"system", "<!DOCTYPE a SYSTEM 'it&apos;s.dtd'><a/>",
       "<!DOCTYPE a SYSTEM \"it&apos;s.dtd\"><a/>"},
      {"public", "<!DOCTYPE a PUBLIC '-//x//y' \"a.dtd\"><a/>",
       "<!DOCTYPE a PUBLIC \"-//x//y\" \"a.dtd\"><a/>"},
      {"public in need of normalising", "<!DOCTYPE a PUBLIC ' -//x \n //y ' 'a.dtd'><a/>",
       "<!DOCTYPE a PUBLIC \"-//x //y\" \"a.dtd\"><a/>"},
      {"public with an empty system identifier", "<!DOCTYPE a PUBLIC 'p' ''><a/>",
       "<!DOCTYPE a PUBLIC \"p\" \"\"><a/>"},
      {"comment and instruction within", "<!DOCTYPE a [ <!--1--> <?p 2?> ]><a/>",
       "<!DOCTYPE a [<!--1--><?p 2?>]><a/>"},
  });
}

TEST_F(SmallDocument, HasTheTextOfEntitiesInTheirPlaceBesideTheirDeclarations) {
  expectCopies({
      {"text", "<!DOCTYPE a [<!ENTITY e '1&#38;#60;2'>]><a>&e;&e;</a>",
       "<!DOCTYPE a [  <!ENTITY e \"1&#38;#60;2\">]><a>1&lt;21&lt;2</a>"},
      {"markup", "<!DOCTYPE a [<!ENTITY e '<b>&f;</b><!--c-->'><!ENTITY f 'f'>]><a>&e;</a>",
       "<!DOCTYPE a [  <!ENTITY e \"<b>&#38;f;</b><!--c-->\">  <!ENTITY f \"f\">]>"
       "<a><b>f</b><!--c--></a>"},
      {"attribute value", "<!DOCTYPE a [<!ENTITY e '\"&#39;'>]><a x='[&e;]'/>",
       "<!DOCTYPE a [  <!ENTITY e \"&#34;'\">]><a x='[\"&apos;]'/>"},
      {"empty", "<!DOCTYPE a [<!ENTITY e ''>]><a>&e;</a>", "<!DOCTYPE a [  <!ENTITY e \"\">]><a/>"},
      {"internal parameter entity", "<!DOCTYPE a [<!ENTITY % p '<!ENTITY e \"1\">'>%p;]><a>&e;</a>",
       "<!DOCTYPE a [  <!ENTITY % p \"<!ENTITY e &#34;1&#34;>\">  <!ENTITY e \"1\">]>"
       "<a>1</a>"},
  });
}

TEST_F(SmallDocument, HasDefaultedAttributesBesideTheirDeclarations) {
  expectCopies({
      {"defaults",
       "<!DOCTYPE a [<!ATTLIST a x CDATA '1' y CDATA #FIXED '2' z CDATA #IMPLIED>]><a/>",
       "<!DOCTYPE a [  <!ATTLIST a x CDATA '1'>  <!ATTLIST a y CDATA #FIXED '2'>"
       "  <!ATTLIST a z CDATA #IMPLIED>]><a x='1' y='2'/>"},
      {"a default namespace", "<!DOCTYPE a [<!ATTLIST a xmlns CDATA #FIXED 'urn:d'>]><a/>",
       "<!DOCTYPE a [  <!ATTLIST a xmlns CDATA #FIXED 'urn:d'>]><a xmlns='urn:d'/>"},
      {"tokens", "<!DOCTYPE a [<!ATTLIST a x NMTOKENS #IMPLIED>]><a x=' 1  2 '/>",
       "<!DOCTYPE a [  <!ATTLIST a x NMTOKENS #IMPLIED>]><a x='1 2'/>"},
  });
}

TEST_F(SmallDocument, MayBeInAnotherEncoding) {
  const std::u16string_view text = u"<?xml version='1.0'?><\u00E4 x='\u20AC'>\U0001F600</\u00E4>";
  const std::string copy = "<\xC3\xA4 x='\xE2\x82\xAC'>\xF0\x9F\x98\x80</\xC3\xA4>";
  expectCopies({
      {"UTF-16, little end first", "\xFF\xFE" + utf16(text, false), copy},
      {"UTF-16, big end first", "\xFE\xFF" + utf16(text, true), copy},
      {"UTF-16 without a mark", utf16(text, false), copy},
      {"UTF-8 with a mark", "\xEF\xBB\xBF<a/>", "<a/>"},
      {"ISO-8859-1", "<?xml version='1.0' encoding='ISO-8859-1'?><a x='\xE4'>\xFF</a>",
       "<a x='\xC3\xA4'>\xC3\xBF</a>"},
      {"US-ASCII", "<?xml version='1.0' encoding='US-ASCII'?><a>&#xE4;</a>", "<a>\xC3\xA4</a>"},
  });
}

TEST_F(SmallDocument, IsDeclaredAsUTF8WhateverItWas) {
  const std::string copy = "<?xml version=\"1.0\" encoding=\"UTF-8\"?><a>\xC3\xA4</a>";
  EXPECT_EQ(run({"convert", "-"}, "<?xml version='1.0' encoding='ISO-8859-1'?>\n<a>\xE4</a>"),
            (Result{0, copy, ""}));
  EXPECT_EQ(run({"convert", "-"}, "<a>\xC3\xA4</a>"), (Result{0, copy, ""}));
}

// Characters that stand across the border of the blocks that are read.
TEST_F(SmallDocument, IsOneWhereverItsBlocksEnd) {
  for (std::size_t before = 1024 * 1024 - 12; before < 1024 * 1024 + 2; ++before) {
    SCOPED_TRACE(before);
    const std::string text = "<a>" + std::string(before - 3, 'x');
    const std::string end = "\xF0\x9F\x98\x80<![CDATA[]]]]>&amp;\n</a>";
    EXPECT_EQ(run({"convert", "--no-declaration", "-"}, text + end), (Result{0, text + end, ""}));
    const std::string crlf = "\xF0\x9F\x98\x80<![CDATA[]]]]>&#38;\r\n</a >";
    EXPECT_EQ(run({"convert", "--no-declaration", "-"}, text + crlf), (Result{0, text + end, ""}));
  }
}

TEST_F(SmallDocument, KeepsWhatTheTypesExpatAndXMLLose) {
  expectCopies({
      {"a short name behind a prefix", "<a xmlns:p='urn:x' p:b='1'/>",
       "<a xmlns:p='urn:x' p:b='1'/>"},
      {"the prefix xml", "<a xml:lang='en' xml:space='preserve'/>",
       "<a xml:lang='en' xml:space='preserve'/>"},
      {"a namespace that is undeclared", "<a xmlns='u'><b xmlns=''/></a>",
       "<a xmlns='u'><b xmlns=''/></a>"},
      {"white space in attributes", "<a x='1&#9;2&#13;3&#10;4'/>", "<a x='1&#x9;2&#xD;3&#xA;4'/>"},
      {"carriage returns", "<a>1&#13;2&#13;&#10;3</a>", "<a>1&#xD;2&#xD;\n3</a>"},
      {"namespace names", "<a xmlns=\"1&amp;2&lt;3'\"/>", "<a xmlns='1&amp;2&lt;3&apos;'/>"},
      {"an apostrophe and a quotation mark", "<!DOCTYPE a SYSTEM 'a\"b'><a/>",
       "<!DOCTYPE a SYSTEM 'a\"b'><a/>"},
  });
}

// To a handler it is no other than none.
TEST_F(SmallDocument, LosesAnEmptySystemIdentifierWithoutAPublicOne) {
  expectCopies({{"empty", "<!DOCTYPE a SYSTEM ''><a/>", "<!DOCTYPE a><a/>"}});
}
