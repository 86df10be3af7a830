// Small messages, each a document of its own, with a vocabulary that writer and reader share: beside
// the same messages without one. Reader and writer are used again for each.

#include <Tavrin/Tavrin.h>

#include <functional>
#include <memory>
#include <string>

#include "groups.h"
#include "streams.h"

namespace groups {

namespace {

constexpr unsigned kRuns = 1000;
constexpr char kURI[] = "urn:vocabulary";

/// What one message says: about 200 octets of XML text, with names and values of its own kind.
void writeMessage(Tavrin::XMLWriter_X891& writer) {
  Tavrin::AttributesImpl attributes;
  writer.startDocument();
  writer.startPrefixMapping("o", "urn:orders");
  writer.startElement("urn:orders", "n1", "o:n1", attributes);
  for (int i = 0; i < 3; ++i) {
    const std::string name = "n" + std::to_string(7 + i);
    attributes.addAttribute("", "a3", "a3", "CDATA", "value-" + std::to_string(i));
    writer.startElement("urn:orders", name, "o:" + name, attributes);
    writer.characters("text-" + std::to_string(5 * i));
    writer.endElement("urn:orders", name, "o:" + name);
    attributes.clear();
  }
  writer.endElement("urn:orders", "n1", "o:n1");
  writer.endPrefixMapping("o");
  writer.endDocument();
}

/// A vocabulary of so many entries, those of the message among them.
Tavrin::OwnedVocabulary vocabularyOf(int entries) {
  Tavrin::OwnedVocabulary vocabulary;
  for (int i = 0; i < entries / 5; ++i) {  // A name has its local name in a table, too.
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
  writeMessage(*makeWriter(entries, use, stream));
  return stream.str();
}

std::function<void()> writing(int entries, Use use) {
  const auto stream = std::make_shared<std::ofstream>("/dev/null");
  return [stream, writer = makeWriter(entries, use, *stream)] {
    writer->reset();
    writeMessage(*writer);
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
      const std::size_t octets = messageOf(entries, use).size();
      const unsigned runs = kRuns;
      add("vocabulary-write/" + variant, corpus.small, [=] {
        return Comparison{writing(entries, use), writing(0, Use::none), octets, runs};
      });
      add("vocabulary-read/" + variant, corpus.small, [=] {
        return Comparison{reading(entries, use), reading(0, Use::none), octets, runs};
      });
    }
  }
}

}  // namespace groups
