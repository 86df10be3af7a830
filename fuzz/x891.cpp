// Fast Infoset through the reader "X891", as text and typed, into both writers, and back.
#include <cstddef>
#include <cstdint>

#include "Documents.h"
#include "Normal.h"

namespace {

/// Why a document that was read cannot be copied.
constexpr std::initializer_list<Reason> kForFastInfoset = {
    // A reader takes any version of XML.
    {"\"", "\" is not a version of XML"},
    // The algorithm is the application's own: the writer was told of none.
    {"Unknown encoding algorithm - ", ""}};
constexpr std::initializer_list<Reason> kForText = {
    // Fast Infoset lost the declaration of the entity.
    {"The entity \"", "\" is not declared"},
    {"You cannot refer to the unparsed entity \"", ""}};

std::vector<std::string> shown(const Events& events) {
  std::vector<std::string> lines;
  for (const Event& event : events) lines.push_back(event.show());
  return lines;
}

bool isEntity(const Event& event) { return event.kind == Event::externalEntityDecl; }

/// The identifiers of entities, which the reader tells of in front of the first reference.
std::vector<std::string> entities(const Events& events) {
  std::vector<std::string> lines;
  for (const Event& event : events) {
    if (isEntity(event)) lines.push_back(event.show());
  }
  return lines;
}

/// Typed content as the text that a reader makes of it, for readers and documents of that text.
void copy(const Reading& reading, bool typed) {
  const Writing written = write("X891", reading, kForFastInfoset);
  if (!written.refusal.empty()) return;
  const auto reader = makeReader("X891");
  const Reading again = readFastInfoset(*reader, written.octets, typed);
  if (!again.failure.empty()) finding("X891 wrote what cannot be read: " + again.failure);
  expectEqual("copy in Fast Infoset", inFastInfoset(reading.events), inFastInfoset(again.events));
  expectEqual("entities of the copy", entities(reading.events), entities(again.events));
  if (reading.statements != again.statements) finding("statements of the copy");
}

void copyAsText(Reading reading) {
  // In text it is too late for a declaration in the content.
  std::erase_if(reading.events, isEntity);
  const Writing written = write("XML10", reading, kForText);
  if (!written.refusal.empty()) return;
  const auto reader = makeReader("XML10");
  const Reading again = readText(*reader, written.octets);
  if (!again.failure.empty()) finding("XML10 wrote what cannot be read: " + again.failure);
  expectEqual("copy in XML text", inXMLText(reading.events),
              inXMLText(again.events, reading.events));
  if (reading.statements.standalone != again.statements.standalone) finding("standalone");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string octets(reinterpret_cast<const char*>(data), size);
  const auto reader = makeReader("X891");
  const Reading text = readFastInfoset(*reader, octets, false);
  const Reading typed = readFastInfoset(*reader, octets, true);
  const Reading slow = readFastInfoset(*reader, octets, true, {Pieces::oneByOne});
  if (typed.failure != slow.failure) {
    finding("octet by octet \"" + slow.failure + "\" instead of \"" + typed.failure + '"');
  }
  expectEqual("octet by octet", shown(typed.events), shown(slow.events));
  unsigned seed = 0;
  for (const char c : octets) seed = seed * 31U + static_cast<unsigned char>(c);
  const Reading cut = readFastInfoset(*reader, octets, true, {Pieces::blocks, seed});
  if (typed.failure != cut.failure) {
    finding("in blocks \"" + cut.failure + "\" instead of \"" + typed.failure + '"');
  }
  expectEqual("in blocks", shown(typed.events), shown(cut.events));
  if (text.failure.empty()) {
    copy(text, false);
    copyAsText(text);
  }
  if (typed.failure.empty()) copy(typed, true);
  return 0;
}
