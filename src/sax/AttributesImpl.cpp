#include <Tavrin/Attributes.h>

#include "AttributesByName.h"

namespace Tavrin {

using List = AttributesImpl;
using std::string;

const List::Attribute& List::at(int index) const {
  return attributes_[checkIndex(index, attributes_.size())];
}

int List::getLength() const { return static_cast<int>(attributes_.size()); }
const string& List::getURI(int index) const { return at(index).uri; }
const string& List::getLocalName(int index) const { return at(index).localName; }
const string& List::getQName(int index) const { return at(index).qName; }
const string& List::getType(int index) const { return at(index).type; }
const string& List::getValue(int index) const { return at(index).value; }

int List::findAttribute(const string& uri, const string& localName) const {
  return findIndex(attributes_.size(), [&](std::size_t i) {
    return attributes_[i].uri == uri && attributes_[i].localName == localName;
  });
}
int List::findAttribute(const string& qName) const {
  return findIndex(attributes_.size(),
                   [&](std::size_t i) { return attributes_[i].qName == qName; });
}

int List::getIndex(const string& uri, const string& localName) const {
  return findAttribute(uri, localName);
}
int List::getIndex(const string& qName) const { return findAttribute(qName); }
const string& List::getType(const string& uri, const string& localName) const {
  return at(findAttribute(uri, localName)).type;
}
const string& List::getType(const string& qName) const { return at(findAttribute(qName)).type; }
const string& List::getValue(const string& uri, const string& localName) const {
  return at(findAttribute(uri, localName)).value;
}
const string& List::getValue(const string& qName) const { return at(findAttribute(qName)).value; }

void List::setAttributes(const Attributes& other) {
  attributes_.clear();
  const int length = other.getLength();
  for (int i = 0; i < length; ++i) {
    // Each string is copied before the next call: it may not be valid for longer.
    attributes_.push_back({other.getURI(i), other.getLocalName(i), other.getQName(i),
                           other.getType(i), other.getValue(i)});
  }
}

void List::addAttribute(const string& uri, const string& localName, const string& qName,
                        const string& type, const string& value) {
  attributes_.push_back({uri, localName, qName, type, value});
}

}  // namespace Tavrin
