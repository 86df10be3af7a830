#include "StartTagAttributes.h"

#include <utility>

namespace Tavrin {

void StartTagAttributes::clear() {
  // A large record is freed, so that memory follows the document.
  constexpr std::size_t kMostSpareOctets = std::size_t{4} << 20U;
  if (hasBegun_) end();
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

StartTagAttributes::Record& StartTagAttributes::next() {
  if (length_ == records_.size()) records_.push_back(std::unique_ptr<Record>(new Record));
  hasBegun_ = true;
  Record& record = *records_[length_];
  record.value.clear();
  return record;
}

const std::string& StartTagAttributes::getType(int index) const {
  static const std::string type = "CDATA";
  at(index);
  return type;
}

const std::string& StartTagAttributes::getValue(int index) const {
  const Record& record = at(index);
  if (record.shared) return *record.shared;
  if (record.value.empty() && record.algorithmData) record.value = record.algorithmData->toString();
  return record.value;
}

const std::string& StartTagAttributes::getAlgorithmURI(int index) const {
  static const std::string none;
  const std::string* const uri = at(index).algorithmURI;
  return uri ? *uri : none;
}

}  // namespace Tavrin
