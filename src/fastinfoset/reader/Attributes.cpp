#include <Tavrin/XMLReader_FI.h>

#include <memory>
#include <utility>

#include "DecodeAttributes.h"

namespace Tavrin {

namespace {

/// Appends attributes to a list, each when its value is there.
class AppendedAttributes {
 public:
  explicit AppendedAttributes(EncodingAlgorithmAttributesImpl& list) : list_(list) {
    constexpr std::size_t kFew = 4;  // Most elements have no more.
    if (list_.attributes_.capacity() == 0) list_.attributes_.reserve(kFew);
  }

  static constexpr bool kRefersToTables = false;

  template <typename Name>
  EncodingAlgorithmAttributesImpl::Attribute& begin(const Name& name, bool) {
    next_ = std::make_unique<EncodingAlgorithmAttributesImpl::Attribute>();
    next_->uri = name.namespaceName;
    next_->localName = name.localName;
    next_->qName = name.qName;
    next_->type = "CDATA";
    return *next_;
  }
  static void setAlgorithm(EncodingAlgorithmAttributesImpl::Attribute& attribute,
                           const std::string& uri, std::int32_t field,
                           std::unique_ptr<EncodedData> value) {
    attribute.algorithmURI = uri;
    attribute.algorithmIndex = field;
    attribute.algorithmData = std::move(value);
  }
  void end() { list_.attributes_.push_back(std::move(next_)); }

 private:
  EncodingAlgorithmAttributesImpl& list_;
  std::unique_ptr<EncodingAlgorithmAttributesImpl::Attribute> next_;
};

}  // namespace

bool XMLReader_FI::decodeAttributes(EncodingAlgorithmAttributesImpl& attributes) {
  AppendedAttributes appended(attributes);
  return decodeAttributesInto(appended);
}

/// The list is made for the element: its values end before the next item is read.
bool XMLReader_FI::dialectStartTag(bool hasAttributes, const Name& name, std::uint32_t) {
  EncodingAlgorithmAttributesImpl attributes;
  const bool ended = hasAttributes && decodeAttributes(attributes);
  if (contentHandler_) {
    contentHandler_->startElement(name.namespaceName, name.localName, name.qName, attributes);
  }
  return ended;
}

}  // namespace Tavrin
