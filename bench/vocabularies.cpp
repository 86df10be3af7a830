// Small messages, each a document of its own, with a vocabulary that writer and reader share:
// beside the same messages without one. Reader and writer are used again for each.

#include <Tavrin/Tavrin.h>

#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>

#include "groups.h"
#include "paired.h"
#include "streams.h"

namespace groups {

namespace {

constexpr unsigned kRuns = 1000;
constexpr int kKinds = 5;  // Of entries: a name has its local name in a table, too.
constexpr char kURI[] = "urn:vocabulary";

/// What one message says, in about 200 octets of XML text: names and values that are the last ones
/// of a vocabulary of so many.
void writeMessage(Tavrin::XMLWriter_X891& writer, int entries) {
  const auto last = [entries](const char* text, int back) {
    return text + std::to_string(entries / kKinds - back);
  };
  const std::string root = last("n", 1);
  const Tavrin::AttributesImpl none;
  writer.startDocument();
  writer.startPrefixMapping("o", "urn:orders");
  writer.startElement("urn:orders", root, "o:" + root, none);
  for (int i = 0; i < 3; ++i) {
    const std::string name = last("n", 2 + i);
    Tavrin::AttributesImpl attributes;
    const std::string attribute = last("a", 1);
    attributes.addAttribute("", attribute, attribute, "CDATA", last("value-", 1 + i));
    writer.startElement("urn:orders", name, "o:" + name, attributes);
    writer.characters(last("text-", 5 + i));
    writer.endElement("urn:orders", name, "o:" + name);
  }
  writer.endElement("urn:orders", root, "o:" + root);
  writer.endPrefixMapping("o");
  writer.endDocument();
}

/// A vocabulary of so many entries, those of the message among them.
Tavrin::OwnedVocabulary vocabularyOf(int entries) {
  Tavrin::OwnedVocabulary vocabulary;
  for (int i = 0; i < entries / kKinds; ++i) {
    const std::string number = std::to_string(i);
    vocabulary.addElementName("urn:orders", "n" + number, "o:n" + number);
    vocabulary.addAttributeName("", "a" + number);
    vocabulary.addAttributeValue("value-" + number);
    vocabulary.addCharacters("text-" + number);
  }
  return vocabulary;
}

enum class Use { none, external, initial };

std::shared_ptr<Tavrin::XMLWriter_X891> makeWriter(int entries, Use use, std::ostream& stream) {
  auto writer = std::make_shared<Tavrin::XMLWriter_X891>();
  if (use == Use::external) writer->setExternalVocabulary(kURI, vocabularyOf(entries));
  if (use == Use::initial) writer->setInitialVocabulary(vocabularyOf(entries));
  writer->setOutputStream(&stream);
  return writer;
}

std::string messageOf(int entries, Use use) {
  std::ostringstream stream;
  writeMessage(*makeWriter(entries, use, stream), entries);
  return stream.str();
}

std::function<void()> writing(int entries, Use use) {
  const auto stream = std::make_shared<std::ofstream>("/dev/null");
  return [stream, entries, writer = makeWriter(entries, use, *stream)] {
    writer->reset();
    writeMessage(*writer, entries);
  };
}

std::function<void()> reading(int entries, Use use) {
  const auto reader = std::make_shared<Tavrin::XMLReader_X891>();
  const auto handler = std::make_shared<Tavrin::DefaultHandler>();
  reader->setContentHandler(handler.get());
  if (use == Use::external) reader->addExternalVocabulary(kURI, vocabularyOf(entries));
  const auto message = std::make_shared<std::string>(messageOf(entries, use));
  return [message, reader, handler, stream = std::make_shared<streams::MemoryStream>(*message)] {
    stream->rewind();
    reader->parse(*stream);
  };
}

/// @param make makes the job of a number of entries and their use
template <typename Make>
void addMessages(const std::string& name, const Corpus& corpus, int entries, Use use, Make make) {
  const auto none = [] {};
  add(name, corpus.small, none, [=](benchmark::State& state) {
    paired::compare(state, kRuns, make(entries, use), make(entries, Use::none));
    state.counters["octets"] = static_cast<double>(messageOf(entries, use).size());
    state.counters["octets_without"] = static_cast<double>(messageOf(entries, Use::none).size());
  });
}

}  // namespace

void addVocabularies(const Corpus& corpus) {
  const struct {
    const char* name;
    Use use;
  } uses[] = {{"external", Use::external}, {"initial", Use::initial}};
  for (const int entries : {50, 500, 50000}) {
    for (const auto& [name, use] : uses) {
      // Who sends so much with each message does not want it small.
      if (use == Use::initial && entries > 500) continue;
      const std::string variant = std::to_string(entries) + '/' + name;
      addMessages("vocabulary-write/" + variant, corpus, entries, use, writing);
      addMessages("vocabulary-read/" + variant, corpus, entries, use, reading);
    }
  }
}

}  // namespace groups
