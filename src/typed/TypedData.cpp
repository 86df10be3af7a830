#include <Tavrin/Exceptions.h>
#include <Tavrin/TypedData.h>

#include <cstddef>
#include <cstdint>
#include <ios>
#include <iterator>
#include <locale>

#include "../io/OctetStream.h"
#include "TakeOver.h"

namespace Tavrin {

using Handler = PrimitiveTypeContentHandler;

void Handler::bytes(const std::string&) {}
void Handler::shorts(const std::vector<short>&) {}
void Handler::ints(const std::vector<long>&) {}
void Handler::longs(const std::vector<long>&) {}
void Handler::booleans(const std::vector<bool>&) {}
void Handler::floats(const std::vector<float>&) {}
void Handler::doubles(const std::vector<double>&) {}

void EncodingAlgorithmContentHandler::octets(const std::string&, int, const std::string&) {}
void EncodingAlgorithmContentHandler::object(const std::string&, int, const EncodedData&) {}

void EncodedData::callContentHandler(Handler&) const {}
std::unique_ptr<EncodedData> EncodedData::copyEncodedData() const {
  throw EncodingAlgorithmException("This typed value cannot be copied");
}

// --- Text, for handlers that do not receive typed content ---

namespace {

/// Appends the digits of an octet.
void appendHexadecimal(unsigned octet, const char* digits, std::string& text) {
  text += digits[octet >> 4];
  text += digits[octet & 0x0F];
}

/// Two upper-case digits per octet.
std::string hexadecimalText(const std::string& octets) {
  std::string text;
  text.reserve(2 * octets.size());
  for (const char c : octets) {
    appendHexadecimal(static_cast<unsigned char>(c), "0123456789ABCDEF", text);
  }
  return text;
}

/// Base64 (RFC 4648, section 4), padded, in one line.
std::string base64Text(const std::string& octets) {
  static const char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  constexpr std::size_t kGroup = 3;
  std::string text;
  text.reserve((octets.size() + kGroup - 1) / kGroup * 4);
  for (std::size_t i = 0; i < octets.size(); i += kGroup) {
    // Octets missing from the last group are zero; "=" replaces the digits that hold only them.
    const std::size_t present = octets.size() - i < kGroup ? octets.size() - i : kGroup;
    std::uint32_t group = 0;
    for (std::size_t k = 0; k < kGroup; ++k) {
      group = group << 8 | (k < present ? static_cast<unsigned char>(octets[i + k]) : 0U);
    }
    text += alphabet[group >> 18];
    text += alphabet[group >> 12 & 63];
    text += present > 1 ? alphabet[group >> 6 & 63] : '=';
    text += present > 2 ? alphabet[group & 63] : '=';
  }
  return text;
}

/// Texts of elements, separated by single spaces.
/// @param append appends the text of an element
template <typename Vector, typename Append>
void appendSeparated(const Vector& values, std::string& text, Append append) {
  bool first = true;
  for (const auto& value : values) {
    if (!first) text += ' ';
    first = false;
    append(value);
  }
}

std::string booleansText(const std::vector<bool>& values) {
  std::string text;
  appendSeparated(values, text, [&text](bool value) { text += value ? "true" : "false"; });
  return text;
}

/// Lower-case digits in the groups of RFC 4122, section 3.
std::string uuidsText(const std::vector<UUID>& values) {
  std::string text;
  appendSeparated(values, text, [&text](const UUID& uuid) {
    for (std::size_t i = 0; i < uuid.size(); ++i) {
      if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
      appendHexadecimal(uuid[i], "0123456789abcdef", text);
    }
  });
  return text;
}

/// Signed decimals, or numbers in general notation, as a new stream would write them: with the
/// facets of the global locale. A stream would not report a lack of memory, and truncate the text.
/// @param digits significant digits of floating-point numbers
template <typename Number, typename Item>
std::string numbersText(const std::vector<Item>& values, int digits = 0) {
  std::string text;
  AppendingBuffer buffer(text);
  std::ios format(nullptr);  // Has the global locale, as every new stream.
  format.precision(digits);
  const auto& facet = std::use_facet<std::num_put<char>>(format.getloc());
  appendSeparated(values, text, [&](Item value) {
    facet.put(std::ostreambuf_iterator<char>(&buffer), format, format.fill(), Number{value});
  });
  return text;
}

}  // namespace

std::string HexadecimalData::toString() const { return hexadecimalText(data_); }
std::unique_ptr<EncodedData> HexadecimalData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> HexadecimalData::copyEncodedData() const { return copyOf(*this); }
void HexadecimalData::callContentHandler(Handler& handler) const { handler.bytes(data_); }

std::string Base64Data::toString() const { return base64Text(data_); }
std::unique_ptr<EncodedData> Base64Data::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> Base64Data::copyEncodedData() const { return copyOf(*this); }
void Base64Data::callContentHandler(Handler& handler) const { handler.bytes(data_); }

std::string CDATAData::toString() const { return data_; }
std::unique_ptr<EncodedData> CDATAData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> CDATAData::copyEncodedData() const { return copyOf(*this); }
void CDATAData::callContentHandler(Handler& handler) const { handler.bytes(data_); }

std::string ShortData::toString() const { return numbersText<long>(data_); }
std::unique_ptr<EncodedData> ShortData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> ShortData::copyEncodedData() const { return copyOf(*this); }
void ShortData::callContentHandler(Handler& handler) const { handler.shorts(data_); }

std::string IntData::toString() const { return numbersText<long>(data_); }
std::unique_ptr<EncodedData> IntData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> IntData::copyEncodedData() const { return copyOf(*this); }
void IntData::callContentHandler(Handler& handler) const { handler.ints(data_); }

std::string LongData::toString() const { return numbersText<long>(data_); }
std::unique_ptr<EncodedData> LongData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> LongData::copyEncodedData() const { return copyOf(*this); }
void LongData::callContentHandler(Handler& handler) const { handler.longs(data_); }

std::string BooleanData::toString() const { return booleansText(data_); }
std::unique_ptr<EncodedData> BooleanData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> BooleanData::copyEncodedData() const { return copyOf(*this); }
void BooleanData::callContentHandler(Handler& handler) const { handler.booleans(data_); }

std::string FloatData::toString() const { return numbersText<double>(data_, 6); }
std::unique_ptr<EncodedData> FloatData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> FloatData::copyEncodedData() const { return copyOf(*this); }
void FloatData::callContentHandler(Handler& handler) const { handler.floats(data_); }

std::string DoubleData::toString() const { return numbersText<double>(data_, 12); }
std::unique_ptr<EncodedData> DoubleData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> DoubleData::copyEncodedData() const { return copyOf(*this); }
void DoubleData::callContentHandler(Handler& handler) const { handler.doubles(data_); }

std::string UUIDData::toString() const { return uuidsText(data_); }
std::unique_ptr<EncodedData> UUIDData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> UUIDData::copyEncodedData() const { return copyOf(*this); }

std::string RawData::toString() const { return base64Text(data_); }
std::unique_ptr<EncodedData> RawData::clone() { return takeOver(*this); }
std::unique_ptr<EncodedData> RawData::copyEncodedData() const { return copyOf(*this); }

}  // namespace Tavrin
