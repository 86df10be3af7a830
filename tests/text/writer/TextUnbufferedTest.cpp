#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_XML.h>

#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "ActingAttributes.h"
#include "TextWriter.h"
#include "WhatIsThrown.h"

// There is nothing between the writer and the stream: what code of others sees there, and which
// code of others is called.

namespace {

using namespace Tavrin;

using Lines = std::vector<std::string>;

// --- Events of a subclass ---

/// Writes text as it is.
struct RawTextWriter : TextWriter {
  void characters(const std::string& text) override {
    startChild();
    XMLWriter::characters(text);
    *out_ << text;
  }
};

template <typename Stream>
void writeRawText(Stream& stream) {
  RawTextWriter writer;
  writer.setOutputStream(&stream);
  writer.startDocument();
  writer.start("a");
  writer.characters("<x/>");
  writer.end("a");
  writer.endDocument();
}

TEST(TextUnbuffered, AStartTagIsCompleteWhenStartChildReturns) {
  Output output;
  writeRawText(output);
  EXPECT_EQ(output.text(), "<a><x/></a>");
  std::ostringstream stream;
  writeRawText(stream);
  EXPECT_EQ(stream.str(), "<a><x/></a>");
}

/// Takes comments to another stream.
struct ForkingWriter : TextWriter {
  void comment(const std::string& text) override {
    startChild();
    setOutputStream(&second);
    TextWriter::comment(text);
    setOutputStream(&output);
  }
  Output second;
};

TEST(TextUnbuffered, WhatStartChildWritesGoesToTheStreamThatIsThere) {
  ForkingWriter writer;
  writer.startDocument();
  writer.startDTD("a", "", "");
  writer.comment("1");
  EXPECT_EQ(writer.text(), "<!DOCTYPE a [");
  EXPECT_EQ(writer.second.text(), "<!--1-->");
  writer.endDTD();
  writer.start("a");
  writer.comment("2");
  writer.end("a");
  EXPECT_EQ(writer.text(), "<!DOCTYPE a []><a></a>");
  EXPECT_EQ(writer.second.text(), "<!--1--><!--2-->");
}

/// Tells what is in the stream when a line is broken, and breaks it otherwise.
struct LineWriter : TextWriter {
  LineWriter() : TextWriter({.indent = true, .declaration = true}) {}
  void ignorableWhitespace(const std::string& text) override {
    seen.push_back(output.news() + "|" + text);
    *out_ << "~";
    TextWriter::ignorableWhitespace(" ");
  }
  Lines seen;
};

TEST(TextUnbuffered, ALineIsBrokenBehindAllThatPrecedesIt) {
  LineWriter writer;
  writer.startDocument();
  writer.startDTD("a", "", "");
  writer.elementDecl("a", "ANY");
  writer.endDTD();
  writer.start("a", {{"b", "<"}});
  writer.comment("c");
  writer.leaf("d");
  writer.end("a");
  writer.processingInstruction("t", "");
  const Lines expected = {
      kDeclaration + "|\n",
      "~ <!DOCTYPE a [|\n  ",
      "~   <!ELEMENT a ANY>|\n",
      "~ ]>|\n",
      "~ <a b='&lt;'>|\n  ",
      "~ <!--c-->|\n  ",
      "~ <d/>|\n",
      "~ </a>|\n",
  };
  EXPECT_EQ(writer.seen, expected);
  EXPECT_EQ(writer.output.news(), "~ <?t ?>");
}

/// Has members called like helpers that a writer may have.
struct NamesakeWriter : TextWriter {
  explicit NamesakeWriter(Settings settings) : TextWriter(settings) {}
  [[noreturn]] static void refuse() { throw std::logic_error("called"); }
  virtual void startChild() { refuse(); }
  virtual void indent() { refuse(); }
  virtual void send() { refuse(); }
  virtual bool isWriting() const { refuse(); }
  virtual void write(std::string_view) { refuse(); }
  virtual void writeStandaloneDeclaration() { refuse(); }
  virtual void writeStartTag(const std::string&, const std::string&, const std::string&,
                             const Attributes&) {
    refuse();
  }
  virtual void completeEmptyStartTag() { refuse(); }
  virtual void writeDefault(const std::string&, const std::string&) { refuse(); }
  std::string composed_ = "not composed";
};

TEST(TextUnbuffered, MembersOfASubclassAreNotCalled) {
  NamesakeWriter writer({.indent = true, .emptyTags = false, .declaration = true});
  writer.startDocument();
  writer.startDTD("a", "", "");
  writer.attributeDecl("a", "b", "CDATA", "", "v");
  writer.endDTD();
  writer.start("a");
  writer.leaf("b");
  writer.end("a");
  writer.flush();
  writer.endDocument();
  EXPECT_EQ(writer.text(), kDeclaration +
                               "\n<!DOCTYPE a [\n    <!ATTLIST a b CDATA  \"v\">\n]>\n"
                               "<a>\n  <b></b>\n</a>");
  EXPECT_EQ(writer.composed_, "not composed");
}

// --- Getters of an application's attributes ---

/// Attributes that do something before they tell how many there are, too.
class CountingAttributes : public ActingAttributes {
 public:
  explicit CountingAttributes(std::function<void(const std::string&)> action)
      : ActingAttributes(std::move(action), "<1") {}
  int getLength() const override {
    act("length");
    return ActingAttributes::getLength();
  }
};

TEST(TextUnbuffered, GettersSeeWhatPrecedesTheirAnswer) {
  TextWriter writer;
  Lines seen;
  const CountingAttributes attributes(
      [&](const std::string& what) { seen.push_back(what + " " + writer.output.news()); });
  writer.startDocument();
  writer.start("r");
  writer.startPrefixMapping("p", "u");
  writer.startElement("", "e", "e", attributes);
  EXPECT_EQ(seen, (Lines{"length <r><e xmlns:p='u'", "name  ", "value a='", "name &lt;1' ",
                         "value b='"}));
  EXPECT_EQ(writer.output.news(), "2'");
}

TEST(TextUnbuffered, GettersMayThrowFirst) {
  TextWriter writer;
  const CountingAttributes attributes([](const std::string& what) {
    if (what == "name") throw std::logic_error("no name");
  });
  writer.startDocument();
  EXPECT_THROW(writer.startElement("", "e", "e", attributes), std::logic_error);
  EXPECT_EQ(writer.text(), "<e ");
}

TEST(TextUnbuffered, GettersMayThrow) {
  TextWriter writer;
  int values = 0;
  const CountingAttributes attributes([&](const std::string& what) {
    if (what == "value" && ++values == 2) throw std::logic_error("no value");
  });
  writer.startDocument();
  writer.startPrefixMapping("p", "u");
  EXPECT_THROW(writer.startElement("", "e", "e", attributes), std::logic_error);
  EXPECT_EQ(writer.output.news(), "<e xmlns:p='u' a='&lt;1' b='");
  writer.reset();
  writer.startDocument();
  writer.leaf("r");
  EXPECT_EQ(writer.output.news(), "<r/>");
}

TEST(TextUnbuffered, GettersMayChangeTheStream) {
  TextWriter writer;
  Output second;
  std::ostream* next[] = {&second, nullptr};
  int values = 0;
  const CountingAttributes attributes([&](const std::string& what) {
    if (what == "value") writer.setOutputStream(next[values++]);
  });
  writer.startDocument();
  writer.startElement("", "e", "e", attributes);
  EXPECT_EQ(writer.text(), "<e a='");
  EXPECT_EQ(second.text(), "&lt;1' b='");
}

// --- Names for programs ---

TEST(WriterNames, MayBeUsedByPrograms) {
  static_assert(std::is_default_constructible_v<XMLWriter>);
  static_assert(sizeof(XMLWriter::WriterState) == 4);
  const XMLWriter::Element element = {"u", "l", "p:l"};
  EXPECT_EQ(element.uri + element.localName + element.qName, "ulp:l");
  EXPECT_EQ(XMLWriter::Initial, 0);
  EXPECT_EQ(XMLWriter::Prolog, 1);
  EXPECT_EQ(XMLWriter::InDTD, 2);
  EXPECT_EQ(XMLWriter::AfterDTD, 3);
  EXPECT_EQ(XMLWriter::InElement, 4);
  EXPECT_EQ(XMLWriter::InCDATA, 5);
  EXPECT_EQ(XMLWriter::AfterRoot, 6);
  EXPECT_EQ(XMLWriter::Ended, 7);
  XMLWriter writer;
  writer.startDocument();
  writer.endDocument();
  EXPECT_EQ(writer.getOutputStream(), nullptr);
}

}  // namespace
