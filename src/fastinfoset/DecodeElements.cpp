#include <Tavrin/Identifiers.h>
#include "Decoder.h"

#include <algorithm>

#include "format/Dialect.h"
#include "format/Octets.h"
#include "DecodeAttributes.h"
#include "TakeOctet.h"

// Elements, their names and namespace declarations (X.891, C.3, C.12, C.17 and C.18).

namespace Tavrin::fastinfoset {

namespace {

std::string textOrEmpty(const char* text) { return text ? text : std::string(); }

}  // namespace

bool Decoder::decodeElement(int octet) {
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
    const unsigned child = takeOctet();
    if (child < kFirstNonElement) {
      if (openElement(static_cast<int>(child))) closeElement();
    } else if (child <= kLastCharacterChunk) {
      decodeCharacters(static_cast<int>(child));
    } else if (child >= kFirstEntityReference && child <= kLastEntityReference) {
      decodeUnexpandedEntityReference(static_cast<int>(child));
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
bool Decoder::openElement(int octet) {
  const auto first = static_cast<unsigned>(octet);
  if (openElements_.size() >= maximumDepth_) {
    failAtLimit("Elements nested deeper than " + std::to_string(maximumDepth_),
                properties::maximumDepth);
  }
  auto nameOctet = first;
  std::uint32_t declarations = 0;
  if ((first & kNamespacesFollowMask) == kNamespacesFollow) {
    declarations = decodeDeclarations();
    nameOctet = takeOctet();
    checkPadding(nameOctet & ~kElementNameBits);
  }

  const unsigned nameBits = nameOctet & kElementNameBits;
  Name* name = nullptr;
  if (nameBits <= kLastElementIndex) {
    name =
        &nameAt(decodeElementIndex(static_cast<int>(nameBits)), elementNames_, kInvalidElementName);
  } else if ((nameBits & kLiteralElementName) == kLiteralElementName) {
    name = &decodeLiteralName(nameBits, elementNames_);
  } else {
    fail("Error when decoding element name");
  }
  if (name == &unlisted_) {
    accountFor(octetsOf(unlisted_));
    unlistedElements_.push_back({std::make_unique<Name>(std::move(unlisted_)), nullptr});
    name = unlistedElements_.back().name = unlistedElements_.back().own.get();
  } else if (name->position == kUnlisted) {
    unlistedElements_.push_back({nullptr, name});
  }
  openElements_.push_back({name->position, declarations});
  checkElementName(*name);
  return decodeStartTag(first & kElementAttributes, *name, declarations);
}

void Decoder::closeElement() {
  const auto [position, declarations] = openElements_.back();
  if (position != kUnlisted) {
    reportEndElement(elementNames_[position], declarations);
  } else {
    const UnlistedName& unlisted = unlistedElements_.back();
    reportEndElement(*unlisted.name, declarations);
    if (unlisted.own) tableOctets_ -= octetsOf(*unlisted.own);
    unlistedElements_.pop_back();
  }
  openElements_.pop_back();
}

/// Decodes a namespace declaration whose first octet was read. A part that is absent is empty.
void Decoder::decodeDeclaration(unsigned octet, std::string& prefix, std::string& namespaceName) {
  prefix.clear();
  namespaceName.clear();
  if (octet & kPrefixPresent) decodeDeclaredName(prefixes_, "xml", prefix);
  if (octet & kNamespacePresent) {
    decodeDeclaredName(namespaceNames_, namespaces::xml, namespaceName);
  }
}

std::string Decoder::qNameOf(const NameParts& name) {
  return name.prefix.empty() ? name.localName : name.prefix + ":" + name.localName;
}

/// Decodes a prefix or namespace name of a declaration. Whether an index counts the built-in entry
/// is a matter of the dialect.
void Decoder::decodeDeclaredName(Strings& table, const char* builtIn, std::string& part) {
  const unsigned octet = takeOctet();
  if ((octet & kStringIndex) == 0) {
    decodeLiteralIdentifier(octet, &table, part);
    return;
  }
  const unsigned long index = decodeIndex(static_cast<int>(octet));
  if (index < dialect_.builtInNamesInDeclarations) {
    part = builtIn;
  } else {
    assignString(index - dialect_.builtInNamesInDeclarations, &table, externalEntries(&table),
                 part);
  }
}

/// Decodes a literal name whose first octet was read, and adds it to the table (C.17, C.18).
Name& Decoder::decodeLiteralName(unsigned octet, Names& table) {
  const QualifiedNameTable* external = externalNames(&table);
  if (table.size() + (external ? external->occupiedCount : 0) >= dialect_.maximumEntries) {
    unlisted_ = {};
    decodeNameParts(octet, unlisted_);
    unlisted_.qName = qNameOf(unlisted_);
    return unlisted_;
  }
  Name& name = table.append();
  decodeNameParts(octet, name);
  accountFor(octetsOf(name));
  name.qName = qNameOf(name);
  return name;
}

/// Decodes the parts of a literal name that an octet's low bits announce.
void Decoder::decodeNameParts(unsigned octet, std::string& prefix, std::string& namespaceName,
                              std::string& localName) {
  if ((octet & kPrefixPresent) && !(octet & kNamespacePresent)) {
    fail("Qualified name with a prefix, but without a namespace");
  }
  if (octet & kPrefixPresent) {
    decodeNamePart(prefixes_, "xml", "Error when parsing prefix", prefix);
  }
  if (octet & kNamespacePresent) {
    decodeNamePart(namespaceNames_, namespaces::xml, "Error when parsing namespace", namespaceName);
  }
  decodeIdentifier(&localNames_, localName);
}

void Decoder::decodeNamePart(Strings& table, const char* builtIn, const char* message,
                             std::string& part) {
  const unsigned octet = takeOctet();
  if (dialect_.literalNameParts && (octet & kStringIndex) == 0) {
    decodeLiteralIdentifier(octet, &table, part);
    return;
  }
  const unsigned long index = decodeIndex(static_cast<int>(octet));
  if (index == kBuiltInNameIndex) {
    part = builtIn;
    return;
  }
  if (const StringTable* external = externalEntries(&table)) {
    part = getString(index - kBuiltInNames, &table, external);
    return;
  }
  if (index - kBuiltInNames >= table.size()) fail(message);
  part = table[index - kBuiltInNames];
}

const QualifiedNameTable* Decoder::findExternalNames(const Names* table) const {
  if (table == &elementNames_) return &externalVocabulary_->elementNameSurrogates;
  if (table == &attributeNames_) return &externalVocabulary_->attributeNameSurrogates;
  return nullptr;
}

/// Looks an index up among the external entries in front of a table of names.
/// @param index becomes the index in the table itself, where it is beyond them
/// @param name  receives the external entry
/// @return whether it is one of them
bool Decoder::findExternalName(unsigned long& index, const Names& table, const char* message,
                               NameParts& name) const {
  const QualifiedNameTable* external = externalNames(&table);
  if (external != nullptr) {
    if (index < external->definedCount) {
      const char* const(&entry)[3] = external->entries[index];
      name = {textOrEmpty(entry[0]), textOrEmpty(entry[1]), textOrEmpty(entry[2])};
      return true;
    }
    if (index < external->occupiedCount) fail(message);
    index -= external->occupiedCount;
  }
  if (index >= table.size()) fail(message);
  return false;
}

/// An entry of a table of names: the external entries first, then the document's own.
Name& Decoder::nameAt(unsigned long index, Names& table, const char* message) {
  const QualifiedNameTable* const external = externalNames(&table);
  if (external == nullptr || index >= external->occupiedCount) {
    if (external != nullptr) index -= external->occupiedCount;
    if (index >= table.size()) fail(message);
    return table[index];
  }
  // An external entry is made a name once, however often a document refers to it.
  const std::pair<const Names*, unsigned long> entry(&table, index);
  const auto known = externalNames_.find(entry);
  if (known != externalNames_.end()) return known->second;
  Name name;
  findExternalName(index, table, message, name);
  name.qName = qNameOf(name);
  return externalNames_.emplace(entry, std::move(name)).first->second;
}

Name& Names::append() {
  if (size_ == blocks_.size() * kBlock) {
    std::vector<Name> block;
    block.reserve(kBlock);  // Before it is there: without, its names would move.
    blocks_.push_back(std::move(block));
  }
  Name& name = blocks_[size_ / kBlock].emplace_back();
  name.position = static_cast<std::uint32_t>(size_++);
  return name;
}

void Names::shrinkTo(std::size_t size) {
  const std::size_t blocks = std::max<std::size_t>(1, (size + kBlock - 1) / kBlock);
  if (blocks_.size() > blocks) blocks_.resize(blocks);
  for (size_ = std::min(size, size_); !blocks_.empty();) {
    if (blocks_.back().size() + (blocks_.size() - 1) * kBlock <= size_) break;
    blocks_.back().pop_back();
  }
}

}  // namespace Tavrin::fastinfoset
