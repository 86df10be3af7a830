// The types that follow the standards against those of the same format that keep to their own
// files: "XML10" beside "Expat" and "XML", "X891" beside "FI". Each reads what the writer of its
// family wrote.
//
//   bench_siblings [--benchmark_...]

#include <Tavrin/Tavrin.h>
#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <sstream>
#include <string>
#include <utility>

#include "documents.h"
#include "jobs.h"
#include "paired.h"

namespace {

struct Family {
  const char* reader;
  const char* writer;
};

/// Reads the same document with both readers, each from the output of its own writer.
void compareReading(benchmark::State& state, Family job, Family baseline, const std::string& xml) {
  const std::string ofJob = jobs::convert("XML10", job.writer, xml);
  const std::string ofBaseline = jobs::convert("XML10", baseline.writer, xml);
  if (jobs::read(job.reader, ofJob) != jobs::read(baseline.reader, ofBaseline)) {
    state.SkipWithError("the two readers do not agree");
    return;
  }
  paired::compare(
      state, [&] { return jobs::read(job.reader, ofJob); },
      [&] { return jobs::read(baseline.reader, ofBaseline); });
}

/// Writes with tables of the same strings: those that the writer "FI" puts into its own.
std::size_t writeAlike(const char* type, const jobs::Recorder& events) {
  const auto writer = Tavrin::XMLWriterFactory::createXMLWriter(type);
  std::uint64_t longest = 6;
  if (dynamic_cast<Tavrin::XMLWriter_X891*>(writer.get())) {
    writer->setProperty(Tavrin::properties::indexedAttributeValueLength, &longest);
    writer->setProperty(Tavrin::properties::indexedChunkLength, &longest);
  }
  std::ostringstream out;
  writer->setOutputStream(&out);
  events.play(*writer);
  return out.str().size();
}

void compareWriting(benchmark::State& state, Family job, Family baseline, const std::string& xml) {
  jobs::Recorder events;
  const auto reader = Tavrin::XMLReaderFactory::createXMLReader("XML10");
  reader->setContentHandler(&events);
  reader->parse(xml.data(), xml.size(), true);
  paired::compare(
      state, [&] { return writeAlike(job.writer, events); },
      [&] { return writeAlike(baseline.writer, events); });
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  constexpr Family kXML10 = {"XML10", "XML10"};
  constexpr Family kExpat = {"Expat", "XML"};
  constexpr Family kX891 = {"X891", "X891"};
  constexpr Family kFI = {"FI", "FI"};
  const std::pair<const char*, std::string> inputs[] = {
      {"records", documents::records(20000)},
      {"text", documents::text(4000)},
      {"attributes", documents::attributes(15000)},
  };
  for (const auto& [name, xml] : inputs) {
    const auto add = [document = std::string(name)](const char* job, auto compare, Family family,
                                                    Family baseline, const std::string& text) {
      benchmark::RegisterBenchmark((job + document).c_str(), compare, family, baseline, text)
          ->Unit(benchmark::kMillisecond);
    };
    add("read/XML10/", compareReading, kXML10, kExpat, xml);
    add("write/XML10/", compareWriting, kXML10, kExpat, xml);
    add("read/X891/", compareReading, kX891, kFI, xml);
    add("write/X891/", compareWriting, kX891, kFI, xml);
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
