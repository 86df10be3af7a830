#include "vocabularies/SampleTally.h"

#include <Tavrin/EncodingAlgorithmAttributes.h>

#include <algorithm>
#include <string_view>

#include "reading/Reading.h"

namespace tool {

namespace {

std::string_view prefixOf(std::string_view qName) {
  const std::size_t colon = qName.find(':');
  return colon == std::string_view::npos ? std::string_view() : qName.substr(0, colon);
}

}  // namespace

SampleTally::SampleTally(Candidates& candidates, Tavrin::EntityResolver* resolver)
    : candidates_(candidates),
      resolver_(resolver),
      mostText_(std::max(candidates.longest(), kLongestAdded) + 1) {
  candidates_.beginSample();
}

void SampleTally::attachTo(Tavrin::XMLReader& reader) {
  readsTypedValues_ = knowsTypedContent(reader);
  attach(reader, *this, followsStandard(reader));
}

void SampleTally::use(Table table, const std::string& text) {
  if (!text.empty()) candidates_.use(table, text);
}

void SampleTally::useIdentifiers(const std::string& publicId, const std::string& systemId) {
  use(Table::OtherURIs, systemId);
  use(Table::OtherURIs, publicId);
}

void SampleTally::endText() {
  if (text_.empty()) return;
  candidates_.use(Table::Characters, text_);
  text_.clear();
}

// --- Elements ---

void SampleTally::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  if (prefix != "xml") declarations_.emplace_back(prefix, uri);
}

void SampleTally::startElement(const std::string& uri, const std::string& localName,
                               const std::string& qName, const Tavrin::Attributes& attributes) {
  endText();
  for (const auto& [prefix, name] : declarations_) {
    use(Table::Prefixes, prefix);
    use(Table::NamespaceNames, name);
  }
  declarations_.clear();
  candidates_.useName(Table::ElementNames, prefixOf(qName), uri, localName);
  const auto* typed = readsTypedValues_
                          ? dynamic_cast<const Tavrin::EncodingAlgorithmAttributes*>(&attributes)
                          : nullptr;
  const int length = attributes.getLength();
  for (int i = 0; i < length; ++i) {
    candidates_.useName(Table::AttributeNames, prefixOf(attributes.getQName(i)),
                        attributes.getURI(i), attributes.getLocalName(i));
    if (typed && typed->getAlgorithmData(i)) continue;  // It has no place in the table.
    use(Table::AttributeValues, attributes.getValue(i));
  }
}

void SampleTally::endElement(const std::string&, const std::string&, const std::string&) {
  endText();
}

// --- Text ---

void SampleTally::characters(const std::string& text) {
  if (inCDATA_ || text_.size() >= mostText_) return;
  text_.append(text, 0, mostText_ - text_.size());
}

void SampleTally::ignorableWhitespace(const std::string& text) { characters(text); }

void SampleTally::startCDATA() {
  endText();
  inCDATA_ = true;
}

void SampleTally::endCDATA() { inCDATA_ = false; }

void SampleTally::octets(const std::string&, int, const std::string&) { endText(); }

void SampleTally::object(const std::string&, int, const Tavrin::EncodedData&) { endText(); }

// --- Other items ---

void SampleTally::processingInstruction(const std::string& target, const std::string& data) {
  if (inExternalSubset_) return;
  endText();
  use(Table::OtherNames, target);
  use(Table::OtherStrings, data);
}

void SampleTally::comment(const std::string& text) {
  if (inDTD_) return;
  endText();
  use(Table::OtherStrings, text);
}

void SampleTally::skippedEntity(const std::string& name) {
  if (inDTD_ || name.starts_with('%') || name == kExternalSubset) return;
  endText();
  use(Table::OtherNames, name);
  const auto declared = entities_.find(name);
  if (declared != entities_.end()) useIdentifiers(declared->second.first, declared->second.second);
}

// --- The document type ---

void SampleTally::startDTD(const std::string&, const std::string& publicId,
                           const std::string& systemId) {
  inDTD_ = true;
  useIdentifiers(publicId, systemId);
}

void SampleTally::endDTD() { inDTD_ = false; }

void SampleTally::startEntity(const std::string& name) {
  if (name == kExternalSubset) inExternalSubset_ = true;
}

void SampleTally::endEntity(const std::string& name) {
  if (name == kExternalSubset) inExternalSubset_ = false;
}

void SampleTally::notationDecl(const std::string& name, const std::string& publicId,
                               const std::string& systemId) {
  if (inExternalSubset_) return;
  use(Table::OtherNames, name);
  useIdentifiers(publicId, systemId);
}

void SampleTally::unparsedEntityDecl(const std::string& name, const std::string& publicId,
                                     const std::string& systemId, const std::string& notationName) {
  if (inExternalSubset_) return;
  use(Table::OtherNames, name);
  useIdentifiers(publicId, systemId);
  use(Table::OtherNames, notationName);
}

void SampleTally::externalEntityDecl(const std::string& name, const std::string& publicId,
                                     const std::string& systemId) {
  entities_.emplace(name, std::pair(publicId, systemId));
}

std::unique_ptr<std::istream> SampleTally::resolveEntity(const std::string& publicId,
                                                         const std::string& systemId) {
  return resolver_ ? resolver_->resolveEntity(publicId, systemId) : nullptr;
}

}  // namespace tool
