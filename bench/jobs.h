#pragma once

#include <Tavrin/Tavrin.h>

#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "totals.h"

/// What benchmarks have readers and writers do.
namespace jobs {

using namespace Tavrin;

inline Totals read(const char* type, const std::string& document) {
  const auto reader = XMLReaderFactory::createXMLReader(type);
  Counter counter;
  reader->setContentHandler(&counter);
  std::istringstream stream(document);
  reader->parse(stream);
  return counter.totals;
}

inline std::string convert(const char* readerType, const char* writerType,
                           const std::string& document) {
  const auto reader = XMLReaderFactory::createXMLReader(readerType);
  const auto writer = XMLWriterFactory::createXMLWriter(writerType);
  std::ostringstream out;
  writer->setOutputStream(&out);
  reader->setContentHandler(writer.get());
  std::istringstream stream(document);
  reader->parse(stream);
  return out.str();
}

/// Keeps events, to play them to a writer without reading again.
class Recorder : public ContentHandler {
 public:
  void startDocument() override {
    events_.push_back([](ContentHandler& handler) { handler.startDocument(); });
  }
  void endDocument() override {
    events_.push_back([](ContentHandler& handler) { handler.endDocument(); });
  }
  void startPrefixMapping(const std::string& prefix, const std::string& uri) override {
    events_.push_back([=](ContentHandler& handler) { handler.startPrefixMapping(prefix, uri); });
  }
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Attributes& attributes) override {
    AttributesImpl copy;
    copy.setAttributes(attributes);
    events_.push_back(
        [=](ContentHandler& handler) { handler.startElement(uri, localName, qName, copy); });
  }
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override {
    events_.push_back([=](ContentHandler& handler) { handler.endElement(uri, localName, qName); });
  }
  void characters(const std::string& text) override {
    events_.push_back([=](ContentHandler& handler) { handler.characters(text); });
  }

  void play(ContentHandler& handler) const {
    for (const auto& event : events_) event(handler);
  }

 private:
  std::vector<std::function<void(ContentHandler&)>> events_;
};

inline std::size_t write(const char* type, const Recorder& events) {
  const auto writer = XMLWriterFactory::createXMLWriter(type);
  std::ostringstream out;
  writer->setOutputStream(&out);
  events.play(*writer);
  return out.str().size();
}

}  // namespace jobs
