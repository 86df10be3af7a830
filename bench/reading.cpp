// Readers beside expat fed from a stream, each on its own form of the same document.

#include "groups.h"
#include "jobs.h"
#include "sources.h"

namespace groups {

void addReading(const Corpus& corpus) {
  const jobs::Reader& baseline = jobs::readers().front();
  for (const DocumentPointer& document : corpus.documents) {
    for (const jobs::Reader& reader : jobs::readers()) {
      if (reader.name == baseline.name) continue;
      add("read/" + document->name() + '/' + reader.name, document, [=, &reader, &baseline] {
        jobs::requireAgreement(reader, *document);
        const std::string& input = reader.inputOf(*document);
        return Comparison{reading(reader, input), reading(baseline, document->xml()), input.size()};
      });
    }
  }
}

}  // namespace groups
