#pragma once

#include <functional>

#include "FIReaderValues.h"
#include "X891ReaderSupport.h"

namespace x891_test {

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

/// One of each algorithm but that of CDATA sections; that of the application is the first of the
/// document's URIs, `urn:reversed`.
inline const TypedValue kTypedValues[] = {
    {"hexadecimal", 0, "8C 02 00 00 7F A0", "30 02 00 7F A0", "007FA0", "bytes(00 7F A0)",
     "HexadecimalData{007FA0}"},
    {"base64", 1, "8C 06 00 4D 61 6E", "30 12 4D 61 6E", "TWFu", "bytes(4D 61 6E)",
     "Base64Data{TWFu}"},
    {"short", 2, "8C 0A 01 FF FF 7F FF", "30 23 FF FF 7F FF", "-1 32767", "shorts(-1 32767)",
     "ShortData{-1 32767}"},
    {"int", 3, "8C 0E 05 00 00 00 01 80 00 00 00", "30 37 00 00 00 01 80 00 00 00", "1 -2147483648",
     "ints(1 -2147483648)", "IntData{1 -2147483648}"},
    {"long", 4, "8C 12 05 7F FF FF FF FF FF FF FF", "30 47 7F FF FF FF FF FF FF FF",
     "9223372036854775807", "longs(9223372036854775807)", "LongData{9223372036854775807}"},
    {"boolean", 5, "8C 14 1A", "30 50 1A", "true false true", "booleans(1 0 1)",
     "BooleanData{true false true}"},
    {"float", 6, "8C 1A 05 3D CC CC CD C0 10 00 00", "30 67 3D CC CC CD C0 10 00 00", "0.1 -2.25",
     "floats(0.100000001 -2.25)", "FloatData{0.1 -2.25}"},
    {"double", 7, "8C 1E 05 3F D5 55 55 55 55 55 55", "30 77 3F D5 55 55 55 55 55 55",
     "0.3333333333333333", "doubles(0.33333333333333331)", "DoubleData{0.3333333333333333}"},
    {"uuid", 8, "8C 22 0D 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E FF",
     "30 88 07 00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E FF",
     "00010203-0405-0607-0809-0a0b0c0d0eff", "",
     "EncodedData{00010203-0405-0607-0809-0a0b0c0d0eff}"},
    {"application", 31, "8C 7E 00 'abc'", "31 F2 'abc'", "cba", "", "EncodedData{cba}"},
};

/// The URI that is told with a value.
inline std::string uriOf(const TypedValue& value) {
  return value.field >= 31 ? "urn:reversed" : "";
}

/// A document whose initial vocabulary has the URI of the application's algorithm alone.
inline std::string withAlgorithmURI(const std::string& written) {
  return fromComponents("20 04 00 00 0B 'urn:reversed' " + written);
}

/// A reader that knows an application's algorithm.
class TypedReader : public X891Reader {
 public:
  TypedReader() { reader.setProperty(Tavrin::properties::registeredEncodingAlgorithms, &map); }

  reader_test::ReversedAlgorithm reversed;
  Tavrin::EncodingAlgorithmMap map = {{"urn:reversed", &reversed}};
};

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
