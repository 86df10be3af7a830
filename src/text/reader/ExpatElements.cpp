#include <Tavrin/Attributes.h>

#include "ExpatDriver.h"
#include "ExpatNames.h"

namespace Tavrin {

namespace {

/// The second separator of an attribute's name is searched from the length of the namespace name
/// on, so the prefix of a local name shorter than that is not found and stays in the local name.
/// Applications rely on these names: they must not change.
ExpatName splitAttributeName(std::string_view name) {
  const std::size_t uriLength = name.find(kExpatSeparator);
  return splitAt(name, kExpatSeparator, uriLength, uriLength);
}

/// What expat tells of an attribute, as its record. Turned into one where the list makes room for
/// it, so that it is made in its place: moved there, its five strings take about as long again.
struct GivenAttribute {
  const XML_Char* name;
  const XML_Char* value;

  explicit operator AttributesImpl::Attribute() const {
    const ExpatName parts = splitAttributeName(name);
    return {std::string(parts.uri), std::string(parts.localName), qNameOf(parts), "CDATA", value};
  }
};

// A list of its own for each start tag: programs look through the interface at the list, and what
// one tag holds is not held any longer.
void fill(AttributesImpl& list, const XML_Char** attributes) {
  std::size_t count = 0;
  while (attributes[2 * count]) ++count;
  list.attributes_.reserve(count);
  for (; *attributes; attributes += 2) {
    list.attributes_.emplace_back(GivenAttribute{attributes[0], attributes[1]});
  }
}

}  // namespace

void XMLReader_Expat::Driver::Callbacks::startElementHandler(void* userData, const XML_Char* name,
                                                             const XML_Char** attributes) {
  Driver& driver = from(userData);
  driver.deliver(driver.handlers.content, [&](ContentHandler& handler) {
    AttributesImpl list;
    fill(list, attributes);
    ElementName& element = driver.element_;
    element.take(name, kExpatSeparator);
    handler.startElement(element.uri, element.localName, element.qName, list);
  });
}

void XMLReader_Expat::Driver::Callbacks::endElementHandler(void* userData, const XML_Char* name) {
  Driver& driver = from(userData);
  driver.deliver(driver.handlers.content, [&](ContentHandler& handler) {
    ElementName& element = driver.element_;
    element.take(name, kExpatSeparator);
    handler.endElement(element.uri, element.localName, element.qName);
  });
}

void XMLReader_Expat::Driver::Callbacks::startNamespaceHandler(void* userData,
                                                               const XML_Char* prefix,
                                                               const XML_Char* uri) {
  Driver& driver = from(userData);
  driver.deliver(driver.handlers.content, [&](ContentHandler& handler) {
    // expat has no namespace name for `xmlns=""`. An undeclaration ends the parse.
    if (uri == nullptr) throw SAXException("Default namespace undeclared");
    handler.startPrefixMapping(textOrEmpty(prefix), uri);
  });
}

}  // namespace Tavrin
