#pragma once

#include <Tavrin/PullReader.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "../sax/AttributesByName.h"

namespace Tavrin {

/// Where an event is in its document.
struct EventPosition {
  std::int32_t line = -1;
  std::int32_t column = -1;
  std::uint64_t octets = 0;
};

/// Copies of the attributes of several start tags, of which one is shown.
class QueuedAttributes final : public AttributesByName<QueuedAttributes, Attributes> {
 public:
  void append(const Attributes& attributes);
  void show(std::size_t first, std::size_t count) {
    first_ = first;
    length_ = count;
  }
  std::size_t count() const { return count_; }
  void clear();

  using AttributesByName::getType;
  using AttributesByName::getValue;
  int getLength() const override { return static_cast<int>(length_); }
  const std::string& getURI(int index) const override { return at(index).uri; }
  const std::string& getLocalName(int index) const override { return at(index).localName; }
  const std::string& getQName(int index) const override { return at(index).qName; }
  const std::string& getType(int index) const override { return at(index).type; }
  const std::string& getValue(int index) const override { return at(index).value; }

 private:
  const AttributesImpl::Attribute& at(int index) const {
    return records_[first_ + checkIndex(index, length_)];
  }

  std::vector<AttributesImpl::Attribute> records_;  // Used again, because they keep their memory.
  std::size_t count_ = 0;
  std::size_t octets_ = 0;
  std::size_t first_ = 0;
  std::size_t length_ = 0;
};

/// Copies of events that were reported and have not been asked for, one behind the other in one
/// piece of memory.
class EventQueue {
 public:
  /// Appends an event with its parts, which are strings.
  template <typename... Parts>
  void add(PullEvent event, const Parts&... parts) {
    append(event, 0, parts...);
    ++size_;
  }
  void addStartElement(const std::string& uri, const std::string& localName,
                       const std::string& qName, const Attributes& attributes) {
    const std::size_t before = attributes_.count();
    attributes_.append(attributes);
    const auto count = static_cast<std::int32_t>(attributes_.count() - before);
    append(PullEvent::startElement, count, uri, localName, qName);
    ++size_;
  }
  void addOctets(const std::string& uri, int index, const std::string& octets) {
    append(PullEvent::octets, index, octets, uri);
    ++size_;
  }
  /// Appends a declaration to those of the next start tag.
  void addMapping(const std::string& prefix, const std::string& uri) {
    append(PullEvent::none, 0, prefix, uri);
  }
  /// Gives the last event its position. Either all events have one, or none.
  void addPosition(const EventPosition& position) {
    positions_.resize(size_);
    positions_.back() = position;
  }

  std::size_t size() const { return size_; }
  bool isEmpty() const { return size_ == 0; }
  /// How many events have been handed out.
  std::size_t next() const { return next_; }
  /// Makes the next event the current one, if there is one.
  bool handOut(PullState& state) {
    if (next_ == size_) return false;
    read(state);
    state.value = nullptr;
    position_ = next_ < positions_.size() ? positions_[next_] : EventPosition();
    ++next_;
    return true;
  }
  const EventPosition& position() const { return position_; }
  /// Forgets all events.
  void clear();

 private:
  /// What an event begins with. The lengths of its parts follow, then the parts.
  struct Head {
    PullEvent event;  // None for a namespace declaration.
    std::uint8_t partCount;
    std::int32_t number;  // Of attributes, or of an algorithm.
  };

  template <typename Value>
  static void put(char*& place, const Value& value) {
    std::memcpy(place, &value, sizeof value);
    place += sizeof value;
  }
  static void put(char*& place, const std::string& text) {
    std::memcpy(place, text.data(), text.size());
    place += text.size();
  }
  template <typename Value>
  Value take() {
    Value value{};
    std::memcpy(&value, read_, sizeof value);
    read_ += sizeof value;
    return value;
  }

  template <typename... Parts>
  void append(PullEvent event, std::int32_t number, const Parts&... parts) {
    constexpr auto kCount = static_cast<std::uint8_t>(sizeof...(parts));
    char* place = makeRoom(sizeof(Head) + kCount * sizeof(std::size_t) + (parts.size() + ... + 0));
    put(place, Head{event, kCount, number});
    (put(place, parts.size()), ...);
    (put(place, parts), ...);
    used_ = static_cast<std::size_t>(place - memory_.get());
  }
  char* makeRoom(std::size_t octets) {
    if (capacity_ - used_ < octets) grow(octets);
    return memory_.get() + used_;
  }
  void grow(std::size_t octets);
  void read(PullState& state);
  void readStartTag(PullState& state, std::size_t attributeCount);

  std::unique_ptr<char[]> memory_;
  std::size_t capacity_ = 0;
  std::size_t used_ = 0;
  const char* read_ = nullptr;  // Where the next event is, once one was handed out.
  std::size_t size_ = 0;
  std::size_t next_ = 0;
  QueuedAttributes attributes_;
  std::size_t shownAttributes_ = 0;  // Those of the tags that were handed out.
  std::vector<PullMapping> mappings_;
  std::vector<EventPosition> positions_;
  EventPosition position_;
};

/// Reads the parts of an event into the current one.
inline void EventQueue::read(PullState& state) {
  if (next_ == 0) read_ = memory_.get();
  mappings_.clear();
  for (;;) {
    const Head head = take<Head>();
    std::array<std::size_t, 5> lengths{};
    for (std::size_t i = 0; i < head.partCount; ++i) lengths[i] = take<std::size_t>();
    for (std::size_t i = 0; i < head.partCount; ++i) {
      state.parts[i] = {read_, lengths[i]};
      read_ += lengths[i];
    }
    state.event = head.event;
    state.partCount = head.partCount;
    if (head.event == PullEvent::startElement) {
      readStartTag(state, static_cast<std::size_t>(head.number));
    } else if (head.event == PullEvent::octets) {
      state.algorithmURI = state.parts[1];
      state.algorithmIndex = head.number;
    } else if (head.event == PullEvent::none) {
      mappings_.push_back({state.parts[0], state.parts[1]});
      continue;
    }
    return;
  }
}

}  // namespace Tavrin
