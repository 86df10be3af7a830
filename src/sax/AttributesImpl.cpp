#include <Tavrin/Attributes.h>

#include <cstddef>
#include <stdexcept>

namespace Tavrin {

AttributesImpl::~AttributesImpl() = default;

const AttributesImpl::Attribute& AttributesImpl::at(int index) const {
  // A negative index becomes huge and fails the same comparison.
  const auto position = static_cast<std::size_t>(index);
  if (position >= attributes_.size()) throw std::out_of_range("vector::_M_range_check");
  return attributes_[position];
}

int AttributesImpl::getLength() const { return static_cast<int>(attributes_.size()); }

const std::string& AttributesImpl::getURI(int index) const { return at(index).uri; }

const std::string& AttributesImpl::getLocalName(int index) const { return at(index).localName; }

const std::string& AttributesImpl::getQName(int index) const { return at(index).qName; }

const std::string& AttributesImpl::getType(int index) const { return at(index).type; }

const std::string& AttributesImpl::getValue(int index) const { return at(index).value; }

int AttributesImpl::getIndex(const std::string& uri, const std::string& localName) const {
  return findAttribute(uri, localName);
}

int AttributesImpl::getIndex(const std::string& qName) const { return findAttribute(qName); }

const std::string& AttributesImpl::getType(const std::string& uri,
                                           const std::string& localName) const {
  return at(findAttribute(uri, localName)).type;
}

const std::string& AttributesImpl::getType(const std::string& qName) const {
  return at(findAttribute(qName)).type;
}

const std::string& AttributesImpl::getValue(const std::string& uri,
                                            const std::string& localName) const {
  return at(findAttribute(uri, localName)).value;
}

const std::string& AttributesImpl::getValue(const std::string& qName) const {
  return at(findAttribute(qName)).value;
}

int AttributesImpl::findAttribute(const std::string& uri, const std::string& localName) const {
  for (std::size_t i = 0; i < attributes_.size(); ++i) {
    if (attributes_[i].uri == uri && attributes_[i].localName == localName) {
      return static_cast<int>(i);
    }
  }
  return -1;
}

int AttributesImpl::findAttribute(const std::string& qName) const {
  for (std::size_t i = 0; i < attributes_.size(); ++i) {
    if (attributes_[i].qName == qName) return static_cast<int>(i);
  }
  return -1;
}

void AttributesImpl::setAttributes(const Attributes& other) {
  attributes_.clear();
  const int length = other.getLength();
  for (int i = 0; i < length; ++i) {
    // Copied one by one, in this order: a list of others may answer with one string again and
    // again.
    attributes_.push_back({other.getURI(i), other.getLocalName(i), other.getQName(i),
                           other.getType(i), other.getValue(i)});
  }
}

void AttributesImpl::addAttribute(const std::string& uri, const std::string& localName,
                                  const std::string& qName, const std::string& type,
                                  const std::string& value) {
  attributes_.push_back({uri, localName, qName, type, value});
}

}  // namespace Tavrin
