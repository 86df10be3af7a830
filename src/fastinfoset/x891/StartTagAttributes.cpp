#include "StartTagAttributes.h"

#include <stdexcept>
#include <utility>

namespace Tavrin {

void StartTagAttributes::clear() {
  // A record that was large is given back, so that memory follows the document.
  constexpr std::size_t kMostSpareOctets = std::size_t{4} << 20U;
  for (; length_ > 0; --length_) {
    Record& record = *records_[length_ - 1];
    record.spareOctets = sizeof record + record.value.capacity();
    if (spareOctets_ + record.spareOctets > kMostSpareOctets) {
      std::swap(records_[length_ - 1], records_.back());
      records_.pop_back();
      continue;
    }
    spareOctets_ += record.spareOctets;
    record.value.clear();
    record.ownNames.reset();
    record.values = nullptr;
    record.shared = nullptr;
    record.algorithmURI = nullptr;
    record.algorithmIndex = -1;
    record.algorithmData.reset();
  }
  if (!algorithmURIs_.empty()) algorithmURIs_.clear();
}

void StartTagAttributes::setAlgorithm(Record& record, const std::string& uri, std::int32_t index,
                                      std::unique_ptr<EncodedData> value) {
  if (!uri.empty()) record.algorithmURI = &*algorithmURIs_.insert(uri).first;
  record.algorithmIndex = index;
  record.algorithmData = std::move(value);
}

StartTagAttributes::Record& StartTagAttributes::append() {
  if (length_ == records_.size()) {
    records_.push_back(std::unique_ptr<Record>(new Record));
  } else {
    spareOctets_ -= records_[length_]->spareOctets;
  }
  return *records_[length_++];
}

const StartTagAttributes::Record& StartTagAttributes::at(int index) const {
  // A negative index becomes huge and fails the same comparison.
  const auto position = static_cast<std::size_t>(index);
  if (position >= length_) throw std::out_of_range("vector::_M_range_check");
  return *records_[position];
}

int StartTagAttributes::getLength() const { return static_cast<int>(length_); }

const std::string& StartTagAttributes::getURI(int index) const { return *at(index).uri; }

const std::string& StartTagAttributes::getLocalName(int index) const {
  return *at(index).localName;
}

const std::string& StartTagAttributes::getQName(int index) const { return *at(index).qName; }

const std::string& StartTagAttributes::getType(int index) const {
  static const std::string type = "CDATA";
  at(index);
  return type;
}

const std::string& StartTagAttributes::getValue(int index) const {
  const Record& record = at(index);
  if (record.values) return (*record.values)[record.index];
  if (record.shared) return *record.shared;
  if (record.value.empty() && record.algorithmData) record.value = record.algorithmData->toString();
  return record.value;
}

const std::string& StartTagAttributes::getAlgorithmURI(int index) const {
  static const std::string none;
  const std::string* const uri = at(index).algorithmURI;
  return uri ? *uri : none;
}

int StartTagAttributes::getAlgorithmIndex(int index) const { return at(index).algorithmIndex; }

const EncodedData* StartTagAttributes::getAlgorithmData(int index) const {
  return at(index).algorithmData.get();
}

int StartTagAttributes::getIndex(const std::string& uri, const std::string& localName) const {
  for (std::size_t i = 0; i < length_; ++i) {
    if (*records_[i]->uri == uri && *records_[i]->localName == localName) {
      return static_cast<int>(i);
    }
  }
  return -1;
}

int StartTagAttributes::getIndex(const std::string& qName) const {
  for (std::size_t i = 0; i < length_; ++i) {
    if (*records_[i]->qName == qName) return static_cast<int>(i);
  }
  return -1;
}

// By name as by position.

const std::string& StartTagAttributes::getType(const std::string& uri,
                                               const std::string& localName) const {
  return getType(getIndex(uri, localName));
}

const std::string& StartTagAttributes::getType(const std::string& qName) const {
  return getType(getIndex(qName));
}

const std::string& StartTagAttributes::getValue(const std::string& uri,
                                                const std::string& localName) const {
  return getValue(getIndex(uri, localName));
}

const std::string& StartTagAttributes::getValue(const std::string& qName) const {
  return getValue(getIndex(qName));
}

const std::string& StartTagAttributes::getAlgorithmURI(const std::string& uri,
                                                       const std::string& localName) const {
  return getAlgorithmURI(getIndex(uri, localName));
}

const std::string& StartTagAttributes::getAlgorithmURI(const std::string& qName) const {
  return getAlgorithmURI(getIndex(qName));
}

int StartTagAttributes::getAlgorithmIndex(const std::string& uri,
                                          const std::string& localName) const {
  return getAlgorithmIndex(getIndex(uri, localName));
}

int StartTagAttributes::getAlgorithmIndex(const std::string& qName) const {
  return getAlgorithmIndex(getIndex(qName));
}

const EncodedData* StartTagAttributes::getAlgorithmData(const std::string& uri,
                                                        const std::string& localName) const {
  return getAlgorithmData(getIndex(uri, localName));
}

const EncodedData* StartTagAttributes::getAlgorithmData(const std::string& qName) const {
  return getAlgorithmData(getIndex(qName));
}

}  // namespace Tavrin
