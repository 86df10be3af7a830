#include "counting/DocumentCounter.h"

#include <Tavrin/EncodingAlgorithmAttributes.h>

#include <algorithm>

#include "files/Failure.h"
#include "reading/Reading.h"

namespace tool {

namespace {

/// How many items a typed value has; octets count one by one.
class ItemCounter : public Tavrin::PrimitiveTypeContentHandler {
 public:
  std::uint64_t count() const { return count_; }

  void bytes(const std::string& data) override { count_ = data.size(); }
  void shorts(const std::vector<short>& data) override { count_ = data.size(); }
  void ints(const std::vector<long>& data) override { count_ = data.size(); }
  void longs(const std::vector<long>& data) override { count_ = data.size(); }
  void booleans(const std::vector<bool>& data) override { count_ = data.size(); }
  void floats(const std::vector<float>& data) override { count_ = data.size(); }
  void doubles(const std::vector<double>& data) override { count_ = data.size(); }

 private:
  std::uint64_t count_ = 0;
};

}  // namespace

void DocumentCounter::attachTo(Tavrin::XMLReader& reader) {
  relay_.expectFrom(reader);
  attach(reader, *this, relay_.takesDeclarations());
}

/// The relay keeps its failure to itself and takes no event after it; counting goes on.
template <typename Event>
void DocumentCounter::forward(Event event) {
  if (!refusal_.empty()) return;
  try {
    event();
  } catch (const Failure& failure) {
    refuse(failure);
  }
}

void DocumentCounter::refuse(const Failure& failure) {
  if (refusal_.empty()) refusal_ = failure.what();
}

// --- What is counted ---

void DocumentCounter::countName(const std::string& uri, const std::string& qName) {
  name_.assign(uri).append(1, '\0').append(qName);
  names_.insert(name_);
}

void DocumentCounter::countTyped(const Tavrin::EncodedData& data) {
  ItemCounter items;
  data.callContentHandler(items);
  ++counts_.typedValues;
  counts_.typedItems += items.count();
  // They have no operation of the handler.
  const auto* uuids = dynamic_cast<const Tavrin::UUIDData*>(&data);
  if (uuids) counts_.typedItems += uuids->data_.size();
}

void DocumentCounter::countAttributes(const Tavrin::Attributes& attributes) {
  const auto* typed = dynamic_cast<const Tavrin::EncodingAlgorithmAttributes*>(&attributes);
  const int length = attributes.getLength();
  for (int i = 0; i < length; ++i) {
    ++counts_.attributes;
    countName(attributes.getURI(i), attributes.getQName(i));
    counts_.attributeOctets += attributes.getValue(i).size();
    if (typed && typed->getAlgorithmData(i)) countTyped(*typed->getAlgorithmData(i));
  }
}

void DocumentCounter::startElement(const std::string& uri, const std::string& localName,
                                   const std::string& qName, const Tavrin::Attributes& attributes) {
  ++counts_.elements;
  counts_.depth = std::max(counts_.depth, ++openElements_);
  countName(uri, qName);
  countAttributes(attributes);
  forward([&] { relay_.startElement(uri, localName, qName, attributes); });
}

void DocumentCounter::endElement(const std::string& uri, const std::string& localName,
                                 const std::string& qName) {
  --openElements_;
  forward([&] { relay_.endElement(uri, localName, qName); });
}

void DocumentCounter::characters(const std::string& text) {
  counts_.textOctets += text.size();
  forward([&] { relay_.characters(text); });
}

void DocumentCounter::ignorableWhitespace(const std::string& text) {
  counts_.textOctets += text.size();
  forward([&] { relay_.ignorableWhitespace(text); });
}

void DocumentCounter::processingInstruction(const std::string& target, const std::string& data) {
  if (!inExternalSubset_) ++counts_.instructions;
  forward([&] { relay_.processingInstruction(target, data); });
}

void DocumentCounter::comment(const std::string& text) {
  if (!inExternalSubset_) ++counts_.comments;
  forward([&] { relay_.comment(text); });
}

void DocumentCounter::octets(const std::string& uri, int index, const std::string& data) {
  ++counts_.typedValues;
  counts_.typedItems += data.size();
  forward([&] { relay_.octets(uri, index, data); });
}

void DocumentCounter::object(const std::string& uri, int index, const Tavrin::EncodedData& data) {
  countTyped(data);
  forward([&] { relay_.object(uri, index, data); });
}

// --- What is only handed on ---

void DocumentCounter::setDocumentLocator(const Tavrin::Locator* locator) {
  forward([&] { relay_.setDocumentLocator(locator); });
}

void DocumentCounter::startDocument() {
  forward([&] { relay_.startDocument(); });
}

void DocumentCounter::endDocument() {
  forward([&] { relay_.endDocument(); });
}

void DocumentCounter::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  forward([&] { relay_.startPrefixMapping(prefix, uri); });
}

void DocumentCounter::endPrefixMapping(const std::string& prefix) {
  forward([&] { relay_.endPrefixMapping(prefix); });
}

void DocumentCounter::skippedEntity(const std::string& name) {
  forward([&] { relay_.skippedEntity(name); });
}

void DocumentCounter::startDTD(const std::string& name, const std::string& publicId,
                               const std::string& systemId) {
  forward([&] { relay_.startDTD(name, publicId, systemId); });
}

void DocumentCounter::endDTD() {
  forward([&] { relay_.endDTD(); });
}

void DocumentCounter::startEntity(const std::string& name) {
  if (name == kExternalSubset) inExternalSubset_ = true;
  forward([&] { relay_.startEntity(name); });
}

void DocumentCounter::endEntity(const std::string& name) {
  if (name == kExternalSubset) inExternalSubset_ = false;
  forward([&] { relay_.endEntity(name); });
}

void DocumentCounter::startCDATA() {
  forward([&] { relay_.startCDATA(); });
}

void DocumentCounter::endCDATA() {
  forward([&] { relay_.endCDATA(); });
}

void DocumentCounter::notationDecl(const std::string& name, const std::string& publicId,
                                   const std::string& systemId) {
  forward([&] { relay_.notationDecl(name, publicId, systemId); });
}

void DocumentCounter::unparsedEntityDecl(const std::string& name, const std::string& publicId,
                                         const std::string& systemId,
                                         const std::string& notationName) {
  forward([&] { relay_.unparsedEntityDecl(name, publicId, systemId, notationName); });
}

void DocumentCounter::elementDecl(const std::string& name, const std::string& model) {
  forward([&] { relay_.elementDecl(name, model); });
}

void DocumentCounter::attributeDecl(const std::string& eName, const std::string& aName,
                                    const std::string& type, const std::string& mode,
                                    const std::string& value) {
  forward([&] { relay_.attributeDecl(eName, aName, type, mode, value); });
}

void DocumentCounter::internalEntityDecl(const std::string& name, const std::string& value) {
  forward([&] { relay_.internalEntityDecl(name, value); });
}

void DocumentCounter::externalEntityDecl(const std::string& name, const std::string& publicId,
                                         const std::string& systemId) {
  forward([&] { relay_.externalEntityDecl(name, publicId, systemId); });
}

std::unique_ptr<std::istream> DocumentCounter::resolveEntity(const std::string& publicId,
                                                             const std::string& systemId) {
  std::unique_ptr<std::istream> entity =
      resolver_ ? resolver_->resolveEntity(publicId, systemId) : nullptr;
  if (!entity) forward([&] { relay_.passOver(systemId); });
  return entity;
}

}  // namespace tool
