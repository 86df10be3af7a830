#include <memory>
#include <utility>
#include <vector>

#include "../DecodeAttributes.h"
#include "FIDecoder.h"

namespace Tavrin::fastinfoset {

namespace {

using Attribute = EncodingAlgorithmAttributesImpl::Attribute;
using Records = std::vector<std::unique_ptr<Attribute>>;

const std::string kType = "CDATA";

/// Appends attributes to a list, each when its value is there.
class AppendedAttributes {
 public:
  /// @param spare records that may be used again
  AppendedAttributes(EncodingAlgorithmAttributesImpl& list, Records& spare)
      : list_(list), spare_(spare) {
    constexpr std::size_t kFew = 4;  // Most elements have no more.
    if (list_.attributes_.capacity() == 0) list_.attributes_.reserve(kFew);
  }

  static constexpr bool kRefersToTables = false;

  template <typename Name>
  Attribute& begin(const Name& name, bool) {
    if (spare_.empty()) {
      next_ = std::make_unique<Attribute>();
    } else {
      next_ = std::move(spare_.back());
      spare_.pop_back();
    }
    next_->uri = name.namespaceName();
    next_->localName = name.localName();
    next_->qName = name.qName();
    next_->type = kType;
    return *next_;
  }
  static void setAlgorithm(Attribute& attribute, const std::string& uri, std::int32_t field,
                           std::unique_ptr<EncodedData> value) {
    attribute.algorithmURI = uri;
    attribute.algorithmIndex = field;
    attribute.algorithmData = std::move(value);
  }
  void end() { list_.attributes_.push_back(std::move(next_)); }

 private:
  EncodingAlgorithmAttributesImpl& list_;
  Records& spare_;
  std::unique_ptr<Attribute> next_;
};

/// Keeps a few small records of a list that is done with. Their values are gone, and a handler may
/// have made of them what it likes: all of it is written over. Measured: reading records takes a
/// quarter less time.
void keepSmall(Records& records, Records& spare) {
  constexpr std::size_t kMostRecords = 16;
  constexpr std::size_t kMostOctets = 64;
  const auto isSmall = [](const std::string& text) { return text.capacity() <= kMostOctets; };
  // Values end as those of a list do, the first one first.
  for (const auto& record : records) {
    if (record) record->algorithmData.reset();
  }
  // From the back, so that each comes back for the attribute that it was.
  for (; !records.empty() && spare.size() < kMostRecords; records.pop_back()) {
    std::unique_ptr<Attribute>& record = records.back();
    if (!record || !isSmall(record->uri) || !isSmall(record->localName) ||
        !isSmall(record->qName) || !isSmall(record->type) || !isSmall(record->value) ||
        !isSmall(record->algorithmURI)) {
      continue;
    }
    record->value.clear();
    record->algorithmURI.clear();
    record->algorithmIndex = -1;
    spare.push_back(std::move(record));
  }
  records.clear();
  if (records.capacity() > kMostRecords) Records().swap(records);
}

}  // namespace

bool FIDecoder::decodeAttributes(EncodingAlgorithmAttributesImpl& attributes) {
  tag_.attribute = nullptr;  // Where a derived reader calls it after a failure.
  AppendedAttributes appended(attributes, spareAttributes_);
  return Decoder::decodeAttributes(appended);
}

/// The list is made for the element: its values end before the next item is read.
bool FIDecoder::finishStartTag(bool hasAttributes, const Name& name, std::uint32_t) {
  EncodingAlgorithmAttributesImpl attributes;
  bool ended = false;
  if (hasAttributes) {
    attributes.attributes_.swap(spareList_);
    ended = decodeAttributes(attributes);
  }
  if (contentHandler_) {
    contentHandler_->startElement(name.namespaceName(), name.localName(), name.qName(), attributes);
  }
  if (!hasAttributes) return false;
  keepSmall(attributes.attributes_, spareAttributes_);
  attributes.attributes_.swap(spareList_);
  return ended;
}

}  // namespace Tavrin::fastinfoset
