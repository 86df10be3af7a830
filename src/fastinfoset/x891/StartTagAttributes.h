#pragma once

#include <Tavrin/EncodingAlgorithmAttributes.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "../../sax/AttributesByName.h"
#include "../../xml/SameText.h"

namespace Tavrin {

/// The attributes of one start tag after another. Names and values refer to the tables of the
/// reader, because a tag of few octets may refer to a long string again and again, and records keep
/// their memory for the next tag. Measured: reading records takes an eighth less time than with
/// copies of the names, and strings made anew for each attribute take several times as long as all
/// the rest.
class StartTagAttributes final
    : public AttributesByName<StartTagAttributes, EncodingAlgorithmAttributes> {
 public:
  static constexpr bool kRefersToTables = true;

  struct Record {
    mutable std::string value;  // Its own text; of a typed value, once it was asked for.

   private:
    friend class StartTagAttributes;
    Record() = default;

    // Where its names are: in its own strings, or in the reader's table.
    const std::string* uri = nullptr;
    const std::string* localName = nullptr;
    const std::string* qName = nullptr;
    std::unique_ptr<std::array<std::string, 3>> ownNames;

    const std::string* shared = nullptr;  // Its value, unless it has one of its own.

    const std::string* algorithmURI = nullptr;
    std::int32_t algorithmIndex = -1;
    std::unique_ptr<EncodedData> algorithmData;
    std::size_t spareOctets = 0;  // What it keeps of memory while it is not used.
  };

  /// Empties the list, for another start tag.
  void clear();

  /// Begins an attribute without a value, which `end` appends; or begins it anew.
  /// @param outlives whether the name stays where it is for the whole tag
  template <typename Name>
  Record& begin(const Name& name, bool outlives) {
    Record& record = next();
    if (outlives) {
      record.uri = &name.namespaceName();
      record.localName = &name.localName();
      record.qName = &name.qName();
    } else {
      record.ownNames = std::make_unique<std::array<std::string, 3>>(
          std::array<std::string, 3>{name.namespaceName(), name.localName(), name.qName()});
      record.uri = record.ownNames->data();
      record.localName = record.uri + 1;
      record.qName = record.uri + 2;
    }
    return record;
  }
  /// Lets an attribute have a string as its value that stays where it is.
  static void refer(Record& record, const std::string& value) { record.shared = &value; }
  void setAlgorithm(Record& record, const std::string& uri, std::int32_t index,
                    std::unique_ptr<EncodedData> value);
  /// Whether one of the first attributes is of this name.
  bool beginsWith(const std::string& uri, const std::string& localName, std::size_t most) const {
    for (std::size_t i = 0; i < std::min(length_, most); ++i) {
      const Record& record = *records_[i];
      if (xml::sameText(*record.localName, localName) && xml::sameText(*record.uri, uri)) {
        return true;
      }
    }
    return false;
  }
  void end() {
    hasBegun_ = false;
    spareOctets_ -= records_[length_++]->spareOctets;
  }

  using AttributesByName::getType;
  using AttributesByName::getValue;
  int getLength() const override { return static_cast<int>(length_); }
  const std::string& getURI(int index) const override { return *at(index).uri; }
  const std::string& getLocalName(int index) const override { return *at(index).localName; }
  const std::string& getQName(int index) const override { return *at(index).qName; }
  const std::string& getType(int index) const override;
  const std::string& getValue(int index) const override;

  const std::string& getAlgorithmURI(int index) const override;
  int getAlgorithmIndex(int index) const override { return at(index).algorithmIndex; }
  const EncodedData* getAlgorithmData(int index) const override {
    return at(index).algorithmData.get();
  }
  const std::string& getAlgorithmURI(const std::string& uri,
                                     const std::string& localName) const override {
    return getAlgorithmURI(getIndex(uri, localName));
  }
  const std::string& getAlgorithmURI(const std::string& qName) const override {
    return getAlgorithmURI(getIndex(qName));
  }
  int getAlgorithmIndex(const std::string& uri, const std::string& localName) const override {
    return getAlgorithmIndex(getIndex(uri, localName));
  }
  int getAlgorithmIndex(const std::string& qName) const override {
    return getAlgorithmIndex(getIndex(qName));
  }
  const EncodedData* getAlgorithmData(const std::string& uri,
                                      const std::string& localName) const override {
    return getAlgorithmData(getIndex(uri, localName));
  }
  const EncodedData* getAlgorithmData(const std::string& qName) const override {
    return getAlgorithmData(getIndex(qName));
  }

 private:
  Record& next();
  const Record& at(int index) const { return *records_[checkIndex(index, length_)]; }

  // The attributes, and after them records without values, which keep their memory.
  std::vector<std::unique_ptr<Record>> records_;
  std::size_t length_ = 0;                            // How many are attributes.
  bool hasBegun_ = false;                             // The next one, too.
  std::size_t spareOctets_ = 0;                       // Of the others together.
  std::set<std::string, std::less<>> algorithmURIs_;  // Of the tag, each once.
};

}  // namespace Tavrin
