#include <Tavrin/XMLReader_FI.h>

#include <algorithm>

#include "../Dialect.h"
#include "../Octets.h"
#include "TakeOctet.h"

// The document: header, optional components, children and document type (X.891, C.2 and C.9 to
// C.11).

namespace Tavrin {

using namespace fastinfoset;

bool XMLReader_FI::isFastInfosetDocument() {
  return std::ranges::all_of(kHeader, [this](int octet) { return nextOctet() == octet; });
}

void XMLReader_FI::decodeOptionalComponents() {
  const unsigned components = takeOctet();
  dialectCheckPadding(components & kComponentsPadding);
  if (components & kAdditionalData) decodeAdditionalData();
  if (components & kInitialVocabulary) decodeInitialVocabulary();
  if (components & kNotations) decodeNotations();
  if (components & kUnparsedEntities) decodeUnparsedEntities();
  if (components & kCharacterEncodingScheme) decodeCharacterEncodingScheme();
  if (components & kStandalone) dialectDeliverStandalone(takeOctet());
  if (components & kVersion) decodeVersion();
}

void XMLReader_FI::decodeChildren() {
  bool elementSeen = false;
  bool dtdSeen = false;
  for (;;) {
    const unsigned octet = takeOctet();
    if (octet < kFirstNonElement) {
      if (elementSeen) fail("Found more than one element on the top level");
      if (decodeElement(static_cast<int>(octet))) return;
      elementSeen = true;
    } else if (octet == kProcessingInstruction) {
      decodeProcessingInstruction();
    } else if (octet == kComment) {
      decodeComment();
    } else if (octet == kTerminator || octet == kDoubleTerminator) {
      dialectEndChildren(elementSeen);
      return;
    } else if (octet < dialect_.firstDocumentTypeOctet || octet > kLastDocumentTypeOctet) {
      fail("Error while parsing document");
    } else {
      if (elementSeen) fail("Found DTD behind the top level element");
      if (dtdSeen) fail("Found more than one DTD");
      dtdSeen = true;
      if (decodeDTD(static_cast<int>(octet))) {
        dialectEndChildren(elementSeen);
        return;
      }
    }
  }
}

/// The identifiers that an octet's low bits announce; absent ones are left alone.
void XMLReader_FI::decodeIdentifiers(unsigned octet, std::string& systemId, std::string& publicId) {
  if (octet & kSystemIdentifier) decodeIdentifier(&otherURIs_, systemId);
  if (octet & kPublicIdentifier) decodeIdentifier(&otherURIs_, publicId);
}

bool XMLReader_FI::decodeDTD(int octet) {
  std::string systemId;
  std::string publicId;
  decodeIdentifiers(static_cast<unsigned>(octet), systemId, publicId);
  dialectDeliverStartDTD(publicId, systemId);
  unsigned next = takeOctet();
  while (next == kProcessingInstruction) {
    decodeProcessingInstruction();
    next = takeOctet();
  }
  if (next != kTerminator && next != kDoubleTerminator) {
    fail("Error while parsing DTD");
  }
  dialectDeliverEndDTD();
  return next == kDoubleTerminator;
}

void XMLReader_FI::decodeNotations() {
  unsigned octet = takeOctet();
  for (; (octet & kNotationMask) == kNotation; octet = takeOctet()) {
    std::string name;
    std::string systemId;
    std::string publicId;
    decodeIdentifier(&otherNCNames_, name);
    decodeIdentifiers(octet, systemId, publicId);
    dialectDeliverNotation(name, publicId, systemId);
  }
  if (octet != kTerminator) fail(dialect_.wrongNotation);
}

void XMLReader_FI::decodeUnparsedEntities() {
  unsigned octet = takeOctet();
  for (; (octet & kUnparsedEntityMask) == kUnparsedEntity; octet = takeOctet()) {
    std::string name;
    std::string systemId;
    std::string publicId;
    std::string notationName;
    decodeIdentifier(&otherNCNames_, name);
    decodeIdentifier(&otherURIs_, systemId);
    if (octet & kPublicIdentifier) decodeIdentifier(&otherURIs_, publicId);
    decodeIdentifier(&otherNCNames_, notationName);
    dialectDeliverUnparsedEntity(name, publicId, systemId, notationName);
  }
  if (octet != kTerminator) fail(dialect_.wrongUnparsedEntity);
}

void XMLReader_FI::decodeAdditionalData() {
  dialectDeliverUnused("decodeAdditionalData");
  const unsigned long count = decodeNumberOfItems();
  for (unsigned long i = 0; i < count; ++i) {
    std::string identifier;
    std::string data;
    decodeIdentifier(nullptr, identifier);
    decodeIdentifier(nullptr, data);
    dialectDeliverUnused(
        std::string("\"").append(identifier).append("\" = \"").append(data).append("\""));
  }
}

void XMLReader_FI::decodeCharacterEncodingScheme() {
  std::string scheme;
  decodeIdentifier(nullptr, scheme);
  dialectDeliverUnused("decodeCharacterEncodingScheme - \"" + scheme + '"');
}

void XMLReader_FI::decodeVersion() {
  std::string version;
  decodeString(&otherStrings_, externalEntries(&otherStrings_), version);
  dialectDeliverVersion(version);
}

}  // namespace Tavrin
