#include <Tavrin/XMLWriter_X891.h>

#include <algorithm>

#include "../format/Octets.h"
#include "Checks.h"
#include "WrittenVocabulary.h"
#include "X891Encoder.h"

// What stands in front of the root: the optional components (X.891, C.2) and the first children.
// Comments and instructions are here, too.

namespace Tavrin {

using namespace fastinfoset;

// --- Events. Each is kept until the root begins ---

void XMLWriter_X891::Encoder::startDTD(const std::string& name, const std::string& publicId,
                                       const std::string& systemId) {
  attempt([&] {
    writer_.XMLWriter::startDTD(name, publicId, systemId);
    checkIdentifiers(publicId, systemId);
    checkRoom(publicId.size() + systemId.size(), 2);
    document_.prolog.push_back({Kind::documentType, publicId, systemId});
  });
}

void XMLWriter_X891::Encoder::endDTD() {
  attempt([this] {
    writer_.XMLWriter::endDTD();
    document_.prolog.push_back({Kind::endOfDocumentType, {}, {}});
  });
}

// An identifier that is empty is left out, which the format allows of both (C.11).
void XMLWriter_X891::Encoder::notationDecl(const std::string& name, const std::string& publicId,
                                           const std::string& systemId) {
  attempt([&] {
    writer_.XMLWriter::notationDecl(name, publicId, systemId);
    checkNCName(name);
    checkIdentifiers(publicId, systemId);
    document_.notations.push_back({name, publicId, systemId});
  });
}

void XMLWriter_X891::Encoder::unparsedEntityDecl(const std::string& name,
                                                 const std::string& publicId,
                                                 const std::string& systemId,
                                                 const std::string& notationName) {
  attempt([&] {
    writer_.XMLWriter::unparsedEntityDecl(name, publicId, systemId, notationName);
    checkNCName(name);
    checkNCName(notationName);
    checkIdentifiers(publicId, systemId);
    // It must have one, which is not empty (C.10, C.22).
    if (systemId.empty()) {
      throw SAXException("The unparsed entity \"" + name + "\" has no system identifier");
    }
    document_.unparsedEntities.push_back({name, publicId, systemId, notationName});
  });
}

void XMLWriter_X891::Encoder::externalEntityDecl(const std::string& name,
                                                 const std::string& publicId,
                                                 const std::string& systemId) {
  attempt([&] {
    // The reader "X891" tells of it in front of the first reference.
    if (state_ != InElement) writer_.XMLWriter::externalEntityDecl(name, publicId, systemId);
    checkIdentifiers(publicId, systemId);
    // The first declaration counts (XML 1.0, section 4.2).
    document_.externalEntities.emplace(name, std::pair{publicId, systemId});
  });
}

// Nothing is written of these, but they have their place.

void XMLWriter_X891::Encoder::internalEntityDecl(const std::string& name,
                                                 const std::string& value) {
  attempt([&] { writer_.XMLWriter::internalEntityDecl(name, value); });
}

void XMLWriter_X891::Encoder::elementDecl(const std::string& name, const std::string& model) {
  attempt([&] { writer_.XMLWriter::elementDecl(name, model); });
}

void XMLWriter_X891::Encoder::attributeDecl(const std::string& eName, const std::string& aName,
                                            const std::string& type, const std::string& mode,
                                            const std::string& value) {
  attempt([&] { writer_.XMLWriter::attributeDecl(eName, aName, type, mode, value); });
}

void XMLWriter_X891::Encoder::comment(const std::string& text) {
  attempt([&] {
    writer_.XMLWriter::comment(text);
    checkComment(text);
    if (state_ == InDTD) return;
    if (document_.childrenBegan) {
      isWriting_ = true;
      encodeComment(text);
    } else {
      document_.prolog.push_back({Kind::comment, text, {}});
    }
  });
}

void XMLWriter_X891::Encoder::processingInstruction(const std::string& target,
                                                    const std::string& data) {
  attempt([&] {
    writer_.XMLWriter::processingInstruction(target, data);
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

void XMLWriter_X891::Encoder::writeInstruction(const std::string& target, const std::string& data) {
  if (document_.childrenBegan) {
    isWriting_ = true;
    encodeProcessingInstruction(target, data);
  } else {
    document_.prolog.push_back({Kind::instruction, target, data});
  }
}

// --- Writing ---

/// Writes all that stands in front of the root.
void XMLWriter_X891::Encoder::beginChildren(const WrittenVocabulary& vocabulary) {
  Document& document = document_;
  document.childrenBegan = true;
  if (out_) {
    writeComponents(vocabulary);
    writeProlog();
  }
  document.prolog = {};
  document.notations = {};
  document.unparsedEntities = {};
}

void XMLWriter_X891::Encoder::writeComponents(const WrittenVocabulary& vocabulary) {
  const Document& document = document_;
  for (const unsigned octet : kHeader) put(octet);
  put((vocabulary.tables() != 0 ? kInitialVocabulary : 0U) |
      (document.notations.empty() ? 0U : kNotations) |
      (document.unparsedEntities.empty() ? 0U : kUnparsedEntities) |
      (standalone_ ? kStandalone : 0U) | (xmlVersion_ ? kVersion : 0U));
  if (vocabulary.tables() != 0) writeVocabulary(vocabulary);
  for (const Notation& notation : document.notations) {
    put(kNotation | (notation.systemId.empty() ? 0 : kSystemIdentifier) |
        (notation.publicId.empty() ? 0 : kPublicIdentifier));
    writeIdentifier(&vocabulary_.otherNCNames, notation.name);
    encodeIdentifiers(notation.systemId, notation.publicId);
  }
  if (!document.notations.empty()) put(kTerminator);
  for (const UnparsedEntity& entity : document.unparsedEntities) {
    put(kUnparsedEntity | (entity.publicId.empty() ? 0 : kPublicIdentifier));
    writeIdentifier(&vocabulary_.otherNCNames, entity.name);
    encodeIdentifiers(entity.systemId, entity.publicId);
    writeIdentifier(&vocabulary_.otherNCNames, entity.notationName);
  }
  if (!document.unparsedEntities.empty()) put(kTerminator);
  if (standalone_) put(*standalone_ ? 1 : 0);
  // It comes once: no table needs it.
  if (xmlVersion_) writeString(&vocabulary_.otherStrings, false, *xmlVersion_);
}

void XMLWriter_X891::Encoder::encodeIdentifiers(const std::string& systemId,
                                                const std::string& publicId) {
  if (!systemId.empty()) writeIdentifier(&vocabulary_.otherURIs, systemId);
  if (!publicId.empty()) writeIdentifier(&vocabulary_.otherURIs, publicId);
}

void XMLWriter_X891::Encoder::writeProlog() {
  const Document& document = document_;
  const bool impliesType = !document.notations.empty() || !document.unparsedEntities.empty();
  const std::vector<PrologItem>& items = document.prolog;
  for (std::size_t i = 0; i < items.size(); ++i) {
    const auto& [kind, first, second] = items[i];
    switch (kind) {
      case Kind::comment:
        encodeComment(first);
        break;
      case Kind::instruction:
        encodeProcessingInstruction(first, second);
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
