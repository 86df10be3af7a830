// The types that follow the standards beside those of the same format that keep to their own files.
// Each reads what the writer of its family wrote, with tables of the same strings.

#include <Tavrin/Tavrin.h>

#include <cstdint>
#include <memory>
#include <sstream>

#include "groups.h"
#include "jobs.h"
#include "sources.h"
#include "streams.h"

namespace groups {

namespace {

struct Family {
  const char *reader, *writer;
};

constexpr Family kPairs[][2] = {{{"XML10", "XML10"}, {"Expat", "XML"}},
                                {{"X891", "X891"}, {"FI", "FI"}}};

/// Writes with tables of the same strings: those that the writer "FI" puts into its own.
void writeAlike(const char* type, Document& document, std::ostream& out) {
  const auto writer = Tavrin::XMLWriterFactory::createXMLWriter(type);
  std::uint64_t longest = 6;
  if (dynamic_cast<Tavrin::XMLWriter_X891*>(writer.get())) {
    writer->setProperty(Tavrin::properties::indexedAttributeValueLength, &longest);
    writer->setProperty(Tavrin::properties::indexedChunkLength, &longest);
  }
  writer->setOutputStream(&out);
  document.play(*writer);
}

std::string writtenAlike(const Family& family, Document& document) {
  std::ostringstream out;
  writeAlike(family.writer, document, out);
  const std::string output = std::move(out).str();
  jobs::requireAgreement(jobs::findReader(family.reader), output, document);
  return output;
}

std::function<void()> readingOf(const char* reader, std::shared_ptr<const std::string> input) {
  return [input, read = reading(jobs::findReader(reader), *input)] { read(); };
}

Comparison compareReading(const Family& job, const Family& baseline, Document& document) {
  const auto own = std::make_shared<const std::string>(writtenAlike(job, document));
  const auto other = std::make_shared<const std::string>(writtenAlike(baseline, document));
  return {readingOf(job.reader, own), readingOf(baseline.reader, other), own->size()};
}

Comparison compareWriting(const Family& job, const Family& baseline,
                          const DocumentPointer& document) {
  writtenAlike(baseline, *document);
  const auto writing = [&](const char* type) {
    return [type, document] { writeAlike(type, *document, streams::null()); };
  };
  return {writing(job.writer), writing(baseline.writer), writtenAlike(job, *document).size()};
}

}  // namespace

void addSiblings(const Corpus& corpus) {
  for (const DocumentPointer& document : corpus.documents) {
    for (const auto& [job, baseline] : kPairs) {
      const std::string end = document->name() + '/' + job.reader;
      add("sibling-read/" + end, document,
          [=, &job, &baseline] { return compareReading(job, baseline, *document); });
      add("sibling-write/" + end, document,
          [=, &job, &baseline] { return compareWriting(job, baseline, document); });
    }
  }
}

}  // namespace groups
