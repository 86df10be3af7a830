// The "Expat" reader against raw expat. Both process namespaces with triplets and hand every name,
// value and text on as strings, so the ratio is the price of the event model.
//
//   bench_expat_reader [FILE...] [--benchmark_...]

#include <Tavrin/Tavrin.h>
#include <benchmark/benchmark.h>
#include <expat.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "documents.h"
#include "paired.h"
#include "totals.h"

namespace {

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

Totals readTavrin(const std::string& document) {
  const std::unique_ptr<Tavrin::XMLReader> reader =
      Tavrin::XMLReaderFactory::createXMLReader("Expat");
  Counter counter;
  reader->setContentHandler(&counter);
  reader->parse(document.data(), document.size(), true);
  return counter.totals;
}

void compare(benchmark::State& state, const std::string& document) {
  if (readRaw(document) != readTavrin(document)) {
    state.SkipWithError("the two readers do not agree");
    return;
  }
  paired::compare(
      state, [&] { return readTavrin(document); }, [&] { return readRaw(document); });
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  std::vector<std::pair<std::string, std::string>> inputs = {
      {"records", documents::records(20000)}};
  for (int i = 1; i < argc; ++i) inputs.emplace_back(argv[i], documents::file(argv[i]));
  for (const auto& [name, document] : inputs) {
    benchmark::RegisterBenchmark(("expat_reader/" + name).c_str(), compare, document)
        ->Unit(benchmark::kMillisecond);
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
