#include <Tavrin/Identifiers.h>

#include <algorithm>
#include <string_view>

#include "../../xml/Rules.h"
#include "../../xml/simd/EasyText.h"
#include "../format/Octets.h"
#include "X891Decoder.h"

// What is decoded must be expressible as XML 1.0 with namespaces. Strings are checked when they
// enter the document, names once for the declarations in scope.

namespace Tavrin::fastinfoset {

void X891Decoder::failIf(const std::string& reason) const {
  if (!reason.empty()) fail(reason);
}

void X891Decoder::checkText(std::string_view text) {
  if (xml::isEasyText(text)) return;
  const std::size_t position = xml::findInvalid(text);
  if (position != xml::kAllValid) fail("Invalid " + xml::describeInvalid(text, position));
}

void X891Decoder::checkEntry(unsigned table, std::string_view entry) {
  if (kStringTableForms[table].kind == EntryKind::name) {
    if (!xml::isNCName(entry)) fail("Invalid name " + xml::quoted(entry));
  } else {
    checkText(entry);
  }
}

void X891Decoder::checkExternalId(const std::string& publicId, const std::string& systemId) const {
  failIf(xml::whyNotPublicId(publicId));
  failIf(xml::whyNotSystemId(systemId));
}

// --- Namespaces ---

/// Each declaration is checked and counted as it comes: a tag may hold as many as the document has
/// octets. They are reported with the start of the element.
void X891Decoder::decodeDeclarations(std::uint32_t& count) {
  Document& document = document_;
  xml::NamespaceBindings& bindings = document.bindings;
  const std::size_t outside = bindings.count() - count;
  auto& [prefix, namespaceName] = declaration_;
  unsigned octet = readOctet();
  for (; (octet & kNamespaceDeclarationMask) == kNamespaceDeclaration; octet = readOctet()) {
    decodeDeclaration(octet, prefix, namespaceName);
    fromTables_ += prefix.size() + namespaceName.size();
    checkAmplification();
    failIf(xml::whyNotDeclarable(prefix, namespaceName, document.version == "1.1"));
    if (bindings.isDeclaredSince(prefix, outside)) fail(xml::declaredTwice(prefix));
    const std::size_t octets = bindings.octets();
    bindings.declare(prefix, namespaceName);
    accountFor(bindings.octets() - octets);
    ++count;
    endStep();
  }
  if (octet != kTerminator) fail("Error while parsing namespaces");
}

std::size_t X891Decoder::reportedOctetsOf(const Name& name) {
  return name.namespaceName().size() + name.localName().size() + name.qName().size();
}

/// Computes how many octets are allowed now that more have been read. Measured: doing so at each
/// check beyond the threshold takes a twentieth of the time of reading records.
void X891Decoder::allowMoreFromTables() const {
  constexpr std::uint64_t kMost = std::uint64_t{1} << 63U;  // No limit: more than can come.
  const double byFactor = amplificationFactor_ * static_cast<double>(input_.count());
  document_.allowedFromTables = std::max(
      amplificationThreshold_, byFactor < 0x1p63 ? static_cast<std::uint64_t>(byFactor) : kMost);
  if (fromTables_ > document_.allowedFromTables) {
    failAtLimit("More octets delivered for each octet read than the limit allows",
                properties::amplificationFactor);
  }
}

void X891Decoder::checkElementName(Name& name) {
  Document& document = document_;
  document.attributes.beginTag();
  document.isOneCompared = false;
  if (name.bindings != document.bindings.version()) {
    failIf(
        xml::whyNotElement(name.prefix(), &name.namespaceName(), name.qName(), document.bindings));
    name.bindings = document.bindings.version();
    name.octets = reportedOctetsOf(name);
  }
  fromTables_ += 2 * name.octets;  // With the start and with the end.
}

void X891Decoder::checkAttributeName(Name& name) {
  Document& document = document_;
  const bool isNew = name.bindings == 0 && &name != &unlisted_;
  if (name.bindings != document.bindings.version()) {
    failIf(xml::whyNotAttribute(name.prefix(), &name.namespaceName(), name.qName(),
                                document.bindings));
    name.bindings = document.bindings.version();
    name.octets = reportedOctetsOf(name);
  }
  // Attributes count before they are kept: a start tag may hold very many.
  fromTables_ += name.octets;
  checkAmplification();
  const std::uint64_t octets = kAttributeOctets + (&name == &unlisted_ ? countedOctets(name) : 0);
  document.tagOctets += octets;
  accountFor(octets);

  // A new name may never come again. Where it is one of the first of its tag, it gets no number,
  // but is compared with the others, as are those after it. Measured: a reader that is used
  // again reads small messages in a fourteenth less time.
  constexpr std::size_t kFew = 16;
  const bool isCompared = isNew && static_cast<std::size_t>(attributes_.getLength()) < kFew;
  document.isOneCompared = document.isOneCompared || isCompared;
  if (document.isOneCompared &&
      attributes_.beginsWith(name.namespaceName(), name.localName(), kFew)) {
    fail(xml::givenTwice(name.qName()));
  }
  if (isCompared) return;
  xml::UniqueAttributes& attributes = document.attributes;
  if (name.identity == xml::UniqueAttributes::kUnknown) {
    const std::size_t known = attributes.size();
    name.identity =
        static_cast<std::uint32_t>(attributes.number(name.namespaceName(), name.localName()));
    // A name that does not fit in the table is kept here, so it counts here.
    if (&name == &unlisted_ && attributes.size() > known) accountFor(countedOctets(name));
  }
  if (!attributes.take(name.identity)) fail(xml::givenTwice(name.qName()));
}

}  // namespace Tavrin::fastinfoset
