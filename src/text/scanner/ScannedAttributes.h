#pragma once

#include <string>
#include <vector>

#include "../../sax/AttributesByName.h"
#include "ScannedNames.h"

namespace Tavrin::text {

/// The attributes of a start tag. Their names belong to the scanner; the next tag reuses the memory
/// of the values.
class ScannedAttributes final : public AttributesByName<ScannedAttributes, Attributes> {
 public:
  void clear() { size_ = 0; }
  /// Appends an attribute.
  /// @return where its value goes
  std::string& add(const std::string& uri, const std::string& localName, const std::string& qName,
                   const std::string& type) {
    if (size_ == records_.size()) records_.emplace_back();
    Record& record = records_[size_++];
    record.uri = &uri;
    record.localName = &localName;
    record.qName = &qName;
    record.type = &type;
    return record.value;
  }

  using AttributesByName::getType;
  using AttributesByName::getValue;
  int getLength() const override { return static_cast<int>(size_); }
  const std::string& getURI(int index) const override { return *at(index).uri; }
  const std::string& getLocalName(int index) const override { return *at(index).localName; }
  const std::string& getQName(int index) const override { return *at(index).qName; }
  const std::string& getType(int index) const override { return *at(index).type; }
  const std::string& getValue(int index) const override { return at(index).value; }

 private:
  struct Record {
    const std::string* uri = nullptr;
    const std::string* localName = nullptr;
    const std::string* qName = nullptr;
    const std::string* type = nullptr;
    std::string value;
  };

  const Record& at(int index) const { return records_[checkIndex(index, size_)]; }

  std::vector<Record> records_;
  std::size_t size_ = 0;  // How many records are in use.
};

}  // namespace Tavrin::text
