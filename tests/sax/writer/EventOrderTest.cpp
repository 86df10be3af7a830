#include <Tavrin/XMLWriter.h>
#include <Tavrin/XMLWriter_XML.h>

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "EventLog.h"
#include "EventTable.h"

namespace {

using namespace Tavrin;

using Lines = std::vector<std::string>;

Lines expectedTable() {
  return squeezed({
      // clang-format off
      //                     Initial Prolog InDTD AfterDTD InRoot InNested InCDATA AfterRoot Ended
      "startDocument         1       !      !     !        !      !        !       !         !",
      "endDocument           !       7      !     7        !      !        !       7         !",
      "startDTD              !       2-     !     !        !      !        !       !         !",
      "endDTD                !       !      3     !        !      !        !       !         !",
      "notationDecl          !       !      2+    !        !      !        !       !         !",
      "unparsedEntityDecl    !       !      2+    !        !      !        !       !         !",
      "internalEntityDecl    !       !      2+    !        !      !        !       !         !",
      "externalEntityDecl    !       !      2+    !        !      !        !       !         !",
      "elementDecl           !       !      2+    !        !      !        !       !         !",
      "attributeDecl         !       !      2+    !        !      !        !       !         !",
      "startElement          !       4-e    !     4-e      4-re   4-rre    !       !         !",
      "endElement            !       !      !     !        6+     4+r      !       !         !",
      "characters            !       !      !     !        4+r    4+rr     5+r     !         !",
      "ignorableWhitespace   !       1+     2+    3+       4+r    4+rr     5+r     6+        !",
      "comment               !       1+     2+    3+       4+r    4+rr     !       6+        !",
      "processingInstruction !       1+     2+    3+       4+r    4+rr     !       6+        !",
      "startCDATA            !       !      !     !        5-r    5-rr     !       !         !",
      "endCDATA              !       !      !     !        !      !        4+r     !         !",
      // clang-format on
  });
}

const char kExpectedRefusals[] =
    "startDocument: SAXException: You cannot start a document at this point\n"
    "endDocument: SAXException: You cannot end the document at this point\n"
    "startDTD: SAXException: You cannot start a DTD at this point\n"
    "endDTD: SAXException: You cannot end a DTD at this point\n"
    "notationDecl: SAXException: You cannot write a notation at this point\n"
    "unparsedEntityDecl: SAXException: You cannot write an entity declaration at this point\n"
    "internalEntityDecl: SAXException: You cannot write an entity declaration at this point\n"
    "externalEntityDecl: SAXException: You cannot write an entity declaration at this point\n"
    "elementDecl: SAXException: You cannot write an element declaration at this point\n"
    "attributeDecl: SAXException: You cannot write an attribute declaration at this point\n"
    "startElement: SAXException: You cannot start an element at this point\n"
    "endElement: SAXException: You cannot end an element at this point\n"
    "characters: SAXException: You cannot write character data at this point\n"
    "ignorableWhitespace: SAXException: You cannot write whitespace at this point\n"
    "comment: SAXException: You cannot write a comment at this point\n"
    "processingInstruction: SAXException: You cannot write a processing instruction at this "
    "point\n"
    "startCDATA: SAXException: You cannot start a CDATA section at this point\n"
    "endCDATA: SAXException: You cannot end a CDATA section at this point\n";

/// The different refusals of every event over all places, one a line.
template <typename Writer, typename Send>
std::string refusals(Send send) {
  Lines lines;
  for (const auto& event : kEvents) {
    std::set<std::string> messages;
    for (const auto& place : kPlaces) {
      Probe<Writer> writer;
      bringTo(place.place, writer);
      const std::string message = thrown([&] { send(event.event, writer); });
      if (message != "nothing") messages.insert(message);
    }
    for (const std::string& message : messages) lines.push_back(event.name + (": " + message));
  }
  return join(lines);
}

template <typename Writer, typename Send>
Lines tableOf(Send send) {
  return eventTable([] { return std::make_unique<Probe<Writer>>(); }, send);
}

void sendDirectly(Event event, XMLWriter& writer) { send(event, writer); }

TEST(EventOrder, IsCheckedInEveryState) {
  EXPECT_EQ(join(tableOf<XMLWriter>(&sendDirectly)), join(expectedTable()));
}

TEST(EventOrder, IsCheckedThroughEveryInterface) {
  EXPECT_EQ(join(tableOf<XMLWriter>(&sendThroughInterface)), join(expectedTable()));
}

TEST(EventOrder, IsCheckedAlikeByATextWriterWithoutAStream) {
  EXPECT_EQ(join(tableOf<XMLWriter_XML>(&sendDirectly)), join(expectedTable()));
  EXPECT_EQ(join(tableOf<XMLWriter_XML>(&sendThroughInterface)), join(expectedTable()));
}

TEST(EventOrder, IsRefusedWithTheEventsOwnMessage) {
  EXPECT_EQ(refusals<XMLWriter>(&sendDirectly), kExpectedRefusals);
  EXPECT_EQ(refusals<XMLWriter>(&sendThroughInterface), kExpectedRefusals);
  EXPECT_EQ(refusals<XMLWriter_XML>(&sendDirectly), kExpectedRefusals);
}

TEST(EventOrder, ReachesEveryPlaceWithItsStateNumber) {
  for (const auto& place : kPlaces) {
    Probe<XMLWriter> writer;
    bringTo(place.place, writer);
    EXPECT_EQ(static_cast<int>(writer.state_), place.state) << place.name;
  }
}

TEST(EventOrder, KeepsTheStateThroughRepeatedRefusals) {
  Probe<XMLWriter> writer;
  bringTo(Place::InNested, writer);
  writer.hasContent_ = false;
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(thrown([&] { writer.startDocument(); }),
              "SAXException: You cannot start a document at this point");
    EXPECT_EQ(thrown([&] { writer.endDocument(); }),
              "SAXException: You cannot end the document at this point");
  }
  EXPECT_EQ(static_cast<int>(writer.state_), 4);
  EXPECT_FALSE(writer.hasContent_);
  EXPECT_EQ(writer.openElements(), "rr");
  writer.endElement("", "r", "r");
  writer.endElement("", "r", "r");
  writer.endDocument();
  EXPECT_EQ(static_cast<int>(writer.state_), 7);
}

TEST(EventOrder, AllowsOneDTDOnly) {
  Probe<XMLWriter> writer;
  bringTo(Place::AfterDTD, writer);
  EXPECT_EQ(thrown([&] { writer.startDTD("d", "", ""); }),
            "SAXException: You cannot start a DTD at this point");
  EXPECT_EQ(thrown([&] { writer.endDTD(); }), "SAXException: You cannot end a DTD at this point");
  EXPECT_EQ(static_cast<int>(writer.state_), 3);
}

TEST(EventOrder, AllowsOneRootOnly) {
  Probe<XMLWriter> writer;
  bringTo(Place::AfterRoot, writer);
  EXPECT_EQ(thrown([&] { writer.startElement("", "r", "r", AttributesImpl()); }),
            "SAXException: You cannot start an element at this point");
  EXPECT_EQ(static_cast<int>(writer.state_), 6);
  EXPECT_EQ(writer.openElements(), "");
}

TEST(EventOrder, AllowsADocumentWithoutAnyElement) {
  for (const Place place : {Place::Prolog, Place::AfterDTD}) {
    Probe<XMLWriter> writer;
    bringTo(place, writer);
    writer.comment("nothing else");
    writer.endDocument();
    EXPECT_EQ(static_cast<int>(writer.state_), 7);
  }
}

}  // namespace
