// Random document types as text: whatever the reader "XML10" reports, the writer "XML10" takes, and
// what it writes is read as the same.

#include <Tavrin/XMLReader_XML10.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>

#include "EventLog.h"
#include "XML10Writer.h"

namespace {

using namespace Tavrin;

/// A document from a number: pieces of declarations, of which some are odd and some are wrong.
class Generator {
 public:
  explicit Generator(std::uint64_t seed) : state_(seed * 2 + 1) {}

  std::string document() {
    static const char* const identifiers[] = {"", " SYSTEM 's'", " PUBLIC 'p' 's'",
                                              " PUBLIC 'p' ''"};
    const std::string type = name();
    std::string text = "<!DOCTYPE " + type + oneOf(identifiers) + " [";
    for (unsigned i = below(5); i > 0; --i) text += declaration();
    return text + "]><" + type + "/>";
  }

 private:
  unsigned below(unsigned bound) {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return static_cast<unsigned>((state_ >> 33U) % bound);
  }
  template <std::size_t Count>
  std::string oneOf(const char* const (&choices)[Count]) {
    return choices[below(Count)];
  }

  std::string name() {
    static const char* const names[] = {"a", "b.c", "_", "\xC3\xA4", "a-1", "n"};
    static const char* const odd[] = {"x:2", "x:-", "a:b:c", ":a", "a:", "xml:lang", "p:a", "1"};
    return below(16) == 0 ? oneOf(odd) : oneOf(names);
  }
  std::string identifier() {
    static const char* const identifiers[] = {
        " SYSTEM ''",        " SYSTEM 's'",           " SYSTEM \"it's\"", " SYSTEM 'a\"b'",
        " PUBLIC 'p' 's'",   " PUBLIC '' ''",         " PUBLIC 'p' ''",   " PUBLIC ' p\n q ' 's'",
        " SYSTEM '&#38;%x'", " SYSTEM '\xE2\x82\xAC'"};
    return oneOf(identifiers);
  }
  std::string value() {
    static const char* const pieces[] = {"",      "v",     " ",     "\t",        "\n",
                                         "&#13;", "&#10;", "&#38;", "&#38;#60;", "&lt;",
                                         "&gt;",  "]]>",   "&#34;", "&amp;",     "\xF0\x9F\x8C\xB3",
                                         "--",    "'",     "&#37;", "&#x85;",    "&#x2028;"};
    std::string text;
    for (unsigned i = below(4); i > 0; --i) text += oneOf(pieces);
    return '"' + text + '"';
  }
  std::string model() {
    static const char* const quantifiers[] = {"", "", "?", "*", "+"};
    switch (below(5)) {
      case 0:
        return below(2) == 0 ? "EMPTY" : "ANY";
      case 1:
        return "(#PCDATA)";
      case 2:
        return "( #PCDATA | " + name() + " )*";
      default:
        return group(3) + oneOf(quantifiers);
    }
  }
  std::string group(unsigned depth) {
    static const char* const quantifiers[] = {"", "", "?", "*", "+"};
    const char* const separator = below(2) == 0 ? " , " : "|";
    std::string text = "(";
    for (unsigned i = 0, count = 1 + below(3); i < count; ++i) {
      if (i > 0) text += separator;
      text += (depth > 0 && below(3) == 0 ? group(depth - 1) : name()) + oneOf(quantifiers);
    }
    return text + ")";
  }
  std::string declaration() {
    static const char* const types[] = {
        "CDATA",   "ID",       "IDREFS",           "ENTITY",
        "NMTOKEN", "NMTOKENS", "( a | -1 | b:c )", "NOTATION ( n | a )"};
    static const char* const attributes[] = {"xmlns",       "xmlns:p",   "xmlns:xml",
                                             "xmlns:xmlns", "xml:space", "p:b"};
    static const char* const entities[] = {"lt", "gt", "amp", "apos", "quot"};
    static const char* const modes[] = {"#IMPLIED", "#REQUIRED"};
    switch (below(7)) {
      case 0:
        return "<!ELEMENT " + name() + ' ' + model() + ">";
      case 1: {
        const std::string attribute = below(3) == 0 ? oneOf(attributes) : name();
        const unsigned mode = below(3);
        return "<!ATTLIST " + name() + " " + attribute + ' ' + oneOf(types) + ' ' +
               (mode == 0   ? oneOf(modes)
                : mode == 1 ? "#FIXED " + value()
                            : value()) +
               ">\n";
      }
      case 2:
        return "<!ENTITY " + name() + ' ' + value() + ">";
      case 3:
        return below(4) == 0 ? "<!ENTITY " + oneOf(entities) + ' ' + value() + ">"
                             : "<!ENTITY % " + name() + ' ' + value() + ">";
      case 4:
        return "<!ENTITY " + name() + identifier() + (below(2) == 0 ? "" : " NDATA " + name()) +
               ">";
      case 5:
        return "<!NOTATION " + name() + identifier() + ">";
      default:
        return below(2) == 0 ? "<?" + name() + " \t" + (below(2) == 0 ? "" : "d ") + "?>"
                             : "<!-- c -->";
    }
  }

  std::uint64_t state_;
};

/// Why a document is not read, or nothing.
std::string read(const std::string& text, ContentHandler& content, DTDHandler& dtd,
                 DeclHandler& declarations, LexicalHandler& lexical) {
  XMLReader_XML10 reader;
  reader.setContentHandler(&content);
  reader.setDTDHandler(&dtd);
  reader.setProperty(properties::declarationHandler, &declarations);
  reader.setProperty(properties::lexicalHandler, &lexical);
  try {
    reader.parse(text.data(), text.size(), true);
  } catch (const SAXException& exception) {
    return exception.getMessage();
  }
  return {};
}

std::string logOf(const std::string& text) {
  EventLog log;
  const std::string why = read(text, log, log, log, log);
  return why.empty() ? log.text() : "failed: " + why;
}

TEST(XML10RoundTrip, OfDocumentTypes) {
  unsigned documents = 0;
  for (std::uint64_t seed = 0; seed < 4000; ++seed) {
    const std::string text = Generator(seed).document();
    const std::string log = logOf(text);
    if (log.starts_with("failed: ")) continue;
    ++documents;
    XML10Writer writer;
    ASSERT_EQ(read(text, writer, writer, writer, writer), "") << text;
    ASSERT_EQ(logOf(writer.text()), log) << text << "\n" << writer.text();
  }
  EXPECT_GT(documents, 1500U);
}

}  // namespace
