#include "EventGate.h"

#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/Identifiers.h>

#include <memory>
#include <utility>

#include "AtLimit.h"

namespace Tavrin {

namespace {

/// A copy of the attributes of a start tag, typed values included.
std::shared_ptr<const Attributes> copyOf(const Attributes& attributes) {
  if (const auto* typed = dynamic_cast<const EncodingAlgorithmAttributes*>(&attributes)) {
    auto copy = std::make_shared<EncodingAlgorithmAttributesImpl>();
    copy->copyAttributes(*typed);
    return copy;
  }
  auto copy = std::make_shared<AttributesImpl>();
  copy->setAttributes(attributes);
  return copy;
}

}  // namespace

EventGate::EventGate(HandlerPlaces& handlers, Fail fail, std::function<void()> kept)
    : handlers_(handlers), fail_(std::move(fail)), afterKeeping_(std::move(kept)) {}

void EventGate::begin(bool coalesces, const std::uint64_t& maximum) {
  end();
  state_ = State::open;
  coalesces_ = coalesces;
  maximum_ = &maximum;
  setPlaces(coalesces);
}

void EventGate::end() {
  if (isPaused()) state_ = State::open;
  text_ = {};
  kept_ = {};
  delivered_ = 0;
  failure_ = nullptr;
}

void EventGate::close(State state) {
  state_ = state;
  isSettled_ = false;
  setPlaces(true);
}

void EventGate::stop() {
  close(State::stopped);
  end();
}

void EventGate::pause() {
  if (isOpen()) close(State::paused);
}

void EventGate::setPlaces(bool areGated) {
  handlers_.content.setGate(areGated ? this : nullptr);
  handlers_.error.setGate(areGated ? this : nullptr);
  handlers_.dtd.setGate(areGated ? this : nullptr);
  handlers_.decl.setGate(areGated ? this : nullptr);
  handlers_.lexical.setGate(areGated ? this : nullptr);
  handlers_.primitiveTypes.setGate(areGated ? this : nullptr);
  handlers_.encodingAlgorithms.setGate(areGated ? this : nullptr);
}

bool EventGate::resume() {
  state_ = State::open;
  setPlaces(coalesces_);
  struct Delivery {
    bool& isUnderWay;
    ~Delivery() { isUnderWay = false; }
  } const delivery = {isDelivering_};
  isDelivering_ = true;
  while (isOpen() && delivered_ < kept_.size()) {
    const auto call = std::move(kept_[delivered_++]);
    call();
  }
  if (!isOpen()) return false;
  kept_ = {};
  delivered_ = 0;
  if (!failure_) return true;
  reportText();
  if (!isOpen()) return false;
  std::rethrow_exception(std::exchange(failure_, nullptr));
}

void EventGate::prepareFailure() {
  if (isOpen()) reportText();
  settle();
}

bool EventGate::absorbs() {
  if (isSettled_ && isStopped()) return true;
  if (isSettled_ && isPaused()) {
    if (!failure_) failure_ = std::current_exception();
    return true;
  }
  end();
  return false;
}

// --- Events ---

void EventGate::reportText() {
  if (text_.empty()) return;
  // Nothing else may use the memory while a handler has the text, and much is not held for long.
  constexpr std::size_t kMostKept = std::size_t{64} * 1024;
  std::string text;
  text.swap(text_);
  if (ContentHandler* const handler = handlers_.content.application()) handler->characters(text);
  if (text.capacity() > kMostKept) return;
  text.clear();
  text_.swap(text);
}

template <typename Handler, typename MakeCall>
bool EventGate::passes(const HandlerPlace<Handler>& handler, MakeCall makeCall) {
  if (isOpen() && handler) reportText();
  settle();  // A copy may throw.
  if (isPaused()) keep(makeCall());
  return isOpen() && handler;
}

void EventGate::keep(std::function<void()> call) {
  // An event that was on its way when text before it led to another pause is the next one again.
  if (isDelivering_) {
    kept_[--delivered_] = std::move(call);
  } else {
    kept_.push_back(std::move(call));
    afterKeeping_();
  }
}

template <typename Handler, typename... Parameters, typename... Arguments>
void EventGate::report(const HandlerPlace<Handler>& handler,
                       void (Handler::*operation)(Parameters...), const Arguments&... arguments) {
  const bool passesNow = passes(handler, [&] {
    return [this, operation, arguments...] {
      (static_cast<Handler*>(this)->*operation)(arguments...);
    };
  });
  if (passesNow) (handler.application()->*operation)(arguments...);
}

void EventGate::characters(const std::string& text) {
  if (isStopped()) return;
  if (isPaused()) {
    settle();
    return keep([this, text] { characters(text); });
  }
  if (!coalesces_) {
    if (handlers_.content) handlers_.content.application()->characters(text);
    return;
  }
  if (text.size() > *maximum_ || text_.size() > *maximum_ - text.size()) {
    fail_(atLimit("Text longer than " + std::to_string(*maximum_) + " octets",
                  properties::maximumCoalescedOctets));
  }
  text_ += text;
}

void EventGate::startElement(const std::string& uri, const std::string& localName,
                             const std::string& qName, const Attributes& attributes) {
  const bool passesNow = passes(handlers_.content, [&] {
    return [=, this, copy = copyOf(attributes)] { startElement(uri, localName, qName, *copy); };
  });
  if (passesNow) handlers_.content.application()->startElement(uri, localName, qName, attributes);
}

void EventGate::object(const std::string& uri, int index, const EncodedData& data) {
  const bool passesNow = passes(handlers_.encodingAlgorithms, [&] {
    return
        [=, this, copy = std::shared_ptr<EncodedData>(data.copy())] { object(uri, index, *copy); };
  });
  if (passesNow) handlers_.encodingAlgorithms.application()->object(uri, index, data);
}

void EventGate::setDocumentLocator(const Locator* locator) {
  report(handlers_.content, &ContentHandler::setDocumentLocator, locator);
}
void EventGate::startDocument() { report(handlers_.content, &ContentHandler::startDocument); }
void EventGate::endDocument() { report(handlers_.content, &ContentHandler::endDocument); }
void EventGate::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  report(handlers_.content, &ContentHandler::startPrefixMapping, prefix, uri);
}
void EventGate::endPrefixMapping(const std::string& prefix) {
  report(handlers_.content, &ContentHandler::endPrefixMapping, prefix);
}
void EventGate::endElement(const std::string& uri, const std::string& localName,
                           const std::string& qName) {
  report(handlers_.content, &ContentHandler::endElement, uri, localName, qName);
}
void EventGate::ignorableWhitespace(const std::string& text) {
  report(handlers_.content, &ContentHandler::ignorableWhitespace, text);
}
void EventGate::processingInstruction(const std::string& target, const std::string& data) {
  report(handlers_.content, &ContentHandler::processingInstruction, target, data);
}
void EventGate::skippedEntity(const std::string& name) {
  report(handlers_.content, &ContentHandler::skippedEntity, name);
}

void EventGate::warning(const SAXParseException& exception) {
  report(handlers_.error, &ErrorHandler::warning, exception);
}
void EventGate::error(const SAXParseException& exception) {
  report(handlers_.error, &ErrorHandler::error, exception);
}
void EventGate::fatalError(const SAXParseException& exception) {
  report(handlers_.error, &ErrorHandler::fatalError, exception);
}

void EventGate::notationDecl(const std::string& name, const std::string& publicId,
                             const std::string& systemId) {
  report(handlers_.dtd, &DTDHandler::notationDecl, name, publicId, systemId);
}
void EventGate::unparsedEntityDecl(const std::string& name, const std::string& publicId,
                                   const std::string& systemId, const std::string& notationName) {
  report(handlers_.dtd, &DTDHandler::unparsedEntityDecl, name, publicId, systemId, notationName);
}

void EventGate::elementDecl(const std::string& name, const std::string& model) {
  report(handlers_.decl, &DeclHandler::elementDecl, name, model);
}
void EventGate::attributeDecl(const std::string& eName, const std::string& aName,
                              const std::string& type, const std::string& mode,
                              const std::string& value) {
  report(handlers_.decl, &DeclHandler::attributeDecl, eName, aName, type, mode, value);
}
void EventGate::internalEntityDecl(const std::string& name, const std::string& value) {
  report(handlers_.decl, &DeclHandler::internalEntityDecl, name, value);
}
void EventGate::externalEntityDecl(const std::string& name, const std::string& publicId,
                                   const std::string& systemId) {
  report(handlers_.decl, &DeclHandler::externalEntityDecl, name, publicId, systemId);
}

void EventGate::startDTD(const std::string& name, const std::string& publicId,
                         const std::string& systemId) {
  report(handlers_.lexical, &LexicalHandler::startDTD, name, publicId, systemId);
}
void EventGate::endDTD() { report(handlers_.lexical, &LexicalHandler::endDTD); }
void EventGate::startEntity(const std::string& name) {
  report(handlers_.lexical, &LexicalHandler::startEntity, name);
}
void EventGate::endEntity(const std::string& name) {
  report(handlers_.lexical, &LexicalHandler::endEntity, name);
}
void EventGate::startCDATA() { report(handlers_.lexical, &LexicalHandler::startCDATA); }
void EventGate::endCDATA() { report(handlers_.lexical, &LexicalHandler::endCDATA); }
void EventGate::comment(const std::string& text) {
  report(handlers_.lexical, &LexicalHandler::comment, text);
}

void EventGate::bytes(const std::string& data) {
  report(handlers_.primitiveTypes, &PrimitiveTypeContentHandler::bytes, data);
}
void EventGate::shorts(const std::vector<short>& data) {
  report(handlers_.primitiveTypes, &PrimitiveTypeContentHandler::shorts, data);
}
void EventGate::ints(const std::vector<long>& data) {
  report(handlers_.primitiveTypes, &PrimitiveTypeContentHandler::ints, data);
}
void EventGate::longs(const std::vector<long>& data) {
  report(handlers_.primitiveTypes, &PrimitiveTypeContentHandler::longs, data);
}
void EventGate::booleans(const std::vector<bool>& data) {
  report(handlers_.primitiveTypes, &PrimitiveTypeContentHandler::booleans, data);
}
void EventGate::floats(const std::vector<float>& data) {
  report(handlers_.primitiveTypes, &PrimitiveTypeContentHandler::floats, data);
}
void EventGate::doubles(const std::vector<double>& data) {
  report(handlers_.primitiveTypes, &PrimitiveTypeContentHandler::doubles, data);
}

void EventGate::octets(const std::string& uri, int index, const std::string& data) {
  report(handlers_.encodingAlgorithms, &EncodingAlgorithmContentHandler::octets, uri, index, data);
}

}  // namespace Tavrin
