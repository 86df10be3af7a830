// Writers of text beside a loop written by hand, and writers of Fast Infoset beside reading the
// document as text. The events are recorded before.

#include "groups.h"
#include "jobs.h"
#include "sources.h"
#include "streams.h"

namespace groups {

namespace {

std::function<void()> writing(const jobs::Writer& writer, const DocumentPointer& document) {
  return [write = writer.write, document] { write(*document, streams::null()); };
}

Comparison compareText(const jobs::Writer& writer, const jobs::Writer& baseline,
                       const DocumentPointer& document) {
  const jobs::Reader& reader = jobs::readers().front();
  jobs::requireAgreement(reader, jobs::written(baseline, *document), *document);
  const std::string output = jobs::written(writer, *document);
  jobs::requireAgreement(reader, output, *document);
  return {writing(writer, document), writing(baseline, document), output.size()};
}

Comparison compareBinary(const std::string& type, const DocumentPointer& document) {
  jobs::requireAgreement(jobs::findReader(type), *document);
  return {[type, document] { document->write(type, streams::null()); },
          reading(jobs::readers().front(), document->xml()), document->writtenBy(type).size()};
}

}  // namespace

void addWriting(const Corpus& corpus) {
  const jobs::Writer& baseline = jobs::textWriters().front();
  for (const DocumentPointer& document : corpus.documents) {
    for (const jobs::Writer& writer : jobs::textWriters()) {
      if (writer.name == baseline.name) continue;
      add("write/" + document->name() + '/' + writer.name, document,
          [=, &writer, &baseline] { return compareText(writer, baseline, document); });
    }
    for (const std::string type : {"FI", "X891"}) {
      add("write-binary/" + document->name() + '/' + type, document,
          [=] { return compareBinary(type, document); });
    }
  }
}

}  // namespace groups
