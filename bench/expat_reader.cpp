// The "Expat" reader against raw expat. Both process namespaces with triplets and hand every name,
// value and text on as strings, so the ratio is the price of the event model.
//
//   bench_expat_reader [FILE...] [--benchmark_...]

#include <Tavrin/Tavrin.h>
#include <benchmark/benchmark.h>
#include <expat.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "documents.h"

namespace {

/// What a reader heard. Two readers of one document must agree, or they are not comparable.
struct Totals {
  std::size_t elements = 0;
  std::size_t attributes = 0;
  std::size_t nameOctets = 0;
  std::size_t valueOctets = 0;
  std::size_t textOctets = 0;

  bool operator==(const Totals&) const = default;
};

// --- Raw expat ---

struct RawAttribute {
  std::string uri, localName, qName, value;
};

struct RawName {
  std::string uri, localName, qName;
};

RawName splitRaw(const char* text) {
  const std::string_view name = text;
  const std::size_t first = name.find('\n');
  if (first == std::string_view::npos) return {"", std::string(name), std::string(name)};
  const std::string_view rest = name.substr(first + 1);
  const std::size_t second = rest.find('\n');
  if (second == std::string_view::npos) {
    return {std::string(name.substr(0, first)), std::string(rest), std::string(rest)};
  }
  RawName result{std::string(name.substr(0, first)), std::string(rest.substr(0, second)), ""};
  result.qName.append(rest.substr(second + 1)).append(1, ':').append(result.localName);
  return result;
}

void XMLCALL rawStart(void* data, const char* name, const char** attributes) {
  Totals& totals = *static_cast<Totals*>(data);
  std::vector<RawAttribute> list;
  for (; *attributes; attributes += 2) {
    RawName split = splitRaw(attributes[0]);
    list.push_back(
        {std::move(split.uri), std::move(split.localName), std::move(split.qName), attributes[1]});
  }
  const RawName split = splitRaw(name);
  ++totals.elements;
  totals.nameOctets += split.uri.size() + split.localName.size() + split.qName.size();
  totals.attributes += list.size();
  for (const RawAttribute& attribute : list) totals.valueOctets += attribute.value.size();
}

void XMLCALL rawEnd(void* data, const char* name) {
  const RawName split = splitRaw(name);
  static_cast<Totals*>(data)->nameOctets +=
      split.uri.size() + split.localName.size() + split.qName.size();
}

void XMLCALL rawText(void* data, const char* text, int length) {
  const std::string copy(text, static_cast<std::size_t>(length));
  static_cast<Totals*>(data)->textOctets += copy.size();
}

Totals readRaw(const std::string& document) {
  Totals totals;
  XML_Parser parser = XML_ParserCreateNS(nullptr, '\n');
  XML_SetUserData(parser, &totals);
  XML_SetReturnNSTriplet(parser, 1);
  XML_SetElementHandler(parser, rawStart, rawEnd);
  XML_SetCharacterDataHandler(parser, rawText);
  const XML_Status status =
      XML_Parse(parser, document.data(), static_cast<int>(document.size()), XML_TRUE);
  XML_ParserFree(parser);
  if (status != XML_STATUS_OK) throw std::runtime_error("raw expat refused the document");
  return totals;
}

// --- The reader ---

class Counter : public Tavrin::ContentHandler {
 public:
  Totals totals;

  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Tavrin::Attributes& attributes) override {
    ++totals.elements;
    totals.nameOctets += uri.size() + localName.size() + qName.size();
    const int length = attributes.getLength();
    totals.attributes += static_cast<std::size_t>(length);
    for (int i = 0; i < length; ++i) totals.valueOctets += attributes.getValue(i).size();
  }
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override {
    totals.nameOctets += uri.size() + localName.size() + qName.size();
  }
  void characters(const std::string& text) override { totals.textOctets += text.size(); }
};

Totals readTavrin(const std::string& document) {
  const std::unique_ptr<Tavrin::XMLReader> reader =
      Tavrin::XMLReaderFactory::createXMLReader("Expat");
  Counter counter;
  reader->setContentHandler(&counter);
  reader->parse(document.data(), document.size(), true);
  return counter.totals;
}

// --- Measuring ---

double cpuSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/// Both readers in turn, so that what the machine does besides meets both. The counter "ratio" is
/// the median of reader over raw expat, each pair of readings giving one ratio.
void compare(benchmark::State& state, const std::string& document) {
  if (readRaw(document) != readTavrin(document)) {
    state.SkipWithError("the two readers do not agree");
    return;
  }
  std::vector<double> ratios, raw, tavrin;
  for (auto _ : state) {
    const double begin = cpuSeconds();
    benchmark::DoNotOptimize(readRaw(document));
    const double between = cpuSeconds();
    benchmark::DoNotOptimize(readTavrin(document));
    const double end = cpuSeconds();
    raw.push_back(between - begin);
    tavrin.push_back(end - between);
    ratios.push_back((end - between) / (between - begin));
  }
  state.counters["ratio"] = median(ratios);
  state.counters["expat_ms"] = 1e3 * median(raw);
  state.counters["reader_ms"] = 1e3 * median(tavrin);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  std::vector<std::pair<std::string, std::string>> inputs = {
      {"records", documents::records(20000)}};
  for (int i = 1; i < argc; ++i) inputs.emplace_back(argv[i], documents::file(argv[i]));
  for (const auto& [name, document] : inputs) {
    benchmark::RegisterBenchmark(("expat_reader/" + name).c_str(), compare, document)
        ->Unit(benchmark::kMillisecond)
        ->MinTime(2.0);
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
