#include <Tavrin/XMLReader_FI.h>

#include <iostream>

#include "../Dialect.h"
#include "../Octets.h"
#include "TakeOctet.h"

// What is decoded reaches the handlers here. A handler may take itself off at any event.

namespace Tavrin {

using namespace fastinfoset;

// --- Document ---

// What no handler takes is printed, a line each.
void XMLReader_FI::deliverUnused(const std::string& line) { std::cout << line << '\n'; }

void XMLReader_FI::deliverVersion(const std::string& version) {
  deliverUnused("decodeVersion - \"" + version + '"');
}

void XMLReader_FI::deliverStandalone(unsigned) {}

void XMLReader_FI::deliverNotation(const std::string& name, const std::string& publicId,
                                   const std::string& systemId) {
  if (dtdHandler_) dtdHandler_->notationDecl(name, publicId, systemId);
}

void XMLReader_FI::deliverUnparsedEntity(const std::string& name, const std::string& publicId,
                                         const std::string& systemId,
                                         const std::string& notationName) {
  if (dtdHandler_) dtdHandler_->unparsedEntityDecl(name, publicId, systemId, notationName);
}

void XMLReader_FI::deliverStartDTD(const std::string& publicId, const std::string& systemId) {
  if (lexicalHandler_) lexicalHandler_->startDTD(std::string(), publicId, systemId);
}

void XMLReader_FI::deliverEndDTD() {
  if (lexicalHandler_) lexicalHandler_->endDTD();
}

// --- Elements ---

void XMLReader_FI::deliverDeclarations(const Strings& declarations) {
  for (std::size_t i = 0; i < declarations.size() && contentHandler_; i += 2) {
    contentHandler_->startPrefixMapping(declarations[i], declarations[i + 1]);
  }
}

void XMLReader_FI::deliverStartElement(const QualifiedName& name, const Strings&,
                                       const EncodingAlgorithmAttributesImpl& attributes) {
  if (!contentHandler_) return;
  contentHandler_->startElement(name.namespaceName, name.localName, name.whole, attributes);
}

void XMLReader_FI::deliverEndElement(const QualifiedName& name, const Strings& declarations) {
  if (contentHandler_) contentHandler_->endElement(name.namespaceName, name.localName, name.whole);
  for (std::size_t i = 0; i < declarations.size() && contentHandler_; i += 2) {
    contentHandler_->endPrefixMapping(declarations[i]);
  }
}

// --- Content ---

void XMLReader_FI::deliverCharacters(const std::string& text) {
  if (contentHandler_) contentHandler_->characters(text);
}

void XMLReader_FI::deliver(unsigned field, const std::string& uri, const EncodedData& value) {
  if (contentHandler_ && field == algorithms::cdata) {
    if (lexicalHandler_) lexicalHandler_->startCDATA();
    if (contentHandler_) contentHandler_->characters(value.toString());
    if (lexicalHandler_) lexicalHandler_->endCDATA();
  } else if (primitiveTypeContentHandler_ && field < dialect_.firstApplicationAlgorithm) {
    value.callContentHandler(*primitiveTypeContentHandler_);
  } else if (encodingAlgorithmContentHandler_) {
    encodingAlgorithmContentHandler_->object(uri, static_cast<int>(field), value);
  } else if (contentHandler_) {
    contentHandler_->characters(value.toString());
  }
}

void XMLReader_FI::deliverOctets(bool, unsigned field, const std::string& uri,
                                 const std::string& octets) {
  if (!encodingAlgorithmContentHandler_) return;
  encodingAlgorithmContentHandler_->octets(uri, static_cast<int>(field), octets);
}

void XMLReader_FI::deliverComment(const std::string& text) {
  if (lexicalHandler_) lexicalHandler_->comment(text);
}

void XMLReader_FI::deliverInstruction(const std::string& target, const std::string& data) {
  if (contentHandler_) contentHandler_->processingInstruction(target, data);
}

void XMLReader_FI::deliverEntityReference(const std::string& name, const std::string& publicId,
                                          const std::string& systemId) {
  deliverUnused("unexpanded entity reference - name = \"" + name + "\", systemID = \"" + systemId +
                "\", publicID = \"" + publicId + '"');
}

// --- Checks, which this dialect does without ---

void XMLReader_FI::checkPadding(unsigned) const {}
void XMLReader_FI::endChildren(bool) {}
void XMLReader_FI::checkIdentifier(const Strings*, const std::string&) {}
void XMLReader_FI::checkText(std::string_view) {}
void XMLReader_FI::checkAmplification() const {}
void XMLReader_FI::checkElementName(QualifiedName&) {}
void XMLReader_FI::checkAttributeName(QualifiedName&) {}

// --- Formats that this dialect does not decode ---

void XMLReader_FI::decodeOtherString(unsigned octet, std::string&) {
  // Of UTF-16 the string itself is taken for the next item; of restricted alphabets and algorithms
  // so is all behind this octet.
  if ((octet & kStringEncoding) == kStringUTF16) decodeStringLength(static_cast<int>(octet));
}

void XMLReader_FI::decodeOtherChunk(unsigned octet, std::string&) {
  if ((octet & kChunkEncoding) == kChunkUTF16) {
    decodeCharactersLength(static_cast<int>(octet));  // The text is taken for the next item.
  } else {
    takeOctet();  // The rest is taken for the next item.
  }
}

}  // namespace Tavrin
