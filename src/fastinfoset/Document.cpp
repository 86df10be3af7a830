#include <algorithm>

#include "Decoder.h"
#include "Encoder.h"
#include "format/Octets.h"

// The document: header, optional components but the initial vocabulary, and children (X.891, clause
// 12 and C.2).

namespace Tavrin::fastinfoset {

bool Decoder::isFastInfosetDocument() {
  return std::ranges::all_of(kHeader, [this](int octet) { return input_.next() == octet; });
}

/// @param components the bits of the optional components that follow
void Encoder::encodeHeader(unsigned components) {
  for (const unsigned octet : kHeader) put(octet);
  put(components);
}

void Decoder::decodeOptionalComponents() {
  const unsigned components = readOctet();
  checkPadding(components & kComponentsPadding);
  if (components & kAdditionalData) decodeAdditionalData();
  if (components & kInitialVocabulary) decodeInitialVocabulary();
  if (components & kNotations) decodeNotations();
  if (components & kUnparsedEntities) decodeUnparsedEntities();
  if (components & kCharacterEncodingScheme) decodeCharacterEncodingScheme();
  if (components & kStandalone) reportStandalone(readOctet());
  if (components & kVersion) decodeVersion();
}

void Decoder::decodeAdditionalData() {
  reportUnused("decodeAdditionalData");
  const unsigned long count = decodeNumberOfItems();
  for (unsigned long i = 0; i < count; ++i) {
    std::string identifier;
    std::string data;
    decodeIdentifier(identifier);
    decodeIdentifier(data);
    reportUnused(std::string("\"").append(identifier).append("\" = \"").append(data).append("\""));
  }
}

void Decoder::decodeCharacterEncodingScheme() {
  std::string scheme;
  decodeIdentifier(scheme);
  reportUnused("decodeCharacterEncodingScheme - \"" + scheme + '"');
}

void Decoder::decodeVersion() {
  std::string version;
  decodeString(kOtherStrings, version);
  reportVersion(version);
}

void Decoder::decodeChildren() {
  bool hasRoot = false;
  bool hasDTD = false;
  for (;;) {
    const unsigned octet = readOctet();
    if (octet < kFirstNonElement) {
      if (hasRoot) fail("Found more than one element on the top level");
      if (decodeElement(octet)) return;
      hasRoot = true;
    } else if (octet == kProcessingInstruction) {
      decodeProcessingInstruction();
    } else if (octet == kComment) {
      decodeComment();
    } else if (octet == kTerminator || octet == kDoubleTerminator) {
      return checkRootElement(hasRoot);
    } else if (octet < dialect_.firstDocumentTypeOctet || octet > kLastDocumentTypeOctet) {
      fail("Error while parsing document");
    } else {
      if (hasRoot) fail("Found DTD behind the top level element");
      if (hasDTD) fail("Found more than one DTD");
      hasDTD = true;
      if (decodeDTD(octet)) return checkRootElement(hasRoot);
    }
  }
}

void Encoder::finishDocument() {
  perform([this] {
    flushCharacters();
    flushTerminator(true);
  });
}

}  // namespace Tavrin::fastinfoset
