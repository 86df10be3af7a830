#include <algorithm>

#include "DecodeAttributes.h"
#include "DecodeContent.h"
#include "Decoder.h"
#include "Encoder.h"
#include "format/Octets.h"

// Elements and their namespace declarations (X.891, C.3 and C.12). Attributes are decoded in
// DecodeAttributes.h, into the list of a dialect.

namespace Tavrin::fastinfoset {

bool Decoder::decodeElement(unsigned octet) {
  // Where the document fails or a handler throws, what was opened here is gone.
  const struct Unwinding {
    Decoder& decoder;
    StartTag tag = decoder.tag_;
    std::size_t open = decoder.openElements_.size();
    std::size_t unlisted = decoder.unlistedElements_.size();

    ~Unwinding() {
      decoder.tag_ = tag;
      decoder.openElements_.resize(std::min(open, decoder.openElements_.size()));
      while (decoder.unlistedElements_.size() > unlisted) decoder.unlistedElements_.pop_back();
    }
  } unwinding = {*this};
  beginElement(octet);
  return decodeContent(unwinding.open);
}

/// Decodes what is left of an element: its start tag, its children and its end.
/// @param outer how many elements contain it
/// @return true when it ended with a double terminator that also ends what contains it
bool Decoder::decodeContent(std::size_t outer) {
  for (;;) {
    if (tag_.part != StartTag::kNone && decodeStartTag()) closeElement();
    if (openElements_.size() == outer || !nextItem()) return false;
    const unsigned ends = decodeContentItem(readOctet());
    if (ends == 0) continue;
    closeElement();
    if (ends == 1) continue;
    if (openElements_.size() == outer) return true;
    closeElement();
  }
}

/// Decodes the first step of an element: its name, unless declarations come before it.
void Decoder::beginElement(unsigned octet) {
  if (openElements_.size() >= maximumDepth_) {
    failAtLimit("Elements nested deeper than " + std::to_string(maximumDepth_),
                properties::maximumDepth);
  }
  tag_.octet = octet;
  tag_.declarations = 0;
  if ((octet & kNamespacesFollowMask) == kNamespacesFollow) {
    tag_.part = StartTag::kDeclarations;
    endStep();
  } else {
    openElement(decodeElementName(octet & kElementNameBits));
  }
}

/// Decodes what is left of a start tag.
/// @return true when the element is empty: the end of the attributes was also that of the element
bool Decoder::decodeStartTag() {
  if (tag_.part == StartTag::kDeclarations) {
    decodeDeclarations(tag_.declarations);
    tag_.part = StartTag::kName;
    endStep();
  }
  if (tag_.part == StartTag::kName) {
    const unsigned octet = readOctet();
    checkPadding(octet & ~kElementNameBits);
    openElement(decodeElementName(octet & kElementNameBits));
  }
  const bool isEmpty =
      finishStartTag(tag_.octet & kElementAttributes, *tag_.name, tag_.declarations);
  if (!isCut_) tag_.part = StartTag::kNone;
  return isEmpty;
}

/// @param bits the octet in which the name begins, without the bits before it
Name& Decoder::decodeElementName(unsigned bits) {
  Names& table = names(kElementNames);
  if (bits <= kLastElementIndex) {
    return nameAt(decodeElementIndex(bits), table, kInvalidElementName);
  }
  if ((bits & kLiteralElementName) == kLiteralElementName) {
    keepItem();
    return decodeLiteralName(bits, table);
  }
  fail("Error when decoding element name");
}

void Decoder::openElement(Name& name) {
  tag_.name = &name;
  if (&name == &unlisted_) {
    accountFor(countedOctets(unlisted_));
    unlistedElements_.push_back({std::make_unique<Name>(std::move(unlisted_)), nullptr});
    tag_.name = unlistedElements_.back().name = unlistedElements_.back().own.get();
  } else if (name.position == Name::kUnlisted) {
    unlistedElements_.push_back({nullptr, &name});
  }
  openElements_.push_back({tag_.name->position, tag_.declarations});
  checkElementName(*tag_.name);
  tag_.part = StartTag::kAttributes;
}

void Decoder::closeElement() {
  const auto [position, declarations] = openElements_.back();
  if (position != Name::kUnlisted) {
    reportEndElement(names(kElementNames)[position], declarations);
  } else {
    const UnlistedName& unlisted = unlistedElements_.back();
    reportEndElement(*unlisted.name, declarations);
    if (unlisted.own) tableOctets_ -= countedOctets(*unlisted.own);
    if (isPulled_) ended_ = std::move(unlistedElements_.back().own);
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
  if ((octet & kStringIndex) == 0) {
    const std::string& entry = decodeLiteralIdentifier(octet, entries, part);
    if (&entry != &part) part = entry;
    return;
  }
  const unsigned long index = decodeIndex(octet);
  const unsigned long builtIn = dialect_.builtInNamesInDeclarations;
  if (index < builtIn) {
    part = entries.builtIn();
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
