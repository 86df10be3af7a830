#include <Tavrin/EncodingAlgorithmAttributes.h>

#include <cstddef>
#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace Tavrin {

EncodingAlgorithmAttributes::~EncodingAlgorithmAttributes() = default;

EncodingAlgorithmAttributesImpl::EncodingAlgorithmAttributesImpl() = default;
EncodingAlgorithmAttributesImpl::~EncodingAlgorithmAttributesImpl() = default;

const EncodingAlgorithmAttributesImpl::Attribute& EncodingAlgorithmAttributesImpl::at(
    int index) const {
  // A negative index becomes huge and fails the same comparison.
  const auto position = static_cast<std::size_t>(index);
  if (position >= attributes_.size()) throw std::out_of_range("vector::_M_range_check");
  return *attributes_[position];
}

int EncodingAlgorithmAttributesImpl::getLength() const {
  return static_cast<int>(attributes_.size());
}

const std::string& EncodingAlgorithmAttributesImpl::getURI(int index) const {
  return at(index).uri;
}

const std::string& EncodingAlgorithmAttributesImpl::getLocalName(int index) const {
  return at(index).localName;
}

const std::string& EncodingAlgorithmAttributesImpl::getQName(int index) const {
  return at(index).qName;
}

const std::string& EncodingAlgorithmAttributesImpl::getType(int index) const {
  return at(index).type;
}

const std::string& EncodingAlgorithmAttributesImpl::getValue(int index) const {
  const Attribute& attribute = at(index);
  if (attribute.value.empty() && attribute.algorithmData) {
    attribute.value = attribute.algorithmData->toString();
  }
  return attribute.value;
}

const std::string& EncodingAlgorithmAttributesImpl::getAlgorithmURI(int index) const {
  return at(index).algorithmURI;
}

int EncodingAlgorithmAttributesImpl::getAlgorithmIndex(int index) const {
  return at(index).algorithmIndex;
}

const EncodedData* EncodingAlgorithmAttributesImpl::getAlgorithmData(int index) const {
  return at(index).algorithmData.get();
}

int EncodingAlgorithmAttributesImpl::findAttribute(const std::string& uri,
                                                   const std::string& localName) const {
  for (std::size_t i = 0; i < attributes_.size(); ++i) {
    if (attributes_[i]->uri == uri && attributes_[i]->localName == localName) {
      return static_cast<int>(i);
    }
  }
  return -1;
}

int EncodingAlgorithmAttributesImpl::findAttribute(const std::string& qName) const {
  for (std::size_t i = 0; i < attributes_.size(); ++i) {
    if (attributes_[i]->qName == qName) return static_cast<int>(i);
  }
  return -1;
}

int EncodingAlgorithmAttributesImpl::getIndex(const std::string& uri,
                                              const std::string& localName) const {
  return findAttribute(uri, localName);
}

int EncodingAlgorithmAttributesImpl::getIndex(const std::string& qName) const {
  return findAttribute(qName);
}

const std::string& EncodingAlgorithmAttributesImpl::getType(const std::string& uri,
                                                            const std::string& localName) const {
  return at(findAttribute(uri, localName)).type;
}

const std::string& EncodingAlgorithmAttributesImpl::getType(const std::string& qName) const {
  return at(findAttribute(qName)).type;
}

// By name, a typed value is not turned into text: what is there is returned.

const std::string& EncodingAlgorithmAttributesImpl::getValue(const std::string& uri,
                                                             const std::string& localName) const {
  return at(findAttribute(uri, localName)).value;
}

const std::string& EncodingAlgorithmAttributesImpl::getValue(const std::string& qName) const {
  return at(findAttribute(qName)).value;
}

const std::string& EncodingAlgorithmAttributesImpl::getAlgorithmURI(
    const std::string& uri, const std::string& localName) const {
  return at(findAttribute(uri, localName)).algorithmURI;
}

const std::string& EncodingAlgorithmAttributesImpl::getAlgorithmURI(
    const std::string& qName) const {
  return at(findAttribute(qName)).algorithmURI;
}

int EncodingAlgorithmAttributesImpl::getAlgorithmIndex(const std::string& uri,
                                                       const std::string& localName) const {
  return at(findAttribute(uri, localName)).algorithmIndex;
}

int EncodingAlgorithmAttributesImpl::getAlgorithmIndex(const std::string& qName) const {
  return at(findAttribute(qName)).algorithmIndex;
}

const EncodedData* EncodingAlgorithmAttributesImpl::getAlgorithmData(
    const std::string& uri, const std::string& localName) const {
  return at(findAttribute(uri, localName)).algorithmData.get();
}

const EncodedData* EncodingAlgorithmAttributesImpl::getAlgorithmData(
    const std::string& qName) const {
  return at(findAttribute(qName)).algorithmData.get();
}

void EncodingAlgorithmAttributesImpl::setAttributes(const Attributes& other) {
  attributes_.clear();
  const int length = other.getLength();
  // A negative length becomes too large a capacity, which reserve refuses.
  attributes_.reserve(static_cast<std::size_t>(length));
  // Each answer is copied before the next is asked for: it may not be valid for longer.
  for (int i = 0; i < length; ++i) {
    attributes_.push_back(std::make_unique<Attribute>(
        Attribute{other.getURI(i), other.getLocalName(i), other.getQName(i), other.getType(i),
                  other.getValue(i), std::string(), -1, nullptr}));
  }
}

void EncodingAlgorithmAttributesImpl::setAttributes(const EncodingAlgorithmAttributes&) {
  std::abort();
}

void EncodingAlgorithmAttributesImpl::copyAttributes(const EncodingAlgorithmAttributes& other) {
  EncodingAlgorithmAttributesImpl copy;
  const int length = other.getLength();
  copy.attributes_.reserve(static_cast<std::size_t>(length));
  for (int i = 0; i < length; ++i) {
    auto attribute = std::make_unique<Attribute>(Attribute{other.getURI(i),
                                                           other.getLocalName(i),
                                                           other.getQName(i),
                                                           other.getType(i),
                                                           {},
                                                           {},
                                                           -1,
                                                           nullptr});
    if (const EncodedData* const data = other.getAlgorithmData(i)) {
      attribute->algorithmData = data->copy();
      attribute->algorithmURI = other.getAlgorithmURI(i);
      attribute->algorithmIndex = other.getAlgorithmIndex(i);
    } else {
      attribute->value = other.getValue(i);
    }
    copy.attributes_.push_back(std::move(attribute));
  }
  attributes_.swap(copy.attributes_);
}

void EncodingAlgorithmAttributesImpl::addAttribute(const std::string& uri,
                                                   const std::string& localName,
                                                   const std::string& qName,
                                                   const std::string& type,
                                                   const std::string& value) {
  attributes_.push_back(std::make_unique<Attribute>(
      Attribute{uri, localName, qName, type, value, std::string(), -1, nullptr}));
}

void EncodingAlgorithmAttributesImpl::addAttribute(
    const std::string& uri, const std::string& localName, const std::string& qName,
    const std::string& type, const std::string& algorithmURI, int algorithmIndex,
    std::unique_ptr<EncodedData> data) {
  attributes_.push_back(std::make_unique<Attribute>(Attribute{
      uri, localName, qName, type, std::string(), algorithmURI, algorithmIndex, std::move(data)}));
}

}  // namespace Tavrin
