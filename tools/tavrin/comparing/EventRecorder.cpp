#include "comparing/EventRecorder.h"

#include <algorithm>
#include <cstdint>

#include "reading/Reading.h"

namespace tool {

EventRecorder::EventRecorder(BlockQueue& queue, const Input& input, bool lexical, bool findsLines,
                             Tavrin::EntityResolver* resolver)
    : input_(input),
      lexical_(lexical),
      // Octets of an external entity are others.
      findsLines_(findsLines && resolver == nullptr),
      resolver_(resolver),
      end_(input.documentStart()),
      records_(queue, input.documentNumber()) {
  if (input.documentNumber() == 1) return;
  records_.begin(RecordKind::Border, Place::ofOctet(end_ + 1), {});
  records_.end();
}

void EventRecorder::attachTo(Tavrin::XMLReader& reader) {
  readerFollowsStandard_ = followsStandard(reader);
  attach(reader, *this, false);
}

void EventRecorder::finish(bool isCutOff) { records_.finish(isCutOff); }

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

/// Where the event that comes now began. A locator says so, but lines take time to count. Without
/// one it is the octet behind the event before, unless one octet brought both.
Place EventRecorder::advance() {
  if (octets_) {
    const std::uint64_t octet = octets_->getOctetOffset();
    if (octet >= nextAnchor_) setAnchor(octet);
    return Place::ofOctet(octet);
  }
  if (locator_) return Place::inLine(locator_->getLineNumber(), locator_->getColumnNumber());
  const std::uint64_t read = input_.octetsRead();
  const std::uint64_t begin = std::min(end_ + 1, read);
  end_ = read;
  return Place::ofOctet(begin);
}

/// A difference is found soon when few octets lie between.
void EventRecorder::setAnchor(std::uint64_t octet) {
  constexpr std::uint64_t kDistance = std::uint64_t{64} * 1024;
  records_.setAnchor({octet, Place::inLine(octets_->getLineNumber(), octets_->getColumnNumber())});
  nextAnchor_ = octet + kDistance;
}

void EventRecorder::begin(RecordKind kind) {
  records_.endText();
  const Place place = advance();
  if (resolver_) entity_ = entityAt(locator_);  // Without a resolver no entity is read.
  records_.begin(kind, place, entity_);
}

template <typename... Strings>
void EventRecorder::record(RecordKind kind, const Strings&... strings) {
  guard([&] {
    begin(kind);
    records_.add(strings...);
    records_.end();
  });
}

template <typename... Strings>
void EventRecorder::recordIf(bool wanted, RecordKind kind, const Strings&... strings) {
  if (wanted) {
    record(kind, strings...);
  } else {
    guard([this] { advance(); });
  }
}

/// A text is where its first piece is that is not empty.
void EventRecorder::noteTextBegins() {
  const bool isFirst = !records_.isInText();
  if (!isFirst && locator_) return;  // Lines take time to count.
  const Place place = advance();
  if (!isFirst) return;
  textPlace_ = place;
  if (resolver_) entity_ = entityAt(locator_);
}

void EventRecorder::recordText(const std::string& text) {
  guard([&] {
    noteTextBegins();
    records_.addText(text, textPlace_, entity_);
  });
}

// --- Events ---

void EventRecorder::setDocumentLocator(const Tavrin::Locator* locator) {
  locator_ = withLines(locator);
  if (findsLines_) octets_ = dynamic_cast<const Tavrin::OctetLocator*>(locator_);
}

void EventRecorder::startDocument() {
  guard([this] { advance(); });
}

void EventRecorder::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  record(RecordKind::StartPrefixMapping, prefix, uri);
}

void EventRecorder::endPrefixMapping(const std::string&) {
  guard([this] { advance(); });
}

void EventRecorder::startElement(const std::string& uri, const std::string& localName,
                                 const std::string& qName, const Tavrin::Attributes& attributes) {
  guard([&] {
    begin(RecordKind::StartElement);
    records_.add(uri, localName, qName);
    const int length = attributes.getLength();
    for (int i = 0; i < length; ++i) {
      records_.add(attributes.getURI(i), attributes.getLocalName(i), attributes.getQName(i),
                   attributes.getValue(i));
      const std::string& type = attributes.getType(i);
      if (type != kUsualType) records_.remark(static_cast<std::uint32_t>(i), type);
    }
    records_.end();
  });
}

void EventRecorder::endElement(const std::string& uri, const std::string& localName,
                               const std::string& qName) {
  record(RecordKind::EndElement, uri, localName, qName);
}

void EventRecorder::characters(const std::string& text) { recordText(text); }

void EventRecorder::ignorableWhitespace(const std::string& text) { recordText(text); }

void EventRecorder::object(const std::string&, int index, const Tavrin::EncodedData& data) {
  const Numbers::Array numbers = Numbers::of(index, data);
  if (numbers.size == 0) return recordText(data.toString());
  guard([&] {
    noteTextBegins();
    records_.addNumbers(numbers, textPlace_, entity_);
  });
}

// The number of an algorithm is a matter of the document's table where a URI names it.
void EventRecorder::octets(const std::string& uri, int index, const std::string& data) {
  guard([&] {
    const std::string number = std::to_string(index);
    begin(RecordKind::Octets);
    records_.add(uri, uri.empty() ? number : std::string(), data);
    records_.remark(0, number);
    records_.end();
  });
}

void EventRecorder::processingInstruction(const std::string& target, const std::string& data) {
  recordIf(lexical_ || !inExternalSubset_, RecordKind::ProcessingInstruction, target, data);
}

void EventRecorder::comment(const std::string& text) {
  recordIf(lexical_ || !inDTD_, RecordKind::Comment, text);
}

void EventRecorder::skippedEntity(const std::string& name) {
  recordIf(lexical_ || !inDTD_, RecordKind::SkippedEntity, name);
}

std::unique_ptr<std::istream> EventRecorder::resolveEntity(const std::string& publicId,
                                                           const std::string& systemId) {
  std::unique_ptr<std::istream> entity;
  guard([&] {
    if (resolver_) entity = resolver_->resolveEntity(publicId, systemId);
  });
  // A reader that follows the standard goes on to say that the entity was skipped.
  if (!entity && !readerFollowsStandard_) {
    recordIf(lexical_ || !inDTD_, RecordKind::ResolveEntity, publicId, systemId);
  }
  return entity;
}

void EventRecorder::startDTD(const std::string& name, const std::string& publicId,
                             const std::string& systemId) {
  inDTD_ = true;
  recordIf(lexical_, RecordKind::StartDTD, name, publicId, systemId);
}

void EventRecorder::endDTD() {
  inDTD_ = false;
  recordIf(lexical_, RecordKind::EndDTD);
}

void EventRecorder::startEntity(const std::string& name) {
  if (name == kExternalSubset) inExternalSubset_ = true;
}

void EventRecorder::endEntity(const std::string& name) {
  if (name == kExternalSubset) inExternalSubset_ = false;
}

void EventRecorder::startCDATA() { recordIf(lexical_, RecordKind::StartCDATA); }

void EventRecorder::endCDATA() { recordIf(lexical_, RecordKind::EndCDATA); }

}  // namespace tool
