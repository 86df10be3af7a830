#include <Tavrin/Exceptions.h>
#include <Tavrin/TypedData.h>

#include "TakeOver.h"
#include "TextForms.h"

namespace Tavrin {

namespace {

// Significant digits of the text of floating-point numbers.
constexpr int kFloatDigits = 6;
constexpr int kDoubleDigits = 12;

}  // namespace

EncodedData::~EncodedData() = default;
void EncodedData::callContentHandler(PrimitiveTypeContentHandler&) const {}
std::unique_ptr<EncodedData> EncodedData::copyEncodedData() const {
  throw EncodingAlgorithmException("This typed value cannot be copied");
}

std::string HexadecimalData::toString() const { return hexadecimalText(data_); }
std::unique_ptr<EncodedData> HexadecimalData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> HexadecimalData::copyEncodedData() const {
  return std::make_unique<HexadecimalData>(data_);
}
void HexadecimalData::callContentHandler(PrimitiveTypeContentHandler& handler) const {
  handler.bytes(data_);
}

std::string Base64Data::toString() const { return base64Text(data_); }
std::unique_ptr<EncodedData> Base64Data::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> Base64Data::copyEncodedData() const {
  return std::make_unique<Base64Data>(data_);
}
void Base64Data::callContentHandler(PrimitiveTypeContentHandler& handler) const {
  handler.bytes(data_);
}

std::string CDATAData::toString() const { return data_; }
std::unique_ptr<EncodedData> CDATAData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> CDATAData::copyEncodedData() const {
  return std::make_unique<CDATAData>(data_);
}
void CDATAData::callContentHandler(PrimitiveTypeContentHandler& handler) const {
  handler.bytes(data_);
}

std::string ShortData::toString() const { return integersText(data_); }
std::unique_ptr<EncodedData> ShortData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> ShortData::copyEncodedData() const {
  return std::make_unique<ShortData>(data_);
}
void ShortData::callContentHandler(PrimitiveTypeContentHandler& handler) const {
  handler.shorts(data_);
}

std::string IntData::toString() const { return integersText(data_); }
std::unique_ptr<EncodedData> IntData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> IntData::copyEncodedData() const {
  return std::make_unique<IntData>(data_);
}
void IntData::callContentHandler(PrimitiveTypeContentHandler& handler) const {
  handler.ints(data_);
}

std::string LongData::toString() const { return integersText(data_); }
std::unique_ptr<EncodedData> LongData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> LongData::copyEncodedData() const {
  return std::make_unique<LongData>(data_);
}
void LongData::callContentHandler(PrimitiveTypeContentHandler& handler) const {
  handler.longs(data_);
}

std::string BooleanData::toString() const { return booleansText(data_); }
std::unique_ptr<EncodedData> BooleanData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> BooleanData::copyEncodedData() const {
  return std::make_unique<BooleanData>(data_);
}
void BooleanData::callContentHandler(PrimitiveTypeContentHandler& handler) const {
  handler.booleans(data_);
}

std::string FloatData::toString() const { return floatingText(data_, kFloatDigits); }
std::unique_ptr<EncodedData> FloatData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> FloatData::copyEncodedData() const {
  return std::make_unique<FloatData>(data_);
}
void FloatData::callContentHandler(PrimitiveTypeContentHandler& handler) const {
  handler.floats(data_);
}

std::string DoubleData::toString() const { return floatingText(data_, kDoubleDigits); }
std::unique_ptr<EncodedData> DoubleData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> DoubleData::copyEncodedData() const {
  return std::make_unique<DoubleData>(data_);
}
void DoubleData::callContentHandler(PrimitiveTypeContentHandler& handler) const {
  handler.doubles(data_);
}

std::string UUIDData::toString() const { return uuidsText(data_); }
std::unique_ptr<EncodedData> UUIDData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> UUIDData::copyEncodedData() const {
  return std::make_unique<UUIDData>(data_);
}

}  // namespace Tavrin
