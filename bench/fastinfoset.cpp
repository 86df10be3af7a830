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
#include "jobs.h"
#include "paired.h"
#include "totals.h"

namespace {

using namespace Tavrin;
using namespace jobs;

constexpr unsigned kFloats = 1000000;

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
