// How much memory reading a document adds, each time in a process of its own that reads from a
// file.

#include <benchmark/benchmark.h>

#include <optional>

#include "documents.h"
#include "groups.h"
#include "jobs.h"
#include "paired.h"
#include "peak.h"

namespace groups {

namespace {

// There is nothing to time. The measuring library asks for more and more iterations until enough
// time has passed, and other ways to stop it would show in the name of the benchmark.
void passTime(benchmark::State& state) {
  constexpr double kNanoseconds = 2e7;
  for (auto _ : state) {
    const double end = paired::cpuNanoseconds() + kNanoseconds;
    while (paired::cpuNanoseconds() < end) {
    }
  }
}

void addMeasurement(const std::string& group, const std::string& readerName,
                    const DocumentPointer& document) {
  const auto octets = std::make_shared<std::optional<std::size_t>>();
  add(
      group + '/' + document->name() + '/' + readerName, document,
      [=] { jobs::requireAgreement(jobs::findReader(readerName), *document); },
      [=](benchmark::State& state) {
        if (!*octets) {
          const peak::TemporaryFile file(jobs::findReader(readerName).inputOf(*document));
          *octets = peak::measure(readerName, file.path());
        }
        passTime(state);
        state.counters["added_peak_octets"] = static_cast<double>(**octets);
      });
}

}  // namespace

void addMemory(const Corpus& corpus) {
  for (const DocumentPointer& document : corpus.documents) {
    for (const jobs::Reader& reader : jobs::readers()) {
      if (!reader.takesNamesApart) continue;  // The same parser as the baseline.
      addMeasurement("memory", reader.name, document);
    }
  }
  for (const unsigned megabytes : {1U, 10U, 100U}) {
    const unsigned count = corpus.scaled(megabytes * documents::kRecordsPerMegabyte);
    const auto document = std::make_shared<Document>(
        std::to_string(megabytes),
        std::function<std::string()>([=] { return documents::records(count); }));
    for (const char* reader : {"expat-istream", "Expat", "XML10", "FI", "X891"}) {
      addMeasurement("memory-size", reader, document);
    }
  }
}

}  // namespace groups
