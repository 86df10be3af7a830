#include <Tavrin/XMLWriter_X891.h>

#include <algorithm>

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
  attempt([&] {
    XMLWriter_FI::startDTD(name, publicId, systemId);
    checkIdentifiers(publicId, systemId);
    checkRoom(publicId.size() + systemId.size(), 2);
    own_->document.prolog.push_back({State::Kind::documentType, publicId, systemId});
  });
}

void XMLWriter_X891::endDTD() {
  attempt([this] {
    XMLWriter_FI::endDTD();
    own_->document.prolog.push_back({State::Kind::endOfDocumentType, {}, {}});
  });
}

// An identifier that is empty is left out, which the format allows of both (C.11).
void XMLWriter_X891::notationDecl(const std::string& name, const std::string& publicId,
                                  const std::string& systemId) {
  attempt([&] {
    XMLWriter_FI::notationDecl(name, publicId, systemId);
    checkNCName(name);
    checkIdentifiers(publicId, systemId);
    own_->document.notations.push_back({name, publicId, systemId});
  });
}

void XMLWriter_X891::unparsedEntityDecl(const std::string& name, const std::string& publicId,
                                        const std::string& systemId,
                                        const std::string& notationName) {
  attempt([&] {
    XMLWriter_FI::unparsedEntityDecl(name, publicId, systemId, notationName);
    checkNCName(name);
    checkNCName(notationName);
    checkIdentifiers(publicId, systemId);
    // It must have one, which is not empty (C.10, C.22).
    if (systemId.empty()) {
      throw SAXException("The unparsed entity \"" + name + "\" has no system identifier");
    }
    own_->document.unparsedEntities.push_back({name, publicId, systemId, notationName});
  });
}

void XMLWriter_X891::externalEntityDecl(const std::string& name, const std::string& publicId,
                                        const std::string& systemId) {
  attempt([&] {
    // The reader "X891" tells of it in front of the first reference.
    if (state_ != InElement) XMLWriter_FI::externalEntityDecl(name, publicId, systemId);
    checkIdentifiers(publicId, systemId);
    // The first declaration counts (XML 1.0, section 4.2).
    own_->document.externalEntities.emplace(name, std::pair{publicId, systemId});
  });
}

// Nothing is written of these, but they have their place.

void XMLWriter_X891::internalEntityDecl(const std::string& name, const std::string& value) {
  attempt([&] { XMLWriter_FI::internalEntityDecl(name, value); });
}

void XMLWriter_X891::elementDecl(const std::string& name, const std::string& model) {
  attempt([&] { XMLWriter_FI::elementDecl(name, model); });
}

void XMLWriter_X891::attributeDecl(const std::string& eName, const std::string& aName,
                                   const std::string& type, const std::string& mode,
                                   const std::string& value) {
  attempt([&] { XMLWriter_FI::attributeDecl(eName, aName, type, mode, value); });
}

void XMLWriter_X891::comment(const std::string& text) {
  attempt([&] {
    XMLWriter::comment(text);
    checkComment(text);
    if (state_ == InDTD) return;
    if (own_->document.childrenBegan) {
      own_->isWriting = true;
      XMLWriter_FI::comment(text);
    } else {
      own_->document.prolog.push_back({State::Kind::comment, text, {}});
    }
  });
}

void XMLWriter_X891::processingInstruction(const std::string& target, const std::string& data) {
  attempt([&] {
    XMLWriter::processingInstruction(target, data);
    checkTarget(target);
    checkInstructionData(data);
    checkRoom(target.size(), 1);
    // White space in front of the data belongs to the markup (XML 1.0, production 16).
    const std::size_t space = std::min(data.find_first_not_of(" \t\r\n"), data.size());
    if (space == 0) {
      writeInstruction(target, data);
    } else {
      writeInstruction(target, data.substr(space));
    }
  });
}

void XMLWriter_X891::writeInstruction(const std::string& target, const std::string& data) {
  if (own_->document.childrenBegan) {
    own_->isWriting = true;
    XMLWriter_FI::processingInstruction(target, data);
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
