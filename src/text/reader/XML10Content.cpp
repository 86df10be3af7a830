#include "../../sax/AtLimit.h"
#include "XML10Driver.h"

namespace Tavrin {

void XMLReader_XML10::Driver::Callbacks::startElementHandler(void* userData, const XML_Char* name,
                                                             const XML_Char** attributes) {
  Driver& driver = from(userData);
  XML10Document& document = *driver.document_;
  driver.guard([&] {
    if (++document.depth > document.maximumDepth) driver.fail(tooDeep(document.maximumDepth));
    if (document.checksNames) driver.requireNames(name, attributes);
    if (driver.handlers.content) driver.reportStart(*driver.handlers.content, name, attributes);
    if (document.mayLackDeclarations) driver.warnOfLossesInTag();
  });
  document.declarations.clear();
}

void XMLReader_XML10::Driver::reportStart(ContentHandler& handler, const XML_Char* name,
                                          const XML_Char** attributes) {
  XML10Document& document = *document_;
  XML10Event& event = document.event;
  event.takeName(name, document.features.namespaces);
  ElementAttributes& list = event.attributes;
  list.clear();
  for (const auto& [prefix, uri] : document.declarations) {
    list.addDeclaration(prefix, uri, document.features.xmlnsURIs);
  }
  for (; *attributes; attributes += 2) {
    list.add(attributes[0], attributes[1], document.features.namespaces);
  }
  if (!document.attributeTypes.isEmpty()) {
    list.setTypes(document.attributeTypes.find(event.qName));
    if (document.hasDefaults) {
      // expat counts names and values, and those that are written come first.
      const int written = XML_GetSpecifiedAttributeCount(document.current().parser) / 2;
      addDefaults(
          list.octetsFrom(document.declarations.size() + static_cast<std::size_t>(written)));
    }
  }
  handler.startElement(event.uri, event.localName, event.qName, list);
}

void XMLReader_XML10::Driver::Callbacks::endElementHandler(void* userData, const XML_Char* name) {
  Driver& driver = from(userData);
  --driver.document_->depth;
  driver.deliver(driver.handlers.content, [&](ContentHandler& handler) {
    XML10Event& event = driver.document_->event;
    event.takeName(name, driver.document_->features.namespaces);
    handler.endElement(event.uri, event.localName, event.qName);
  });
}

namespace {

/// The prefix xml is bound without a declaration, and one changes nothing. SAX2 does not report it.
bool isBoundAnyway(const XML_Char* prefix) { return prefix && std::string_view(prefix) == "xml"; }

}  // namespace

void XMLReader_XML10::Driver::Callbacks::startNamespaceHandler(void* userData,
                                                               const XML_Char* prefix,
                                                               const XML_Char* uri) {
  Driver& driver = from(userData);
  if (prefix && driver.document_->checksNames) driver.guard([&] { driver.requireName(prefix); });
  // expat has no namespace name for `xmlns=""`.
  driver.deliver(driver.handlers.content, [&](ContentHandler& handler) {
    XML10Document& document = *driver.document_;
    if (document.features.namespacePrefixes) {
      document.declarations.emplace_back(textOrEmpty(prefix), textOrEmpty(uri));
    }
    if (isBoundAnyway(prefix)) return;
    // expat does not tell which are written; those were read.
    if (document.hasDeclarationDefaults) {
      driver.addDefaults(textOrEmpty(prefix).size() + textOrEmpty(uri).size());
    }
    handler.startPrefixMapping(textOrEmpty(prefix), textOrEmpty(uri));
  });
}

void XMLReader_XML10::Driver::Callbacks::endNamespaceHandler(void* userData,
                                                             const XML_Char* prefix) {
  if (!isBoundAnyway(prefix)) Tavrin::Callbacks::endNamespaceHandler(userData, prefix);
}

void XMLReader_XML10::Driver::Callbacks::skippedEntityHandler(void* userData, const XML_Char* name,
                                                              int isParameterEntity) {
  Driver& driver = from(userData);
  driver.guard([&] {
    driver.requireName(name);
    if (isParameterEntity) {
      driver.document_->lackDeclarations();
      driver.passOverDeclarations();
    }
    if (!driver.handlers.content) return;
    driver.handlers.content->skippedEntity(isParameterEntity ? std::string("%") + name : name);
  });
}

}  // namespace Tavrin
