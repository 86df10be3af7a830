#include <new>

#include "../xml/Characters.h"
#include "URIReference.h"
#include "XML10Document.h"

namespace Tavrin {

/// expat looks at names in declarations, but not at what stands behind their colon (Namespaces in
/// XML, sections 4 and 7).
void XMLReader_XML10::requireQName(const char* name) {
  if (!document_->features.namespaces || xml::isQName(name)) return;
  fail('"' + std::string(name) + "\" is not a qualified name");
}

/// An identifier that is absent is empty.
std::string XMLReader_XML10::Document::resolve(const XML_Char* systemId) const {
  return systemId ? resolveURIReference(systemId, current().entity->systemId) : std::string();
}

void XMLReader_XML10::numberNextEntity(XML_Parser parser) {
  const std::string number = std::to_string(document_->entities.size());
  if (XML_SetBase(parser, number.c_str()) != XML_STATUS_OK) throw std::bad_alloc();
}

void XMLReader_XML10::Callbacks::xmlDeclHandler(void* userData, const XML_Char* version,
                                                const XML_Char*, int standalone) {
  XMLReader_XML10& reader = from(userData);
  Document& document = *reader.document_;
  // External entities have a declaration of their own (XML 1.0, section 4.3.1).
  if (document.open.size() > 1) return;
  document.version = version;
  if (standalone >= 0) document.standalone = standalone != 0;
  // No handler hears of it, but the document begins.
  guard(reader, [] {});
}

void XMLReader_XML10::Callbacks::startDoctypeDeclHandler(void* userData, const XML_Char* name,
                                                         const XML_Char* systemId,
                                                         const XML_Char* publicId,
                                                         int hasInternalSubset) {
  XMLReader_XML10& reader = from(userData);
  guard(reader, [&] {
    reader.requireQName(name);
    Document& document = *reader.document_;
    document.entities.front() = {"[dtd]", textOrEmpty(publicId), document.resolve(systemId)};
    reader.numberNextEntity(document.current().parser);
  });
  XMLReader_Expat::Callbacks::startDoctypeDeclHandler(userData, name, systemId, publicId,
                                                      hasInternalSubset);
}

void XMLReader_XML10::Callbacks::notationDeclHandler(void* userData, const XML_Char* name,
                                                     const XML_Char*, const XML_Char* systemId,
                                                     const XML_Char* publicId) {
  XMLReader_XML10& reader = from(userData);
  deliver(reader, reader.dtdHandler_, [&](DTDHandler& handler) {
    handler.notationDecl(name, textOrEmpty(publicId), reader.document_->resolve(systemId));
  });
}

void XMLReader_XML10::Callbacks::entityDeclHandler(void* userData, const XML_Char* name,
                                                   int isParameterEntity, const XML_Char* value,
                                                   int valueLength, const XML_Char*,
                                                   const XML_Char* systemId,
                                                   const XML_Char* publicId,
                                                   const XML_Char* notationName) {
  XMLReader_XML10& reader = from(userData);
  const auto reportedName = [&] { return isParameterEntity ? std::string("%") + name : name; };
  if (systemId == nullptr) {
    deliver(reader, reader.declHandler_, [&](DeclHandler& handler) {
      handler.internalEntityDecl(reportedName(),
                                 std::string(value, static_cast<std::size_t>(valueLength)));
    });
    return;
  }
  // The entity is kept, whoever hears of it. A reference in the content or the DTD comes later.
  guard(reader, [&] {
    Document& document = *reader.document_;
    document.entities.push_back(
        {reportedName(), textOrEmpty(publicId), document.resolve(systemId)});
    const DeclaredEntity& entity = document.entities.back();
    reader.numberNextEntity(document.current().parser);
    if (notationName) {
      if (reader.dtdHandler_) {
        reader.dtdHandler_->unparsedEntityDecl(entity.name, entity.publicId, entity.systemId,
                                               notationName);
      }
    } else if (reader.declHandler_) {
      reader.declHandler_->externalEntityDecl(entity.name, entity.publicId, entity.systemId);
    }
  });
}

void XMLReader_XML10::Callbacks::elementDeclHandler(void* userData, const XML_Char* name,
                                                    XML_Content* model) {
  XMLReader_XML10& reader = from(userData);
  guard(reader, [&] {
    reader.requireQName(name);
    // A document decides how deep a model is.
    std::vector<const XML_Content*> nodes = {model};
    while (!nodes.empty()) {
      const XML_Content& node = *nodes.back();
      nodes.pop_back();
      if (node.name != nullptr) reader.requireQName(node.name);
      for (unsigned i = 0; i < node.numchildren; ++i) nodes.push_back(node.children + i);
    }
  });
  XMLReader_Expat::Callbacks::elementDeclHandler(userData, name, model);
}

void XMLReader_XML10::Callbacks::attlistDeclHandler(void* userData, const XML_Char* elementName,
                                                    const XML_Char* attributeName,
                                                    const XML_Char* type,
                                                    const XML_Char* defaultValue, int isRequired) {
  XMLReader_XML10& reader = from(userData);
  guard(reader, [&] {
    reader.requireQName(elementName);
    reader.requireQName(attributeName);
    const std::string declaredType = AttributeTypes::declaredForm(type);
    const bool isFirst =
        reader.document_->attributeTypes.declare(elementName, attributeName, declaredType);
    if (!isFirst || !reader.declHandler_) return;
    reader.declHandler_->attributeDecl(elementName, attributeName, declaredType,
                                       defaultMode(defaultValue, isRequired),
                                       textOrEmpty(defaultValue));
  });
}

}  // namespace Tavrin
