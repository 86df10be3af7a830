#include <utility>

#include "octets/Scanner.h"
#include "printing/Text.h"

// Elements: names, namespace attributes, attributes, content and ends (X.891, C.3, C.4, C.12, C.17
// and C.18).

namespace tool::octets {

// --- Content (C.3.7) ---

/// @return true when it ended the document
bool Scanner::scanContentItem() {
  constexpr char kExpected[] =
      "an element, characters, an unexpanded entity reference, a processing instruction, a comment "
      "or the end of the element (C.3.7)";
  const unsigned octet = octetAhead(0, kExpected);
  if (octet < format::kFirstNonElement) {
    scanElement(octet);
  } else if (octet <= format::kLastChunk) {
    scanChunk(octet);
  } else if ((octet & format::kIdentifiersMask) == format::kEntityReference) {
    scanEntityReference(octet);
  } else if (octet == format::kInstruction) {
    scanInstruction();
  } else if (octet == format::kComment) {
    scanComment();
  } else if (octet == format::kTerminator || octet == format::kDoubleTerminator) {
    return endElements(octet);
  } else {
    fail(kExpected);
  }
  return false;
}

/// @return true when the document has ended, too
bool Scanner::endElements(unsigned octet) {
  const std::size_t level = this->level() - 1;
  const bool isDouble = octet == format::kDoubleTerminator;
  const bool endsDocument = isDouble && open_.count() == 1;
  note_.begin("end of the element", endsDocument ? "C.3.8, C.2.12" : "C.3.8").path(open_.path());
  open_.close();
  if (endsDocument) note_.add(" and of the document");
  if (isDouble && !endsDocument) {
    note_.add(" and of").path(open_.path());
    open_.close();
  }
  writeAt(level, 1);
  return endsDocument;
}

// --- Start tags (C.3) ---

void Scanner::scanElement(unsigned octet) {
  const bool hasAttributes = (octet & format::kElementAttributes) != 0;
  const char* const attributes = hasAttributes ? ", with attributes" : "";
  const unsigned bits = octet & format::kElementNameBits;
  if (bits == format::kNamespacesFollow) {
    note_.begin("element", "C.3").add(", with namespaces").add(attributes);
    write(1);
    scanNamespaces();
    constexpr char kExpected[] = "the name of the element, behind two bits of zero (C.3.5, C.18)";
    const unsigned next = octetAhead(0, kExpected);
    if ((next & ~format::kElementNameBits) != 0) fail(kExpected);
    ++extraLevels_;
    scanElementName("name", "C.18", next, "");
    --extraLevels_;
  } else {
    scanElementName("element", "C.3, C.18", bits, attributes);
  }
  if (hasAttributes) scanAttributes();
}

void Scanner::scanNamespaces() {
  constexpr char kExpected[] = "a namespace attribute or the end of them (C.3.4, C.12)";
  ++extraLevels_;
  unsigned octet = octetAhead(0, kExpected);
  for (; (octet & format::kNamespaceMask) == format::kNamespace; octet = octetAhead(0, kExpected)) {
    note_.begin("namespace attribute", "C.12");
    write(1);
    ++extraLevels_;
    if ((octet & format::kPrefixPresent) != 0) scanIdentifier("prefix", kPrefixes);
    if ((octet & format::kNamespacePresent) != 0) {
      scanIdentifier("namespace name", kNamespaceNames);
    }
    --extraLevels_;
  }
  if (octet != format::kTerminator) fail(kExpected);
  note_.begin("end of the namespace attributes", "C.3.4");
  write(1);
  --extraLevels_;
}

/// The name of an element, which is open then.
/// @param what  what begins with the octet that comes next
/// @param words what else is to be said of it
void Scanner::scanElementName(const char* what, const std::string& clauses, unsigned octet,
                              const char* words) {
  const unsigned bits = octet & format::kElementNameBits;
  if ((bits & format::kLiteralElementName) == format::kLiteralElementName) {
    checkParts(bits);
    note_.begin(what, clauses).add(", with a literal name").add(words);
    write(1);
    ++extraLevels_;
    LiteralName literal = peekLiteralName(bits, tables_.elements);
    --extraLevels_;
    // Of an external vocabulary nobody knows where its entries end and those of the document begin.
    open_.open(tables_.hasUnknownEntries ? 0 : literal.index, literal.name);
    note_.path(open_.path());
    return writeIdentifier(std::move(literal.localName));
  }
  const Number index = numberAhead(format::kElementNumber, 0, "the name of an element");
  const Name name = findName(tables_.elements, index.value);
  note_.begin(what, clauses + ", C.27").entry(tables_.elements.name(), index.value).add(words);
  const std::size_t level = this->level();
  open_.open(tables_.hasUnknownEntries ? 0 : static_cast<std::uint32_t>(index.value), name);
  note_.path(open_.path());
  writeAt(level, index.size);
}

// --- Names (C.17, C.18) ---

/// @param octet whose low bits tell which parts of a name there are
void Scanner::checkParts(unsigned octet) {
  if ((octet & format::kPartBits) == format::kPrefixPresent) {
    fail("a namespace name beside the prefix (C.16 to C.18)");
  }
}

/// A literal name, up to its local name, which is not written yet. It is in its table.
Scanner::LiteralName Scanner::peekLiteralName(unsigned parts, NameTable& names) {
  Name name;
  if ((parts & format::kPrefixPresent) != 0) name.prefix = scanIdentifier("prefix", kPrefixes);
  if ((parts & format::kNamespacePresent) != 0) {
    name.namespaceName = scanIdentifier("namespace name", kNamespaceNames);
  }
  Identifier localName = peekIdentifier("local name", kLocalNames);
  name.localName = localName.index;
  const std::uint32_t index = names.add(name);
  noteAdded(names.name(), index);
  return {name, index, std::move(localName)};
}

Name Scanner::findName(const NameTable& names, std::uint64_t index) {
  // With an external vocabulary nobody knows here which name it is.
  if (tables_.hasUnknownEntries) return {};
  const Name* const name = names.find(index);
  if (name == nullptr) {
    fail(
        "an index of " + std::string(names.name()) + " up to " + std::to_string(names.own().size()),
        0, "found " + std::to_string(index));
  }
  return *name;
}

// --- Attributes (C.3.6, C.4) ---

void Scanner::scanAttributes() {
  constexpr char kExpected[] = "an attribute or the end of the attributes (C.3.6)";
  for (;;) {
    const unsigned octet = octetAhead(0, kExpected);
    if (octet == format::kTerminator) {
      note_.begin("end of the attributes", "C.3.6");
      return write(1);
    }
    if (octet == format::kDoubleTerminator) {
      const std::size_t level = this->level() - 1;
      note_.begin("end of the attributes and of the element", "C.3.6, C.3.8").path(open_.path());
      open_.close();
      return writeAt(level, 1);
    }
    const bool isLiteral = (octet & ~format::kPartBits) == format::kLiteralAttributeName;
    if (octet >= format::kFirstNonAttributeIndex && !isLiteral) fail(kExpected);
    scanAttribute(octet, isLiteral);
  }
}

void Scanner::scanAttribute(unsigned octet, bool isLiteral) {
  std::string attributePath = open_.path() + "/@";
  if (isLiteral) {
    checkParts(octet);
    note_.begin("attribute", "C.4, C.17").add(", with a literal name");
    write(1);
    ++extraLevels_;
    LiteralName literal = peekLiteralName(octet, tables_.attributes);
    attributePath += escaped(tables_.qualifiedNameOf(literal.name));
    note_.path(attributePath);
    writeIdentifier(std::move(literal.localName));
  } else {
    const Number index = numberAhead(format::kNumber, 0, "the name of an attribute");
    const Name name = findName(tables_.attributes, index.value);
    attributePath += escaped(tables_.qualifiedNameOf(name));
    note_.begin("attribute", "C.4, C.17, C.25").entry(tables_.attributes.name(), index.value);
    note_.path(attributePath);
    write(index.size);
    ++extraLevels_;
  }
  scanString("value", "C.14", kAttributeValues, {});
  --extraLevels_;
}

}  // namespace tool::octets
