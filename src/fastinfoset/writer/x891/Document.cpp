#include <Tavrin/XMLWriter_X891.h>

#include "../../Octets.h"
#include "Checks.h"
#include "State.h"
#include "Vocabulary.h"

// What stands in front of the root: the optional components (X.891, C.2) and the first children.
// Comments and instructions are here, too.

namespace Tavrin {

using namespace fastinfoset;

// --- Events. Each is kept until the root begins ---

void XMLWriter_X891::startDTD(const std::string& name, const std::string& publicId,
                              const std::string& systemId) {
  if (state_ == Prolog) {
    checkIdentifiers(publicId, systemId);
    checkRoom(publicId.size() + systemId.size(), 2);
  }
  XMLWriter_FI::startDTD(name, publicId, systemId);
  own_->document.prolog.push_back({State::Kind::documentType, publicId, systemId});
}

void XMLWriter_X891::endDTD() {
  XMLWriter_FI::endDTD();
  own_->document.prolog.push_back({State::Kind::endOfDocumentType, {}, {}});
}

void XMLWriter_X891::notationDecl(const std::string& name, const std::string& publicId,
                                  const std::string& systemId) {
  XMLWriter_FI::notationDecl(name, publicId, systemId);
  checkNCName(name);
  checkIdentifiers(publicId, systemId);
  if (publicId.empty() && systemId.empty()) {
    throw SAXException("The notation \"" + name + "\" has no identifier");
  }
  own_->document.notations.push_back({name, publicId, systemId});
}

void XMLWriter_X891::unparsedEntityDecl(const std::string& name, const std::string& publicId,
                                        const std::string& systemId,
                                        const std::string& notationName) {
  XMLWriter_FI::unparsedEntityDecl(name, publicId, systemId, notationName);
  checkNCName(name);
  checkNCName(notationName);
  checkIdentifiers(publicId, systemId);
  if (systemId.empty()) {
    throw SAXException("The unparsed entity \"" + name + "\" has no system identifier");
  }
  own_->document.unparsedEntities.push_back({name, publicId, systemId, notationName});
}

void XMLWriter_X891::externalEntityDecl(const std::string& name, const std::string& publicId,
                                        const std::string& systemId) {
  XMLWriter_FI::externalEntityDecl(name, publicId, systemId);
  checkIdentifiers(publicId, systemId);
  // The first declaration counts (XML 1.0, section 4.2).
  own_->document.externalEntities.emplace(name, std::pair{publicId, systemId});
}

void XMLWriter_X891::comment(const std::string& text) {
  XMLWriter::comment(text);
  checkComment(text);
  if (state_ == InDTD) return;
  if (own_->document.childrenBegan) {
    XMLWriter_FI::comment(text);
    sendOctets();
  } else {
    own_->document.prolog.push_back({State::Kind::comment, text, {}});
  }
}

void XMLWriter_X891::processingInstruction(const std::string& target, const std::string& data) {
  XMLWriter::processingInstruction(target, data);
  checkTarget(target);
  checkInstructionData(data);
  checkRoom(target.size(), 1);
  if (own_->document.childrenBegan) {
    XMLWriter_FI::processingInstruction(target, data);
    sendOctets();
  } else {
    own_->document.prolog.push_back({State::Kind::instruction, target, data});
  }
}

// --- Writing ---

/// Writes all that stands in front of the root.
void XMLWriter_X891::beginChildren(const WrittenVocabulary& vocabulary) {
  State::Document& document = own_->document;
  document.childrenBegan = true;
  if (out_) {
    writeComponents(vocabulary);
    writeProlog();
  }
  document.prolog = {};
  document.notations = {};
  document.unparsedEntities = {};
}

void XMLWriter_X891::writeComponents(const WrittenVocabulary& vocabulary) {
  const State::Document& document = own_->document;
  for (const unsigned octet : kHeader) put(octet);
  put((vocabulary.tables() != 0 ? kInitialVocabulary : 0U) |
      (document.notations.empty() ? 0U : kNotations) |
      (document.unparsedEntities.empty() ? 0U : kUnparsedEntities) |
      (own_->standalone ? kStandalone : 0U) | (own_->xmlVersion ? kVersion : 0U));
  if (vocabulary.tables() != 0) writeVocabulary(vocabulary);
  for (const State::Notation& notation : document.notations) {
    put(kNotation | (notation.systemId.empty() ? 0 : kSystemIdentifier) |
        (notation.publicId.empty() ? 0 : kPublicIdentifier));
    encodeIdentifier(&vocabulary_.otherNCNames, notation.name);
    encodeIdentifiers(notation.systemId, notation.publicId);
  }
  if (!document.notations.empty()) put(kTerminator);
  for (const State::UnparsedEntity& entity : document.unparsedEntities) {
    put(kUnparsedEntity | (entity.publicId.empty() ? 0 : kPublicIdentifier));
    encodeIdentifier(&vocabulary_.otherNCNames, entity.name);
    encodeIdentifiers(entity.systemId, entity.publicId);
    encodeIdentifier(&vocabulary_.otherNCNames, entity.notationName);
  }
  if (!document.unparsedEntities.empty()) put(kTerminator);
  if (own_->standalone) put(*own_->standalone ? 1 : 0);
  // It comes once: no table needs it.
  if (own_->xmlVersion) encodeString(&vocabulary_.otherStrings, false, *own_->xmlVersion);
}

void XMLWriter_X891::encodeIdentifiers(const std::string& systemId, const std::string& publicId) {
  if (!systemId.empty()) encodeIdentifier(&vocabulary_.otherURIs, systemId);
  if (!publicId.empty()) encodeIdentifier(&vocabulary_.otherURIs, publicId);
}

void XMLWriter_X891::writeProlog() {
  using Kind = State::Kind;
  const State::Document& document = own_->document;
  const bool impliesType = !document.notations.empty() || !document.unparsedEntities.empty();
  const std::vector<State::PrologItem>& items = document.prolog;
  for (std::size_t i = 0; i < items.size(); ++i) {
    const auto& [kind, first, second] = items[i];
    switch (kind) {
      case Kind::comment:
        XMLWriter_FI::comment(first);
        break;
      case Kind::instruction:
        XMLWriter_FI::processingInstruction(first, second);
        break;
      case Kind::documentType:
        if (first.empty() && second.empty() && impliesType &&
            items[i + 1].kind == Kind::endOfDocumentType) {
          ++i;
          break;
        }
        flushTerminator(false);
        put(kDocumentType | (second.empty() ? 0 : kSystemIdentifier) |
            (first.empty() ? 0 : kPublicIdentifier));
        encodeIdentifiers(second, first);
        break;
      case Kind::endOfDocumentType:
        flushTerminator(false);
        pendingTerminator_ = true;
    }
  }
}

}  // namespace Tavrin
