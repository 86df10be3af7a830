#include "document.h"

#include <sstream>
#include <utility>

#include "documents.h"
#include "peers.h"
#include "streams.h"

Document::Document(std::string name, std::function<std::string()> makeXml)
    : name_(std::move(name)), makeXml_(std::move(makeXml)) {}

Document::Document(std::string name, std::function<std::vector<float>()> makeNumbers)
    : name_(std::move(name)), makeNumbers_(std::move(makeNumbers)) {}

const std::string& Document::xml() {
  if (!xml_) xml_ = makeNumbers_ ? documents::mesh(numbers()) : makeXml_();
  return *xml_;
}

const std::vector<float>& Document::numbers() {
  if (!numbers_) numbers_ = makeNumbers_ ? makeNumbers_() : std::vector<float>();
  return *numbers_;
}

const Totals& Document::totals() {
  if (!totals_) {
    streams::MemoryStream stream(xml());
    totals_ = peers::readExpatStream(stream);
  }
  return *totals_;
}

const Recorder& Document::events() {
  if (!events_) {
    auto events = std::make_unique<Recorder>();
    const auto reader = Tavrin::XMLReaderFactory::createXMLReader("XML10");
    reader->setContentHandler(events.get());
    streams::MemoryStream stream(xml());
    reader->parse(stream);
    events_ = std::move(events);
  }
  return *events_;
}

double Document::eventCount() { return static_cast<double>(events().count()); }

void Document::play(Tavrin::XMLWriter& writer) {
  auto* const typed = dynamic_cast<Tavrin::PrimitiveTypeContentHandler*>(&writer);
  if (typed && !numbers().empty()) {
    playNumbers(writer, *typed);
  } else {
    events().play(writer);
  }
}

void Document::playNumbers(Tavrin::XMLWriter& writer, Tavrin::PrimitiveTypeContentHandler& typed) {
  writer.startDocument();
  writer.startElement("", "mesh", "mesh", Tavrin::AttributesImpl());
  typed.floats(numbers());
  writer.endElement("", "mesh", "mesh");
  writer.endDocument();
}

void Document::write(const std::string& type, std::ostream& out) {
  const auto writer = Tavrin::XMLWriterFactory::createXMLWriter(type);
  writer->setOutputStream(&out);
  play(*writer);
}

const std::string& Document::writtenBy(const std::string& type) {
  const auto found = written_.find(type);
  if (found != written_.end()) return found->second;
  std::ostringstream out;
  write(type, out);
  return written_.emplace(type, std::move(out).str()).first->second;
}
