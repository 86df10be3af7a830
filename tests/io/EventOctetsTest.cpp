#include "io/EventOctets.h"

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <sstream>
#include <string>

#include "NarrowBuffer.h"
#include "XML10Writer.h"

namespace {

using namespace Tavrin;

// Rooms around the lengths that are copied in different ways, and one that is never full.
constexpr std::size_t kRooms[] = {0, 1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 17, 18, 31, 33, 64, 4096};

/// The pieces of an event: of 0 to 40 octets.
std::string appendPieces(EventOctets& octets) {
  std::string expected;
  for (std::size_t size = 0; size <= 40; size += 1 + size / 8) {
    std::string piece;
    for (std::size_t i = 0; i < size; ++i) piece += static_cast<char>('a' + (size + i) % 26);
    octets.append('<', piece, '>');
    expected += '<' + piece + '>';
    EXPECT_EQ(octets.size(), expected.size());
  }
  return expected;
}

TEST(EventOctets, AreWrittenOrLeftWhateverRoomThereIs) {
  for (const std::size_t size : kRooms) {
    NarrowBuffer buffer(std::string::npos, false, size);
    std::ostream out(&buffer);
    std::string rest;
    std::string expected;
    {
      EventOctets octets(&out, rest);
      expected = appendPieces(octets);
      EXPECT_EQ(buffer.octets(), "") << "room " << size;
    }
    EXPECT_EQ(buffer.octets() + rest, "") << "room " << size << ", not written";
    {
      EventOctets octets(&out, rest);
      appendPieces(octets);
      octets.write();
    }
    EXPECT_EQ(buffer.octets() + rest, expected) << "room " << size;
    EXPECT_TRUE(rest.empty() || rest == expected) << "room " << size;
  }
}

TEST(EventOctets, AreKeptBehindWhatIsInFront) {
  NarrowBuffer buffer;
  std::string rest = "before";
  {
    EventOctets octets(nullptr, rest);
    appendPieces(octets);
  }
  EXPECT_EQ(rest, "before");
  EventOctets octets(nullptr, rest);
  const std::string expected = appendPieces(octets);
  octets.keep();
  EXPECT_EQ(rest, "before" + expected);
}

TEST(EventOctets, AreTakenBack) {
  for (const std::size_t size : kRooms) {
    NarrowBuffer buffer(std::string::npos, false, size);
    std::ostream out(&buffer);
    std::string rest;
    EventOctets octets(&out, rest);
    octets.append('>');
    octets.append('<', std::string("element"));
    octets.truncate(1);
    octets.append('<', std::string("e"));
    octets.write();
    EXPECT_EQ(buffer.octets() + rest, "><e") << "room " << size;
  }
}

// --- In a writer ---

void writeDocument(XMLWriter& writer) {
  AttributesImpl attributes;
  attributes.addAttribute("", "a", "a", "CDATA", "1");
  attributes.addAttribute("", "long", "long", "CDATA", "a value of more than sixteen octets");
  attributes.addAttribute("", "hard", "hard", "CDATA", "<\xC3\xA4'");
  AttributesImpl invalid(attributes);
  invalid.addAttribute("", "z", "z", "CDATA", "\x01");
  const auto refused = [](const std::function<void()>& event) {
    EXPECT_THROW(event(), SAXException);
  };
  writer.startDocument();
  for (int i = 0; i < 3; ++i) {
    writer.startElement("", "element", "element", attributes);
    refused([&] { writer.startElement("", "e", "e", invalid); });
    refused([&] { writer.characters("a long text that does not get far: \xFF"); });
    writer.characters("x & \xE2\x82\xAC");
    refused([&] { writer.endElement("", "e", "e"); });
    refused([&] { writer.characters("<\x02"); });
    refused([&] { writer.startElement("", "element", "element", invalid); });
    writer.characters("y");
  }
  for (int i = 0; i < 3; ++i) writer.endElement("", "element", "element");
  writer.endDocument();
}

const std::string kTag =
    "<element a='1' long='a value of more than sixteen octets' hard='&lt;\xC3\xA4&apos;'"
    ">x &amp; \xE2\x82\xACy";
const std::string kDocument = kTag + kTag + kTag + "</element></element></element>";

TEST(EventOctets, MakeTheSameDocumentWhateverRoomThereIs) {
  for (std::size_t size = 1; size <= 300; ++size) {
    NarrowBuffer buffer(std::string::npos, false, size);
    std::ostream out(&buffer);
    XML10Writer writer;
    writer.setOutputStream(&out);
    writeDocument(writer);
    ASSERT_EQ(buffer.octets(), kDocument) << "room " << size;
  }
}

// What a refused event composed would be seen in the string that is written over.
TEST(EventOctets, LeaveNoTraceInAStringThatIsWrittenOver) {
  const std::string before(2 * kDocument.size(), '#');
  std::stringstream stream(before);
  XML10Writer writer;
  writer.setOutputStream(&stream);
  writeDocument(writer);
  EXPECT_EQ(stream.str(), kDocument + before.substr(kDocument.size()));
}

}  // namespace
