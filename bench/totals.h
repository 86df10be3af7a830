#pragma once

#include <Tavrin/Tavrin.h>

#include <cstddef>
#include <string>

/// What a reader heard. Readers of one document must agree, or they are not comparable.
struct Totals {
  std::size_t elements = 0;
  std::size_t attributes = 0;
  std::size_t nameOctets = 0;
  std::size_t valueOctets = 0;
  std::size_t textOctets = 0;

  bool operator==(const Totals&) const = default;
};

/// Adds up what it hears.
class Counter : public Tavrin::ContentHandler {
 public:
  Totals totals;

  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Tavrin::Attributes& attributes) override {
    ++totals.elements;
    totals.nameOctets += uri.size() + localName.size() + qName.size();
    const int length = attributes.getLength();
    totals.attributes += static_cast<std::size_t>(length);
    for (int i = 0; i < length; ++i) totals.valueOctets += attributes.getValue(i).size();
  }
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override {
    totals.nameOctets += uri.size() + localName.size() + qName.size();
  }
  void characters(const std::string& text) override { totals.textOctets += text.size(); }
};
