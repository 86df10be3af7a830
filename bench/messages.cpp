// A message in which nearly every name is new, again and again: with a new reader and a new writer
// each time, and with those that have worked before.

#include <Tavrin/Tavrin.h>

#include <functional>
#include <memory>
#include <string>

#include "groups.h"
#include "jobs.h"
#include "sources.h"
#include "streams.h"

namespace groups {

namespace {

constexpr unsigned kRuns = 200;

void addJob(const Corpus& corpus, const std::string& group, const std::string& type,
            std::function<std::function<void()>(Document&)> make) {
  const DocumentPointer document = corpus.messages;
  add(group + '/' + document->name() + '/' + type, document, [=] {
    for (const char* reader : {"XML10", "X891"}) {
      jobs::requireAgreement(jobs::findReader(reader), *document);
    }
    return Comparison{make(*document), reading(jobs::readers().front(), document->xml()),
                      document->writtenBy("X891").size(), kRuns};
  });
}

std::function<void()> converting(const char* reader, const char* writer, const std::string& input) {
  return fromStream(
      input, [=](std::istream& stream) { jobs::convert(reader, writer, stream, streams::null()); });
}

std::function<void()> readingAgain(const std::string& input) {
  const std::shared_ptr<Tavrin::XMLReader> reader =
      Tavrin::XMLReaderFactory::createXMLReader("X891");
  const auto counter = std::make_shared<Counter>();
  reader->setContentHandler(counter.get());
  return fromStream(input, [reader, counter](std::istream& stream) { reader->parse(stream); });
}

std::function<void()> writingAgain(Document& document) {
  const std::shared_ptr<Tavrin::XMLWriter> writer =
      Tavrin::XMLWriterFactory::createXMLWriter("X891");
  writer->setOutputStream(&streams::null());
  return [writer, &document] {
    writer->reset();
    document.play(*writer);
  };
}

}  // namespace

void addMessages(const Corpus& corpus) {
  addJob(corpus, "message", "X891", [](Document& document) {
    return reading(jobs::findReader("X891"), document.writtenBy("X891"));
  });
  addJob(corpus, "message", "X891-writer", [](Document& document) {
    return [&document] { document.write("X891", streams::null()); };
  });
  addJob(corpus, "message", "XML10-X891",
         [](Document& document) { return converting("XML10", "X891", document.xml()); });
  addJob(corpus, "message", "X891-XML10", [](Document& document) {
    return converting("X891", "XML10", document.writtenBy("X891"));
  });
  addJob(corpus, "message-again", "X891",
         [](Document& document) { return readingAgain(document.writtenBy("X891")); });
  addJob(corpus, "message-again", "X891-writer", writingAgain);
}

}  // namespace groups
