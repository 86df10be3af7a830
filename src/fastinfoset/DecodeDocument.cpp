#include "Decoder.h"

#include <algorithm>

#include "format/Dialect.h"
#include "format/Octets.h"
#include "TakeOctet.h"

// The document: header, optional components, children and document type (X.891, C.2 and C.9 to
// C.11).

namespace Tavrin::fastinfoset {

bool Decoder::isFastInfosetDocument() {
  return std::ranges::all_of(kHeader, [this](int octet) { return nextOctet() == octet; });
}

void Decoder::decodeOptionalComponents() {
  const unsigned components = takeOctet();
  checkPadding(components & kComponentsPadding);
  if (components & kAdditionalData) decodeAdditionalData();
  if (components & kInitialVocabulary) decodeInitialVocabulary();
  if (components & kNotations) decodeNotations();
  if (components & kUnparsedEntities) decodeUnparsedEntities();
  if (components & kCharacterEncodingScheme) decodeCharacterEncodingScheme();
  if (components & kStandalone) reportStandalone(takeOctet());
  if (components & kVersion) decodeVersion();
}

void Decoder::decodeChildren() {
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
      checkRootElement(elementSeen);
      return;
    } else if (octet < dialect_.firstDocumentTypeOctet || octet > kLastDocumentTypeOctet) {
      fail("Error while parsing document");
    } else {
      if (elementSeen) fail("Found DTD behind the top level element");
      if (dtdSeen) fail("Found more than one DTD");
      dtdSeen = true;
      if (decodeDTD(static_cast<int>(octet))) {
        checkRootElement(elementSeen);
        return;
      }
    }
  }
}

/// The identifiers that an octet's low bits announce; absent ones are left alone.
void Decoder::decodeIdentifiers(unsigned octet, std::string& systemId, std::string& publicId) {
  if (octet & kSystemIdentifier) decodeIdentifier(&otherURIs_, systemId);
  if (octet & kPublicIdentifier) decodeIdentifier(&otherURIs_, publicId);
}

bool Decoder::decodeDTD(int octet) {
  std::string systemId;
  std::string publicId;
  decodeIdentifiers(static_cast<unsigned>(octet), systemId, publicId);
  reportStartDTD(publicId, systemId);
  unsigned next = takeOctet();
  while (next == kProcessingInstruction) {
    decodeProcessingInstruction();
    next = takeOctet();
  }
  if (next != kTerminator && next != kDoubleTerminator) {
    fail("Error while parsing DTD");
  }
  reportEndDTD();
  return next == kDoubleTerminator;
}

void Decoder::decodeNotations() {
  unsigned octet = takeOctet();
  for (; (octet & kNotationMask) == kNotation; octet = takeOctet()) {
    std::string name;
    std::string systemId;
    std::string publicId;
    decodeIdentifier(&otherNCNames_, name);
    decodeIdentifiers(octet, systemId, publicId);
    reportNotation(name, publicId, systemId);
  }
  if (octet != kTerminator) fail(dialect_.wrongNotation);
}

void Decoder::decodeUnparsedEntities() {
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
    reportUnparsedEntity(name, publicId, systemId, notationName);
  }
  if (octet != kTerminator) fail(dialect_.wrongUnparsedEntity);
}

void Decoder::decodeAdditionalData() {
  reportUnused("decodeAdditionalData");
  const unsigned long count = decodeNumberOfItems();
  for (unsigned long i = 0; i < count; ++i) {
    std::string identifier;
    std::string data;
    decodeIdentifier(nullptr, identifier);
    decodeIdentifier(nullptr, data);
    reportUnused(std::string("\"").append(identifier).append("\" = \"").append(data).append("\""));
  }
}

void Decoder::decodeCharacterEncodingScheme() {
  std::string scheme;
  decodeIdentifier(nullptr, scheme);
  reportUnused("decodeCharacterEncodingScheme - \"" + scheme + '"');
}

void Decoder::decodeVersion() {
  std::string version;
  decodeString(&otherStrings_, externalEntries(&otherStrings_), version);
  reportVersion(version);
}

}  // namespace Tavrin::fastinfoset
