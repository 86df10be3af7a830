#include <Tavrin/XMLWriter_XML10.h>

#include "../../xml/Characters.h"
#include "../../xml/Declarations.h"
#include "../../xml/Escapes.h"
#include "../../xml/Requirements.h"
#include "XML10Composer.h"

// The document type and its declarations (XML 1.0, sections 2.8, 3.2, 3.3 and 4).

namespace Tavrin {

namespace {

std::string quoted(const std::string& text) { return '"' + text + '"'; }

bool isParameterEntity(const std::string& name) { return name.starts_with('%'); }

/// The name of an entity as its declaration has it.
std::string declaredName(const std::string& name) {
  return isParameterEntity(name) ? "% " + name.substr(1) : name;
}

void requireEntityName(const std::string& name) {
  xml::requireNCName(isParameterEntity(name) ? name.substr(1) : name);
}

}  // namespace

// --- The declaration itself, and its external parts ---

void XMLWriter_XML10::Composer::startDTD(const std::string& name, const std::string& publicId,
                                         const std::string& systemId) {
  perform([&] {
    indent();
    writer_.XMLWriter::startDTD(name, publicId, systemId);
    write("<!DOCTYPE ", name);
    writeExternalIdentifier(Declared::DocumentType, publicId, systemId);
    xml::requireQName(name);
    document_.hasExternalSubset = !publicId.empty() || !systemId.empty();
  });
}

void XMLWriter_XML10::Composer::endDTD() {
  perform([this] {
    const bool hadContent = hasContent_;
    writer_.XMLWriter::endDTD();
    if (hadContent) {
      indent();
      write("]");
    }
    write(">");
  });
}

void XMLWriter_XML10::Composer::startEntity(const std::string& name) {
  requireSound();
  if (state_ != InDTD) return;
  Document& document = document_;
  if (document.entitiesOutside > 0) {
    ++document.entitiesOutside;
  } else if (name == "[dtd]") {
    if (document.hasExternalSubset) document.entitiesOutside = 1;
  } else if (isParameterEntity(name)) {
    // What an internal entity declares is written in its place: only a parser can tell whether its
    // text would do as it stands.
    const auto found = document.entities.find(name);
    const bool isInternal =
        found != document.entities.end() && found->second != Document::EntityKind::External;
    if (isInternal) return;
    writeParameterReference(name);
    document.entitiesOutside = 1;
  }
}

void XMLWriter_XML10::Composer::endEntity(const std::string& /*name*/) {
  requireSound();
  if (state_ == InDTD && document_.entitiesOutside > 0) --document_.entitiesOutside;
}

// --- References ---

void XMLWriter_XML10::Composer::skippedEntity(const std::string& name) {
  requireSound();
  if (name == "[dtd]") return;
  if (isParameterEntity(name) && state_ == InDTD) {
    if (!isOutsideInternalSubset()) writeParameterReference(name);
    document_.passesDeclarations = !document_.isStandalone;
  } else if (isOutsideInternalSubset()) {
    return;
  } else if (!isParameterEntity(name) && state_ == InElement) {
    writeGeneralReference(name);
  } else {
    throw SAXException("You cannot refer to an entity at this point");
  }
}

/// Writes a reference in content. The entity is declared (XML 1.0, section 4.1, "Entity Declared"),
/// and, as far as can be seen here, its text may stand there.
void XMLWriter_XML10::Composer::writeGeneralReference(const std::string& name) {
  using Kind = Document::EntityKind;
  perform([&] {
    xml::requireNCName(name);
    const Document& document = document_;
    const auto found = document.entities.find(name);
    if (found == document.entities.end()) {
      const bool mayBeElsewhere =
          !document.isStandalone && (document.hasExternalSubset || document.hasParameterReferences);
      if (!mayBeElsewhere && !xml::isPredefinedEntity(name)) {
        throw SAXException("The entity " + quoted(name) + " is not declared");
      }
    } else if (found->second == Kind::Unparsed) {
      throw SAXException("You cannot refer to the unparsed entity " + quoted(name));
    } else if (found->second == Kind::Markup && !xml::isPredefinedEntity(name)) {
      throw SAXException("You cannot refer to the entity " + quoted(name) +
                         ", whose text holds markup");
    }
    startChild();
    hasContent_ = true;
    write("&");
    write(name);
    write(";");
    forbidIndentation();
  });
}

/// Writes a reference between declarations.
void XMLWriter_XML10::Composer::writeParameterReference(const std::string& name) {
  perform([&] {
    xml::requireNCName(name.substr(1));
    const auto found = document_.entities.find(name);
    if (found == document_.entities.end()) {
      if (document_.isStandalone) {
        throw SAXException("The entity " + quoted(name) + " is not declared");
      }
    } else if (found->second != Document::EntityKind::External &&
               found->second != Document::EntityKind::Passed) {
      throw SAXException("You cannot refer to the entity " + quoted(name) +
                         ", whose text is internal");
    }
    startChild();
    indent();
    hasContent_ = true;
    write(name);
    write(";");
    document_.hasParameterReferences = true;
  });
}

// --- Declarations ---

void XMLWriter_XML10::Composer::writeSystemLiteral(std::string_view systemId) {
  xml::requireSystemId(systemId);
  const std::string_view quote = systemId.find('"') == std::string_view::npos ? "\"" : "'";
  write(" ");
  write(quote);
  write(systemId);
  write(quote);
}

/// Only a notation may do without a system identifier, if it has a public one (productions 75 and
/// 83). Elsewhere, one that is empty was written so.
void XMLWriter_XML10::Composer::writeExternalIdentifier(Declared declared,
                                                        const std::string& publicId,
                                                        const std::string& systemId) {
  const bool hasSystemId = !systemId.empty();
  if (!publicId.empty()) {
    xml::requirePublicId(publicId);
    write(" PUBLIC \"");
    write(publicId);
    write("\"");
    if (hasSystemId || declared != Declared::Notation) writeSystemLiteral(systemId);
    return;
  }
  if (!hasSystemId && declared == Declared::DocumentType) return;
  write(" SYSTEM");
  writeSystemLiteral(systemId);
}

void XMLWriter_XML10::Composer::notationDecl(const std::string& name, const std::string& publicId,
                                             const std::string& systemId) {
  perform([&] {
    if (isOutsideInternalSubset()) return writer_.XMLWriter::notationDecl(name, publicId, systemId);
    startChild();
    indent();
    writer_.XMLWriter::notationDecl(name, publicId, systemId);
    write("  <!NOTATION ", name);
    writeExternalIdentifier(Declared::Notation, publicId, systemId);
    write(">");
    xml::requireNCName(name);
  });
}

void XMLWriter_XML10::Composer::unparsedEntityDecl(const std::string& name,
                                                   const std::string& publicId,
                                                   const std::string& systemId,
                                                   const std::string& notationName) {
  perform([&] {
    if (isOutsideInternalSubset()) {
      return writer_.XMLWriter::unparsedEntityDecl(name, publicId, systemId, notationName);
    }
    startChild();
    indent();
    writer_.XMLWriter::unparsedEntityDecl(name, publicId, systemId, notationName);
    write("  <!ENTITY ", name);
    writeExternalIdentifier(Declared::Entity, publicId, systemId);
    write(" NDATA ", notationName, ">");
    xml::requireNCName(name);
    xml::requireNCName(notationName);
    if (xml::isPredefinedEntity(name)) {
      throw SAXException("The entity " + quoted(name) + " cannot be declared otherwise");
    }
    document_.entities.emplace(name, Document::EntityKind::Unparsed);
  });
}

void XMLWriter_XML10::Composer::externalEntityDecl(const std::string& name,
                                                   const std::string& publicId,
                                                   const std::string& systemId) {
  perform([&] {
    if (isOutsideInternalSubset())
      return writer_.XMLWriter::externalEntityDecl(name, publicId, systemId);
    startChild();
    indent();
    writer_.XMLWriter::externalEntityDecl(name, publicId, systemId);
    write("  <!ENTITY ", declaredName(name));
    writeExternalIdentifier(Declared::Entity, publicId, systemId);
    write(">");
    requireEntityName(name);
    if (xml::isPredefinedEntity(name)) {
      throw SAXException("The entity " + quoted(name) + " cannot be declared otherwise");
    }
    document_.entities.emplace(name, Document::EntityKind::External);
  });
}

void XMLWriter_XML10::Composer::internalEntityDecl(const std::string& name,
                                                   const std::string& value) {
  perform([&] {
    if (isOutsideInternalSubset()) return writer_.XMLWriter::internalEntityDecl(name, value);
    std::string literal;
    const std::size_t invalid = xml::kEntityValueEscapes.append(literal, value);
    startChild();
    indent();
    writer_.XMLWriter::internalEntityDecl(name, value);
    write("  <!ENTITY ", declaredName(name), " \"", literal, "\">");
    requireEntityName(name);
    if (invalid != xml::kAllValid) xml::requireText(value, "the text of an entity");
    if (!xml::isReplacementText(name, value)) {
      throw SAXException("The entity " + quoted(name) + " cannot be declared otherwise");
    }
    // Of what else may not stand in content, there is the end of a CDATA section (section 2.4).
    const bool hasMarkup =
        value.find_first_of("<&") != std::string::npos || value.find("]]>") != std::string::npos;
    using Kind = Document::EntityKind;
    const Kind kind = document_.passesDeclarations ? Kind::Passed
                      : hasMarkup                  ? Kind::Markup
                                                   : Kind::Text;
    document_.entities.emplace(name, kind);
  });
}

void XMLWriter_XML10::Composer::elementDecl(const std::string& name, const std::string& model) {
  perform([&] {
    if (isOutsideInternalSubset()) return writer_.XMLWriter::elementDecl(name, model);
    startChild();
    indent();
    writer_.XMLWriter::elementDecl(name, model);
    write("  <!ELEMENT ", name, " ", model, ">");
    xml::requireQName(name);
    xml::requireText(model, "a content model");
    if (!xml::isContentModel(model)) throw SAXException(quoted(model) + " is not a content model");
  });
}

void XMLWriter_XML10::Composer::attributeDecl(const std::string& eName, const std::string& aName,
                                              const std::string& type, const std::string& mode,
                                              const std::string& value) {
  perform([&] {
    if (isOutsideInternalSubset()) {
      return writer_.XMLWriter::attributeDecl(eName, aName, type, mode, value);
    }
    const std::string writtenType = xml::attributeType(type);
    startChild();
    indent();
    writer_.XMLWriter::attributeDecl(eName, aName, type, mode, value);
    write("  <!ATTLIST ", eName, " ", aName, " ", writtenType, " ");
    writeDefault(mode, value);
    write(">");
    xml::requireQName(eName);
    xml::requireQName(aName);
    if (writtenType.empty()) {
      xml::requireText(type, "the type of an attribute");
      throw SAXException(quoted(type) + " is not the type of an attribute");
    }
    rememberDefault(eName, aName, mode, value);
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
    xml::requireText(mode, "the default of an attribute");
    throw SAXException(quoted(mode) + " is not a default of an attribute");
  }
  std::string& text = composed_;
  text += quote_;
  xml::appendText(text, value, xml::attributeEscapes(quote_), "the default of an attribute");
  text += quote_;
}

/// Keeps what has to do with namespaces. The first declaration of an attribute is binding (section
/// 3.3), also where it has no default.
void XMLWriter_XML10::Composer::rememberDefault(const std::string& eName, const std::string& aName,
                                                const std::string& mode, const std::string& value) {
  if (document_.passesDeclarations) return;
  const bool isNamespaceDeclaration = xml::isDeclarationName(aName);
  const bool hasPrefix = aName.find(':') != std::string::npos && !aName.starts_with("xml:");
  if (!isNamespaceDeclaration && !hasPrefix) return;
  std::optional<std::string> given;
  if (mode.empty() || mode == "#FIXED") given = value;
  document_.defaults[eName].emplace(aName, given);
}

}  // namespace Tavrin
