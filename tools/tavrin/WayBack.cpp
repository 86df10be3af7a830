#include "WayBack.h"

#include <Tavrin/Attributes.h>
#include <Tavrin/Exceptions.h>
#include <Tavrin/Factories.h>
#include <Tavrin/Identifiers.h>

namespace tool {

/// What the writer says of a document with a declaration in its type and something in its root.
/// Without a stream it only checks.
std::string WayBack::whyRefused(const Events& declaration, const Events& content) const {
  const std::string root = "a";
  const auto writer = Tavrin::XMLWriterFactory::createXMLWriter("XML10");
  writer->setProperty(Tavrin::properties::standalone,
                      reader_.getProperty(Tavrin::properties::standalone));
  try {
    writer->startDocument();
    writer->startDTD(root, publicId_, systemId_);
    declaration(*writer);
    writer->endDTD();
    writer->startElement("", root, root, Tavrin::AttributesImpl());
    content(*writer);
  } catch (const Tavrin::SAXException& exception) {
    return exception.getMessage();
  }
  return {};
}

void WayBack::startDTD(const std::string& publicId, const std::string& systemId) {
  publicId_ = publicId;
  systemId_ = systemId;
}

std::string WayBack::notationDecl(const std::string& name, const std::string& publicId,
                                  const std::string& systemId) {
  return whyRefused(
      [&](Tavrin::XMLWriter& writer) { writer.notationDecl(name, publicId, systemId); });
}

std::string WayBack::unparsedEntityDecl(const std::string& name, const std::string& publicId,
                                        const std::string& systemId,
                                        const std::string& notationName) {
  const Events declaration = [=](Tavrin::XMLWriter& writer) {
    writer.unparsedEntityDecl(name, publicId, systemId, notationName);
  };
  declarations_.emplace(name, declaration);
  return whyRefused(declaration);
}

// Whether it can be declared matters only if something refers to it.
void WayBack::externalEntityDecl(const std::string& name, const std::string& publicId,
                                 const std::string& systemId) {
  if (publicId.empty() && systemId.empty()) return;  // The reference would have none.
  declarations_.emplace(name, [=](Tavrin::XMLWriter& writer) {
    writer.externalEntityDecl(name, publicId, systemId);
  });
}

std::string WayBack::skippedEntity(const std::string& name) {
  if (!asked_.insert(name).second) return {};
  const auto found = declarations_.find(name);
  return whyRefused(found == declarations_.end() ? nothing : found->second,
                    [&](Tavrin::XMLWriter& writer) { writer.skippedEntity(name); });
}

}  // namespace tool
