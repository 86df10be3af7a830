#pragma once

#include <Tavrin/Attributes.h>

#include <initializer_list>
#include <string>
#include <vector>

/// An attribute without a namespace.
struct Plain {
  std::string name;
  std::string value;
};

/// An attribute with all its names.
struct Named {
  std::string uri;
  std::string localName;
  std::string qName;
  std::string value;
};

inline Tavrin::AttributesImpl attributes(std::initializer_list<Plain> list) {
  Tavrin::AttributesImpl result;
  for (const auto& [name, value] : list) result.addAttribute("", name, name, "CDATA", value);
  return result;
}

inline Tavrin::AttributesImpl namedAttributes(const std::vector<Named>& list) {
  Tavrin::AttributesImpl result;
  for (const auto& [uri, localName, qName, value] : list) {
    result.addAttribute(uri, localName, qName, "CDATA", value);
  }
  return result;
}
