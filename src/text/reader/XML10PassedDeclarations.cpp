#include "../../xml/Declarations.h"
#include "Literals.h"
#include "XML10Driver.h"

// Declarations that expat hands on as they are written: behind a parameter entity that was not
// read.

namespace Tavrin {

namespace {

constexpr std::string_view kEntity = "<!ENTITY";
constexpr std::string_view kAttributeList = "<!ATTLIST";

}  // namespace

void XMLReader_XML10::Driver::passOverDeclarations() {
  if (!document_->mayLackDeclarations) return;  // It is standalone.
  if (document_->passed) return;
  document_->passed.emplace();
  XML_SetDefaultHandlerExpand(document_->open.front().parser, Callbacks::passedMarkupHandler);
}

void XMLReader_XML10::Driver::Callbacks::endDoctypeDeclHandler(void* userData) {
  Driver& driver = from(userData);
  XML10Document& document = *driver.document_;
  if (document.passed) {
    XML_SetDefaultHandlerExpand(document.open.front().parser, nullptr);
    document.passed.reset();
  }
  Tavrin::Callbacks::endDoctypeDeclHandler(userData);
}

void XMLReader_XML10::Driver::Callbacks::passedMarkupHandler(void* userData, const XML_Char* text,
                                                             int length) {
  Driver& driver = from(userData);
  driver.guard([&] { driver.takePassedMarkup({text, static_cast<std::size_t>(length)}); });
}

void XMLReader_XML10::Driver::takePassedMarkup(std::string_view piece) {
  XML10Document& document = *document_;
  // What stands in external entities belongs to them.
  if (document.open.size() > 1) return;
  DeclarationText& declaration = document.passed->text;
  if (declaration.isEmpty()) {
    if (piece != kEntity && piece != kAttributeList) return;
    document.passed->position = positionHere();
    document.passed->isInInternalEntity = isInInternalEntity();
  }
  if (!declaration.take(piece)) return;
  const std::vector<std::string> tokens = declaration.tokens();
  declaration.clear();
  for (const std::string& token : tokens) {
    if (!isLiteral(token)) requireName(token);
  }
  DeclarationTokens rest(tokens);
  const bool isEntity = rest.take() == kEntity;
  if (isEntity) {
    reportPassedEntity(rest);
  } else {
    reportPassedAttributes(rest);
  }
}

void XMLReader_XML10::Driver::failInPassed(XML_Error error) {
  failAt(XML_ErrorString(error), document_->passed->position);
}

void XMLReader_XML10::Driver::reportPassedEntity(DeclarationTokens tokens) {
  const bool isParameterEntity = tokens.takeIf("%");
  const std::string name = (isParameterEntity ? "%" : "") + std::string(tokens.take());
  if (tokens.isAtLiteral()) {
    const LiteralValue value = replacementText(tokens.takeLiteral());
    // Only in the text of an entity may others be referred to.
    if (value.error == XML_ERROR_PARAM_ENTITY_REF && document_->passed->isInInternalEntity) {
      return warnOfLoss(
          "The declaration of the entity \"" + name + "\" refers to a parameter entity: it is lost",
          document_->passed->position);
    }
    if (value.error != XML_ERROR_NONE) failInPassed(value.error);
    if (isFirstPassed(name) && handlers.decl) handlers.decl->internalEntityDecl(name, value.text);
    return;
  }
  const bool isPublic = tokens.take() == "PUBLIC";
  const std::string publicId = isPublic ? publicIdentifier(tokens.takeLiteral()) : std::string();
  const std::string systemId = document_->resolve(std::string(tokens.takeLiteral()).c_str());
  if (!isFirstPassed(name)) return;
  if (tokens.takeIf("NDATA")) {
    const std::string notation(tokens.take());
    if (handlers.dtd) handlers.dtd->unparsedEntityDecl(name, publicId, systemId, notation);
  } else if (handlers.decl) {
    handlers.decl->externalEntityDecl(name, publicId, systemId);
  }
}

bool XMLReader_XML10::Driver::isFirstPassed(const std::string& name) {
  XML10Document& document = *document_;
  const bool isKnown = xml::isPredefinedEntity(name) || document.generalEntities.isDeclared(name);
  return !isKnown && document.passed->entities.insert(name).second;
}

void XMLReader_XML10::Driver::reportPassedAttributes(DeclarationTokens tokens) {
  XML10Document& document = *document_;
  const std::string element(tokens.take());
  requireQName(element.c_str());
  while (!tokens.isAtEnd()) {
    const std::string attribute(tokens.take());
    requireQName(attribute.c_str());
    std::string type(tokens.take());
    if (type == "NOTATION") type.append(1, ' ').append(tokens.take());
    const bool isFirst = document.attributeTypes.find(element, attribute) == nullptr &&
                         document.passed->attributes.declare(element, attribute, type);
    const std::string mode(tokens.isAtLiteral() ? std::string_view() : tokens.take());
    LiteralValue value;
    if (tokens.isAtLiteral()) {
      const std::string_view literal = tokens.takeLiteral();
      value = attributeDefault(literal, type == "CDATA");
      if (value.error != XML_ERROR_NONE) failInPassed(value.error);
      if (isFirst) warnOfReferencesInPassed(literal);
    }
    if (isFirst && handlers.decl) {
      handlers.decl->attributeDecl(element, attribute, type, mode, value.text);
    }
  }
}

void XMLReader_XML10::Driver::warnOfReferencesInPassed(std::string_view literal) {
  for (auto found = nextReference(literal, 0); found;
       found = nextReference(literal, found->position + 1)) {
    if (xml::isPredefinedEntity(found->name)) continue;
    warnOfLoss(lostReference(found->name, "the default of an attribute"),
               document_->passed->position);
  }
}

}  // namespace Tavrin
