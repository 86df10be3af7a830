#pragma once

#include <cstdint>
#include <string>

#include "Decoder.h"
#include "format/Octets.h"

// Attributes (X.891, C.4), into the list that a dialect gives to handlers.

namespace Tavrin::fastinfoset {

inline constexpr const char* kInvalidElementName =
    "Error when decoding element name - invalid index";
inline constexpr const char* kInvalidAttributeName =
    "Error when decoding attribute name - invalid index";

template <typename List>
bool Decoder::decodeAttributes(List& attributes) {
  Names& table = names(kAttributeNames);
  for (;;) {
    if (tag_.attribute == nullptr) {
      if (!nextItem()) return false;
      const unsigned octet = readOctet();
      if (octet == kTerminator) return false;
      if (octet == kDoubleTerminator) return true;
      if (octet < kFirstNonAttributeIndex) {
        tag_.attribute = &nameAt(decodeIndex(octet), table, kInvalidAttributeName);
      } else if ((octet & kLiteralAttributeNameMask) == kLiteralAttributeName) {
        keepItem();
        tag_.attribute = &decodeLiteralName(octet, table);
      } else {
        fail("Error when decoding attribute name");
      }
      checkAttributeName(*tag_.attribute);
    }
    if (!nextItem()) return false;
    decodeAttributeValue(attributes, *tag_.attribute);
    if (isCut_) return false;
    tag_.attribute = nullptr;
  }
}

template <typename List>
void Decoder::decodeAttributeValue(List& attributes, const Name& name) {
  const bool isListed = &name != &unlisted_;
  Strings& values = strings(kAttributeValues);
  const unsigned octet = readOctet();
  if ((octet & kStringAlgorithmMask) == kStringAlgorithm) {
    keepItem();
    const Field field = decodeStringField(octet);
    expectLiteral(field.length);
    std::string uri;
    EncodingAlgorithm* algorithm = getEncodingAlgorithm(field.number, uri);
    EncodedData& value =
        algorithm != nullptr ? decodeData(*algorithm, field) : decodeUnknown(field, uri);
    checkValue(octet & kStringAddToTable, values, field.number, value);
    // The list copies the value; the algorithm would reuse its holder for the next one.
    auto& attribute = attributes.begin(name, isListed);
    attributes.setAlgorithm(attribute, uri, static_cast<std::int32_t>(field.number), value.clone());
  } else if (List::kRefersToTables && (octet & kStringIndex) && octet != kEmptyString) {
    // Many attributes may share a value.
    auto& attribute = attributes.begin(name, isListed);
    const unsigned long index = decodeIndex(octet);
    const std::string& value = stringAt(index, values);
    fromTables_ += value.size();
    if constexpr (List::kRefersToTables) {
      if (const RawOctets* const raw = value.empty() ? values.findRaw(index) : nullptr) {
        attributes.setAlgorithm(attribute, raw->uri, static_cast<std::int32_t>(raw->field),
                                copyOfRaw(*raw));
        return attributes.end();
      }
      attributes.refer(attribute, value);
    }
  } else if ((octet & kStringIndex) == 0 && (octet & kStringEncoding) == kStringUTF8) {
    const std::uint64_t begin = input_.count() - 1;
    const std::uint64_t length = decodeStringLength(octet);
    if (isCutBefore(length, begin)) return;
    auto& attribute = attributes.begin(name, isListed);
    if (octet & kStringAddToTable) {
      const std::string& value = decodeListedText(length, values, attribute.value);
      if constexpr (List::kRefersToTables) {
        attributes.refer(attribute, value);
      } else {
        attribute.value = value;
      }
    } else {
      readText(length, attribute.value);
    }
  } else {
    keepItem();
    decodeString(octet, &values, attributes.begin(name, isListed).value);
  }
  attributes.end();
}

}  // namespace Tavrin::fastinfoset
