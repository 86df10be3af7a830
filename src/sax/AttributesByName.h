#pragma once

#include <Tavrin/Attributes.h>

#include <cstddef>
#include <stdexcept>
#include <string>

namespace Tavrin {

/// The position of an attribute in a list of this length.
/// @throws std::out_of_range for an index that is not in the list
inline std::size_t checkIndex(int index, std::size_t length) {
  // A negative index becomes a large position.
  const auto position = static_cast<std::size_t>(index);
  if (position >= length) throw std::out_of_range("vector::_M_range_check");
  return position;
}

/// The index of the first attribute that matches, or -1.
/// @param matches is called with each index from 0 on
template <typename Matches>
int findIndex(std::size_t length, Matches matches) {
  for (std::size_t i = 0; i < length; ++i) {
    if (matches(i)) return static_cast<int>(i);
  }
  return -1;
}

/// The functions of a list that have names, by those that have an index.
/// @tparam List the class that derives from this one; it is final, so that its functions are not
///              called as virtual ones
/// @tparam Base Attributes, or an interface that extends it
template <typename List, typename Base>
class AttributesByName : public Base {
 public:
  using Base::getIndex;
  using Base::getType;
  using Base::getValue;

  int getIndex(const std::string& uri, const std::string& localName) const override {
    return find(
        [&](int i) { return list().getURI(i) == uri && list().getLocalName(i) == localName; });
  }
  int getIndex(const std::string& qName) const override {
    return find([&](int i) { return list().getQName(i) == qName; });
  }
  const std::string& getType(const std::string& uri, const std::string& localName) const override {
    return list().getType(getIndex(uri, localName));
  }
  const std::string& getType(const std::string& qName) const override {
    return list().getType(getIndex(qName));
  }
  const std::string& getValue(const std::string& uri, const std::string& localName) const override {
    return list().getValue(getIndex(uri, localName));
  }
  const std::string& getValue(const std::string& qName) const override {
    return list().getValue(getIndex(qName));
  }

 private:
  const List& list() const { return static_cast<const List&>(*this); }

  template <typename Matches>
  int find(Matches matches) const {
    return findIndex(static_cast<std::size_t>(list().getLength()),
                     [&](std::size_t i) { return matches(static_cast<int>(i)); });
  }
};

}  // namespace Tavrin
