#include <algorithm>
#include <array>

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

void Decoder::decodeDocument() {
  decodeBeginning();
  decodeChildren();
  if (!isCut_) endDocument();
}

/// Decodes what is left of what precedes the children.
void Decoder::decodeBeginning() {
  if (!progress_.hasHeader) {
    decodeHeader();
    decodeComponentBits();
    progress_.hasHeader = true;
    endStep();
  }
  if (!progress_.hasStarted) {
    decodeOptionalComponents();
    progress_.hasStarted = true;
    reportStartDocument();
  }
}

void Decoder::endDocument() {
  checkRootElement(progress_.hasRoot);
  progress_.hasEnded = true;
  reportEndDocument();
}

void Decoder::decodeComponentBits() {
  progress_.components = readOctet();
  checkPadding(progress_.components & kComponentsPadding);
}

/// Decodes the components up to the initial vocabulary.
void Decoder::decodeVocabularyComponents() {
  decodeComponentBits();
  progress_.components &= kAdditionalData | kInitialVocabulary;
  decodeOptionalComponents();
}

void Decoder::decodeOptionalComponents() {
  struct Component {
    unsigned bit;
    void (Decoder::*decode)();
  };
  static constexpr std::array<Component, 7> kComponents = {{
      {kAdditionalData, &Decoder::decodeAdditionalData},
      {kInitialVocabulary, &Decoder::decodeInitialVocabulary},
      {kNotations, &Decoder::decodeNotations},
      {kUnparsedEntities, &Decoder::decodeUnparsedEntities},
      {kCharacterEncodingScheme, &Decoder::decodeCharacterEncodingScheme},
      {kStandalone, &Decoder::decodeStandalone},
      {kVersion, &Decoder::decodeVersion},
  }};
  for (const Component& component : kComponents) {
    if ((progress_.components & component.bit) == 0) continue;
    (this->*component.decode)();
    progress_.components &= ~component.bit;
    endStep();
  }
}

void Decoder::decodeAdditionalData() {
  if (!progress_.itemsLeft) reportUnused("decodeAdditionalData");
  decodeItems(UINT32_MAX, [this] {
    std::string identifier;
    std::string data;
    decodeIdentifier(identifier);
    decodeIdentifier(data);
    reportUnused(std::string("\"").append(identifier).append("\" = \"").append(data).append("\""));
  });
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
  for (bool ended = false; !ended && nextStep();) {
    if (tag_.part != StartTag::kNone || !openElements_.empty()) {
      ended = decodeContent(0);
    } else if (progress_.isInDTD) {
      ended = decodeDTDContent();
    } else {
      ended = decodeChild(readOctet());
    }
  }
}

/// @return true when it was the end of the document
bool Decoder::decodeChild(unsigned octet) {
  if (octet < kFirstNonElement) {
    beginRootElement(octet);
    return decodeContent(0);
  }
  if (octet == kTerminator || octet == kDoubleTerminator) return true;
  if (octet == kProcessingInstruction) {
    decodeProcessingInstruction();
  } else if (octet == kComment) {
    decodeComment();
  } else if (octet < dialect_.firstDocumentTypeOctet || octet > kLastDocumentTypeOctet) {
    fail("Error while parsing document");
  } else {
    if (progress_.hasRoot) fail("Found DTD behind the top level element");
    if (progress_.hasDTD) fail("Found more than one DTD");
    return decodeDTD(octet);
  }
  return false;
}

void Decoder::beginRootElement(unsigned octet) {
  if (progress_.hasRoot) fail("Found more than one element on the top level");
  beginElement(octet);
  progress_.hasRoot = true;
}

void Encoder::finishDocument() {
  perform([this] {
    flushCharacters();
    flushTerminator(true);
  });
}

}  // namespace Tavrin::fastinfoset
