// Fast Infoset against XML text: the "FI" reader and writer beside the "Expat" reader and the "XML"
// writer on the same events, and a million floats as typed content beside the same numbers as text.
//
//   bench_fastinfoset [--benchmark_...]

#include <Tavrin/Tavrin.h>
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "documents.h"
#include "paired.h"
#include "totals.h"

namespace {

using namespace Tavrin;

constexpr unsigned kFloats = 1000000;

Totals read(const char* type, const std::string& document) {
  const auto reader = XMLReaderFactory::createXMLReader(type);
  Counter counter;
  reader->setContentHandler(&counter);
  std::istringstream stream(document);
  reader->parse(stream);
  return counter.totals;
}

std::string convert(const char* readerType, const char* writerType, const std::string& document) {
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

std::size_t write(const char* type, const Recorder& events) {
  const auto writer = XMLWriterFactory::createXMLWriter(type);
  std::ostringstream out;
  writer->setOutputStream(&out);
  events.play(*writer);
  return out.str().size();
}

void compareReading(benchmark::State& state, const std::string& xml) {
  const std::string fastInfoset = convert("Expat", "FI", xml);
  if (read("Expat", xml) != read("FI", fastInfoset)) {
    state.SkipWithError("the two readers do not agree");
    return;
  }
  paired::compare(
      state, [&] { return read("FI", fastInfoset); }, [&] { return read("Expat", xml); });
  state.counters["octets"] = static_cast<double>(fastInfoset.size());
  state.counters["xml_octets"] = static_cast<double>(xml.size());
}

void compareWriting(benchmark::State& state, const std::string& xml) {
  Recorder events;
  const auto reader = XMLReaderFactory::createXMLReader();
  reader->setContentHandler(&events);
  reader->parse(xml.data(), xml.size(), true);
  paired::compare(
      state, [&] { return write("FI", events); }, [&] { return write("XML", events); });
}

// --- A million floats ---

std::string writeFloats(const std::vector<float>& numbers) {
  std::ostringstream out;
  XMLWriter_FI writer;
  writer.setOutputStream(&out);
  writer.startDocument();
  writer.startElement("", "mesh", "mesh", AttributesImpl());
  writer.floats(numbers);
  writer.endElement("", "mesh", "mesh");
  writer.endDocument();
  return out.str();
}

class TypedFloats : public PrimitiveTypeContentHandler {
 public:
  std::vector<float> numbers;
  void floats(const std::vector<float>& data) override { numbers = data; }
};

std::vector<float> readTyped(const std::string& document) {
  XMLReader_FI reader;
  TypedFloats handler;
  reader.setProperty(properties::primitiveTypeContentHandler,
                     static_cast<PrimitiveTypeContentHandler*>(&handler));
  std::istringstream stream(document);
  reader.parse(stream);
  return std::move(handler.numbers);
}

class TextFloats : public ContentHandler {
 public:
  std::string text;
  void characters(const std::string& chunk) override { text += chunk; }
};

std::vector<float> readText(const std::string& document) {
  const auto reader = XMLReaderFactory::createXMLReader("Expat");
  TextFloats handler;
  reader->setContentHandler(&handler);
  std::istringstream stream(document);
  reader->parse(stream);
  std::vector<float> numbers;
  numbers.reserve(kFloats);
  const char* next = handler.text.c_str();
  for (char* end = nullptr;; next = end) {
    const float number = std::strtof(next, &end);
    if (end == next) return numbers;
    numbers.push_back(number);
  }
}

void compareFloats(benchmark::State& state) {
  const std::vector<float> numbers = documents::floats(kFloats);
  const std::string typed = writeFloats(numbers);
  const std::string text = documents::floatsAsText(numbers);
  if (readTyped(typed) != numbers || readText(text) != numbers) {
    state.SkipWithError("the numbers do not come back");
    return;
  }
  paired::compare(
      state, [&] { return readTyped(typed); }, [&] { return readText(text); });
  state.counters["octets"] = static_cast<double>(typed.size());
  state.counters["xml_octets"] = static_cast<double>(text.size());
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  const std::pair<const char*, std::string> inputs[] = {
      {"records", documents::records(20000)},
      {"text", documents::text(4000)},
      {"attributes", documents::attributes(15000)},
  };
  for (const auto& [name, xml] : inputs) {
    benchmark::RegisterBenchmark((std::string("read/") + name).c_str(), compareReading, xml)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark((std::string("write/") + name).c_str(), compareWriting, xml)
        ->Unit(benchmark::kMillisecond);
  }
  benchmark::RegisterBenchmark("read/floats", compareFloats)->Unit(benchmark::kMillisecond);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
