#include "ElementAttributes.h"

#include <Tavrin/Identifiers.h>

#include <stdexcept>

#include "ExpatNames.h"

namespace Tavrin {

ElementAttributes::Record& ElementAttributes::append() {
  if (size_ == records_.size()) records_.emplace_back();
  return records_[size_++];
}

void ElementAttributes::add(const char* name, const char* value, bool splits) {
  Record& record = append();
  if (record.name != name) {
    record.name = name;
    if (splits) {
      const ExpatName parts = splitName(record.name, kXML10Separator);
      record.uri = parts.uri;
      record.localName = parts.localName;
      assignQName(record.qName, parts);
    } else {
      record.qName = record.name;
    }
  }
  record.value = value;
}

void ElementAttributes::addDeclaration(const std::string& prefix, const std::string& uri,
                                       bool inXmlns) {
  Record& record = append();
  record.name.clear();
  record.qName = prefix.empty() ? "xmlns" : "xmlns:" + prefix;
  if (inXmlns) {
    record.uri = namespaces::xmlns;
    record.localName = prefix.empty() ? "xmlns" : prefix;
  } else {
    record.uri.clear();
    record.localName.clear();
  }
  record.value = uri;
}

std::size_t ElementAttributes::octetsFrom(std::size_t first) const {
  std::size_t octets = 0;
  for (std::size_t i = first; i < size_; ++i) {
    octets += records_[i].qName.size() + records_[i].value.size();
  }
  return octets;
}

void ElementAttributes::setTypes(const AttributeTypes::OfElement* types) {
  for (std::size_t i = 0; i < size_; ++i) {
    Record& record = records_[i];
    record.type = "CDATA";
    if (types == nullptr) continue;
    const auto found = types->find(record.qName);
    if (found != types->end()) record.type = found->second;
  }
}

const ElementAttributes::Record& ElementAttributes::at(int index) const {
  // A negative index becomes huge and fails the same comparison.
  const auto position = static_cast<std::size_t>(index);
  if (position >= size_) throw std::out_of_range("vector::_M_range_check");
  return records_[position];
}

int ElementAttributes::getLength() const { return static_cast<int>(size_); }

const std::string& ElementAttributes::getURI(int index) const { return at(index).uri; }

const std::string& ElementAttributes::getLocalName(int index) const { return at(index).localName; }

const std::string& ElementAttributes::getQName(int index) const { return at(index).qName; }

const std::string& ElementAttributes::getType(int index) const { return at(index).type; }

const std::string& ElementAttributes::getValue(int index) const { return at(index).value; }

int ElementAttributes::getIndex(const std::string& uri, const std::string& localName) const {
  for (std::size_t i = 0; i < size_; ++i) {
    if (records_[i].uri == uri && records_[i].localName == localName) return static_cast<int>(i);
  }
  return -1;
}

int ElementAttributes::getIndex(const std::string& qName) const {
  for (std::size_t i = 0; i < size_; ++i) {
    if (records_[i].qName == qName) return static_cast<int>(i);
  }
  return -1;
}

const std::string& ElementAttributes::getType(const std::string& uri,
                                              const std::string& localName) const {
  return at(getIndex(uri, localName)).type;
}

const std::string& ElementAttributes::getType(const std::string& qName) const {
  return at(getIndex(qName)).type;
}

const std::string& ElementAttributes::getValue(const std::string& uri,
                                               const std::string& localName) const {
  return at(getIndex(uri, localName)).value;
}

const std::string& ElementAttributes::getValue(const std::string& qName) const {
  return at(getIndex(qName)).value;
}

}  // namespace Tavrin
