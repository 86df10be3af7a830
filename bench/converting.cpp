// A reader that is connected to a writer, beside reading the document as text.

#include <sstream>

#include "groups.h"
#include "jobs.h"
#include "sources.h"
#include "streams.h"

namespace groups {

namespace {

Comparison compare(const std::string& readerType, const std::string& writerType,
                   const std::string& verifier, const DocumentPointer& document) {
  const std::string& input = jobs::findReader(readerType).inputOf(*document);
  streams::MemoryStream stream(input);
  std::ostringstream out;
  jobs::convert(readerType, writerType, stream, out);
  const std::string output = std::move(out).str();
  jobs::requireAgreement(jobs::findReader(verifier), output, *document);
  return {fromStream(input,
                     [=](std::istream& source) {
                       jobs::convert(readerType, writerType, source, streams::null());
                     }),
          reading(jobs::readers().front(), document->xml()), output.size()};
}

}  // namespace

void addConversions(const Corpus& corpus) {
  struct Conversion {
    const char *group, *reader, *writer, *verifier;
  };
  constexpr Conversion kConversions[] = {{"to-binary/", "Expat", "FI", "FI"},
                                         {"to-binary/", "XML10", "X891", "X891"},
                                         {"to-text/", "FI", "XML", "expat-istream"},
                                         {"to-text/", "X891", "XML10", "expat-istream"}};
  for (const DocumentPointer& document : corpus.documents) {
    for (const Conversion& conversion : kConversions) {
      add(conversion.group + document->name() + '/' + conversion.reader + '-' + conversion.writer,
          document, [=] {
            return compare(conversion.reader, conversion.writer, conversion.verifier, document);
          });
    }
  }
}

}  // namespace groups
