#include <new>

#include "../../xml/Characters.h"
#include "../../xml/NamespaceBindings.h"
#include "URIReference.h"
#include "XML10Driver.h"

namespace Tavrin {

/// expat looks at names in declarations, but not at what stands behind their colon (Namespaces in
/// XML, sections 4 and 7).
void XMLReader_XML10::Driver::requireQName(const char* name) {
  requireName(name);
  if (!document_->features.namespaces || xml::isQName(name)) return;
  fail('"' + std::string(name) + "\" is not a qualified name");
}

/// An identifier that is absent is empty.
std::string XML10Document::resolve(const XML_Char* systemId) const {
  return systemId ? resolveURIReference(systemId, current().entity->systemId) : std::string();
}

void XMLReader_XML10::Driver::numberNextEntity(XML_Parser parser) {
  const std::string number = std::to_string(document_->entities.size());
  if (XML_SetBase(parser, number.c_str()) != XML_STATUS_OK) throw std::bad_alloc();
}

void XMLReader_XML10::Driver::Callbacks::xmlDeclHandler(void* userData, const XML_Char* version,
                                                        const XML_Char* encoding, int standalone) {
  Driver& driver = from(userData);
  XML10Document& document = *driver.document_;
  // External entities have a declaration of their own (XML 1.0, section 4.3.1).
  const bool isDocument = document.open.size() == 1;
  if (isDocument) {
    document.version = version;
    if (standalone >= 0) document.standalone = standalone != 0;
  }
  // The document begins.
  driver.guard([&] {
    document.open.back().encoding = textOrEmpty(encoding);
    document.noteEncoding(encoding);
    if (!isDocument) return;
    if (!xml::isVersion(document.version)) {
      driver.fail("\"" + document.version + "\" is not a version of XML");
    }
    const std::string warning = xml::describeOtherVersion(document.version);
    if (!warning.empty() && driver.handlers.error) {
      driver.handlers.error->warning(driver.exceptionHere(warning));
    }
  });
}

void XMLReader_XML10::Driver::Callbacks::startDoctypeDeclHandler(void* userData,
                                                                 const XML_Char* name,
                                                                 const XML_Char* systemId,
                                                                 const XML_Char* publicId,
                                                                 int hasInternalSubset) {
  Driver& driver = from(userData);
  driver.guard([&] {
    driver.requireQName(name);
    XML10Document& document = *driver.document_;
    document.entities.front() = {"[dtd]", textOrEmpty(publicId), document.resolve(systemId)};
    driver.numberNextEntity(document.current().parser);
    if (systemId) document.lackDeclarations();
  });
  Tavrin::Callbacks::startDoctypeDeclHandler(userData, name, systemId, publicId, hasInternalSubset);
}

void XMLReader_XML10::Driver::Callbacks::notationDeclHandler(void* userData, const XML_Char* name,
                                                             const XML_Char*,
                                                             const XML_Char* systemId,
                                                             const XML_Char* publicId) {
  Driver& driver = from(userData);
  driver.guard([&] { driver.requireName(name); });
  driver.deliver(driver.handlers.dtd, [&](DTDHandler& handler) {
    handler.notationDecl(name, textOrEmpty(publicId), driver.document_->resolve(systemId));
  });
}

void XMLReader_XML10::Driver::Callbacks::entityDeclHandler(
    void* userData, const XML_Char* name, int isParameterEntity, const XML_Char* value,
    int valueLength, const XML_Char*, const XML_Char* systemId, const XML_Char* publicId,
    const XML_Char* notationName) {
  Driver& driver = from(userData);
  const auto reportedName = [&] { return isParameterEntity ? std::string("%") + name : name; };
  driver.guard([&] {
    XML10Document& document = *driver.document_;
    driver.requireName(name);
    if (notationName) driver.requireName(notationName);
    const std::string_view text(value ? value : "", static_cast<std::size_t>(valueLength));
    document.generalEntities.declare(reportedName(), isParameterEntity ? "" : text);
    if (!isParameterEntity) return;
    document.lackDeclarations();  // It is declared for being referred to.
    if (nextReference(text, 0)) document.parameterTexts.emplace_back(text);
  });
  if (systemId == nullptr) {
    driver.deliver(driver.handlers.decl, [&](DeclHandler& handler) {
      handler.internalEntityDecl(reportedName(),
                                 std::string(value, static_cast<std::size_t>(valueLength)));
    });
    return;
  }
  // The entity is kept, whoever hears of it. A reference in the content or the DTD comes later.
  driver.guard([&] {
    XML10Document& document = *driver.document_;
    document.entities.push_back(
        {reportedName(), textOrEmpty(publicId), document.resolve(systemId)});
    const DeclaredEntity& entity = document.entities.back();
    driver.numberNextEntity(document.current().parser);
    if (notationName) {
      if (driver.handlers.dtd) {
        driver.handlers.dtd->unparsedEntityDecl(entity.name, entity.publicId, entity.systemId,
                                                notationName);
      }
    } else if (driver.handlers.decl) {
      driver.handlers.decl->externalEntityDecl(entity.name, entity.publicId, entity.systemId);
    }
  });
}

void XMLReader_XML10::Driver::Callbacks::elementDeclHandler(void* userData, const XML_Char* name,
                                                            XML_Content* model) {
  Driver& driver = from(userData);
  driver.guard([&] {
    driver.requireQName(name);
    // A document decides how deep a model is.
    std::vector<const XML_Content*> nodes = {model};
    while (!nodes.empty()) {
      const XML_Content& node = *nodes.back();
      nodes.pop_back();
      if (node.name != nullptr) driver.requireQName(node.name);
      for (unsigned i = 0; i < node.numchildren; ++i) nodes.push_back(node.children + i);
    }
  });
  Tavrin::Callbacks::elementDeclHandler(userData, name, model);
}

void XMLReader_XML10::Driver::Callbacks::attlistDeclHandler(
    void* userData, const XML_Char* elementName, const XML_Char* attributeName,
    const XML_Char* type, const XML_Char* defaultValue, int isRequired) {
  Driver& driver = from(userData);
  driver.guard([&] {
    driver.requireQName(elementName);
    driver.requireQName(attributeName);
    driver.requireName(type);
    const std::string declaredType = AttributeTypes::declaredForm(type);
    const bool isFirst =
        driver.document_->attributeTypes.declare(elementName, attributeName, declaredType);
    if (!isFirst) return;
    if (defaultValue) {
      driver.document_->hasDefaults = true;
      if (xml::isDeclarationName(attributeName)) driver.document_->hasDeclarationDefaults = true;
    }
    if (defaultValue && driver.document_->mayLackDeclarations) driver.warnOfLossesInDefault();
    if (!driver.handlers.decl) return;
    driver.handlers.decl->attributeDecl(elementName, attributeName, declaredType,
                                        defaultMode(defaultValue, isRequired),
                                        textOrEmpty(defaultValue));
  });
}

}  // namespace Tavrin
