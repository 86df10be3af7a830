#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLReader_FI.h>

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
    std::deque<OpenElement>& open;
    std::size_t outer;
    ~Unwinding() {
      while (open.size() > outer) open.pop_back();
    }
  } unwinding = {openElements_, outer};
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
  openElements_.emplace_back();
  OpenElement& element = openElements_.back();

  auto nameOctet = first;
  if ((first & kNamespacesFollowMask) == kNamespacesFollow) {
    decodeNamespaces(element.declarations);
    dialectDeliverDeclarations(element.declarations);
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
    element.unlisted = std::make_unique<Name>(unlisted_);
    name = element.unlisted.get();
  } else {
    element.position = static_cast<std::size_t>(name - elementNames_.data());
  }
  dialectCheckElementName(*name);

  return dialectStartTag(first & kElementAttributes, *name, element.declarations);
}

void XMLReader_FI::closeElement() {
  const OpenElement& element = openElements_.back();
  dialectDeliverEndElement(nameOf(element), element.declarations);
  openElements_.pop_back();
}

const XMLReader_FI::Name& XMLReader_FI::nameOf(const OpenElement& element) const {
  return element.unlisted ? *element.unlisted : elementNames_[element.position];
}

void XMLReader_FI::decodeNamespaces(std::vector<std::string>& declarations) {
  unsigned octet = takeOctet();
  for (; (octet & kNamespaceDeclarationMask) == kNamespaceDeclaration; octet = takeOctet()) {
    std::string prefix;
    std::string namespaceName;
    if (octet & kPrefixPresent) decodeDeclaredName(prefixes_, "xml", prefix);
    if (octet & kNamespacePresent) {
      decodeDeclaredName(namespaceNames_, namespaces::xml, namespaceName);
    }
    // A start tag may hold as many of them as the document has octets, each a long string: they
    // count before they are kept.
    fromTables_ += prefix.size() + namespaceName.size();
    dialectCheckAmplification();
    declarations.push_back(std::move(prefix));
    declarations.push_back(std::move(namespaceName));
  }
  if (octet != kTerminator) fail("Error while parsing namespaces");
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
    part = getString(index - dialect_.builtInNamesInDeclarations, &table, externalEntries(&table));
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
  constexpr std::size_t kFirstNames = 8;
  if (table.capacity() == 0) table.reserve(kFirstNames);
  Name& name = table.emplace_back();
  decodeNameParts(octet, name);
  name.qName = qNameOf(name);
  accountForName(name);
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

/// An entry of a table of names: the external entries first, then the document's own. Valid until a
/// name is decoded.
XMLReader_FI::Name& XMLReader_FI::nameAt(unsigned long index, Names& table, const char* message) {
  if (externalNames(&table) == nullptr) {
    if (index >= table.size()) fail(message);
    return table[index];
  }
  QualifiedName external;
  if (!findExternalName(index, table, message, external)) return table[index];
  unlisted_ = {std::move(external), {}};
  unlisted_.qName = qNameOf(unlisted_);
  return unlisted_;
}

XMLReader_FI::QualifiedName XMLReader_FI::getName(unsigned long index, const Names& table,
                                                  const char* message) const {
  QualifiedName name;
  if (!findExternalName(index, table, message, name)) name = table[index];
  return name;
}

XMLReader_FI::QualifiedName XMLReader_FI::getElementName(unsigned long index) const {
  return getName(index, elementNames_, kInvalidElementName);
}

XMLReader_FI::QualifiedName XMLReader_FI::getAttributeName(unsigned long index) const {
  return getName(index, attributeNames_, kInvalidAttributeName);
}

}  // namespace Tavrin
