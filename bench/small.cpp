// A small document again and again, each time with a new reader: what it costs to begin.

#include "groups.h"
#include "jobs.h"
#include "sources.h"

namespace groups {

void addSmall(const Corpus& corpus) {
  constexpr unsigned kRuns = 100;
  const DocumentPointer document = corpus.small;
  for (const char* type : {"Expat", "XML10", "FI", "X891"}) {
    add(std::string("small/document/") + type, document, [=] {
      const jobs::Reader& reader = jobs::findReader(type);
      jobs::requireAgreement(reader, *document);
      const std::string& input = reader.inputOf(*document);
      return Comparison{reading(reader, input), reading(jobs::readers().front(), document->xml()),
                        input.size(), kRuns};
    });
  }
}

}  // namespace groups
