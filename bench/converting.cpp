// A reader that is connected to a writer, beside reading the document as text; and with a filter
// between that types text, beside the same without it.

#include <Tavrin/Tavrin.h>

#include <sstream>
#include <stdexcept>

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

// --- With the numbers of text as typed content ---

void convertTyped(const Tavrin::TypingRules& rules, std::istream& stream, std::ostream& out) {
  Tavrin::TypedContentFilter filter(rules);
  Tavrin::XMLReader_XML10 reader;
  filter.setParent(&reader);
  Tavrin::XMLWriter_X891 writer;
  writer.setOutputStream(&out);
  connect(filter, writer);
  filter.parse(stream);
}

/// @param path empty for no rule
void addTyped(const DocumentPointer& document, const char* name, const std::string& path = {},
              const std::string& type = {}) {
  add("to-typed/" + document->name() + '/' + name, document, [=] {
    Tavrin::TypingRules rules;
    if (!path.empty()) rules.add(path, type);
    const std::string& input = document->xml();
    streams::MemoryStream stream(input);
    std::ostringstream out;
    convertTyped(rules, stream, out);
    const std::string output = std::move(out).str();
    jobs::requireAgreement(jobs::findReader("X891"), output, *document);
    const bool hasNumbers = !path.empty() && !document->numbers().empty();
    if (hasNumbers && output != document->writtenBy("X891")) {
      throw std::runtime_error("the numbers are not typed");
    }
    return Comparison{
        fromStream(input,
                   [=](std::istream& source) { convertTyped(rules, source, streams::null()); }),
        fromStream(
            input,
            [](std::istream& source) { jobs::convert("XML10", "X891", source, streams::null()); }),
        output.size()};
  });
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
    addTyped(document, "no-rule");
    addTyped(document, "auto", "*", "auto");
  }
  addTyped(corpus.mesh, "float", "mesh", "float");
}

}  // namespace groups
