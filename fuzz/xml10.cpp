// XML text through the reader "XML10", whole and in blocks, into both writers, and back. A form
// feed, which no XML document holds, ends the document; behind it are entities, each ended
// likewise.
#include <cstddef>
#include <cstdint>
#include <sstream>

#include "Documents.h"
#include "Normal.h"

using namespace Tavrin;

namespace {

constexpr std::initializer_list<Reason> kForText = {
    // An entity of the text "<" cannot be declared again, for its value was "&#38;#60;".
    {"The entity \"", "\" cannot be declared otherwise"}};
constexpr std::initializer_list<Reason> kForNamelessSubset = {
    {"The entity \"", "\" cannot be declared otherwise"},
    // For the writer there is no subset that may declare it.
    {"The entity \"", "\" is not declared"}};
constexpr std::initializer_list<Reason> kForFastInfoset = {
    // The reader takes versions of XML beside 1.0, as its fifth edition wants.
    {"\"", "\" is not a version of XML"}};

/// Entities from the input: a system identifier always means the same one, or none.
class Entities : public EntityResolver {
 public:
  explicit Entities(const std::string& input) {
    std::istringstream stream(input);
    std::getline(stream, document_, '\f');
    for (std::string entity; std::getline(stream, entity, '\f');) entities_.push_back(entity);
  }

  const std::string& document() const { return document_; }

  std::unique_ptr<std::istream> resolveEntity(const std::string&,
                                              const std::string& systemId) override {
    unsigned sum = 0;
    for (const char c : systemId) sum += static_cast<unsigned char>(c);
    // One identifier more than there are entities, so that some are passed over.
    const std::size_t number = sum % (entities_.size() + 1);
    if (number == entities_.size()) return nullptr;
    return std::make_unique<std::istringstream>(entities_[number]);
  }

 private:
  std::string document_;
  std::vector<std::string> entities_;
};

/// Whether the external subset has an empty identifier: SAX2 tells that like none.
bool hasNamelessSubset(const Reading& reading) {
  bool isNameless = false;
  for (const Event& event : reading.events) {
    if (event.kind == Event::startDTD) {
      isNameless = event.texts[1].empty() && event.texts[2].empty();
    } else if ((event.kind == Event::startEntity || event.kind == Event::skippedEntity) &&
               event.texts[0] == "[dtd]") {
      return isNameless;
    }
  }
  return false;
}

std::vector<std::string> shown(const Reading& reading) {
  std::vector<std::string> lines;
  std::string text;
  const auto endText = [&] {
    if (!text.empty()) lines.push_back(Event{Event::characters, {text}}.show());
    text.clear();
  };
  for (const Event& event : reading.events) {
    if (event.kind == Event::characters) {
      text += event.texts[0];
      continue;
    }
    endText();
    lines.push_back(event.show());
  }
  // Which failure expat sees first, and how much of a text before it, depends on the octets that it
  // sees at once.
  if (reading.failure.empty()) {
    endText();
  } else {
    lines.push_back("failure");
  }
  return lines;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Entities entities(std::string(reinterpret_cast<const char*>(data), size));
  const std::string& text = entities.document();
  const auto reader = makeReader("XML10");
  const Reading whole = readText(*reader, text, &entities);
  unsigned seed = 0;
  for (const char c : text) seed = seed * 31U + static_cast<unsigned char>(c);
  expectEqual("in blocks", shown(whole),
              shown(readText(*reader, text, &entities, {Pieces::blocks, seed})));
  if (!whole.failure.empty()) return 0;

  const Writing copy =
      write("XML10", whole, hasNamelessSubset(whole) ? kForNamelessSubset : kForText);
  if (copy.refusal.empty()) {
    const Reading again = readText(*reader, copy.octets, &entities);
    if (!again.failure.empty()) {
      finding("XML10 wrote what cannot be read: " + again.failure + '\n' + copy.octets);
    }
    expectEqual("copy in XML text", inXMLText(whole.events), inXMLText(again.events, whole.events));
    if (whole.statements.standalone != again.statements.standalone) finding("standalone");
  }

  const Writing binary = write("X891", whole, kForFastInfoset);
  if (!binary.refusal.empty()) return 0;
  const auto other = makeReader("X891");
  const Reading again = readFastInfoset(*other, binary.octets, false);
  if (!again.failure.empty()) finding("X891 wrote what cannot be read: " + again.failure);
  expectEqual("copy in Fast Infoset", inFastInfoset(whole.events), inFastInfoset(again.events));
  if (whole.statements != again.statements) finding("statements of the copy");
  return 0;
}
