#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "FIWriterProbe.h"
#include "WhatIsThrown.h"

// Every event in every state: refused before anything happens, or written.

namespace writer_test {
namespace {

using namespace Tavrin;

struct Event {
  const char* name;
  const char* refusal;
  std::string accepted;  ///< A letter a place, as in kPlaces.
  std::function<void(Probe&)> send;
};

const char kEntityRefusal[] = "You cannot write an entity declaration at this point";

const std::vector<Event> kEvents = {
    {"startDocument", "You cannot start a document at this point", "I",
     [](Probe& writer) { writer.startDocument(); }},
    {"endDocument", "You cannot end the document at this point", "PAR",
     [](Probe& writer) { writer.endDocument(); }},
    {"startDTD", "You cannot start a DTD at this point", "P",
     [](Probe& writer) { writer.startDTD("r", "p", "s"); }},
    {"endDTD", "You cannot end a DTD at this point", "D", [](Probe& writer) { writer.endDTD(); }},
    {"notationDecl", "You cannot write a notation at this point", "D",
     [](Probe& writer) { writer.notationDecl("n", "p", "s"); }},
    {"unparsedEntityDecl", kEntityRefusal, "D",
     [](Probe& writer) { writer.unparsedEntityDecl("u", "p", "s", "n"); }},
    {"internalEntityDecl", kEntityRefusal, "D",
     [](Probe& writer) { writer.internalEntityDecl("i", "v"); }},
    {"externalEntityDecl", kEntityRefusal, "D",
     [](Probe& writer) { writer.externalEntityDecl("x", "p", "s"); }},
    {"elementDecl", "You cannot write an element declaration at this point", "D",
     [](Probe& writer) { writer.elementDecl("r", "ANY"); }},
    {"attributeDecl", "You cannot write an attribute declaration at this point", "D",
     [](Probe& writer) { writer.attributeDecl("r", "a", "CDATA", "#IMPLIED", ""); }},
    {"startElement", "You cannot start an element at this point", "PAEN",
     [](Probe& writer) {
       writer.start("e", {{"a", "v"}});
     }},
    {"endElement", "You cannot end an element at this point", "EN",
     [](Probe& writer) { writer.end("r"); }},
    {"characters", "You cannot write character data at this point", "ENC",
     [](Probe& writer) { writer.characters("x"); }},
    {"ignorableWhitespace", "You cannot write whitespace at this point", "PDAENCR",
     [](Probe& writer) { writer.ignorableWhitespace(" "); }},
    {"comment", "You cannot write a comment at this point", "PDAENR",
     [](Probe& writer) { writer.comment("c"); }},
    {"processingInstruction", "You cannot write a processing instruction at this point", "PDAENR",
     [](Probe& writer) { writer.processingInstruction("t", "d"); }},
    {"startCDATA", "You cannot start a CDATA section at this point", "EN",
     [](Probe& writer) { writer.startCDATA(); }},
    {"endCDATA", "You cannot end a CDATA section at this point", "C",
     [](Probe& writer) { writer.endCDATA(); }},
};

/// Initial, Prolog, in the DTD, After it, in an Element, in a Nested one, in a CDATA section,
/// behind the Root, Over.
const std::string kPlaces = "IPDAENCRO";

/// Brings a new writer to a place. In elements and sections, text has gathered; behind the root, a
/// terminator is owed; a declaration is waiting everywhere.
void bringTo(char place, Probe& writer) {
  writer.startPrefixMapping("p", "u");
  if (place == 'I') return;
  writer.startDocument();
  if (place == 'P') return;
  if (place == 'D' || place == 'A') {
    writer.startDTD("r", "", "");
    if (place == 'A') writer.endDTD();
    return;
  }
  writer.start("r");
  if (place == 'N') writer.start("r");
  if (place == 'C') writer.startCDATA();
  if (place == 'E' || place == 'N' || place == 'C') writer.characters("hi");
  writer.startPrefixMapping("q", "v");
  if (place == 'R' || place == 'O') writer.end("r");
  if (place == 'O') writer.endDocument();
}

/// Goes from a place to the end of the document.
void finishFrom(char place, Probe& writer) {
  if (place == 'I') writer.startDocument();
  if (place == 'D') writer.endDTD();
  if (place == 'C') writer.endCDATA();
  if (place == 'N') writer.end("r");
  if (place == 'E' || place == 'N' || place == 'C') {
    writer.leaf("z");  // Brings out the declaration.
    writer.end("r");
  }
  if (place == 'I' || place == 'P' || place == 'D' || place == 'A') writer.leaf("z");
  if (place != 'O') writer.endDocument();
}

std::string finished(char place) {
  Probe writer;
  bringTo(place, writer);
  finishFrom(place, writer);
  return writer.written();
}

TEST(WriterStates, RefuseEveryEventThatMayNotComeAndNothingChanges) {
  int refused = 0;
  for (const char place : kPlaces) {
    const std::string undisturbed = finished(place);
    for (const Event& event : kEvents) {
      if (event.accepted.find(place) != std::string::npos) continue;
      SCOPED_TRACE(std::string(event.name) + " in " + place);
      Probe writer;
      bringTo(place, writer);
      writer.output.news();
      EXPECT_EQ(thrown([&] { event.send(writer); }), "SAXException: " + std::string(event.refusal));
      EXPECT_EQ(writer.news(), "");
      finishFrom(place, writer);
      EXPECT_EQ(writer.written(), undisturbed);
      ++refused;
    }
  }
  EXPECT_EQ(refused, 9 * 18 - 43);
}

TEST(WriterStates, RefuseTheSameWithoutAStream) {
  for (const char place : kPlaces) {
    for (const Event& event : kEvents) {
      SCOPED_TRACE(std::string(event.name) + " in " + place);
      Probe writer;
      writer.setOutputStream(nullptr);
      bringTo(place, writer);
      const bool accepted = event.accepted.find(place) != std::string::npos;
      EXPECT_EQ(thrown([&] { event.send(writer); }),
                accepted ? "nothing" : "SAXException: " + std::string(event.refusal));
      EXPECT_EQ(writer.written(), "");
    }
  }
}

TEST(WriterStates, WriteEveryEventThatMayComeInItsPlace) {
  std::vector<std::string> lines;
  for (const Event& event : kEvents) {
    for (const char place : event.accepted) {
      Probe writer;
      bringTo(place, writer);
      writer.output.news();
      event.send(writer);
      lines.push_back(std::string(event.name) + " " + place + ": " + writer.news());
    }
  }
  const std::string owed = "91 'hi' ";
  const std::string root = "78 CF 00 'p' 00 'u' F0 3C 00 'e' 78 00 'a' 40 'v'";
  const std::string child = owed + "78 CF 00 'q' 00 'v' F0 3C 00 'e' 78 00 'a' 40 'v'";
  EXPECT_EQ(join(lines), join({
                             "startDocument I: " + hex("E0 00 00 01 00"),
                             "endDocument P: F0",
                             "endDocument A: F0",
                             "endDocument R: FF",
                             "startDTD P: ",
                             "endDTD D: ",
                             "notationDecl D: ",
                             "unparsedEntityDecl D: ",
                             "internalEntityDecl D: ",
                             "externalEntityDecl D: ",
                             "elementDecl D: ",
                             "attributeDecl D: ",
                             "startElement P: " + hex(root),
                             "startElement A: " + hex(root),
                             "startElement E: " + hex(child),
                             "startElement N: " + hex(child),
                             "endElement E: " + hex(owed),
                             "endElement N: " + hex(owed),
                             "characters E: ",
                             "characters N: ",
                             "characters C: ",
                             "ignorableWhitespace P: ",
                             "ignorableWhitespace D: ",
                             "ignorableWhitespace A: ",
                             "ignorableWhitespace E: ",
                             "ignorableWhitespace N: ",
                             "ignorableWhitespace C: ",
                             "ignorableWhitespace R: ",
                             "comment P: " + hex("E2 40 'c'"),
                             "comment D: " + hex("E2 40 'c'"),
                             "comment A: " + hex("E2 40 'c'"),
                             "comment E: " + hex(owed + "E2 40 'c'"),
                             "comment N: " + hex(owed + "E2 40 'c'"),
                             "comment R: " + hex("F0 E2 40 'c'"),
                             "processingInstruction P: " + hex("E1 00 't' 40 'd'"),
                             "processingInstruction D: " + hex("E1 00 't' 40 'd'"),
                             "processingInstruction A: " + hex("E1 00 't' 40 'd'"),
                             "processingInstruction E: " + hex(owed + "E1 00 't' 40 'd'"),
                             "processingInstruction N: " + hex(owed + "E1 00 't' 40 'd'"),
                             "processingInstruction R: " + hex("F0 E1 00 't' 40 'd'"),
                             "startCDATA E: ",
                             "startCDATA N: ",
                             "endCDATA C: " + hex("8C 25 'hi'"),
                         }));
}

/// A check of an event's content, and its message.
TEST(WriterStates, RefuseContentThatTheEventMayNotHave) {
  struct Refused {
    char place;
    const char* message;
    std::function<void(Probe&)> send;
  };
  const Refused cases[] = {
      {'C', "You cannot put \"]]>\" into a CDATA section",
       [](Probe& writer) { writer.characters("a]]>b"); }},
      {'E', "You cannot put \"-->\" into a comment", [](Probe& writer) { writer.comment("-->"); }},
      {'R', "You cannot put \"-->\" into a comment", [](Probe& writer) { writer.comment("a-->"); }},
      {'E', "You cannot put non-whitespace characters into ignorable whitespace",
       [](Probe& writer) { writer.ignorableWhitespace(" x"); }},
      {'E', "Name mismatch between start and end element", [](Probe& writer) { writer.end("s"); }},
      {'E', "Name mismatch between start and end element",
       [](Probe& writer) { writer.endElement("u", "r", "r"); }},
      {'N', "Name mismatch between start and end element",
       [](Probe& writer) { writer.endElement("", "r", "p:r"); }},
  };
  for (const Refused& refused : cases) {
    SCOPED_TRACE(refused.message);
    Probe writer;
    bringTo(refused.place, writer);
    writer.output.news();
    EXPECT_EQ(thrown([&] { refused.send(writer); }),
              "SAXException: " + std::string(refused.message));
    EXPECT_EQ(writer.news(), "");
    finishFrom(refused.place, writer);
    EXPECT_EQ(writer.written(), finished(refused.place));
  }
}

TEST(WriterStates, AcceptInTextAndCommentsWhatOnlyXmlForbids) {
  Probe writer;
  writer.startDocument();
  writer.start("r");
  writer.characters("a]]>b");
  writer.comment("a--b-");
  writer.end("r");
  writer.endDocument();
  EXPECT_EQ(writer.written(), document("3C 00 'r' 92 02 'a]]>b' E2 44 'a--b-' FF"));
}

}  // namespace
}  // namespace writer_test
