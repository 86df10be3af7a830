#include <strings.h>

#include <new>

#include "../../xml/Rules.h"
#include "URIReference.h"
#include "XML10Driver.h"

namespace Tavrin::text {

/// expat checks names in declarations, but not the part after a colon (Namespaces in XML, sections
/// 4 and 7).
void XML10Driver::requireQName(const char* name) {
  requireName(name);
  if (!document_->settings.features.namespaces) return;
  if (const std::string reason = xml::whyNotQName(name); !reason.empty()) fail(reason);
}

std::string XML10Document::resolve(const XML_Char* systemId) const {
  return systemId ? resolveURIReference(systemId, current().entity->systemId) : std::string();
}

void XML10Driver::numberNextEntity(XML_Parser parser) {
  const std::string number = std::to_string(document_->entities.size());
  if (XML_SetBase(parser, number.c_str()) != XML_STATUS_OK) throw std::bad_alloc();
}

void XML10Driver::xmlDecl(const XML_Char* version, const XML_Char* encoding, int standalone) {
  XML10Document& document = *document_;
  // An external entity has a text declaration of its own (XML 1.0, section 4.3.1).
  if (!document.isInExternalEntity()) {
    document.version = version;
    if (standalone >= 0) document.standalone = standalone != 0;
  }
  // guard announces the document, with its version.
  guard([&] {
    OpenEntity& entity = document.current();
    if (!entity.recoder) {
      entity.encoding = textOrEmpty(encoding);
    } else if (entity.recoder->isFourOctets() && encoding && !isFourOctets(encoding)) {
      fail(XML_ErrorString(XML_ERROR_INCORRECT_ENCODING));
    }
    if (encoding && strcasecmp(encoding, "ISO-8859-1") == 0) document.checksNames = true;
    if (document.isInExternalEntity()) return;
    const std::string reason = xml::whyNotVersion(document.version);
    if (!reason.empty()) fail(reason);
    const std::string warning = xml::describeOtherVersion(document.version);
    if (warning.empty() || !handlers.error) return;
    handlers.error->warning(exceptionAt(warning, positionHere()));
  });
}

void XML10Driver::startDoctype(const XML_Char* name, const XML_Char* systemId,
                               const XML_Char* publicId, int hasInternalSubset) {
  guard([&] {
    requireQName(name);
    XML10Document& document = *document_;
    document.entities.front() = {"[dtd]", textOrEmpty(publicId), document.resolve(systemId)};
    numberNextEntity(document.current().parser);
    if (systemId) document.lackDeclarations();
  });
  EventTarget::startDoctype(name, systemId, publicId, hasInternalSubset);
}

void XML10Driver::notationDecl(const XML_Char* name, const XML_Char*, const XML_Char* systemId,
                               const XML_Char* publicId) {
  requireName(name);
  if (!handlers.dtd) return;
  handlers.dtd->notationDecl(name, textOrEmpty(publicId), document_->resolve(systemId));
}

void XML10Driver::entityDecl(const XML_Char* name, int isParameterEntity, const XML_Char* value,
                             int valueLength, const XML_Char*, const XML_Char* systemId,
                             const XML_Char* publicId, const XML_Char* notationName) {
  XML10Document& document = *document_;
  stayInParser();
  requireName(name);
  if (notationName) requireName(notationName);
  const std::string reportedName = isParameterEntity ? std::string("%") + name : name;
  const std::string_view text(textOrEmpty(value), static_cast<std::size_t>(valueLength));
  const EntityKind kind = notationName ? EntityKind::unparsed
                          : systemId   ? EntityKind::external
                                       : EntityKind::internal;
  document.generalEntities.declare(reportedName, isParameterEntity ? "" : text, kind);
  if (isParameterEntity) {
    document.lackDeclarations();  // A reference to it is to be expected.
    if (text.find('&') != std::string_view::npos) document.parameterTexts.emplace_back(text);
  }
  if (!systemId) {
    if (handlers.decl) handlers.decl->internalEntityDecl(reportedName, std::string(text));
    return;
  }
  // References may follow, so the entity is kept also where no handler is set.
  document.entities.push_back({reportedName, textOrEmpty(publicId), document.resolve(systemId)});
  const DeclaredEntity& entity = document.entities.back();
  numberNextEntity(document.current().parser);
  if (!notationName) {
    if (!handlers.decl) return;
    handlers.decl->externalEntityDecl(entity.name, entity.publicId, entity.systemId);
  } else if (handlers.dtd) {
    handlers.dtd->unparsedEntityDecl(entity.name, entity.publicId, entity.systemId, notationName);
  }
}

void XML10Driver::elementDecl(const XML_Char* name, XML_Content* model) {
  guard([&] {
    requireQName(name);
    // A document decides how deep a model is, so there is no recursion.
    std::vector<const XML_Content*> nodes = {model};
    while (!nodes.empty()) {
      const XML_Content& node = *nodes.back();
      nodes.pop_back();
      if (node.name != nullptr) requireQName(node.name);
      for (unsigned i = 0; i < node.numchildren; ++i) nodes.push_back(node.children + i);
    }
  });
  EventTarget::elementDecl(name, model);
}

void XML10Driver::attlistDecl(const XML_Char* element, const XML_Char* attribute,
                              const XML_Char* type, const XML_Char* defaultValue, int isRequired) {
  XML10Document& document = *document_;
  requireQName(element);
  requireQName(attribute);
  requireName(type);
  const std::string declaredType = AttributeTypes::declaredForm(type);
  if (!document.attributeTypes.declare(element, attribute, declaredType)) return;
  const std::string& reportedType = *document.attributeTypes.find(element, attribute);
  if (document.prolog &&
      !document.prolog->scanner->declareAttribute(element, attribute, reportedType, defaultValue)) {
    stayInParser();
  }
  if (defaultValue) {
    document.hasDefaults = true;
    if (xml::isDeclarationName(attribute)) document.hasDeclarationDefaults = true;
    if (document.mayLackDeclarations) warnOfLossesInDefault();
  }
  if (!handlers.decl) return;
  handlers.decl->attributeDecl(element, attribute, declaredType,
                               defaultMode(defaultValue, isRequired), textOrEmpty(defaultValue));
}

}  // namespace Tavrin::text
