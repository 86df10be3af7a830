#pragma once

#include "Decoder.h"

#include <cstdint>
#include <string>

#include "format/Octets.h"
#include "TakeOctet.h"

// Attributes (X.891, C.4), into the list that a dialect hands to handlers.

namespace Tavrin::fastinfoset {

inline constexpr const char* kInvalidElementName =
    "Error when decoding element name - invalid index";
inline constexpr const char* kInvalidAttributeName =
    "Error when decoding attribute name - invalid index";
inline constexpr const char* kInvalidStringIndex = "Error when decoding string - invalid index";

/// Decodes the attributes of an element.
/// @tparam List `begin(name, isListed)` gives the record of the next attribute, with its name and
///              without a value, and `end()` takes it into the list. Where kRefersToTables is true,
///              `refer` takes note of a value in a table.
/// @return true when the list ended with a double terminator
template <typename List>
bool Decoder::decodeAttributesInto(List& attributes) {
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

/// Lets an attribute refer to its value, which many may share.
template <typename List, typename Attribute>
void Decoder::referToValue([[maybe_unused]] List& attributes, [[maybe_unused]] Attribute& attribute,
                           unsigned long index) {
  const StringTable* const external = externalEntries(&attributeValues_);
  const unsigned long inFront = external ? external->occupiedCount : 0;
  if (index < inFront) {
    const auto [entry, isNew] = externalValues_.try_emplace(index);
    if (isNew) assignString(index, &attributeValues_, external, entry->second);
    fromTables_ += entry->second.size();
    if constexpr (List::kRefersToTables) attributes.refer(attribute, entry->second);
    return;
  }
  index -= inFront;
  if (index >= attributeValues_.size()) fail(kInvalidStringIndex);
  fromTables_ += attributeValues_[index].size();
  if constexpr (List::kRefersToTables) attributes.refer(attribute, attributeValues_, index);
}

template <typename List>
void Decoder::decodeAttribute(List& attributes, Name& name) {
  checkAttributeName(name);
  const unsigned octet = takeOctet();
  if ((octet & kStringAlgorithmMask) == kStringAlgorithm) {
    const auto [field, length] = decodeStringField(octet);
    std::string uri;
    EncodingAlgorithm* algorithm = getEncodingAlgorithm(field, uri);
    if (algorithm == nullptr) fail(describeUnknown(uri));
    EncodedData& value = decodeWith(*algorithm, field, length);
    takeTyped(octet & kStringAddToTable, attributeValues_, field, value);
    // The list copies the value; the algorithm would reuse its holder for the next one.
    auto& attribute = attributes.begin(name, &name != &unlisted_);
    attributes.setAlgorithm(attribute, uri, static_cast<std::int32_t>(field), value.clone());
  } else if (List::kRefersToTables && (octet & kStringIndex) && octet != kEmptyString) {
    auto& attribute = attributes.begin(name, &name != &unlisted_);
    referToValue(attributes, attribute, decodeIndex(static_cast<int>(octet)));
  } else {
    auto& attribute = attributes.begin(name, &name != &unlisted_);
    decodeString(static_cast<int>(octet), &attributeValues_, externalEntries(&attributeValues_),
                 attribute.value);
  }
  attributes.end();
}

}  // namespace Tavrin::fastinfoset
