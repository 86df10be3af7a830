#include <algorithm>

#include "DecodeAttributes.h"
#include "Decoder.h"
#include "Encoder.h"
#include "format/Octets.h"

// Elements and their namespace declarations (X.891, C.3 and C.12). Attributes are decoded in
// DecodeAttributes.h, into the list of a dialect.

namespace Tavrin::fastinfoset {

bool Decoder::decodeElement(unsigned octet) {
  const std::size_t outer = openElements_.size();
  // Where the document fails or a handler throws, what was opened here is gone.
  const struct Unwinding {
    Decoder& decoder;
    std::size_t open = decoder.openElements_.size();
    std::size_t unlisted = decoder.unlistedElements_.size();

    ~Unwinding() {
      decoder.openElements_.resize(std::min(open, decoder.openElements_.size()));
      while (decoder.unlistedElements_.size() > unlisted) decoder.unlistedElements_.pop_back();
    }
  } unwinding = {*this};
  if (openElement(octet)) {
    closeElement();
    return false;
  }
  while (openElements_.size() > outer) {
    const unsigned child = readOctet();
    if (child < kFirstNonElement) {
      if (openElement(child)) closeElement();
    } else if (child <= kLastCharacterChunk) {
      decodeCharacters(child);
    } else if (child >= kFirstEntityReference && child <= kLastEntityReference) {
      decodeUnexpandedEntityReference(child);
    } else if (child == kProcessingInstruction) {
      decodeProcessingInstruction();
    } else if (child == kComment) {
      decodeComment();
    } else if (child == kTerminator) {
      closeElement();
    } else if (child == kDoubleTerminator) {
      closeElement();
      if (openElements_.size() == outer) return true;
      closeElement();
    } else {
      fail("Error when decoding element children");
    }
  }
  return false;
}

/// Decodes an element up to its children.
/// @return true when it has none: the end of the attributes was also that of the element
bool Decoder::openElement(unsigned octet) {
  if (openElements_.size() >= maximumDepth_) {
    failAtLimit("Elements nested deeper than " + std::to_string(maximumDepth_),
                properties::maximumDepth);
  }
  unsigned nameOctet = octet;
  std::uint32_t declarations = 0;
  if ((octet & kNamespacesFollowMask) == kNamespacesFollow) {
    declarations = decodeDeclarations();
    nameOctet = readOctet();
    checkPadding(nameOctet & ~kElementNameBits);
  }

  const unsigned nameBits = nameOctet & kElementNameBits;
  Names& table = names(kElementNames);
  Name* name = nullptr;
  if (nameBits <= kLastElementIndex) {
    name = &nameAt(decodeElementIndex(nameBits), table, kInvalidElementName);
  } else if ((nameBits & kLiteralElementName) == kLiteralElementName) {
    name = &decodeLiteralName(nameBits, table);
  } else {
    fail("Error when decoding element name");
  }
  if (name == &unlisted_) {
    accountFor(countedOctets(unlisted_));
    unlistedElements_.push_back({std::make_unique<Name>(std::move(unlisted_)), nullptr});
    name = unlistedElements_.back().name = unlistedElements_.back().own.get();
  } else if (name->position == Name::kUnlisted) {
    unlistedElements_.push_back({nullptr, name});
  }
  openElements_.push_back({name->position, declarations});
  checkElementName(*name);
  return decodeStartTag(octet & kElementAttributes, *name, declarations);
}

void Decoder::closeElement() {
  const auto [position, declarations] = openElements_.back();
  if (position != Name::kUnlisted) {
    reportEndElement(names(kElementNames)[position], declarations);
  } else {
    const UnlistedName& unlisted = unlistedElements_.back();
    reportEndElement(*unlisted.name, declarations);
    if (unlisted.own) tableOctets_ -= countedOctets(*unlisted.own);
    unlistedElements_.pop_back();
  }
  openElements_.pop_back();
}

void Encoder::finishElement() {
  perform([this] {
    flushCharacters();
    if (pendingTerminator_) {
      flushTerminator(true);
    } else {
      pendingTerminator_ = true;
    }
  });
}

// --- Namespace declarations ---

/// Decodes a declaration whose first octet was read. A part that is absent is empty.
void Decoder::decodeDeclaration(unsigned octet, std::string& prefix, std::string& namespaceName) {
  prefix.clear();
  namespaceName.clear();
  if (octet & kPrefixPresent) decodeDeclaredPart(kPrefixes, prefix);
  if (octet & kNamespacePresent) decodeDeclaredPart(kNamespaceNames, namespaceName);
}

/// Whether an index counts the built-in entry is a matter of the dialect.
void Decoder::decodeDeclaredPart(unsigned table, std::string& part) {
  const unsigned octet = readOctet();
  Strings& entries = strings(table);
  if ((octet & kStringIndex) == 0) return decodeLiteralIdentifier(octet, &entries, part);
  const unsigned long index = decodeIndex(octet);
  const unsigned long builtIn = dialect_.builtInNamesInDeclarations;
  if (index < builtIn) {
    part = entries.form().builtIn;
  } else {
    part = stringAt(index - builtIn, entries);
  }
}

void Encoder::encodeNamespaces(const std::vector<std::string>& pairs) {
  for (std::size_t i = 0; i < pairs.size(); i += 2) {
    const std::string& prefix = pairs[i];
    const std::string& namespaceName = pairs[i + 1];
    put(kNamespaceDeclaration | (prefix.empty() ? 0 : kPrefixPresent) |
        (namespaceName.empty() ? 0 : kNamespacePresent));
    if (!prefix.empty()) encodeIdentifier(kPrefixes, prefix);
    if (!namespaceName.empty()) encodeIdentifier(kNamespaceNames, namespaceName);
  }
  put(kTerminator);
}

}  // namespace Tavrin::fastinfoset
