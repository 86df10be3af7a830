#include "../../xml/Declarations.h"
#include "Callbacks.h"
#include "XML10Driver.h"

// After a parameter entity that was not read, expat passes declarations on as text.

namespace Tavrin::text {

namespace {

constexpr std::string_view kEntity = "<!ENTITY";
constexpr std::string_view kAttributeList = "<!ATTLIST";

}  // namespace

void XML10Driver::stopProcessing() {
  if (!document_->mayLackDeclarations) return;  // It is standalone.
  if (document_->unprocessed) return;
  document_->unprocessed.emplace();
  XML_SetDefaultHandlerExpand(document_->open.front().parser,
                              guarded<&XML10Driver::unprocessedMarkup>);
}

void XML10Driver::endDoctype() {
  if (document_->unprocessed) {
    XML_SetDefaultHandlerExpand(document_->open.front().parser, nullptr);
    document_->unprocessed.reset();
  }
  EventTarget::endDoctype();
}

void XML10Driver::unprocessedMarkup(const XML_Char* text, int length) {
  if (document_->isInExternalEntity()) return;
  const std::string_view piece(text, static_cast<std::size_t>(length));
  UnprocessedDeclarations& unprocessed = *document_->unprocessed;
  if (unprocessed.text.isEmpty()) {
    if (piece != kEntity && piece != kAttributeList) return;
    unprocessed.position = positionHere();
    unprocessed.isInInternalEntity = isInInternalEntity();
  }
  if (!unprocessed.text.append(piece)) return;
  DeclarationTokens tokens(unprocessed.text.text());
  unprocessed.text.clear();
  for (const std::string& token : tokens.all()) {
    if (!isLiteral(token)) requireName(token);
  }
  if (tokens.next() == kEntity) {
    reportUnprocessedEntity(tokens);
  } else {
    reportUnprocessedAttributes(tokens);
  }
}

void XML10Driver::failInUnprocessed(XML_Error error) {
  failAt(XML_ErrorString(error), document_->unprocessed->position);
}

void XML10Driver::reportUnprocessedEntity(DeclarationTokens& tokens) {
  const bool isParameterEntity = tokens.consume("%");
  const std::string name = (isParameterEntity ? "%" : "") + std::string(tokens.next());
  if (tokens.isAtLiteral()) {
    const LiteralValue value = replacementText(tokens.nextLiteral());
    // Only in the text of an entity may a literal refer to parameter entities.
    if (value.error == XML_ERROR_PARAM_ENTITY_REF && document_->unprocessed->isInInternalEntity) {
      return warnOfLoss(
          "The declaration of the entity \"" + name + "\" refers to a parameter entity: it is lost",
          document_->unprocessed->position);
    }
    if (value.error != XML_ERROR_NONE) failInUnprocessed(value.error);
    if (!isFirstUnprocessed(name)) return;
    if (handlers.decl) handlers.decl->internalEntityDecl(name, value.text);
    return;
  }
  const bool isPublic = tokens.next() == "PUBLIC";
  const std::string publicId = isPublic ? publicIdentifier(tokens.nextLiteral()) : std::string();
  const std::string systemId = document_->resolve(std::string(tokens.nextLiteral()).c_str());
  if (!isFirstUnprocessed(name)) return;
  if (tokens.consume("NDATA")) {
    const std::string notation(tokens.next());
    if (handlers.dtd) handlers.dtd->unparsedEntityDecl(name, publicId, systemId, notation);
  } else if (handlers.decl) {
    handlers.decl->externalEntityDecl(name, publicId, systemId);
  }
}

bool XML10Driver::isFirstUnprocessed(const std::string& name) {
  XML10Document& document = *document_;
  const bool isKnown = xml::isPredefinedEntity(name) || document.generalEntities.isDeclared(name);
  return !isKnown && document.unprocessed->entities.insert(name).second;
}

void XML10Driver::reportUnprocessedAttributes(DeclarationTokens& tokens) {
  const std::string element(tokens.next());
  requireQName(element.c_str());
  while (!tokens.isAtEnd()) reportUnprocessedAttribute(element, tokens);
}

void XML10Driver::reportUnprocessedAttribute(const std::string& element,
                                             DeclarationTokens& tokens) {
  XML10Document& document = *document_;
  const std::string attribute(tokens.next());
  requireQName(attribute.c_str());
  std::string type(tokens.next());
  if (type == "NOTATION") type.append(1, ' ').append(tokens.next());
  const bool isFirst = document.attributeTypes.find(element, attribute) == nullptr &&
                       document.unprocessed->attributes.declare(element, attribute, type);
  const std::string mode(tokens.isAtLiteral() ? std::string_view() : tokens.next());
  LiteralValue value;
  if (tokens.isAtLiteral()) {
    const std::string_view literal = tokens.nextLiteral();
    value = attributeDefault(literal, type == "CDATA");
    if (value.error != XML_ERROR_NONE) failInUnprocessed(value.error);
    if (isFirst) {
      forEachReference(literal, [&](std::string_view name, std::size_t) {
        if (xml::isPredefinedEntity(name)) return;
        warnOfLostReference(name, kInDefault, document.unprocessed->position);
      });
    }
  }
  if (!isFirst || !handlers.decl) return;
  handlers.decl->attributeDecl(element, attribute, type, mode, value.text);
}

}  // namespace Tavrin::text
