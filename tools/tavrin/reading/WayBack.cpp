#include "reading/WayBack.h"

#include <Tavrin/Attributes.h>
#include <Tavrin/Exceptions.h>
#include <Tavrin/Factories.h>
#include <Tavrin/Identifiers.h>

namespace tool {

void WayBack::startDTD(const std::string& publicId, const std::string& systemId) {
  publicId_ = publicId;
  systemId_ = systemId;
}

void WayBack::unparsedEntityDecl(const std::string& name, const std::string& publicId,
                                 const std::string& systemId, const std::string& notationName) {
  declarations_.emplace(name, [=](Tavrin::XMLWriter& writer) {
    writer.unparsedEntityDecl(name, publicId, systemId, notationName);
  });
}

void WayBack::externalEntityDecl(const std::string& name, const std::string& publicId,
                                 const std::string& systemId) {
  if (publicId.empty() && systemId.empty()) return;  // The reference will have none.
  declarations_.emplace(name, [=](Tavrin::XMLWriter& writer) {
    writer.externalEntityDecl(name, publicId, systemId);
  });
}

std::string WayBack::skippedEntity(const std::string& name) {
  if (!asked_.insert(name).second) return {};
  const std::string root = "a";
  const auto declaration = declarations_.find(name);
  const auto writer = Tavrin::XMLWriterFactory::createXMLWriter("XML10");
  writer->setProperty(Tavrin::properties::standalone,
                      reader_.getProperty(Tavrin::properties::standalone));
  try {
    // Without a stream it only checks.
    writer->startDocument();
    writer->startDTD(root, publicId_, systemId_);
    if (declaration != declarations_.end()) declaration->second(*writer);
    writer->endDTD();
    writer->startElement("", root, root, Tavrin::AttributesImpl());
    writer->skippedEntity(name);
  } catch (const Tavrin::SAXException& exception) {
    return exception.getMessage();
  }
  return {};
}

}  // namespace tool
