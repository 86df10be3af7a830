// Whether an event costs more in a larger document, a deeper one, or a longer list of attributes.

#include <benchmark/benchmark.h>

#include "documents.h"
#include "groups.h"
#include "jobs.h"
#include "paired.h"
#include "sources.h"
#include "streams.h"

namespace groups {

namespace {

// Elements, or attributes, in the documents of one curve. They do not grow or shrink with the other
// documents: all points of a curve need the same number. They are so many that names which are new
// weigh little: the longest tags have ten thousand.
constexpr unsigned kTotal = 1000000;

void addReader(const std::string& name, const std::string& type, const DocumentPointer& document) {
  add(
      name + type, document, [=] { jobs::requireAgreement(jobs::findReader(type), *document); },
      [=](benchmark::State& state) {
        const jobs::Reader& reader = jobs::findReader(type);
        paired::measure(state, reading(reader, reader.inputOf(*document)));
        state.counters["events"] = document->eventCount();
      });
}

void addWriter(const std::string& name, const std::string& type, const DocumentPointer& document) {
  add(
      name + type + "-writer", document, [=] { document->events(); },
      [=](benchmark::State& state) {
        paired::measure(state, [&] { document->write(type, streams::null()); });
        state.counters["events"] = document->eventCount();
      });
}

void addPoint(const std::string& curve, unsigned n, std::function<std::string()> make) {
  const std::string name = curve + '/' + std::to_string(n) + '/';
  const auto document = std::make_shared<Document>(name, std::move(make));
  for (const char* type : {"Expat", "XML10", "FI", "X891"}) addReader(name, type, document);
  for (const char* type : {"XML", "XML10", "FI", "X891"}) addWriter(name, type, document);
}

}  // namespace

void addGrowth(const Corpus& corpus) {
  for (const unsigned megabytes : {1U, 10U, 100U}) {
    const unsigned count = corpus.scaled(megabytes * documents::kRecordsPerMegabyte);
    addPoint("growth-size", megabytes, [=] { return documents::records(count); });
  }
  for (const unsigned depth : {10U, 1000U, 100000U}) {
    addPoint("growth-depth", depth, [=] { return documents::nested(kTotal, depth); });
  }
  for (const unsigned length : {1U, 10U, 100U, 1000U, 10000U}) {
    addPoint("growth-attributes", length, [=] { return documents::crowded(kTotal, length); });
  }
}

}  // namespace groups
