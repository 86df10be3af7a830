#include <Tavrin/XMLWriter.h>

#include "ElementStrings.h"
#include "Properties.h"

namespace Tavrin {

namespace {

constexpr unsigned bit(int state) { return 1U << static_cast<unsigned>(state); }

/// Where comments and processing instructions may stand.
constexpr unsigned kBetweenTags = bit(XMLWriter::Prolog) | bit(XMLWriter::InDTD) |
                                  bit(XMLWriter::AfterDTD) | bit(XMLWriter::InElement) |
                                  bit(XMLWriter::AfterRoot);

/// Refuses an event in any state but those of a set of bits.
void checkState(int state, unsigned allowed, const char* message) {
  if ((allowed & bit(state)) == 0) throw SAXException(message);
}

}  // namespace

void XMLWriter::startDocument() {
  checkState(state_, bit(Initial), "You cannot start a document at this point");
  state_ = Prolog;
}

void XMLWriter::endDocument() {
  checkState(state_, bit(Prolog) | bit(AfterDTD) | bit(AfterRoot),
             "You cannot end the document at this point");
  state_ = Ended;
}

void XMLWriter::startDTD(const std::string&, const std::string&, const std::string&) {
  checkState(state_, bit(Prolog), "You cannot start a DTD at this point");
  state_ = InDTD;
  hasContent_ = false;
}

void XMLWriter::endDTD() {
  checkState(state_, bit(InDTD), "You cannot end a DTD at this point");
  state_ = AfterDTD;
}

void XMLWriter::notationDecl(const std::string&, const std::string&, const std::string&) {
  checkState(state_, bit(InDTD), "You cannot write a notation at this point");
  hasContent_ = true;
}

void XMLWriter::unparsedEntityDecl(const std::string&, const std::string&, const std::string&,
                                   const std::string&) {
  checkState(state_, bit(InDTD), "You cannot write an entity declaration at this point");
  hasContent_ = true;
}

void XMLWriter::internalEntityDecl(const std::string&, const std::string&) {
  checkState(state_, bit(InDTD), "You cannot write an entity declaration at this point");
  hasContent_ = true;
}

void XMLWriter::externalEntityDecl(const std::string&, const std::string&, const std::string&) {
  checkState(state_, bit(InDTD), "You cannot write an entity declaration at this point");
  hasContent_ = true;
}

void XMLWriter::elementDecl(const std::string&, const std::string&) {
  checkState(state_, bit(InDTD), "You cannot write an element declaration at this point");
  hasContent_ = true;
}

void XMLWriter::attributeDecl(const std::string&, const std::string&, const std::string&,
                              const std::string&, const std::string&) {
  checkState(state_, bit(InDTD), "You cannot write an attribute declaration at this point");
  hasContent_ = true;
}

void XMLWriter::startElement(const std::string& uri, const std::string& localName,
                             const std::string& qName, const Attributes&) {
  checkState(state_, bit(Prolog) | bit(AfterDTD) | bit(InElement),
             "You cannot start an element at this point");
  elements_.emplace_back(ElementStrings<const std::string&>{uri, localName, qName});
  state_ = InElement;
  hasContent_ = false;
}

void XMLWriter::endElement(const std::string& uri, const std::string& localName,
                           const std::string& qName) {
  checkState(state_, bit(InElement), "You cannot end an element at this point");
  hasContent_ = true;  // Of the parent.
  const Element& element = elements_.back();
  if (element.uri != uri || element.localName != localName || element.qName != qName) {
    throw SAXException("Name mismatch between start and end element");
  }
  elements_.pop_back();
  if (elements_.empty()) state_ = AfterRoot;
}

void XMLWriter::characters(const std::string& text) {
  checkState(state_, bit(InElement) | bit(InCDATA),
             "You cannot write character data at this point");
  hasContent_ = true;
  if (state_ == InCDATA && text.find("]]>") != std::string::npos) {
    throw SAXException("You cannot put \"]]>\" into a CDATA section");
  }
}

void XMLWriter::ignorableWhitespace(const std::string& text) {
  checkState(state_, kBetweenTags | bit(InCDATA), "You cannot write whitespace at this point");
  hasContent_ = true;
  if (text.find_first_not_of(" \t\r\n") != std::string::npos) {
    throw SAXException("You cannot put non-whitespace characters into ignorable whitespace");
  }
}

void XMLWriter::comment(const std::string& text) {
  checkState(state_, kBetweenTags, "You cannot write a comment at this point");
  hasContent_ = true;
  if (text.find("-->") != std::string::npos) {
    throw SAXException("You cannot put \"-->\" into a comment");
  }
}

void XMLWriter::processingInstruction(const std::string&, const std::string&) {
  checkState(state_, kBetweenTags, "You cannot write a processing instruction at this point");
  hasContent_ = true;
}

void XMLWriter::startCDATA() {
  checkState(state_, bit(InElement), "You cannot start a CDATA section at this point");
  state_ = InCDATA;
  hasContent_ = false;
}

void XMLWriter::endCDATA() {
  checkState(state_, bit(InCDATA), "You cannot end a CDATA section at this point");
  state_ = InElement;
  hasContent_ = true;
}

void XMLWriter::setFeature(const std::string& name, bool) { throwFeatureNotRecognized(name); }

bool XMLWriter::getFeature(const std::string& name) { throwFeatureNotRecognized(name); }

void XMLWriter::setProperty(const std::string& name, void*) { throwPropertyNotRecognized(name); }

void* XMLWriter::getProperty(const std::string& name) { throwPropertyNotRecognized(name); }

void XMLWriter::flush() {}

void XMLWriter::reset() {
  state_ = Initial;
  elements_.clear();
}

}  // namespace Tavrin
