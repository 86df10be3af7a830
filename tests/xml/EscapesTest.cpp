#include "xml/Escapes.h"

#include <gtest/gtest.h>

#include <string>

#include "xml/Characters.h"

namespace {

using namespace Tavrin::xml;

std::string escaped(const Escapes& escapes, const std::string& text) {
  std::string out = "before ";
  EXPECT_EQ(escapes.append(out, text), kAllValid);
  EXPECT_EQ(out.substr(0, 7), "before ");
  return out.substr(7);
}

TEST(Escapes, AreThoseOfTheirPlace) {
  const std::string text = "<>&'\"%\t\n\r\xC3\xA4";
  EXPECT_EQ(escaped(kTextEscapes, text), "&lt;&gt;&amp;'\"%\t\n&#xD;\xC3\xA4");
  EXPECT_EQ(escaped(kApostropheEscapes, text), "&lt;>&amp;&apos;\"%&#x9;&#xA;&#xD;\xC3\xA4");
  EXPECT_EQ(escaped(kQuotationMarkEscapes, text), "&lt;>&amp;'&quot;%&#x9;&#xA;&#xD;\xC3\xA4");
  EXPECT_EQ(escaped(kEntityValueEscapes, text), "<>&#38;'&#34;&#37;\t\n&#13;\xC3\xA4");
  EXPECT_EQ(&attributeEscapes('"'), &kQuotationMarkEscapes);
  EXPECT_EQ(&attributeEscapes('\''), &kApostropheEscapes);
}

TEST(Escapes, AreFoundAnywhere) {
  for (std::size_t length = 0; length < 40; ++length) {
    const std::string plain(length, 'a');
    EXPECT_EQ(escaped(kTextEscapes, plain), plain);
    for (std::size_t place = 0; place < length; ++place) {
      const std::string begin(place, 'a');
      const std::string end(length - place - 1, 'a');
      EXPECT_EQ(escaped(kTextEscapes, begin + '<' + end), begin + "&lt;" + end);
      EXPECT_EQ(escaped(kTextEscapes, begin + "\xC3\xA4<" + end), begin + "\xC3\xA4&lt;" + end);
      EXPECT_EQ(escaped(kTextEscapes, begin + "&\xC3\xA4" + end), begin + "&amp;\xC3\xA4" + end);
      std::string out;
      EXPECT_EQ(kTextEscapes.append(out, begin + '\x01' + end), place);
      out.clear();
      EXPECT_EQ(kTextEscapes.append(out, "<\xC3\xA4" + begin + "\xFF" + end), place + 3);
    }
  }
}

}  // namespace
