#include <Tavrin/XMLReader_FI.h>

#include <algorithm>
#include <iostream>

#include "../Octets.h"

// The document: header, optional components, children and document type (X.891, C.2 and C.9 to
// C.11).

namespace Tavrin {

using namespace fastinfoset;

bool XMLReader_FI::isFastInfosetDocument() {
  return std::ranges::all_of(kHeader, [this](int octet) { return stream_->get() == octet; });
}

void XMLReader_FI::decodeOptionalComponents() {
  const unsigned components = readOctet();
  if (components & kAdditionalData) decodeAdditionalData();
  if (components & kInitialVocabulary) decodeInitialVocabulary();
  if (components & kNotations) decodeNotations();
  if (components & kUnparsedEntities) decodeUnparsedEntities();
  if (components & kCharacterEncodingScheme) decodeCharacterEncodingScheme();
  if (components & kStandalone) readOctet();
  if (components & kVersion) decodeVersion();
}

void XMLReader_FI::decodeChildren() {
  bool elementSeen = false;
  bool dtdSeen = false;
  for (;;) {
    const unsigned octet = readOctet();
    if (octet < kFirstNonElement) {
      if (elementSeen) throw SAXException("Found more than one element on the top level");
      if (decodeElement(static_cast<int>(octet))) return;
      elementSeen = true;
    } else if (octet == kProcessingInstruction) {
      decodeProcessingInstruction();
    } else if (octet == kComment) {
      decodeComment();
    } else if (octet == kTerminator || octet == kDoubleTerminator) {
      return;
    } else if (octet > kLastDocumentTypeOctet) {
      throw SAXException("Error while parsing document");
    } else {
      if (elementSeen) throw SAXException("Found DTD behind the top level element");
      if (dtdSeen) throw SAXException("Found more than one DTD");
      if (decodeDTD(static_cast<int>(octet))) return;
      dtdSeen = true;
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
  if (lexicalHandler_) lexicalHandler_->startDTD(std::string(), publicId, systemId);
  unsigned next = readOctet();
  while (next == kProcessingInstruction) {
    decodeProcessingInstruction();
    next = readOctet();
  }
  if (next != kTerminator && next != kDoubleTerminator) {
    throw SAXException("Error while parsing DTD");
  }
  if (lexicalHandler_) lexicalHandler_->endDTD();
  return next == kDoubleTerminator;
}

void XMLReader_FI::decodeNotations() {
  unsigned octet = readOctet();
  for (; (octet & kNotationMask) == kNotation; octet = readOctet()) {
    std::string name;
    std::string systemId;
    std::string publicId;
    decodeIdentifier(&otherNCNames_, name);
    decodeIdentifiers(octet, systemId, publicId);
    if (dtdHandler_) dtdHandler_->notationDecl(name, publicId, systemId);
  }
  if (octet != kTerminator) throw SAXException("Error while parsing namespaces");
}

void XMLReader_FI::decodeUnparsedEntities() {
  unsigned octet = readOctet();
  for (; (octet & kUnparsedEntityMask) == kUnparsedEntity; octet = readOctet()) {
    std::string name;
    std::string systemId;
    std::string publicId;
    std::string notationName;
    decodeIdentifier(&otherNCNames_, name);
    decodeIdentifier(&otherURIs_, systemId);
    if (octet & kPublicIdentifier) decodeIdentifier(&otherURIs_, publicId);
    decodeIdentifier(&otherNCNames_, notationName);
    if (dtdHandler_) dtdHandler_->unparsedEntityDecl(name, publicId, systemId, notationName);
  }
  if (octet != kTerminator) throw SAXException("Error while parsing namespaces");
}

// What no handler takes is printed, a line each.

void XMLReader_FI::decodeAdditionalData() {
  std::cout << "decodeAdditionalData\n";
  const unsigned long count = decodeNumberOfItems();
  for (unsigned long i = 0; i < count; ++i) {
    std::string identifier;
    std::string data;
    decodeIdentifier(nullptr, identifier);
    decodeIdentifier(nullptr, data);
    std::cout << '"' << identifier << "\" = \"" << data << "\"\n";
  }
}

void XMLReader_FI::decodeCharacterEncodingScheme() {
  std::string scheme;
  decodeIdentifier(nullptr, scheme);
  std::cout << "decodeCharacterEncodingScheme - \"" << scheme << "\"\n";
}

void XMLReader_FI::decodeVersion() {
  std::string version;
  decodeString(&otherStrings_, nullptr, version);
  std::cout << "decodeVersion - \"" << version << "\"\n";
}

}  // namespace Tavrin
