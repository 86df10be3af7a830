#include <cstdlib>

#include "Callbacks.h"
#include "ContentModel.h"

namespace Tavrin {

namespace {

/// A system identifier as declarations report it: the base URI directly followed by the identifier.
/// Without a base URI there is no such text. The reader sets none, so the parse ends here.
std::string systemIdFrom(const XML_Char* base, const XML_Char* systemId) {
  if (base == nullptr) throw SAXException("No base URI");
  return std::string(base) + systemId;
}

}  // namespace

void XMLReader_Expat::Callbacks::startDoctypeDeclHandler(void* userData, const XML_Char* name,
                                                         const XML_Char* systemId,
                                                         const XML_Char* publicId, int) {
  XMLReader_Expat& reader = from(userData);
  deliver(reader, reader.lexicalHandler_, [&](LexicalHandler& handler) {
    handler.startDTD(name, textOrEmpty(publicId), textOrEmpty(systemId));
  });
}

void XMLReader_Expat::Callbacks::endDoctypeDeclHandler(void* userData) {
  XMLReader_Expat& reader = from(userData);
  deliver(reader, reader.lexicalHandler_, [](LexicalHandler& handler) { handler.endDTD(); });
}

void XMLReader_Expat::Callbacks::notationDeclHandler(void* userData, const XML_Char* name,
                                                     const XML_Char* base, const XML_Char* systemId,
                                                     const XML_Char* publicId) {
  XMLReader_Expat& reader = from(userData);
  deliver(reader, reader.dtdHandler_, [&](DTDHandler& handler) {
    handler.notationDecl(name, textOrEmpty(publicId), systemIdFrom(base, systemId));
  });
}

void XMLReader_Expat::Callbacks::entityDeclHandler(void* userData, const XML_Char* name,
                                                   int isParameterEntity, const XML_Char* value,
                                                   int valueLength, const XML_Char* base,
                                                   const XML_Char* systemId,
                                                   const XML_Char* publicId,
                                                   const XML_Char* notationName) {
  XMLReader_Expat& reader = from(userData);
  // The declaration handler opens the way for unparsed entities too, though these go to the DTD
  // handler.
  if (!reader.declHandler_) return;
  guard(reader, [&] {
    const std::string entityName = isParameterEntity ? std::string("%") + name : name;
    if (notationName) {
      if (!reader.dtdHandler_) return;
      reader.dtdHandler_->unparsedEntityDecl(entityName, textOrEmpty(publicId),
                                             systemIdFrom(base, systemId), notationName);
    } else if (systemId) {
      reader.declHandler_->externalEntityDecl(entityName, textOrEmpty(publicId),
                                              systemIdFrom(base, systemId));
    } else {
      reader.declHandler_->internalEntityDecl(
          entityName, std::string(value, static_cast<std::size_t>(valueLength)));
    }
  });
}

void XMLReader_Expat::Callbacks::attlistDeclHandler(void* userData, const XML_Char* elementName,
                                                    const XML_Char* attributeName,
                                                    const XML_Char* type,
                                                    const XML_Char* defaultValue, int isRequired) {
  XMLReader_Expat& reader = from(userData);
  deliver(reader, reader.declHandler_, [&](DeclHandler& handler) {
    handler.attributeDecl(elementName, attributeName, type, defaultMode(defaultValue, isRequired),
                          textOrEmpty(defaultValue));
  });
}

void XMLReader_Expat::Callbacks::elementDeclHandler(void* userData, const XML_Char* name,
                                                    XML_Content* model) {
  // The model belongs to the callback. It is one block from malloc, expat's default allocator.
  struct Release {
    void operator()(XML_Content* block) const { std::free(block); }
  };
  const std::unique_ptr<XML_Content, Release> owned(model);

  XMLReader_Expat& reader = from(userData);
  deliver(reader, reader.declHandler_,
          [&](DeclHandler& handler) { handler.elementDecl(name, contentModelText(*model)); });
}

int XMLReader_Expat::Callbacks::externalEntityRefHandler(XML_Parser argument,
                                                         const XML_Char* context, const XML_Char*,
                                                         const XML_Char* systemId,
                                                         const XML_Char* publicId) {
  XMLReader_Expat& reader = from(argument);
  if (!reader.entityResolver_) return XML_STATUS_OK;
  XML_Status status = XML_STATUS_ERROR;
  guard(reader, [&] {
    status = readExternalEntity(reader, context, textOrEmpty(publicId), textOrEmpty(systemId));
  });
  return status;
}

XML_Status XMLReader_Expat::Callbacks::readExternalEntity(XMLReader_Expat& reader,
                                                          const XML_Char* context,
                                                          const std::string& publicId,
                                                          const std::string& systemId) {
  const std::unique_ptr<std::istream> stream =
      reader.entityResolver_->resolveEntity(publicId, systemId);
  if (!stream) return XML_STATUS_OK;
  // The child always descends from the document's parser, also for an entity within an entity: a
  // stop request reaches that parser alone.
  const std::unique_ptr<XML_ParserStruct, ParserDeleter> child(
      XML_ExternalEntityParserCreate(reader.parser_.get(), context, nullptr));
  if (!child) return XML_STATUS_ERROR;
  return parseStream(child.get(), *stream, kBlockSize);
}

}  // namespace Tavrin
