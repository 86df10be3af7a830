#include "comparing/EventRecorder.h"

#include <algorithm>
#include <utility>

#include "reading/Reading.h"

namespace tool {

namespace {

// A batch is full with so many events, or with so many octets of text.
constexpr std::size_t kMaximumEvents = 256;
constexpr std::size_t kMaximumOctets = std::size_t{64} * 1024;

}  // namespace

EventRecorder::EventRecorder(EventQueue& queue, const Input& input, bool lexical,
                             Tavrin::EntityResolver* resolver)
    : queue_(queue),
      input_(input),
      lexical_(lexical),
      resolver_(resolver),
      end_(input.documentStart()) {
  if (input.documentNumber() > 1) {
    add({Event::Kind::Border, {0, 0, end_ + 1, input.documentNumber(), {}}, {}, {}});
  }
}

void EventRecorder::attachTo(Tavrin::XMLReader& reader) {
  readerFollowsStandard_ = followsStandard(reader);
  attach(reader, *this, false);
}

void EventRecorder::finish(bool isCutOff) {
  flushText(isCutOff);
  if (!batch_.empty()) queue_.push(std::exchange(batch_, {}));
}

void EventRecorder::check() const {
  if (failure_) std::rethrow_exception(failure_);
}

/// Keeps what goes wrong.
template <typename Work>
void EventRecorder::guard(Work work) {
  check();  // Some events still come before the reader has stopped.
  try {
    work();
  } catch (...) {
    failure_ = std::current_exception();
    throw;
  }
}

// --- Recording ---

/// Where the event that comes now began. A locator says so. Without one it is the octet behind the
/// event before, unless one octet brought both.
Event::Position EventRecorder::advance() {
  if (locator_) {
    return {locator_->getLineNumber(), locator_->getColumnNumber(), 0, input_.documentNumber(),
            entityAt(locator_)};
  }
  const std::uint64_t begin = std::min(end_ + 1, input_.octetsRead());
  end_ = input_.octetsRead();
  return {0, 0, begin, input_.documentNumber(), {}};
}

void EventRecorder::add(Event event) {
  for (const std::string& argument : event.arguments) batchOctets_ += argument.size();
  for (const auto& attribute : event.attributes) batchOctets_ += attribute.value.size();
  batch_.push_back(std::move(event));
  if (batch_.size() < kMaximumEvents && batchOctets_ < kMaximumOctets) return;
  batchOctets_ = 0;
  queue_.push(std::exchange(batch_, {}));
}

void EventRecorder::flushText(bool isCutOff) {
  if (text_.empty()) return;
  Event event{Event::Kind::Characters, textPosition_, {}, {}, isCutOff};
  event.arguments.push_back(std::exchange(text_, {}));
  add(std::move(event));
}

void EventRecorder::record(Event::Kind kind, std::vector<std::string> arguments,
                           const Tavrin::Attributes* attributes) {
  guard([&] {
    flushText(false);
    Event event{kind, advance(), std::move(arguments), {}, false};
    const int length = attributes ? attributes->getLength() : 0;
    event.attributes.reserve(static_cast<std::size_t>(length));
    for (int i = 0; i < length; ++i) {
      event.attributes.push_back({attributes->getURI(i), attributes->getLocalName(i),
                                  attributes->getQName(i), attributes->getType(i),
                                  attributes->getValue(i)});
    }
    add(std::move(event));
  });
}

void EventRecorder::recordText(const std::string& text) {
  guard([&] {
    const Event::Position position = advance();
    if (text_.empty()) textPosition_ = position;
    text_ += text;
  });
}

void EventRecorder::recordIf(bool wanted, Event::Kind kind, std::vector<std::string> arguments) {
  if (wanted) {
    record(kind, std::move(arguments));
  } else {
    guard([this] { advance(); });
  }
}

// --- Events ---

void EventRecorder::setDocumentLocator(const Tavrin::Locator* locator) {
  locator_ = withLines(locator);
}

void EventRecorder::startDocument() {
  guard([this] { advance(); });
}

void EventRecorder::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  record(Event::Kind::StartPrefixMapping, {prefix, uri});
}

void EventRecorder::endPrefixMapping(const std::string&) {
  guard([this] { advance(); });
}

void EventRecorder::startElement(const std::string& uri, const std::string& localName,
                                 const std::string& qName, const Tavrin::Attributes& attributes) {
  record(Event::Kind::StartElement, {uri, localName, qName}, &attributes);
}

void EventRecorder::endElement(const std::string& uri, const std::string& localName,
                               const std::string& qName) {
  record(Event::Kind::EndElement, {uri, localName, qName});
}

void EventRecorder::characters(const std::string& text) { recordText(text); }

void EventRecorder::ignorableWhitespace(const std::string& text) { recordText(text); }

void EventRecorder::object(const std::string&, int, const Tavrin::EncodedData& data) {
  recordText(data.toString());
}

void EventRecorder::octets(const std::string& uri, int index, const std::string& data) {
  record(Event::Kind::Octets, {uri, std::to_string(index), data});
}

void EventRecorder::processingInstruction(const std::string& target, const std::string& data) {
  recordIf(lexical_ || !inExternalSubset_, Event::Kind::ProcessingInstruction, {target, data});
}

void EventRecorder::comment(const std::string& text) {
  recordIf(lexical_ || !inDTD_, Event::Kind::Comment, {text});
}

void EventRecorder::skippedEntity(const std::string& name) {
  recordIf(lexical_ || !inDTD_, Event::Kind::SkippedEntity, {name});
}

std::unique_ptr<std::istream> EventRecorder::resolveEntity(const std::string& publicId,
                                                           const std::string& systemId) {
  std::unique_ptr<std::istream> entity;
  guard([&] {
    if (resolver_) entity = resolver_->resolveEntity(publicId, systemId);
  });
  // A reader that follows the standard goes on to say that the entity was skipped.
  if (!entity && !readerFollowsStandard_) {
    recordIf(lexical_ || !inDTD_, Event::Kind::ResolveEntity, {publicId, systemId});
  }
  return entity;
}

void EventRecorder::startDTD(const std::string& name, const std::string& publicId,
                             const std::string& systemId) {
  inDTD_ = true;
  recordIf(lexical_, Event::Kind::StartDTD, {name, publicId, systemId});
}

void EventRecorder::endDTD() {
  inDTD_ = false;
  recordIf(lexical_, Event::Kind::EndDTD, {});
}

void EventRecorder::startEntity(const std::string& name) {
  if (name == kExternalSubset) inExternalSubset_ = true;
}

void EventRecorder::endEntity(const std::string& name) {
  if (name == kExternalSubset) inExternalSubset_ = false;
}

void EventRecorder::startCDATA() { recordIf(lexical_, Event::Kind::StartCDATA, {}); }

void EventRecorder::endCDATA() { recordIf(lexical_, Event::Kind::EndCDATA, {}); }

}  // namespace tool
