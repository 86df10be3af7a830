#pragma once

#include <functional>
#include <string>
#include <vector>

#include "TypedValues.h"
#include "X891ReaderSupport.h"

namespace x891_test {

using reader_test::TypedValue;

/// One of each algorithm but that of CDATA sections; that of the application is the first of the
/// document's URIs, `urn:reversed`.
inline const std::vector<TypedValue> kTypedValues = reader_test::commonValuesAnd({
    {"float", 6, "8C 1A 05 3D CC CC CD C0 10 00 00", "30 67 3D CC CC CD C0 10 00 00", "0.1 -2.25",
     "floats(0.100000001 -2.25)", "FloatData{0.1 -2.25}"},
    {"double", 7, "8C 1E 05 3F D5 55 55 55 55 55 55", "30 77 3F D5 55 55 55 55 55 55",
     "0.3333333333333333", "doubles(0.33333333333333331)", "DoubleData{0.3333333333333333}"},
    {"uuid", 8, "8C 22 0D 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E FF",
     "30 88 07 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E FF",
     "00010203-0405-0607-0809-0a0b0c0d0eff", "",
     "EncodedData{00010203-0405-0607-0809-0a0b0c0d0eff}"},
    {"application", 31, "8C 7E 00 'abc'", "31 F2 'abc'", "cba", "", "EncodedData{cba}"},
});

/// The URI that is told with a value.
inline std::string uriOf(const TypedValue& value) {
  return value.field >= 31 ? "urn:reversed" : "";
}

/// A document whose initial vocabulary has the URI of the application's algorithm alone.
inline std::string withAlgorithmURI(const std::string& written) {
  return fromComponents("20 04 00 00 0B 'urn:reversed' " + written);
}

using TypedReader = reader_test::ReaderOfReversed<Tavrin::XMLReader_X891>;

/// An algorithm of an application that does what a test says.
class ScriptedAlgorithm : public Tavrin::EncodingAlgorithm {
 public:
  using Script = std::function<std::string(std::uint32_t, std::istream&)>;
  explicit ScriptedAlgorithm(Script script) : script_(std::move(script)) {}

  Tavrin::EncodedData& decodeFromInputStream(std::uint32_t length, std::istream& stream) override {
    holder_.data_ = script_(length, stream);
    return holder_;
  }
  void encodeToOutputStream(bool, const Tavrin::EncodedData&, std::ostream&) override {}

 private:
  struct Data : Tavrin::EncodedDataTemplate<std::string> {
    std::string toString() const override { return data_; }
    std::unique_ptr<Tavrin::EncodedData> clone() override { return std::make_unique<Data>(*this); }
  };

  Script script_;
  Data holder_;
};

}  // namespace x891_test
