#pragma once

#include <Tavrin/PullReader.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
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

/// Copies of events that were reported and have not been asked for.
class EventQueue {
 public:
  /// Appends an event.
  void add(PullEvent event, std::initializer_list<std::string_view> parts, int index = -1) {
    Entry& entry = entries_.emplace_back();
    entry.event = event;
    entry.index = index;
    entry.begin = octets_.size();
    for (const std::string_view part : parts) {
      entry.lengths[entry.partCount++] = part.size();
      octets_ += part;
    }
  }
  void addStartElement(const std::string& uri, const std::string& localName,
                       const std::string& qName, const Attributes& attributes);
  /// Appends a declaration to those of the next start tag.
  void addMapping(std::string_view prefix, std::string_view uri);
  /// Gives the last event its position.
  void setPosition(const EventPosition& position) { entries_.back().position = position; }

  std::size_t size() const { return entries_.size(); }
  bool isEmpty() const { return entries_.empty(); }
  /// How many events have been handed out.
  std::size_t next() const { return next_; }
  /// Makes the next event the current one, if there is one.
  bool handOut(PullState& state);
  const EventPosition& position() const { return position_; }
  /// Forgets all events.
  void clear();

 private:
  struct Entry {
    PullEvent event;
    std::uint8_t partCount = 0;
    int index;
    std::size_t begin;  // In octets_; the parts follow one another.
    std::array<std::size_t, 5> lengths;
    std::size_t firstAttribute = 0;
    std::size_t attributeCount = 0;
    std::size_t firstMapping = 0;
    std::size_t mappingCount = 0;
    EventPosition position;
  };
  struct Mapping {
    std::size_t begin;
    std::size_t prefixLength;
    std::size_t uriLength;
  };

  std::string octets_;
  std::vector<Entry> entries_;
  std::size_t next_ = 0;
  QueuedAttributes attributes_;
  std::vector<Mapping> mappings_;
  std::size_t mappingsOfTags_ = 0;  // Those before belong to start tags in the queue.
  std::vector<PullMapping> shown_;
  EventPosition position_;
};

}  // namespace Tavrin
