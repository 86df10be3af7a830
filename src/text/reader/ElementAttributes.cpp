#include "ElementAttributes.h"

#include <Tavrin/Identifiers.h>

#include "ExpatNames.h"

namespace Tavrin::text {

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

}  // namespace Tavrin::text
