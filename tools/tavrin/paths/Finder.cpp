#include "paths/Finder.h"

#include <Tavrin/Exceptions.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLReader_X891.h>
#include <Tavrin/XMLReader_XML10.h>

#include "files/Failure.h"
#include "options/Limits.h"
#include "reading/Reading.h"

namespace tool {

namespace {

/// Ends a document at once, where the reader can.
void stop(Tavrin::XMLReader& reader) {
  if (auto* const text = dynamic_cast<Tavrin::XMLReader_XML10*>(&reader)) text->stop();
  if (auto* const binary = dynamic_cast<Tavrin::XMLReader_X891*>(&reader)) binary->stop();
}

}  // namespace

void Finder::attachTo(Tavrin::XMLReader& reader) {
  reader_ = &reader;
  locator_ = nullptr;
  readerFollowsStandard_ = followsStandard(reader);
  missesEntity_ = inDTD_ = inText_ = isTextResult_ = false;
  scope_.clear();
  reader.setContentHandler(this);
  reader.setEntityResolver(resolver_ || !readerFollowsStandard_ ? this : nullptr);
  if (knowsTypedContent(reader)) {
    reader.setProperty(Tavrin::properties::encodingAlgorithmContentHandler,
                       static_cast<Tavrin::EncodingAlgorithmContentHandler*>(this));
  }
  // Comments part texts, and those of the document type have to be told from others.
  const bool printsElements = results_ && paths_.leadTo(NodeKind::Element);
  const bool needsLexicalEvents = printsElements || paths_.leadTo(NodeKind::Text) ||
                                  paths_.leadTo(NodeKind::Comment) ||
                                  paths_.leadTo(NodeKind::Instruction) || !readerFollowsStandard_;
  if (needsLexicalEvents) {
    reader.setProperty(Tavrin::properties::lexicalHandler,
                       static_cast<Tavrin::LexicalHandler*>(this));
  }
  matcher_.startDocument();
}

// --- Failures and the end ---

/// Keeps what goes wrong. There is no use in going on after that.
template <typename Work>
void Finder::guard(Work work) {
  if (failure_ || hasEnough_) return;  // Some events still come before the reader has stopped.
  try {
    work();
  } catch (const Tavrin::SAXException& exception) {
    fail(Limits::withOption(exception.getMessage()));
  } catch (const Tavrin::FastInfosetException& exception) {
    fail(Limits::withOption(exception.getMessage()));
  } catch (...) {
    failure_ = std::current_exception();
    throw;
  }
}

void Finder::fail(const std::string& message) {
  const Failure failure =
      Failure::document(placeReached(input_, locator_), message + entityAt(locator_));
  failure_ = std::make_exception_ptr(failure);
  throw failure;
}

void Finder::stopIfComplete() {
  if (found_ < most_ || isTextResult_ || isPrinting()) return;
  hasEnough_ = true;
  stop(*reader_);
}

// --- Results ---

/// Counts a result. Returns whether it is one that is looked for.
bool Finder::take(bool isResult) {
  if (!isResult || found_ == most_) return false;
  ++found_;
  return true;
}

void Finder::takeValue(bool isResult, const std::string& value) {
  if (!take(isResult) || !results_) return;
  results_->beginValue();
  results_->addToValue(value);
  results_->endValue();
}

void Finder::takeAttributes(const Tavrin::Attributes& attributes) {
  const int length = attributes.getLength();
  for (int i = 0; i < length; ++i) {
    const bool isResult = matcher_.attribute(attributes.getURI(i), attributes.getLocalName(i));
    if (isResult) takeValue(true, attributes.getValue(i));
  }
}

/// Returns whether what follows is a part of some result.
bool Finder::beginText() {
  if (!inText_) {
    inText_ = true;
    isTextResult_ = take(matcher_.text());
    if (isTextResult_ && results_) results_->beginValue();
  }
  return results_ && (isTextResult_ || results_->isInElement());
}

void Finder::endText() {
  if (!inText_) return;
  inText_ = false;
  if (!isTextResult_) return;
  isTextResult_ = false;
  if (results_) results_->endValue();
  stopIfComplete();
}

// --- Elements ---

void Finder::setDocumentLocator(const Tavrin::Locator* locator) { locator_ = withLines(locator); }

void Finder::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  if (results_) scope_.declare(prefix, uri);
}

void Finder::endPrefixMapping(const std::string&) {
  if (results_) scope_.removeLast();
}

void Finder::startElement(const std::string& uri, const std::string& localName,
                          const std::string& qName, const Tavrin::Attributes& attributes) {
  guard([&] {
    endText();
    if (hasEnough_) return;
    const bool isResult = take(matcher_.startElement(uri, localName, attributes));
    if (results_ && (isResult || results_->isInElement())) {
      results_->startElement({uri, localName, qName, attributes, scope_}, isResult);
    }
    if (matcher_.looksAt(NodeKind::Attribute)) takeAttributes(attributes);
    scope_.closeStartTag();
    if (found_ == most_) stopIfComplete();
  });
}

void Finder::endElement(const std::string& uri, const std::string& localName,
                        const std::string& qName) {
  guard([&] {
    endText();
    if (hasEnough_) return;
    matcher_.endElement();
    if (!isPrinting()) return;
    results_->endElement(uri, localName, qName);
    stopIfComplete();
  });
}

// --- Text ---

void Finder::characters(const std::string& text) {
  if (!needsText_ || text.empty()) return;
  guard([&] {
    if (!beginText()) return;
    // In this order, so that what cannot be printed is not kept either.
    if (results_->isInElement()) results_->inside().characters(text);
    if (isTextResult_) results_->addToValue(text);
  });
}

void Finder::object(const std::string&, int, const Tavrin::EncodedData& data) {
  const bool isNeeded = isPrinting() || isTextResult_ || matcher_.looksAt(NodeKind::Text);
  if (isNeeded) guard([&] { characters(data.toString()); });
}

void Finder::octets(const std::string& uri, int index, const std::string&) {
  guard([&] {
    if (!beginText()) return;
    fail("encoding algorithm " + std::to_string(index) + (uri.empty() ? "" : " \"" + uri + "\"") +
         " is unknown, so the result would lack its content");
  });
}

void Finder::startCDATA() {
  guard([&] {
    if (isPrinting()) results_->inside().startCDATA();
  });
}

void Finder::endCDATA() {
  guard([&] {
    if (isPrinting()) results_->inside().endCDATA();
  });
}

// --- What else there is ---

void Finder::startDTD(const std::string&, const std::string&, const std::string&) { inDTD_ = true; }

void Finder::comment(const std::string& text) {
  if (inDTD_) return;
  guard([&] {
    endText();
    if (hasEnough_) return;
    if (isPrinting()) results_->inside().comment(text);
    takeValue(matcher_.comment(), text);
    stopIfComplete();
  });
}

void Finder::processingInstruction(const std::string& target, const std::string& data) {
  if (inDTD_) return;
  guard([&] {
    endText();
    if (hasEnough_) return;
    if (isPrinting()) results_->inside().instruction(target, data);
    takeValue(matcher_.instruction(target), data);
    stopIfComplete();
  });
}

void Finder::skippedEntity(const std::string& name) {
  if (!inDTD_ && name != kExternalSubset) missEntity("entity \"" + name + "\"");
}

std::unique_ptr<std::istream> Finder::resolveEntity(const std::string& publicId,
                                                    const std::string& systemId) {
  std::unique_ptr<std::istream> entity;
  guard([&] {
    if (resolver_) entity = resolver_->resolveEntity(publicId, systemId);
  });
  // A reader that follows the standard goes on to say that the entity was skipped.
  if (!entity && !readerFollowsStandard_ && !inDTD_)
    missEntity("external entity \"" + systemId + "\"");
  return entity;
}

/// A result cannot do without the entity. Elsewhere it may hold other results.
void Finder::missEntity(const std::string& description) {
  guard([&] {
    if (isPrinting() || isTextResult_ || matcher_.looksAt(NodeKind::Text)) {
      fail(description + " was not read, so the result would lack it (see --entities)");
    }
    if (missesEntity_) return;
    missesEntity_ = true;
    warn(placeReached(input_, locator_),
         description + " was not read: what it holds is not found (see --entities)" +
             entityAt(locator_));
  });
}

}  // namespace tool
