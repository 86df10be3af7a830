#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLReader_FI.h>

#include <algorithm>

#include "../Dialect.h"
#include "../Octets.h"
#include "DecodeAttributes.h"
#include "TakeOctet.h"

// Elements, their names and namespace declarations (X.891, C.3, C.12, C.17 and C.18).

namespace Tavrin {

using namespace fastinfoset;

namespace {

constexpr const char* kInvalidElementName = "Error when decoding element name - invalid index";

std::string textOrEmpty(const char* text) { return text ? text : std::string(); }

}  // namespace

bool XMLReader_FI::decodeElement(int octet) {
  const std::size_t outer = openElements_.size();
  // Where the document fails or a handler throws, what was opened here is gone.
  const struct Unwinding {
    XMLReader_FI& reader;
    std::size_t open = reader.openElements_.size();
    std::size_t unlisted = reader.unlistedElements_.size();
    std::size_t declarations = reader.declarations_.size();

    ~Unwinding() {
      reader.openElements_.resize(std::min(open, reader.openElements_.size()));
      while (reader.unlistedElements_.size() > unlisted) reader.unlistedElements_.pop_back();
      while (reader.declarations_.size() > declarations) reader.declarations_.pop_back();
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
bool XMLReader_FI::openElement(int octet) {
  const auto first = static_cast<unsigned>(octet);
  if (openElements_.size() >= maximumDepth_) {
    failAtLimit("Elements nested deeper than " + std::to_string(maximumDepth_),
                properties::maximumDepth);
  }
  auto nameOctet = first;
  std::uint32_t declarations = 0;
  if ((first & kNamespacesFollowMask) == kNamespacesFollow) {
    declarations = dialectDecodeDeclarations();
    nameOctet = takeOctet();
    dialectCheckPadding(nameOctet & ~kElementNameBits);
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
  dialectCheckElementName(*name);
  return dialectStartTag(first & kElementAttributes, *name, declarations);
}

void XMLReader_FI::closeElement() {
  const auto [position, declarations] = openElements_.back();
  if (position != kUnlisted) {
    dialectDeliverEndElement(elementNames_[position], declarations);
  } else {
    const UnlistedName& unlisted = unlistedElements_.back();
    dialectDeliverEndElement(*unlisted.name, declarations);
    if (unlisted.own) tableOctets_ -= octetsOf(*unlisted.own);
    unlistedElements_.pop_back();
  }
  openElements_.pop_back();
}

void XMLReader_FI::decodeNamespaces(std::vector<std::string>& declarations) {
  unsigned octet = takeOctet();
  for (; (octet & kNamespaceDeclarationMask) == kNamespaceDeclaration; octet = takeOctet()) {
    std::string prefix;
    std::string namespaceName;
    decodeDeclaration(octet, prefix, namespaceName);
    declarations.push_back(std::move(prefix));
    declarations.push_back(std::move(namespaceName));
  }
  if (octet != kTerminator) fail("Error while parsing namespaces");
}

/// Decodes a namespace declaration whose first octet was read. A part that is absent is empty.
void XMLReader_FI::decodeDeclaration(unsigned octet, std::string& prefix,
                                     std::string& namespaceName) {
  prefix.clear();
  namespaceName.clear();
  if (octet & kPrefixPresent) decodeDeclaredName(prefixes_, "xml", prefix);
  if (octet & kNamespacePresent) {
    decodeDeclaredName(namespaceNames_, namespaces::xml, namespaceName);
  }
}

std::string XMLReader_FI::qNameOf(const QualifiedName& name) {
  return name.prefix.empty() ? name.localName : name.prefix + ":" + name.localName;
}

/// Decodes a prefix or namespace name of a declaration. Whether an index counts the built-in entry
/// is a matter of the dialect.
void XMLReader_FI::decodeDeclaredName(Strings& table, const char* builtIn, std::string& part) {
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

XMLReader_FI::QualifiedName& XMLReader_FI::decodeQualifiedName(int octet,
                                                               std::vector<QualifiedName>& table) {
  QualifiedName& name = table.emplace_back();
  decodeNameParts(static_cast<unsigned>(octet), name);
  return name;
}

/// As decodeQualifiedName, for a table of the document.
XMLReader_FI::Name& XMLReader_FI::decodeLiteralName(unsigned octet, Names& table) {
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
void XMLReader_FI::decodeNameParts(unsigned octet, QualifiedName& name) {
  if ((octet & kPrefixPresent) && !(octet & kNamespacePresent)) {
    fail("Qualified name with a prefix, but without a namespace");
  }
  if (octet & kPrefixPresent) {
    decodeNamePart(prefixes_, "xml", "Error when parsing prefix", name.prefix);
  }
  if (octet & kNamespacePresent) {
    decodeNamePart(namespaceNames_, namespaces::xml, "Error when parsing namespace",
                   name.namespaceName);
  }
  decodeIdentifier(&localNames_, name.localName);
}

void XMLReader_FI::decodeNamePart(Strings& table, const char* builtIn, const char* message,
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

const QualifiedNameTable* XMLReader_FI::findExternalNames(const Names* table) const {
  if (table == &elementNames_) return &externalVocabulary_->elementNameSurrogates;
  if (table == &attributeNames_) return &externalVocabulary_->attributeNameSurrogates;
  return nullptr;
}

/// Looks an index up among the external entries in front of a table of names.
/// @param index becomes the index in the table itself, where it is beyond them
/// @param name  receives the external entry
/// @return whether it is one of them
bool XMLReader_FI::findExternalName(unsigned long& index, const Names& table, const char* message,
                                    QualifiedName& name) const {
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
XMLReader_FI::Name& XMLReader_FI::nameAt(unsigned long index, Names& table, const char* message) {
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

XMLReader_FI::Name& XMLReader_FI::Names::append() {
  if (size_ == blocks_.size() * kBlock) {
    std::vector<Name> block;
    block.reserve(kBlock);  // Before it is there: without, its names would move.
    blocks_.push_back(std::move(block));
  }
  Name& name = blocks_[size_ / kBlock].emplace_back();
  name.position = static_cast<std::uint32_t>(size_++);
  return name;
}

void XMLReader_FI::Names::shrinkTo(std::size_t size) {
  const std::size_t blocks = std::max<std::size_t>(1, (size + kBlock - 1) / kBlock);
  if (blocks_.size() > blocks) blocks_.resize(blocks);
  for (size_ = std::min(size, size_); !blocks_.empty();) {
    if (blocks_.back().size() + (blocks_.size() - 1) * kBlock <= size_) break;
    blocks_.back().pop_back();
  }
}

XMLReader_FI::QualifiedName XMLReader_FI::getName(unsigned long index, const Names& table,
                                                  const char* message) const {
  QualifiedName name;
  if (!findExternalName(index, table, message, name)) {
    const QualifiedName& own = table[index];
    name = own;
  }
  return name;
}

XMLReader_FI::QualifiedName XMLReader_FI::getElementName(unsigned long index) const {
  return getName(index, elementNames_, kInvalidElementName);
}

XMLReader_FI::QualifiedName XMLReader_FI::getAttributeName(unsigned long index) const {
  return getName(index, attributeNames_, kInvalidAttributeName);
}

}  // namespace Tavrin
