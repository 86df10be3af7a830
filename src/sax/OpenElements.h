#pragma once

#include <Tavrin/XMLWriter.h>

#include <array>
#include <cstddef>
#include <deque>
#include <string>
#include <utility>

namespace Tavrin {

/// The strings of an open element, of which it is made in its place.
template <typename URI>
struct ElementStrings {
  URI uri;
  const std::string& localName;
  const std::string& qName;

  operator XMLWriter::Element() const { return {std::forward<URI>(uri), localName, qName}; }
};

/// Adds elements to the stack of a writer and removes them. The memory of namespace names is used
/// again: they are the longest strings of an element, and nearly always the same.
class OpenElements {
 public:
  /// Where memory runs out, nothing is added.
  void push(std::deque<XMLWriter::Element>& elements, const std::string& uri,
            const std::string& localName, const std::string& qName) {
    if (count_ == 0 || uri.size() < kShortest || uri.size() > kLongest) {
      elements.emplace_back(ElementStrings<const std::string&>{uri, localName, qName});
      return;
    }
    std::string& spare = spare_[count_ - 1];
    spare.assign(uri);
    elements.emplace_back(ElementStrings<std::string&&>{std::move(spare), localName, qName});
    --count_;
  }

  void pop(std::deque<XMLWriter::Element>& elements) {
    std::string& uri = elements.back().uri;
    if (uri.size() >= kShortest && uri.capacity() <= kLongest && count_ < spare_.size()) {
      spare_[count_++] = std::move(uri);
    }
    elements.pop_back();
  }

 private:
  static constexpr std::size_t kShortest = sizeof(std::string);  // Shorter ones need no memory.
  static constexpr std::size_t kLongest = 256;

  std::array<std::string, 4> spare_;  // Of elements that have ended.
  std::size_t count_ = 0;             // How many there are.
};

}  // namespace Tavrin
