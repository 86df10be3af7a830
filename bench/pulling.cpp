// The pull reader beside the handlers of the reader that it pulls from, on the same stream.

#include <memory>
#include <string_view>

#include "groups.h"
#include "jobs.h"
#include "sources.h"
#include "streams.h"

namespace groups {

namespace {

/// What Counter adds up.
Totals pull(std::istream& stream) {
  Tavrin::PullReader reader(stream);
  Totals totals;
  const auto countName = [&] {
    totals.elementNameOctets +=
        reader.uri().size() + reader.localName().size() + reader.qName().size();
  };
  while (reader.next()) {
    switch (reader.event()) {
      case Tavrin::PullEvent::startElement: {
        ++totals.elements;
        countName();
        const Tavrin::Attributes& attributes = reader.attributes();
        const int length = attributes.getLength();
        totals.attributes += static_cast<std::size_t>(length);
        for (int i = 0; i < length; ++i) {
          totals.attributeNameOctets += attributes.getURI(i).size() +
                                        attributes.getLocalName(i).size() +
                                        attributes.getQName(i).size();
          totals.valueOctets += attributes.getValue(i).size();
        }
        break;
      }
      case Tavrin::PullEvent::endElement:
        countName();
        break;
      case Tavrin::PullEvent::characters:
        totals.textOctets += reader.text().size();
        break;
      default:
        break;
    }
  }
  return totals;
}

}  // namespace

void addPulling(const Corpus& corpus) {
  for (const DocumentPointer& document : corpus.documents) {
    for (const char* const type : {"XML10", "X891"}) {
      add("pull/" + document->name() + '/' + type, document, [=] {
        const jobs::Reader& handlers = jobs::findReader(type);
        const jobs::Reader pulled = {type, handlers.writer, pull};
        const std::string& input = handlers.inputOf(*document);
        jobs::requireAgreement(pulled, input, *document);
        return Comparison{reading(pulled, input), reading(handlers, input), input.size()};
      });
    }
  }
}

}  // namespace groups
