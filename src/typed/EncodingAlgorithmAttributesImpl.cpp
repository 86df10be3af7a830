#include <Tavrin/EncodingAlgorithmAttributes.h>

#include <cstdlib>
#include <utility>

#include "../sax/AttributesByName.h"

namespace Tavrin {

using List = EncodingAlgorithmAttributesImpl;
using std::string;

EncodingAlgorithmAttributes::~EncodingAlgorithmAttributes() = default;

const List::Attribute& List::at(int index) const {
  return *attributes_[checkIndex(index, attributes_.size())];
}

int List::getLength() const { return static_cast<int>(attributes_.size()); }
const string& List::getURI(int index) const { return at(index).uri; }
const string& List::getLocalName(int index) const { return at(index).localName; }
const string& List::getQName(int index) const { return at(index).qName; }
const string& List::getType(int index) const { return at(index).type; }
const string& List::getValue(int index) const {
  const Attribute& attribute = at(index);
  if (attribute.value.empty() && attribute.algorithmData) {
    attribute.value = attribute.algorithmData->toString();
  }
  return attribute.value;
}
const string& List::getAlgorithmURI(int index) const { return at(index).algorithmURI; }
int List::getAlgorithmIndex(int index) const { return at(index).algorithmIndex; }
const EncodedData* List::getAlgorithmData(int index) const { return at(index).algorithmData.get(); }

int List::findAttribute(const string& uri, const string& localName) const {
  return findIndex(attributes_.size(), [&](std::size_t i) {
    return attributes_[i]->uri == uri && attributes_[i]->localName == localName;
  });
}
int List::findAttribute(const string& qName) const {
  return findIndex(attributes_.size(),
                   [&](std::size_t i) { return attributes_[i]->qName == qName; });
}

int List::getIndex(const string& uri, const string& localName) const {
  return findAttribute(uri, localName);
}
int List::getIndex(const string& qName) const { return findAttribute(qName); }
const string& List::getType(const string& uri, const string& localName) const {
  return at(findAttribute(uri, localName)).type;
}
const string& List::getType(const string& qName) const { return at(findAttribute(qName)).type; }
// By name, a typed value is not converted to text: the stored text is returned, which is empty.
const string& List::getValue(const string& uri, const string& localName) const {
  return at(findAttribute(uri, localName)).value;
}
const string& List::getValue(const string& qName) const { return at(findAttribute(qName)).value; }
const string& List::getAlgorithmURI(const string& uri, const string& localName) const {
  return at(findAttribute(uri, localName)).algorithmURI;
}
const string& List::getAlgorithmURI(const string& qName) const {
  return at(findAttribute(qName)).algorithmURI;
}
int List::getAlgorithmIndex(const string& uri, const string& localName) const {
  return at(findAttribute(uri, localName)).algorithmIndex;
}
int List::getAlgorithmIndex(const string& qName) const {
  return at(findAttribute(qName)).algorithmIndex;
}
const EncodedData* List::getAlgorithmData(const string& uri, const string& localName) const {
  return at(findAttribute(uri, localName)).algorithmData.get();
}
const EncodedData* List::getAlgorithmData(const string& qName) const {
  return at(findAttribute(qName)).algorithmData.get();
}

namespace {

/// A copy of an attribute of another list, without its value. Each string is copied at once: the
/// references that a list returns may be valid only until its next call.
std::unique_ptr<List::Attribute> copyNames(const Attributes& list, int index) {
  return std::make_unique<List::Attribute>(
      List::Attribute{list.getURI(index), list.getLocalName(index), list.getQName(index),
                      list.getType(index), string(), string(), -1, nullptr});
}

}  // namespace

void List::setAttributes(const Attributes& other) {
  attributes_.clear();
  const int length = other.getLength();
  // A negative length is converted to a capacity that reserve refuses.
  attributes_.reserve(static_cast<std::size_t>(length));
  for (int i = 0; i < length; ++i) {
    auto attribute = copyNames(other, i);
    attribute->value = other.getValue(i);
    attributes_.push_back(std::move(attribute));
  }
}

void List::setAttributes(const EncodingAlgorithmAttributes&) { std::abort(); }

void List::copyAttributes(const EncodingAlgorithmAttributes& other) {
  List copy;
  const int length = other.getLength();
  copy.attributes_.reserve(static_cast<std::size_t>(length));
  for (int i = 0; i < length; ++i) {
    auto attribute = copyNames(other, i);
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

void List::addAttribute(const string& uri, const string& localName, const string& qName,
                        const string& type, const string& value) {
  attributes_.push_back(std::make_unique<Attribute>(
      Attribute{uri, localName, qName, type, value, string(), -1, nullptr}));
}

void List::addAttribute(const string& uri, const string& localName, const string& qName,
                        const string& type, const string& algorithmURI, int algorithmIndex,
                        std::unique_ptr<EncodedData> data) {
  attributes_.push_back(std::make_unique<Attribute>(Attribute{
      uri, localName, qName, type, string(), algorithmURI, algorithmIndex, std::move(data)}));
}

}  // namespace Tavrin
