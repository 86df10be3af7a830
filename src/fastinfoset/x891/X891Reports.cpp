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
    if (handlers_.dtd) handlers_.dtd->notationDecl(name, publicId, systemId);
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
    if (handlers_.dtd) handlers_.dtd->unparsedEntityDecl(name, publicId, systemId, notationName);
  });
}

void X891Decoder::reportStartDTD(const std::string& publicId, const std::string& systemId) {
  checkExternalId(publicId, systemId);
  Document& document = document_;
  document.hasDocumentType = true;
  document.isHoldingBack = true;
  document.prolog.emplace_back([=, this](const std::string& rootName) {
    if (handlers_.lexical) handlers_.lexical->startDTD(rootName, publicId, systemId);
  });
  std::ranges::move(document.declarations, std::back_inserter(document.prolog));
  document.declarations.clear();
}

void X891Decoder::reportEndDTD() {
  document_.prolog.emplace_back([this](const std::string&) {
    if (handlers_.lexical) handlers_.lexical->endDTD();
  });
}

void X891Decoder::releaseProlog(const std::string& rootName) {
  Document& document = document_;
  document.isHoldingBack = false;
  if (!document.hasDocumentType) {
    if (handlers_.lexical) handlers_.lexical->startDTD(rootName, {}, {});
    for (const auto& event : document.declarations) event(rootName);
    if (handlers_.lexical) handlers_.lexical->endDTD();
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
      if (handlers_.lexical) handlers_.lexical->comment(text);
    });
  } else if (handlers_.lexical) {
    handlers_.lexical->comment(text);
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
      if (handlers_.content) handlers_.content->processingInstruction(target, data);
    });
  } else if (handlers_.content) {
    handlers_.content->processingInstruction(target, data);
  }
}

// --- Elements ---

bool X891Decoder::finishStartTag(bool hasAttributes, const Name& name, std::uint32_t declarations) {
  Document& document = document_;
  StartTagAttributes& attributes = attributes_;
  const bool ended = hasAttributes && decodeAttributes(attributes);
  if (isCut_) return false;
  checkAmplification();
  if (document.isHoldingBack) releaseProlog(name.qName());
  const std::size_t declared = document.bindings.count();
  for (std::size_t i = declared - declarations; i < declared && handlers_.content; ++i) {
    handlers_.content->startPrefixMapping(document.bindings.prefixAt(i),
                                          document.bindings.uriAt(i));
  }
  if (handlers_.content) {
    handlers_.content->startElement(name.namespaceName(), name.localName(), name.qName(),
                                    attributes);
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
  if (handlers_.content)
    handlers_.content->endElement(name.namespaceName(), name.localName(), name.qName());
  if (declarations == 0) return;
  xml::NamespaceBindings& bindings = document_.bindings;
  const std::size_t octets = bindings.octets();
  for (; declarations > 0; --declarations) {
    if (handlers_.content)
      handlers_.content->endPrefixMapping(bindings.prefixAt(bindings.count() - 1));
    bindings.undo(1);
  }
  tableOctets_ -= octets - bindings.octets();
}

// --- Content ---

void X891Decoder::reportCharacters(const std::string& text) {
  checkAmplification();
  if (handlers_.content && !text.empty()) handlers_.content->characters(text);
}

void X891Decoder::reportValue(unsigned field, const std::string& uri, const EncodedData& value) {
  if (field == algorithms::cdata) {
    if (handlers_.lexical) handlers_.lexical->startCDATA();
    reportCharacters(static_cast<const CDATAData&>(value).data_);
    if (handlers_.lexical) handlers_.lexical->endCDATA();
  } else if (handlers_.primitiveTypes && field < kDialectX891.firstApplicationAlgorithm &&
             field != algorithms::uuid) {
    value.callContentHandler(*handlers_.primitiveTypes);
  } else if (handlers_.encodingAlgorithms) {
    handlers_.encodingAlgorithms->object(uri, static_cast<int>(field), value);
  } else if (handlers_.content) {
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
  if (reportsRaw_) {
    if (adds) addEntry(strings(kContentCharacterChunks), field, uri, octets);
    return deliverRaw(field, uri, octets);
  }
  // Without the text the table would lack an entry, and later indexes would mean other entries.
  if (adds) fail(describeUnknown(uri) + ", because the text enters a table");
  if (!handlers_.encodingAlgorithms) {
    fail(describeUnknown(uri) + ", or take its octets with the property " +
         propertyName(properties::encodingAlgorithmContentHandler));
  }
  handlers_.encodingAlgorithms->octets(uri, static_cast<int>(field), octets);
}

void X891Decoder::reportRaw(const RawOctets& entry) {
  fromTables_ += entry.uri.size() + entry.octets.size();
  checkAmplification();
  deliverRaw(entry.field, entry.uri, entry.octets);
}

void X891Decoder::deliverRaw(unsigned field, const std::string& uri, const std::string& octets) {
  if (handlers_.encodingAlgorithms) {
    handlers_.encodingAlgorithms->octets(uri, static_cast<int>(field), octets);
  } else if (handlers_.content) {
    const std::string text = RawData(octets).toString();
    checkTextLength(text.size(), octets.size());
    reportCharacters(text);
  }
}

void X891Decoder::reportEntityReference(const std::string& name, const std::string& publicId,
                                        const std::string& systemId) {
  checkAmplification();
  checkExternalId(publicId, systemId);
  if (!publicId.empty() || !systemId.empty()) declareEntity(name, publicId, systemId);
  if (handlers_.content) handlers_.content->skippedEntity(name);
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
  if (handlers_.decl) handlers_.decl->externalEntityDecl(name, publicId, systemId);
}

}  // namespace Tavrin::fastinfoset
