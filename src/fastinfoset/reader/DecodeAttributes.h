#pragma once

#include <Tavrin/XMLReader_FI.h>

#include <cstdint>
#include <string>

#include "../Octets.h"
#include "TakeOctet.h"

// Attributes (X.891, C.4), into the list that a dialect hands to handlers.

namespace Tavrin {

inline constexpr const char* kInvalidAttributeName =
    "Error when decoding attribute name - invalid index";

/// Decodes the attributes of an element.
/// @tparam List `begin(name, table, isListed)` gives the record of the next attribute, with its
/// name
///              and without a value, and `end()` takes it into the list
/// @return true when the list ended with a double terminator
template <typename List>
bool XMLReader_FI::decodeAttributesInto(List& attributes) {
  using namespace fastinfoset;
  for (;;) {
    const unsigned octet = takeOctet();
    if (octet == kTerminator) return false;
    if (octet == kDoubleTerminator) return true;
    if (octet < kFirstNonAttributeIndex) {
      const unsigned long index = decodeIndex(static_cast<int>(octet));
      decodeAttribute(attributes, nameAt(index, attributeNames_, kInvalidAttributeName));
    } else if ((octet & kLiteralAttributeNameMask) == kLiteralAttributeName) {
      decodeAttribute(attributes, decodeLiteralName(octet, attributeNames_));
    } else {
      fail("Error when decoding attribute name");
    }
  }
}

template <typename List>
void XMLReader_FI::decodeAttribute(List& attributes, Name& name) {
  using namespace fastinfoset;
  dialectCheckAttributeName(name);
  const unsigned octet = takeOctet();
  if ((octet & kStringAlgorithmMask) == kStringAlgorithm) {
    const auto [field, length] = decodeStringField(octet);
    std::string uri;
    EncodingAlgorithm* algorithm = getEncodingAlgorithm(field, uri);
    if (algorithm == nullptr) fail("Unknown encoding algorithm - " + uri);
    EncodedData& value = dialectDecodeWith(*algorithm, field, length);
    dialectTakeTyped(octet & kStringAddToTable, attributeValues_, field, value);
    // The list takes the value over; the algorithm would reuse its holder for the next one.
    auto& attribute = attributes.begin(name, attributeNames_, &name != &unlisted_);
    attribute.algorithmURI = uri;
    attribute.algorithmIndex = static_cast<std::int32_t>(field);
    attribute.algorithmData = value.clone();
  } else {
    auto& attribute = attributes.begin(name, attributeNames_, &name != &unlisted_);
    decodeString(static_cast<int>(octet), &attributeValues_, externalEntries(&attributeValues_),
                 attribute.value);
  }
  attributes.end();
}

}  // namespace Tavrin
