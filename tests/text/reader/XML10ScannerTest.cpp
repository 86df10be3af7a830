#include <Catalog.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "BothScanners.h"

namespace {

using namespace Tavrin;
using namespace bothways;

const std::vector<std::string>& samples() {
  static const std::vector<std::string> all = {
      "",
      " ",
      "\r",
      "\xEF\xBB\xBF",
      "\xEF\xBB\xBF<a/>",
      "\xEF\xBB\xBF<?xml version='1.0'?>\r\n<a/>",
      "<",
      "<a",
      "<a/>",
      "<a/>\r",
      "<a/> \r\n\r",
      "<a/>\r\n<b/>",
      "<a/>\n\nx",
      "<a></a>",
      "<a></a >\n<!--c--> <?p d?>\n",
      "<a></b>",
      "<a>\n<b></a>",
      "<a><b></b></a",
      "<a>",
      "<a>text",
      "<a>]",
      "<a>]]",
      "<a>]]></a>",
      "<a>x]]></a>",
      "<a>x]]y]]]z] ]></a>",
      "<a>]x]\n]</a>",
      "<?xml version='1.0'?><a/>",
      "<?xml version=\"1.0\" encoding=\"utf-8\" standalone='yes' ?>\n<a/>",
      "<?xml version='1.0' standalone='no'?>\n\n  <a\n/>",
      "<?xml version='1.1'?><a/>",
      "<?xml version='2.0'?><a/>",
      "<?xml version='1.0' encoding='US-ASCII'?><a>\xC3\xA4</a>",
      "<?xml version='1.0' encoding='iso-8859-1'?><a>\xE4</a>",
      "<?xml version='1.0' encoding='utf8'?><a>\xC3\xA4</a>",
      "<?xml version='1.0' encoding='x-none'?><a/>",
      "<?xml encoding='utf-8'?><a/>",
      "<?xml version='1.0' standalone='maybe'?><a/>",
      "<?xml version='1.0' standalone='yes' encoding='utf-8'?><a/>",
      "<?xml version='1.0'standalone='yes'?><a/>",
      "<?xml version='1.0'",
      "<?xml",
      "<?xml?><a/>",
      "<?xmlx?><a/>",
      "<?XML x?><a/>",
      "<!--c--><?xml version='1.0'?><a/>",
      " <?xml version='1.0'?><a/>",
      "<a><?xml version='1.0'?></a>",
      "<!--c--><?p?> <!--d\r\ne--><!DOCTYPE a [<!ENTITY e 'x'>]><a b='&e;'>&e;</a>",
      "<?xml version='1.0' standalone='yes'?>\n<!--c-->\n<!DOCTYPE a SYSTEM 's'>\n<a>&e;</a>",
      "<!DOCTYPE a [<!ATTLIST a b CDATA 'c'>]><a/>",
      "<!DOCTYPE",
      "<!-",
      "<!--",
      "<!--c-",
      "<!--c--",
      "<!--c--x--><a/>",
      "<!--c---><a/>",
      "<!--\xC3\xA4\xE4\xB8\x80\r\r\n\n\t--><a/>",
      "<!--\x01--><a/>",
      "<a><!--c--><!-- - --><!----></a>",
      "<a><!x></a>",
      "<a><![CDATA[]]></a>",
      "<a><![CDATA[x]y]]z\r\n\r]]]></a>",
      "<a><![CDATA[<&>]]>]]&gt;</a>",
      "<a><![CDATA[x",
      "<a><![CDATA[x]]",
      "<a><![CDAT[x]]></a>",
      "<a><![CDATA[\x02]]></a>",
      "<a><![CDATA[\xE4\xB8\x80\xE4\xB8]]></a>",
      "<![CDATA[x]]>",
      "<a><?p?><?p d?><?p  d?"
      "?><?p\r\n d\r\n\r?></a>",
      "<a><?p:q d?></a>",
      "<a><?p?x?></a>",
      "<a><?1?></a>",
      "<a><?p\xC3\xA4 \xC3\xA4?></a>",
      "<a><?p",
      "<a>&lt;&gt;&amp;&apos;&quot;</a>",
      "<a>x&lt;y&#65;&#x42;&#x1F30A;&#10;&#13;z</a>",
      "<a>&e;</a>",
      "<a>x&lt</a>",
      "<a>&lt ;</a>",
      "<a>&#;</a>",
      "<a>&#x;</a>",
      "<a>&#xg;</a>",
      "<a>&#0;</a>",
      "<a>&#xD800;</a>",
      "<a>&#xFFFE;</a>",
      "<a>&#x110000;</a>",
      "<a>&#00000000000000000000065;</a>",
      "<a>&#99999999999999999999;</a>",
      "<a>&\xC3\xA4;</a>",
      "<a>&",
      "<a>& </a>",
      "<a>\r\nx\ry\n\nz\t \r</a>",
      "<a>\xC3\xA4\xE4\xB8\x80\xF0\x9F\x8C\x8A</a>",
      "<a>x\xC3</a>",
      "<a>x\xE4\xB8</a>",
      "<a>x\xED\xA0\x80</a>",
      "<a>x\xEF\xBF\xBE</a>",
      "<a>x\xC0\x80</a>",
      "<a>x\xF5\x80\x80\x80</a>",
      "<a>x\xFF</a>",
      "<a>x\x80</a>",
      std::string("<a>x\0</a>", 9),
      "<a>\x7F\xC2\x80</a>",
      "<a b='c'/>",
      "<a b='c' d=\"e\"  f\n=\r\n'g' >x</a>",
      "<a b='c'd='e'/>",
      "<a b='c' b='d'/>",
      "<a b/>",
      "<a b=c/>",
      "<a b='<'/>",
      "<a b='&lt;&#10; \t\r\n\r\n\r \"'/>",
      "<a b=\"&quot;'>\"/>",
      "<a b='&e;'/>",
      "<a b='&#0;'/>",
      "<a b='\x01'/>",
      "<a b='\xC3\xA4\xE4\xB8\x80\xF0\x9F\x8C\x8A'/>",
      "<a b='\xE4\xB8'/>",
      "<a b='",
      "<a / >",
      "<a b='c' /x>",
      "< a/>",
      "<1/>",
      "<-a/>",
      "<a.-_1/>",
      "<:a/>",
      "<a:/>",
      "<a:b:c/>",
      "<a:1/>",
      "<a b:='c'/>",
      "</a>",
      "<p:a/>",
      "<p:a xmlns:p='u'/>",
      "<p:a xmlns:p='u' p:b='c' b='d'></p:a>",
      "<a p:b='c'/>",
      "<a xmlns='u'><b/><c xmlns=''><d/></c><b/></a>",
      "<a xmlns='u' xmlns='v'/>",
      "<a xmlns:p='u' xmlns:q='v' xmlns:r='u'><b p:c='1' q:c='2'/><b p:c='1' r:c='2'/></a>",
      "<a xmlns:p='u'><p:b xmlns:p='v'><p:c/></p:b><p:b/></a>",
      "<a xmlns:p=''/>",
      "<a xmlns:xml='http://www.w3.org/XML/1998/namespace' xml:lang='en'><b xml:id='x'/></a>",
      "<a xmlns:xml='u'/>",
      "<a xmlns:p='http://www.w3.org/XML/1998/namespace'/>",
      "<a xmlns:xmlns='u'/>",
      "<a xmlns='http://www.w3.org/2000/xmlns/'/>",
      "<xmlns:a/>",
      "<xml:a xml:space='preserve'> </xml:a>",
      "<a xmlns:p='u&amp;&quot;&#9;&lt;\xC3\xA4'><p:b><p:c>&e;</p:c></p:b></a>",
      "<a xmlns:p='u'>\n<b xmlns:q='v'>\n<q:c>x\n</q:d></b></a>",
      "<\xC3\xA4 \xE4\xB8\x80='\xC3\xA4'>x</\xC3\xA4>",
      "<\xC3\x97/>",
      "<a\xC2\xB7/>",
      "<\xC2\xB7/>",
      "<\xF0\x90\x80\x80/>",
      "<a\xE2\x82\xAC/>",
      "<a\xC3/>",
      "<a><b/><b/></a><!--x--><c/>",
      "<a/><!DOCTYPE a>",
      "<a/>&lt;",
      "<a/><![CDATA[]]>",
      "text",
      "\xFE\xFF\0<",
      std::string("\t\0<\0a\0/\0>\0", 10),
      std::string("\0\t\0<\0a\0/\0>", 10),
      std::string("<\0a\0/\0>\0", 8),
      "<a>\n\t\t<b>x</b>\n\t</a>",
  };
  return all;
}

TEST(XML10Scanner, TellsTheSameAsExpat) {
  for (const std::string& sample : samples()) {
    for (const Ways& ways : kWays) {
      expectSameInBlocks(sample, 1, ways);
      if (HasFatalFailure()) return;
    }
  }
}

TEST(XML10Scanner, TakesTheNamesThatExpatTakes) {
  XMLReader_XML10 own;
  XMLReader_XML10 expat;
  std::string name = kExpat;
  expat.setProperty(properties::textScanner, &name);
  for (unsigned c = 0x80; c < 0x10000; ++c) {
    if (c >= 0xD800 && c < 0xE000) continue;
    std::string character;
    if (c >= 0x800) {
      character += static_cast<char>(0xE0 | c >> 12);
      character += static_cast<char>(0x80 | (c >> 6 & 0x3F));
    } else {
      character += static_cast<char>(0xC0 | c >> 6);
    }
    character += static_cast<char>(0x80 | (c & 0x3F));
    for (const std::string& tag : {"<" + character + "/>", "<a" + character + "/>"}) {
      ASSERT_EQ(parseText(expat, tag), parseText(own, tag)) << std::hex << c;
    }
  }
}

TEST(XML10Scanner, IsAProperty) {
  XMLReader_XML10 reader;
  const auto scanner = [&] {
    return *static_cast<std::string*>(reader.getProperty(properties::textScanner));
  };
  EXPECT_EQ("automatic", scanner());
  std::string value = "expat";
  reader.setProperty(properties::textScanner, &value);
  EXPECT_EQ("expat", scanner());
  value = "none";
  EXPECT_EQ(
      "SAXException(Property \"http://tavrin/sax/properties/text-scanner\" must be \"automatic\" "
      "or \"expat\")",
      outcomeOf([&] { reader.setProperty(properties::textScanner, &value); }));
  EXPECT_EQ("expat", scanner());
  reader.setProperty(properties::textScanner, nullptr);
  EXPECT_EQ("automatic", scanner());
}

TEST(XML10Scanner, TellsTheSameOfLongTokens) {
  const std::string name(300, 'n');
  const std::string wide = [] {
    std::string text;
    for (int i = 0; i < 300; ++i) text += "\xD0\xB0\xE4\xB8\x80\xE0\xA4\x95z\xF0\x9F\x8C\x8A";
    return text;
  }();
  for (const std::string& text :
       {"<" + name + ">" + std::string(5000, 't') + "</" + name + ">", "<a>" + wide + "</a>",
        "<a>" + wide + "\xE4\xB8</a>", "<a b='" + wide + "'/>", "<!--" + wide + "--><a/>",
        "<a><?p " + wide + "?></a>", "<a><![CDATA[" + wide + "]" + wide + "]]></a>",
        "<a>" + wide + "]]>" + wide + "</a>", "<a>" + wide + std::string(40, ']') + "</a>",
        "<" + name + ":" + name + " xmlns:" + name + "='" + wide + "'>&x;</a>",
        std::string(3000, ' ') + "<a" + std::string(3000, '\n') + "/>" + std::string(3000, '\r')}) {
    expectSameInBlocks(text, 9);
    if (HasFatalFailure()) return;
    expectSame(text, cutEvenly(text, 1000), true);
  }
}

TEST(XML10Scanner, TellsTheSameOfMutatedDocuments) {
  const std::string seed =
      "\n<?xml version='1.0' encoding='UTF-8' standalone='no'?>\n<?t d?><!--c-->\r\n"
      "<p:a xmlns:p='v' xmlns='w' p:y='1' y='w'>\n\ttext<![CDATA[data]]>]]&lt;&#xE4;&amp;\r\n"
      "<b xmlns='' c=\"&quot;\n\" d='e'/>\xC3\xA4\xE4\xB8\x80<p:c xml:lang='en'>&#10;</p:c  >"
      "<?p  d?><\xC3\xA4/></p:a><!--e-->\n";
  std::mt19937 numbers(18);
  for (int round = 0; round < 3000; ++round) {
    // Half of them without the line feed that makes the declaration a fault.
    const std::string text = mutated(seed.substr(round % 8 == 0 ? 0 : 1), numbers);
    const Ways& ways = kWays[numbers() % kWays.size()];
    expectSame(text, {}, true, ways);
    expectSame(text, cutEvenly(text, 1 + numbers() % 64), numbers() % 2 == 0, ways);
    expectSame(text, cutRandomly(text, static_cast<unsigned>(numbers()), 1 + numbers() % 20), false,
               ways);
    if (HasFatalFailure()) return;
  }
}

TEST(XML10Scanner, TellsTheSameOfFiles) {
  std::size_t count = 0;
  for (const char* folder : {"/usr/share/xml", "/usr/share/mime/packages", "/usr/share/icons",
                             "/etc", "/usr/share/gtksourceview-4", "/usr/share/X11"}) {
    std::error_code error;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(
             folder, std::filesystem::directory_options::skip_permission_denied, error)) {
      const std::string extension = entry.path().extension();
      const bool isXML = extension == ".xml" || extension == ".svg" || extension == ".lang";
      if (!isXML || !entry.is_regular_file(error) || count >= 150) continue;
      if (entry.file_size() > 300000) continue;
      const std::string text = contentOf(entry.path());
      ++count;
      expectSame(text, {}, true);
      for (const std::size_t size : {7U, 64U, 1500U}) {
        expectSame(text, cutEvenly(text, size + count % 7), true);
      }
      if (HasFatalFailure()) return;
    }
  }
}

TEST(XML10Scanner, TellsTheSameOfTheSuite) {
  const char* const folder = std::getenv("TAVRIN_XML_SUITE");
  if (folder == nullptr) GTEST_SKIP() << "TAVRIN_XML_SUITE does not name the folder of the suite.";
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (entry.path().extension() != ".xml" || !entry.is_regular_file()) continue;
    SCOPED_TRACE(entry.path());
    expectSameInBlocks(contentOf(entry.path()), 1);
    expectSameInBlocks(contentOf(entry.path()), 5, kWays[1]);
    if (HasFatalFailure()) return;
  }
}

}  // namespace
