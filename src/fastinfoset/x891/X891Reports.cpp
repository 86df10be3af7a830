#include <Tavrin/Identifiers.h>

#include <algorithm>

#include "../../sax/AtLimit.h"
#include "../../xml/Rules.h"
#include "../DecodeAttributes.h"
#include "../format/Dialect.h"
#include "X891Decoder.h"

// Reports to handlers. A handler may remove itself during any event.

namespace Tavrin::fastinfoset {

// --- What comes before the root element ---
// The name of the document type is that of the root element, so it is held back until then, with
// all that follows it. It takes memory meanwhile, so it counts like an entry of a table.

void X891Decoder::reportUnused(const std::string&) {}

void X891Decoder::reportNotation(const std::string& name, const std::string& publicId,
                                 const std::string& systemId) {
  checkExternalId(publicId, systemId);
  accountFor(name.size() + publicId.size() + systemId.size() + kHeldBackOctets);
  document_.isHoldingBack = true;
  document_.declarations.emplace_back([=, this](const std::string&) {
    if (dtdHandler_) dtdHandler_->notationDecl(name, publicId, systemId);
  });
}

void X891Decoder::reportUnparsedEntity(const std::string& name, const std::string& publicId,
                                       const std::string& systemId,
                                       const std::string& notationName) {
  checkExternalId(publicId, systemId);
  accountFor(name.size() + publicId.size() + systemId.size() + notationName.size() +
             kHeldBackOctets);
  document_.isHoldingBack = true;
  document_.declarations.emplace_back([=, this](const std::string&) {
    if (dtdHandler_) dtdHandler_->unparsedEntityDecl(name, publicId, systemId, notationName);
  });
}

void X891Decoder::reportStartDTD(const std::string& publicId, const std::string& systemId) {
  checkExternalId(publicId, systemId);
  Document& document = document_;
  document.hasDocumentType = true;
  document.isHoldingBack = true;
  document.prolog.emplace_back([=, this](const std::string& rootName) {
    if (lexicalHandler_) lexicalHandler_->startDTD(rootName, publicId, systemId);
  });
  std::ranges::move(document.declarations, std::back_inserter(document.prolog));
  document.declarations.clear();
}

void X891Decoder::reportEndDTD() {
  document_.prolog.emplace_back([this](const std::string&) {
    if (lexicalHandler_) lexicalHandler_->endDTD();
  });
}

void X891Decoder::releaseProlog(const std::string& rootName) {
  Document& document = document_;
  document.isHoldingBack = false;
  if (!document.hasDocumentType) {
    if (lexicalHandler_) lexicalHandler_->startDTD(rootName, {}, {});
    for (const auto& event : document.declarations) event(rootName);
    if (lexicalHandler_) lexicalHandler_->endDTD();
  }
  for (const auto& event : document.prolog) event(rootName);
  document.declarations.clear();
  document.prolog.clear();
}

void X891Decoder::reportComment(const std::string& text) {
  failIf(xml::whyNotComment(text));
  checkAmplification();
  if (document_.isHoldingBack) {
    accountFor(text.size() + kHeldBackOctets);
    document_.prolog.emplace_back([=, this](const std::string&) {
      if (lexicalHandler_) lexicalHandler_->comment(text);
    });
  } else if (lexicalHandler_) {
    lexicalHandler_->comment(text);
  }
}

void X891Decoder::reportProcessingInstruction(const std::string& target, const std::string& data) {
  failIf(xml::whyNotTarget(target));
  failIf(xml::whyNotInstructionData(data));
  if (data.find_first_of(" \t\r\n") == 0) {
    fail("Processing instruction that begins with white space");
  }
  checkAmplification();
  if (document_.isHoldingBack) {
    accountFor(target.size() + data.size() + kHeldBackOctets);
    document_.prolog.emplace_back([=, this](const std::string&) {
      if (contentHandler_) contentHandler_->processingInstruction(target, data);
    });
  } else if (contentHandler_) {
    contentHandler_->processingInstruction(target, data);
  }
}

// --- Elements ---

bool X891Decoder::finishStartTag(bool hasAttributes, const Name& name, std::uint32_t declarations) {
  Document& document = document_;
  StartTagAttributes& attributes = attributes_;
  const bool ended = hasAttributes && decodeAttributes(attributes);
  if (isCut_) return false;
  checkAmplification();
  if (document.isHoldingBack) releaseProlog(name.qName);
  const std::size_t declared = document.bindings.count();
  for (std::size_t i = declared - declarations; i < declared && contentHandler_; ++i) {
    contentHandler_->startPrefixMapping(document.bindings.prefixAt(i), document.bindings.uriAt(i));
  }
  if (contentHandler_) {
    contentHandler_->startElement(name.namespaceName, name.localName, name.qName, attributes);
  }
  if (!isPulled_) forgetStartTag();
  return ended;
}

void X891Decoder::forgetStartTag() {
  attributes_.clear();
  tableOctets_ -= document_.tagOctets;
  document_.tagOctets = 0;
}

void X891Decoder::reportEndElement(const Name& name, std::uint32_t declarations) {
  if (contentHandler_) contentHandler_->endElement(name.namespaceName, name.localName, name.qName);
  if (declarations == 0) return;
  xml::NamespaceBindings& bindings = document_.bindings;
  const std::size_t octets = bindings.octets();
  for (; declarations > 0; --declarations) {
    if (contentHandler_) contentHandler_->endPrefixMapping(bindings.prefixAt(bindings.count() - 1));
    bindings.undo(1);
  }
  tableOctets_ -= octets - bindings.octets();
}

// --- Content ---

void X891Decoder::reportCharacters(const std::string& text) {
  checkAmplification();
  if (contentHandler_ && !text.empty()) contentHandler_->characters(text);
}

void X891Decoder::reportValue(unsigned field, const std::string& uri, const EncodedData& value) {
  if (field == algorithms::cdata) {
    if (lexicalHandler_) lexicalHandler_->startCDATA();
    reportCharacters(static_cast<const CDATAData&>(value).data_);
    if (lexicalHandler_) lexicalHandler_->endCDATA();
  } else if (primitiveTypeContentHandler_ && field < kDialectX891.firstApplicationAlgorithm &&
             field != algorithms::uuid) {
    value.callContentHandler(*primitiveTypeContentHandler_);
  } else if (encodingAlgorithmContentHandler_) {
    encodingAlgorithmContentHandler_->object(uri, static_cast<int>(field), value);
  } else if (contentHandler_) {
    reportCharacters(textOfReported(field, value));
  }
}

std::string X891Decoder::textOfReported(unsigned field, const EncodedData& value) {
  checkTextOf(field, value);
  std::string text = value.toString();
  if (field >= kDialectX891.firstApplicationAlgorithm) {
    checkText(text);  // An application's algorithm may make any text, of any length.
    checkTextLength(text.size(), 0);
  }
  return text;
}

void X891Decoder::reportOctets(bool adds, unsigned field, const std::string& uri,
                               const std::string& octets) {
  // Without the text the table would lack an entry, and later indexes would mean other entries.
  if (adds) fail(describeUnknown(uri) + ", because the text enters a table");
  if (!encodingAlgorithmContentHandler_) {
    fail(describeUnknown(uri) + ", or take its octets with the property " +
         propertyName(properties::encodingAlgorithmContentHandler));
  }
  encodingAlgorithmContentHandler_->octets(uri, static_cast<int>(field), octets);
}

void X891Decoder::reportEntityReference(const std::string& name, const std::string& publicId,
                                        const std::string& systemId) {
  checkAmplification();
  checkExternalId(publicId, systemId);
  if (!publicId.empty() || !systemId.empty()) declareEntity(name, publicId, systemId);
  if (contentHandler_) contentHandler_->skippedEntity(name);
}

/// In the format references have identifiers; in XML a declaration has them, once for a name.
void X891Decoder::declareEntity(const std::string& name, const std::string& publicId,
                                const std::string& systemId) {
  const auto [entity, isNew] = document_.entities.try_emplace(name, publicId, systemId);
  if (!isNew) {
    if (entity->second == std::pair(publicId, systemId)) return;
    fail("References to the entity \"" + name + "\" with different identifiers");
  }
  accountFor(name.size() + publicId.size() + systemId.size() + kHeldBackOctets);
  if (declHandler_) declHandler_->externalEntityDecl(name, publicId, systemId);
}

}  // namespace Tavrin::fastinfoset
