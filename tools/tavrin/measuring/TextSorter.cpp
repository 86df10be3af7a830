#include "measuring/TextSorter.h"

#include <algorithm>

namespace tool {

namespace {

constexpr std::string_view kDeclaration = "xmlns";

}  // namespace

void TextSorter::take(std::string_view octets) {
  while (!octets.empty()) {
    std::size_t taken = 1;
    if (state_ == State::Content) {
      taken = takeContent(octets);
    } else if (state_ == State::Value) {
      taken = takeValue(octets);
    } else if (state_ == State::Tag || state_ == State::AttributeName || state_ == State::Equals) {
      takeInTag(octets[0]);
    } else {
      takeMarkup(octets[0]);
    }
    octets.remove_prefix(taken);
  }
}

/// All up to the next tag. Only the event of an element writes one.
std::size_t TextSorter::takeContent(std::string_view octets) {
  if (content_ == OctetKind::Names && octets[0] == '<') {
    count(OctetKind::Structure);
    state_ = State::Markup;
    return 1;
  }
  const std::size_t size =
      content_ == OctetKind::Names ? std::min(octets.find('<'), octets.size()) : octets.size();
  count(content_ == OctetKind::Names ? OctetKind::Structure : content_, size);
  octets_.text += size;
  return size;
}

void TextSorter::takeMarkup(char octet) {
  if (octet == '>') {
    count(OctetKind::Structure);
    state_ = State::Content;
    isPending_ = false;
  } else if (octet == ' ' || octet == '/') {
    count(OctetKind::Structure);
    state_ = state_ == State::Markup ? State::EndName : State::Tag;
  } else {
    count(OctetKind::Names);
    ++octets_.elementName;
    if (state_ == State::Markup) state_ = State::ElementName;
  }
}

void TextSorter::takeInTag(char octet) {
  switch (octet) {
    case '>':
      state_ = State::Content;
      count(OctetKind::Structure);
      isPending_ = false;
      return;
    case ' ':
    case '/':
    case '\n':
      return count(OctetKind::Structure);
    case '=':
      state_ = State::Equals;
      return count(OctetKind::Structure);
    case '"':
    case '\'':
      beginValue(octet);
      return count(OctetKind::Structure);
    default:
      if (state_ != State::AttributeName) name_.clear();
      state_ = State::AttributeName;
      // A character more tells a declaration from a name that only begins like one.
      if (name_.size() <= kDeclaration.size()) name_ += octet;
      isDeclaration_ = name_ == kDeclaration || name_ == "xmlns:";
      if (name_.size() == 1) octets_.attributeNames.push_back(0);
      ++octets_.attributeNames.back();
      count(OctetKind::Names);
  }
}

void TextSorter::beginValue(char quote) {
  quote_ = quote;
  state_ = State::Value;
  if (isDeclaration_) {
    octets_.attributeNames.pop_back();
  } else {
    octets_.values.push_back(2);  // The quotes.
  }
}

std::size_t TextSorter::takeValue(std::string_view octets) {
  const std::size_t size = std::min(octets.find(quote_), octets.size());
  const std::size_t number = octets_.values.size();
  if (isDeclaration_) {
    count(OctetKind::Names, size);
  } else {
    const bool isTyped = number <= isTyped_.size() && isTyped_[number - 1];
    count(isTyped ? OctetKind::Typed : OctetKind::Values, size);
    octets_.values.back() += size;
  }
  if (size == octets.size()) return size;
  count(OctetKind::Structure);
  state_ = State::Tag;
  return size + 1;
}

}  // namespace tool
