#include <Tavrin/XMLWriter_XML10.h>

#include "../../xml/Declarations.h"
#include "../../xml/Escapes.h"
#include "../../xml/Rules.h"
#include "XML10Composer.h"

// The document type and its declarations (XML 1.0, sections 2.8, 3.2, 3.3 and 4).

namespace Tavrin {

using namespace xml;

namespace {

bool isParameterEntity(const std::string& name) { return name.starts_with('%'); }

/// The name of an entity as its declaration has it.
std::string declaredName(const std::string& name) {
  return isParameterEntity(name) ? "% " + name.substr(1) : name;
}

std::string whyNotEntityName(const std::string& name) {
  return whyNotNCName(isParameterEntity(name) ? name.substr(1) : name);
}

}  // namespace

// --- The declaration itself, and its external parts ---

void XMLWriter_XML10::startDTD(const std::string& name, const std::string& publicId,
                               const std::string& systemId) {
  composer_->perform([&](Composer& composer) {
    composer.indent();
    XMLWriter::startDTD(name, publicId, systemId);
    composer.beginDocumentType(name);
    composer.writeExternalIdentifier(Composer::Declared::DocumentType, publicId, systemId);
    refuseIf(whyNotQName(name));
    composer.document_.hasExternalSubset = !publicId.empty() || !systemId.empty();
  });
}

void XMLWriter_XML10::endDTD() {
  composer_->perform([this](Composer& composer) {
    const bool hadContent = hasContent_;
    XMLWriter::endDTD();
    if (hadContent) {
      composer.indent();
      composer.write("]");
    }
    composer.endDeclaration();
  });
}

void XMLWriter_XML10::startEntity(const std::string& name) {
  composer_->requireSound();
  if (state_ != InDTD) return;
  Composer::Document& document = composer_->document_;
  if (document.entitiesOutside > 0) {
    ++document.entitiesOutside;
  } else if (name == "[dtd]") {
    if (document.hasExternalSubset) document.entitiesOutside = 1;
  } else if (isParameterEntity(name)) {
    // For an internal entity, its declarations are written: only a parser could check its text.
    const auto found = document.entities.find(name);
    const bool isInternal =
        found != document.entities.end() && found->second != Composer::EntityKind::External;
    if (isInternal) return;
    composer_->writeParameterReference(name);
    document.entitiesOutside = 1;
  }
}

void XMLWriter_XML10::endEntity(const std::string& /*name*/) {
  composer_->requireSound();
  if (composer_->isOutsideInternalSubset()) --composer_->document_.entitiesOutside;
}

// --- References ---

void XMLWriter_XML10::skippedEntity(const std::string& name) {
  Composer& composer = *composer_;
  composer.requireSound();
  if (name == "[dtd]") return;
  if (isParameterEntity(name) && state_ == InDTD) {
    if (!composer.isOutsideInternalSubset()) composer.writeParameterReference(name);
    composer.document_.passesDeclarations = !composer.document_.isStandalone;
  } else if (composer.isOutsideInternalSubset()) {
    return;
  } else if (!isParameterEntity(name) && state_ == InElement) {
    composer.writeGeneralReference(name);
  } else {
    throw SAXException("You cannot refer to an entity at this point");
  }
}

/// Writes a reference in content. The entity must be declared (XML 1.0, section 4.1, "Entity
/// Declared"), or may be where this writer does not see it, and its text must be allowed there.
void XMLWriter_XML10::Composer::writeGeneralReference(const std::string& name) {
  perform([&](Composer&) {
    refuseIf(whyNotNCName(name));
    const Document& document = document_;
    const auto found = document.entities.find(name);
    if (found == document.entities.end()) {
      const bool mayBeElsewhere =
          !document.isStandalone && (document.hasExternalSubset || document.hasParameterReferences);
      if (!mayBeElsewhere && !isPredefinedEntity(name)) {
        throw SAXException("The entity " + quoted(name) + " is not declared");
      }
    } else if (found->second == EntityKind::Unparsed) {
      throw SAXException("You cannot refer to the unparsed entity " + quoted(name));
    } else if (found->second == EntityKind::Markup && !isPredefinedEntity(name)) {
      throw SAXException("You cannot refer to the entity " + quoted(name) +
                         ", whose text holds markup");
    }
    startChild();
    writer_.hasContent_ = true;
    write("&", name, ";");
    forbidIndentation();
  });
}

/// Writes a reference between declarations.
void XMLWriter_XML10::Composer::writeParameterReference(const std::string& name) {
  perform([&](Composer&) {
    refuseIf(whyNotEntityName(name));
    const auto found = document_.entities.find(name);
    if (found == document_.entities.end()) {
      if (document_.isStandalone) {
        throw SAXException("The entity " + quoted(name) + " is not declared");
      }
    } else if (found->second != EntityKind::External && found->second != EntityKind::Passed) {
      throw SAXException("You cannot refer to the entity " + quoted(name) +
                         ", whose text is internal");
    }
    startItem();
    writer_.hasContent_ = true;
    write(name, ";");
    document_.hasParameterReferences = true;
  });
}

// --- Declarations ---

void XMLWriter_XML10::Composer::writeSystemLiteral(std::string_view systemId) {
  refuseIf(whyNotSystemId(systemId));
  const std::string_view quote = systemId.find('"') == std::string_view::npos ? "\"" : "'";
  write(" ", quote, systemId, quote);
}

/// Only a notation may have a public identifier without a system identifier (productions 75 and
/// 83). Elsewhere an empty system identifier is written.
void XMLWriter_XML10::Composer::writeExternalIdentifier(Declared declared,
                                                        const std::string& publicId,
                                                        const std::string& systemId) {
  const bool hasSystemId = !systemId.empty();
  if (!publicId.empty()) {
    refuseIf(whyNotPublicId(publicId));
    write(" PUBLIC \"", publicId, "\"");
    if (hasSystemId || declared != Declared::Notation) writeSystemLiteral(systemId);
    return;
  }
  if (!hasSystemId && declared == Declared::DocumentType) return;
  write(" SYSTEM");
  writeSystemLiteral(systemId);
}

void XMLWriter_XML10::notationDecl(const std::string& name, const std::string& publicId,
                                   const std::string& systemId) {
  composer_->perform([&](Composer& composer) {
    const bool isWritten = composer.startItem();
    XMLWriter::notationDecl(name, publicId, systemId);
    if (!isWritten) return;
    composer.beginNotation(name);
    composer.writeExternalIdentifier(Composer::Declared::Notation, publicId, systemId);
    composer.endDeclaration();
    refuseIf(whyNotNCName(name));
  });
}

void XMLWriter_XML10::Composer::declareEntity(const std::string& name, EntityKind kind,
                                              bool isAllowed) {
  if (!isAllowed) {
    throw SAXException("The entity " + quoted(name) + " cannot be declared otherwise");
  }
  document_.entities.emplace(name, kind);
}

void XMLWriter_XML10::unparsedEntityDecl(const std::string& name, const std::string& publicId,
                                         const std::string& systemId,
                                         const std::string& notationName) {
  composer_->perform([&](Composer& composer) {
    const bool isWritten = composer.startItem();
    XMLWriter::unparsedEntityDecl(name, publicId, systemId, notationName);
    if (!isWritten) return;
    composer.beginEntity(name);
    composer.writeExternalIdentifier(Composer::Declared::Entity, publicId, systemId);
    composer.endUnparsedEntity(notationName);
    refuseIf(whyNotNCName(name));
    refuseIf(whyNotNCName(notationName));
    composer.declareEntity(name, Composer::EntityKind::Unparsed, !isPredefinedEntity(name));
  });
}

void XMLWriter_XML10::externalEntityDecl(const std::string& name, const std::string& publicId,
                                         const std::string& systemId) {
  composer_->perform([&](Composer& composer) {
    const bool isWritten = composer.startItem();
    XMLWriter::externalEntityDecl(name, publicId, systemId);
    if (!isWritten) return;
    composer.beginEntity(declaredName(name));
    composer.writeExternalIdentifier(Composer::Declared::Entity, publicId, systemId);
    composer.endDeclaration();
    refuseIf(whyNotEntityName(name));
    composer.declareEntity(name, Composer::EntityKind::External, !isPredefinedEntity(name));
  });
}

void XMLWriter_XML10::internalEntityDecl(const std::string& name, const std::string& value) {
  composer_->perform([&](Composer& composer) {
    const bool isWritten = composer.startItem();
    XMLWriter::internalEntityDecl(name, value);
    if (!isWritten) return;
    composer.beginEntity(declaredName(name));
    composer.write(" \"");
    const std::size_t invalid = kEntityValueEscapes.append(composer.composed_, value);
    composer.write("\">");
    refuseIf(whyNotEntityName(name));
    if (invalid != kAllValid) refuseIf(whyNotText(value, "the text of an entity"));
    // In content, the end of a CDATA section is not allowed either (section 2.4).
    const bool hasMarkup =
        value.find_first_of("<&") != std::string::npos || value.find("]]>") != std::string::npos;
    using Kind = Composer::EntityKind;
    const Kind kind = composer.document_.passesDeclarations ? Kind::Passed
                      : hasMarkup                           ? Kind::Markup
                                                            : Kind::Text;
    composer.declareEntity(name, kind, isReplacementText(name, value));
  });
}

void XMLWriter_XML10::elementDecl(const std::string& name, const std::string& model) {
  composer_->perform([&](Composer& composer) {
    const bool isWritten = composer.startItem();
    XMLWriter::elementDecl(name, model);
    if (!isWritten) return;
    composer.writeElementDeclaration(name, model);
    refuseIf(whyNotQName(name));
    refuseIf(whyNotText(model, "a content model"));
    if (!isContentModel(model)) throw SAXException(quoted(model) + " is not a content model");
  });
}

void XMLWriter_XML10::attributeDecl(const std::string& eName, const std::string& aName,
                                    const std::string& type, const std::string& mode,
                                    const std::string& value) {
  composer_->perform([&](Composer& composer) {
    const bool isWritten = composer.startItem();
    XMLWriter::attributeDecl(eName, aName, type, mode, value);
    if (!isWritten) return;
    const std::string writtenType = attributeType(type);
    composer.write("  <!ATTLIST ", eName, " ", aName, " ", writtenType, " ");
    composer.writeDefault(mode, value);
    composer.endDeclaration();
    refuseIf(whyNotQName(eName));
    refuseIf(whyNotQName(aName));
    if (writtenType.empty()) {
      refuseIf(whyNotText(type, "the type of an attribute"));
      throw SAXException(quoted(type) + " is not the type of an attribute");
    }
    composer.rememberDefault(eName, aName, mode, value);
  });
}

/// Production 60.
void XMLWriter_XML10::Composer::writeDefault(const std::string& mode, const std::string& value) {
  if (mode == "#IMPLIED" || mode == "#REQUIRED") {
    if (!value.empty()) throw SAXException("An attribute cannot have a default and be " + mode);
    write(mode);
    return;
  }
  if (mode == "#FIXED") {
    write("#FIXED ");
  } else if (!mode.empty()) {
    refuseIf(whyNotText(mode, "the default of an attribute"));
    throw SAXException(quoted(mode) + " is not a default of an attribute");
  }
  composed_ += quote_;
  appendText(composed_, value, attributeEscapes(quote_), "the default of an attribute");
  composed_ += quote_;
}

/// Keeps the defaults that concern namespaces. The first declaration of an attribute is binding
/// (section 3.3), also where it has no default.
void XMLWriter_XML10::Composer::rememberDefault(const std::string& eName, const std::string& aName,
                                                const std::string& mode, const std::string& value) {
  if (document_.passesDeclarations) return;
  const bool hasPrefix = aName.find(':') != std::string::npos && !aName.starts_with("xml:");
  if (!isDeclarationName(aName) && !hasPrefix) return;
  std::optional<std::string> given;
  if (mode.empty() || mode == "#FIXED") given = value;
  document_.defaults[eName].emplace(aName, given);
}

}  // namespace Tavrin
