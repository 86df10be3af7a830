#pragma once

#include <Tavrin/EncodingAlgorithms.h>
#include <Tavrin/Identifiers.h>

#include <cstdint>
#include <istream>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "ReaderSupport.h"

// Typed values, for the tests of both readers of Fast Infoset.

namespace reader_test {

/// An algorithm of an application: its octets are the text, last one first.
class ReversedAlgorithm : public Tavrin::EncodingAlgorithm {
 public:
  struct Data : Tavrin::EncodedDataTemplate<std::string> {
    std::string toString() const override { return std::string(data_.rbegin(), data_.rend()); }
    std::unique_ptr<Tavrin::EncodedData> clone() override {
      auto taken = std::make_unique<Data>();
      taken->data_.swap(data_);
      return taken;
    }
  };

  Tavrin::EncodedData& decodeFromInputStream(std::uint32_t length, std::istream& stream) override {
    // A claimed length is not believed before its octets have come.
    holder_.data_.clear();
    for (; length > 0 && stream.good(); --length) {
      holder_.data_ += static_cast<char>(stream.get());
    }
    return holder_;
  }
  void encodeToOutputStream(bool, const Tavrin::EncodedData&, std::ostream&) override {}

 private:
  Data holder_;
};

/// A typed value as a chunk and as an attribute value, and what is told of it.
struct TypedValue {
  const char* name;
  int field;
  const char* chunk;
  const char* attributeValue;
  const char* text;
  const char* primitive;  ///< What the handler of primitive types logs.
  const char* shown;      ///< As EventLog shows it.
};

/// Values that both families tell of in the same way, and then others.
inline std::vector<TypedValue> commonValuesAnd(const std::vector<TypedValue>& others) {
  std::vector<TypedValue> values = {
      {"hexadecimal", 0, "8C 02 00 00 7F A0", "30 02 00 7F A0", "007FA0", "bytes(00 7F A0)",
       "HexadecimalData{007FA0}"},
      {"base64", 1, "8C 06 00 4D 61 6E", "30 12 4D 61 6E", "TWFu", "bytes(4D 61 6E)",
       "Base64Data{TWFu}"},
      {"short", 2, "8C 0A 01 FF FF 7F FF", "30 23 FF FF 7F FF", "-1 32767", "shorts(-1 32767)",
       "ShortData{-1 32767}"},
      {"int", 3, "8C 0E 05 00 00 00 01 80 00 00 00", "30 37 00 00 00 01 80 00 00 00",
       "1 -2147483648", "ints(1 -2147483648)", "IntData{1 -2147483648}"},
      {"long", 4, "8C 12 05 7F FF FF FF FF FF FF FF", "30 47 7F FF FF FF FF FF FF FF",
       "9223372036854775807", "longs(9223372036854775807)", "LongData{9223372036854775807}"},
      {"boolean", 5, "8C 14 1A", "30 50 1A", "true false true", "booleans(1 0 1)",
       "BooleanData{true false true}"},
  };
  values.insert(values.end(), others.begin(), others.end());
  return values;
}

/// A reader that knows the application's algorithm.
template <typename Reader>
class ReaderOfReversed : public ReaderWithLog<Reader> {
 public:
  ReaderOfReversed() {
    this->reader.setProperty(Tavrin::properties::registeredEncodingAlgorithms, &map);
  }

  ReversedAlgorithm reversed;
  Tavrin::EncodingAlgorithmMap map = {{"urn:reversed", &reversed}};
};

}  // namespace reader_test
