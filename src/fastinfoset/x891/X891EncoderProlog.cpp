#include <Tavrin/XMLWriter_X891.h>

#include <algorithm>

#include "../../xml/Rules.h"
#include "../InitialVocabulary.h"
#include "../format/Octets.h"
#include "X891Encoder.h"

// What precedes the root element: the optional components and the first children; also comments and
// processing instructions anywhere.

namespace Tavrin {

using namespace fastinfoset;

// --- Events. They are buffered until the root element begins ---

void XMLWriter_X891::startDTD(const std::string& name, const std::string& publicId,
                              const std::string& systemId) {
  encoder_->attempt([&](Encoder& encoder) {
    XMLWriter::startDTD(name, publicId, systemId);
    checkIdentifiers(publicId, systemId);
    encoder.checkTableOctets(publicId.size() + systemId.size(), 2);
    encoder.document_.prolog.push_back({Encoder::Kind::documentType, publicId, systemId});
  });
}

void XMLWriter_X891::endDTD() {
  encoder_->attempt([this](Encoder& encoder) {
    XMLWriter::endDTD();
    encoder.document_.prolog.push_back({Encoder::Kind::endOfDocumentType, {}, {}});
  });
}

// An empty identifier is omitted: the format requires neither of the two.
void XMLWriter_X891::notationDecl(const std::string& name, const std::string& publicId,
                                  const std::string& systemId) {
  encoder_->attempt([&](Encoder& encoder) {
    XMLWriter::notationDecl(name, publicId, systemId);
    checkNCName(name);
    checkIdentifiers(publicId, systemId);
    encoder.document_.notations.push_back({name, publicId, systemId, {}});
  });
}

void XMLWriter_X891::unparsedEntityDecl(const std::string& name, const std::string& publicId,
                                        const std::string& systemId,
                                        const std::string& notationName) {
  encoder_->attempt([&](Encoder& encoder) {
    XMLWriter::unparsedEntityDecl(name, publicId, systemId, notationName);
    checkNCName(name);
    checkNCName(notationName);
    checkIdentifiers(publicId, systemId);
    // The format requires one that is not empty.
    if (systemId.empty()) {
      throw SAXException("The unparsed entity \"" + name + "\" has no system identifier");
    }
    encoder.document_.unparsedEntities.push_back({name, publicId, systemId, notationName});
  });
}

void XMLWriter_X891::externalEntityDecl(const std::string& name, const std::string& publicId,
                                        const std::string& systemId) {
  encoder_->attempt([&](Encoder& encoder) {
    // The reader "X891" reports it before the first reference.
    if (state_ != InElement) XMLWriter::externalEntityDecl(name, publicId, systemId);
    checkIdentifiers(publicId, systemId);
    // The first declaration counts (XML 1.0, section 4.2).
    encoder.document_.externalEntities.emplace(name, std::pair{publicId, systemId});
  });
}

// Nothing is written for these declarations, but they may come only in a document type.

void XMLWriter_X891::internalEntityDecl(const std::string& name, const std::string& value) {
  encoder_->attempt([&](Encoder&) { XMLWriter::internalEntityDecl(name, value); });
}

void XMLWriter_X891::elementDecl(const std::string& name, const std::string& model) {
  encoder_->attempt([&](Encoder&) { XMLWriter::elementDecl(name, model); });
}

void XMLWriter_X891::attributeDecl(const std::string& eName, const std::string& aName,
                                   const std::string& type, const std::string& mode,
                                   const std::string& value) {
  encoder_->attempt([&](Encoder&) { XMLWriter::attributeDecl(eName, aName, type, mode, value); });
}

void XMLWriter_X891::comment(const std::string& text) {
  encoder_->attempt([&](Encoder& encoder) {
    XMLWriter::comment(text);
    checkText(text, "a comment");
    xml::refuseIf(xml::whyNotComment(text));
    if (state_ == InDTD) return;
    if (!encoder.document_.childrenBegan) {
      encoder.document_.prolog.push_back({Encoder::Kind::comment, text, {}});
      return;
    }
    encoder.isWriting_ = true;
    encoder.encodeComment(text);
  });
}

void XMLWriter_X891::processingInstruction(const std::string& target, const std::string& data) {
  encoder_->attempt([&](Encoder& encoder) {
    XMLWriter::processingInstruction(target, data);
    checkNCName(target);
    xml::refuseIf(xml::whyNotTarget(target));
    checkText(data, "a processing instruction");
    xml::refuseIf(xml::whyNotInstructionData(data));
    encoder.checkTableOctets(target.size(), 1);
    // White space before the data belongs to the markup (XML 1.0, production 16).
    const std::size_t space = std::min(data.find_first_not_of(" \t\r\n"), data.size());
    std::string rest;
    const std::string& written = space == 0 ? data : rest = data.substr(space);
    if (!encoder.document_.childrenBegan) {
      encoder.document_.prolog.push_back({Encoder::Kind::processingInstruction, target, written});
      return;
    }
    encoder.isWriting_ = true;
    encoder.encodeProcessingInstruction(target, written);
  });
}

// --- Writing ---

/// Writes everything that precedes the root element.
void XMLWriter_X891::Encoder::beginChildren(const InitialVocabulary& vocabulary) {
  Document& document = document_;
  document.childrenBegan = true;
  if (out_) {
    encodeComponents(vocabulary);
    encodeProlog();
  }
  document.prolog = {};
  document.notations = {};
  document.unparsedEntities = {};
}

void XMLWriter_X891::Encoder::encodeComponents(const InitialVocabulary& vocabulary) {
  const Document& document = document_;
  const bool hasVocabulary = vocabulary.components() != 0;
  encodeHeader((hasVocabulary ? kInitialVocabulary : 0U) |
               (document.notations.empty() ? 0U : kNotations) |
               (document.unparsedEntities.empty() ? 0U : kUnparsedEntities) |
               (standalone_ ? kStandalone : 0U) | (xmlVersion_ ? kVersion : 0U));
  if (hasVocabulary) encodeInitialVocabulary(vocabulary);
  for (const ExternalItem& notation : document.notations) encodeNotation(notation);
  if (!document.notations.empty()) put(kTerminator);
  for (const ExternalItem& entity : document.unparsedEntities) encodeUnparsedEntity(entity);
  if (!document.unparsedEntities.empty()) put(kTerminator);
  if (standalone_) put(*standalone_ ? 1 : 0);
  // It is never repeated, so that no table needs it.
  if (xmlVersion_) encodeString(kOtherStrings, false, *xmlVersion_);
}

void XMLWriter_X891::Encoder::encodeProlog() {
  const Document& document = document_;
  const bool impliesType = !document.notations.empty() || !document.unparsedEntities.empty();
  const std::vector<PrologItem>& items = document.prolog;
  for (std::size_t i = 0; i < items.size(); ++i) {
    const auto& [kind, first, second] = items[i];
    switch (kind) {
      case Kind::comment:
        encodeComment(first);
        break;
      case Kind::processingInstruction:
        encodeProcessingInstruction(first, second);
        break;
      case Kind::documentType:
        if (first.empty() && second.empty() && impliesType &&
            items[i + 1].kind == Kind::endOfDocumentType) {
          ++i;
          break;
        }
        encodeDocumentType({{}, first, second, {}});
        break;
      case Kind::endOfDocumentType:
        flushTerminator(false);
        pendingTerminator_ = true;
    }
  }
}

}  // namespace Tavrin
