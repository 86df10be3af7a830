#include <Tavrin/XMLReader_FI.h>

#include <iostream>

#include "../Dialect.h"
#include "../Octets.h"
#include "TakeOctet.h"

// What is decoded reaches the handlers here. A handler may take itself off at any event.

namespace Tavrin {

using namespace fastinfoset;

// --- Document ---

// What no handler takes is printed, a line each, which is out when the reader goes on.
void XMLReader_FI::dialectDeliverUnused(const std::string& line) { std::cout << line << std::endl; }

void XMLReader_FI::dialectDeliverVersion(const std::string& version) {
  dialectDeliverUnused("decodeVersion - \"" + version + '"');
}

void XMLReader_FI::dialectDeliverStandalone(unsigned) {}

void XMLReader_FI::dialectDeliverNotation(const std::string& name, const std::string& publicId,
                                          const std::string& systemId) {
  if (dtdHandler_) dtdHandler_->notationDecl(name, publicId, systemId);
}

void XMLReader_FI::dialectDeliverUnparsedEntity(const std::string& name,
                                                const std::string& publicId,
                                                const std::string& systemId,
                                                const std::string& notationName) {
  if (dtdHandler_) dtdHandler_->unparsedEntityDecl(name, publicId, systemId, notationName);
}

void XMLReader_FI::dialectDeliverStartDTD(const std::string& publicId,
                                          const std::string& systemId) {
  if (lexicalHandler_) lexicalHandler_->startDTD(std::string(), publicId, systemId);
}

void XMLReader_FI::dialectDeliverEndDTD() {
  if (lexicalHandler_) lexicalHandler_->endDTD();
}

// --- Elements ---

void XMLReader_FI::dialectDeliverDeclarations(const Strings& declarations) {
  for (std::size_t i = 0; i < declarations.size() && contentHandler_; i += 2) {
    contentHandler_->startPrefixMapping(declarations[i], declarations[i + 1]);
  }
}

void XMLReader_FI::dialectDeliverEndElement(const Name& name, const Strings& declarations) {
  if (contentHandler_) contentHandler_->endElement(name.namespaceName, name.localName, name.qName);
  for (std::size_t i = 0; i < declarations.size() && contentHandler_; i += 2) {
    contentHandler_->endPrefixMapping(declarations[i]);
  }
}

// --- Content ---

void XMLReader_FI::dialectDeliverCharacters(const std::string& text) {
  if (contentHandler_) contentHandler_->characters(text);
}

void XMLReader_FI::dialectDeliver(unsigned field, const std::string& uri,
                                  const EncodedData& value) {
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

void XMLReader_FI::dialectDeliverOctets(bool, unsigned field, const std::string& uri,
                                        const std::string& octets) {
  if (!encodingAlgorithmContentHandler_) return;
  encodingAlgorithmContentHandler_->octets(uri, static_cast<int>(field), octets);
}

void XMLReader_FI::dialectDeliverComment(const std::string& text) {
  if (lexicalHandler_) lexicalHandler_->comment(text);
}

void XMLReader_FI::dialectDeliverInstruction(const std::string& target, const std::string& data) {
  if (contentHandler_) contentHandler_->processingInstruction(target, data);
}

void XMLReader_FI::dialectDeliverEntityReference(const std::string& name,
                                                 const std::string& publicId,
                                                 const std::string& systemId) {
  dialectDeliverUnused("unexpanded entity reference - name = \"" + name + "\", systemID = \"" +
                       systemId + "\", publicID = \"" + publicId + '"');
}

// --- Checks, which this dialect does without ---

void XMLReader_FI::dialectCheckPadding(unsigned) const {}
void XMLReader_FI::dialectEndChildren(bool) {}
void XMLReader_FI::dialectCheckIdentifier(const Strings*, const std::string&) {}
void XMLReader_FI::dialectCheckText(std::string_view) {}
void XMLReader_FI::dialectCheckAmplification() const {}
void XMLReader_FI::dialectCheckElementName(Name&) {}
void XMLReader_FI::dialectCheckAttributeName(Name&) {}

// --- Formats that this dialect does not decode ---

void XMLReader_FI::dialectDecodeOtherString(unsigned octet, std::string&) {
  // Of UTF-16 the string itself is taken for the next item; of restricted alphabets and algorithms
  // so is all behind this octet.
  if ((octet & kStringEncoding) == kStringUTF16) decodeStringLength(static_cast<int>(octet));
}

void XMLReader_FI::dialectDecodeOtherChunk(unsigned octet, std::string&) {
  if ((octet & kChunkEncoding) == kChunkUTF16) {
    decodeCharactersLength(static_cast<int>(octet));  // The text is taken for the next item.
  } else {
    takeOctet();  // The rest is taken for the next item.
  }
}

}  // namespace Tavrin
