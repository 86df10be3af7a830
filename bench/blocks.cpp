// Readers that are given blocks: beside themselves on a stream, and beside expat in the same
// blocks.

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "groups.h"
#include "jobs.h"
#include "sources.h"

namespace groups {

namespace {

constexpr std::size_t kSizes[] = {64, 1500, 65536};

/// Reads the input in blocks; it must outlive the job.
std::function<void()> inBlocks(const jobs::PushReader& reader, const std::string& input,
                               std::size_t size) {
  return [read = reader.read, &input, size] { benchmark::DoNotOptimize(read(input, size)); };
}

}  // namespace

void addBlocks(const Corpus& corpus) {
  const jobs::PushReader& baseline = jobs::pushReaders().front();
  for (const DocumentPointer& document : corpus.documents) {
    for (const jobs::PushReader& reader : jobs::pushReaders()) {
      for (const std::size_t size : kSizes) {
        const std::string name = document->name() + '/' + reader.name + '-' + std::to_string(size);
        const auto prepare = [=, &reader](auto makeBaseline) {
          return [=, &reader] {
            const std::string& input = reader.inputOf(*document);
            jobs::requireAgreement(reader, input, size, *document);
            return Comparison{inBlocks(reader, input, size), makeBaseline(), input.size()};
          };
        };
        if (!reader.stream.empty()) {
          add("blocks/" + name, document, prepare([=, &reader] {
                const jobs::Reader& stream = jobs::findReader(reader.stream);
                return reading(stream, stream.inputOf(*document));
              }));
        }
        if (reader.name == baseline.name) continue;
        add("push/" + name, document,
            prepare([=, &baseline] { return inBlocks(baseline, document->xml(), size); }));
      }
    }
  }
}

}  // namespace groups
