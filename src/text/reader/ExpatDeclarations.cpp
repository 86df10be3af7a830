#include "ExpatDriver.h"

namespace Tavrin {

namespace {

/// A system identifier as declarations report it: the base URI directly followed by the identifier.
/// Without a base URI there is no such text. The reader sets none, so the parse ends here.
std::string systemIdFrom(const XML_Char* base, const XML_Char* systemId) {
  if (base == nullptr) throw SAXException("No base URI");
  return std::string(base) + systemId;
}

}  // namespace

void XMLReader_Expat::Driver::Callbacks::skippedEntityHandler(void* userData, const XML_Char* name,
                                                              int) {
  Driver& driver = from(userData);
  driver.deliver(driver.handlers.content,
                 [&](ContentHandler& handler) { handler.skippedEntity(name); });
}

void XMLReader_Expat::Driver::Callbacks::notationDeclHandler(void* userData, const XML_Char* name,
                                                             const XML_Char* base,
                                                             const XML_Char* systemId,
                                                             const XML_Char* publicId) {
  Driver& driver = from(userData);
  driver.deliver(driver.handlers.dtd, [&](DTDHandler& handler) {
    handler.notationDecl(name, textOrEmpty(publicId), systemIdFrom(base, systemId));
  });
}

void XMLReader_Expat::Driver::Callbacks::entityDeclHandler(
    void* userData, const XML_Char* name, int isParameterEntity, const XML_Char* value,
    int valueLength, const XML_Char* base, const XML_Char* systemId, const XML_Char* publicId,
    const XML_Char* notationName) {
  Driver& driver = from(userData);
  // The declaration handler opens the way for unparsed entities too, though these go to the DTD
  // handler.
  driver.deliver(driver.handlers.decl, [&](DeclHandler& handler) {
    const std::string entityName = isParameterEntity ? std::string("%") + name : name;
    if (!systemId) {
      return handler.internalEntityDecl(entityName,
                                        std::string(value, static_cast<std::size_t>(valueLength)));
    }
    // Before the handler is looked for: what cannot be told ends the parse, whoever would hear it.
    const std::string wholeId = systemIdFrom(base, systemId);
    if (!notationName) {
      handler.externalEntityDecl(entityName, textOrEmpty(publicId), wholeId);
    } else if (driver.handlers.dtd) {
      driver.handlers.dtd->unparsedEntityDecl(entityName, textOrEmpty(publicId), wholeId,
                                              notationName);
    }
  });
}

void XMLReader_Expat::Driver::Callbacks::attlistDeclHandler(
    void* userData, const XML_Char* elementName, const XML_Char* attributeName,
    const XML_Char* type, const XML_Char* defaultValue, int isRequired) {
  Driver& driver = from(userData);
  driver.deliver(driver.handlers.decl, [&](DeclHandler& handler) {
    handler.attributeDecl(elementName, attributeName, type, defaultMode(defaultValue, isRequired),
                          textOrEmpty(defaultValue));
  });
}

int XMLReader_Expat::Driver::Callbacks::externalEntityRefHandler(XML_Parser argument,
                                                                 const XML_Char* context,
                                                                 const XML_Char*,
                                                                 const XML_Char* systemId,
                                                                 const XML_Char* publicId) {
  Driver& driver = from(argument);
  if (!driver.handlers.resolver) return XML_STATUS_OK;
  XML_Status status = XML_STATUS_ERROR;
  driver.guard([&] {
    status = driver.readExternalEntity(context, textOrEmpty(publicId), textOrEmpty(systemId));
  });
  return status;
}

XML_Status XMLReader_Expat::Driver::readExternalEntity(const XML_Char* context,
                                                       const std::string& publicId,
                                                       const std::string& systemId) {
  const std::unique_ptr<std::istream> stream = handlers.resolver->resolveEntity(publicId, systemId);
  if (!stream) return XML_STATUS_OK;
  // The child always descends from the document's parser, also for an entity within an entity: a
  // stop request reaches that parser alone.
  const OwnedParser child(XML_ExternalEntityParserCreate(reader_.parser_.get(), context, nullptr));
  if (!child) return XML_STATUS_ERROR;
  return parseStream(child.get(), *stream, kBlockSize);
}

}  // namespace Tavrin
