#pragma once

#include <Tavrin/Tavrin.h>

#include <cstddef>
#include <string>

/// What a reader heard. Readers of one document must agree, or they are not comparable.
struct Totals {
  std::size_t elements = 0;
  std::size_t attributes = 0;
  std::size_t elementNameOctets = 0;  ///< Of start and end tags: URI, local and qualified name.
  std::size_t attributeNameOctets = 0;
  std::size_t valueOctets = 0;
  std::size_t textOctets = 0;

  bool operator==(const Totals&) const = default;

  /// For readers that do not take names apart.
  bool sameCounts(const Totals& other) const {
    return elements == other.elements && attributes == other.attributes &&
           valueOctets == other.valueOctets && textOctets == other.textOctets;
  }
};

/// Adds up what it hears.
class Counter : public Tavrin::ContentHandler {
 public:
  Totals totals;

  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Tavrin::Attributes& attributes) override {
    ++totals.elements;
    totals.elementNameOctets += uri.size() + localName.size() + qName.size();
    const int length = attributes.getLength();
    totals.attributes += static_cast<std::size_t>(length);
    for (int i = 0; i < length; ++i) {
      totals.attributeNameOctets +=
          octetsOfName(attributes.getURI(i), attributes.getLocalName(i), attributes.getQName(i));
      totals.valueOctets += attributes.getValue(i).size();
    }
  }
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override {
    totals.elementNameOctets += uri.size() + localName.size() + qName.size();
  }
  void characters(const std::string& text) override { totals.textOctets += text.size(); }

 private:
  // The reader "Expat" does not split a name that is shorter than its namespace name: both names
  // are then the local name, a line feed and the prefix.
  static std::size_t octetsOfName(const std::string& uri, const std::string& localName,
                                  const std::string& qName) {
    const bool isWhole = !uri.empty() && localName.size() == qName.size();
    return uri.size() + (isWhole ? localName.find('\n') : localName.size()) + qName.size();
  }
};
