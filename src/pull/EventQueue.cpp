#include "EventQueue.h"

namespace Tavrin {

namespace {

// More memory is not held for long.
constexpr std::size_t kMostKept = std::size_t{64} * 1024;

}  // namespace

void QueuedAttributes::append(const Attributes& attributes) {
  const int length = attributes.getLength();
  for (int i = 0; i < length; ++i) {
    if (count_ == records_.size()) records_.emplace_back();
    AttributesImpl::Attribute& record = records_[count_++];
    record.uri = attributes.getURI(i);
    record.localName = attributes.getLocalName(i);
    record.qName = attributes.getQName(i);
    record.type = attributes.getType(i);
    record.value = attributes.getValue(i);
    octets_ += record.uri.size() + record.qName.size() + record.value.size() + sizeof record;
  }
}

void QueuedAttributes::clear() {
  if (octets_ > 2 * kMostKept) records_ = {};
  count_ = 0;
  octets_ = 0;
  show(0, 0);
}

void EventQueue::addStartElement(const std::string& uri, const std::string& localName,
                                 const std::string& qName, const Attributes& attributes) {
  add(PullEvent::startElement, {uri, localName, qName});
  Entry& entry = entries_.back();
  entry.firstAttribute = attributes_.count();
  attributes_.append(attributes);
  entry.attributeCount = attributes_.count() - entry.firstAttribute;
  entry.firstMapping = mappingsOfTags_;
  entry.mappingCount = mappings_.size() - mappingsOfTags_;
  mappingsOfTags_ = mappings_.size();
}

void EventQueue::addMapping(std::string_view prefix, std::string_view uri) {
  mappings_.push_back({octets_.size(), prefix.size(), uri.size()});
  octets_ += prefix;
  octets_ += uri;
}

bool EventQueue::handOut(PullState& state) {
  if (next_ == entries_.size()) return false;
  const Entry& entry = entries_[next_++];
  state.event = entry.event;
  state.partCount = entry.partCount;
  const char* part = octets_.data() + entry.begin;
  for (std::size_t i = 0; i < entry.partCount; ++i) {
    state.parts[i] = {part, entry.lengths[i]};
    part += entry.lengths[i];
  }
  state.value = nullptr;
  state.algorithmURI = {};
  state.algorithmIndex = entry.index;
  position_ = entry.position;
  if (entry.event == PullEvent::octets) state.algorithmURI = state.parts[1];
  if (entry.event != PullEvent::startElement) return true;
  attributes_.show(entry.firstAttribute, entry.attributeCount);
  state.attributes = &attributes_;
  state.mappingCount = entry.mappingCount;
  if (entry.mappingCount == 0) return true;
  shown_.clear();
  for (std::size_t i = 0; i < entry.mappingCount; ++i) {
    const Mapping& mapping = mappings_[entry.firstMapping + i];
    const std::string_view both(octets_.data() + mapping.begin,
                                mapping.prefixLength + mapping.uriLength);
    shown_.push_back({both.substr(0, mapping.prefixLength), both.substr(mapping.prefixLength)});
  }
  state.mappings = shown_.data();
  return true;
}

void EventQueue::clear() {
  if (octets_.capacity() > kMostKept) std::string().swap(octets_);
  if (entries_.capacity() * sizeof(Entry) > 8 * kMostKept) entries_ = {};
  octets_.clear();
  entries_.clear();
  next_ = 0;
  attributes_.clear();
  mappings_.clear();
  mappingsOfTags_ = 0;
}

}  // namespace Tavrin
