/// @file
/// Encoding algorithms: they convert typed values to octets of a Fast Infoset document and back
/// (X.891, clause 10). All numbers are big-endian.
#pragma once

#include <Tavrin/Exceptions.h>
#include <Tavrin/Export.h>
#include <Tavrin/TypedData.h>

#include <cstdint>
#include <istream>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace Tavrin {

/// The numbers of the built-in algorithms in the library and in documents: the standard's index
/// minus 1. They have internal linkage, like the identifiers: a shared object that uses one
/// can be unloaded.
namespace algorithms {
constexpr int hexadecimal = 0;   ///< Octets with hexadecimal text.
constexpr int base64 = 1;        ///< Octets with base64 text.
constexpr int shortInteger = 2;  ///< 16-bit integers.
constexpr int integer = 3;       ///< 32-bit integers.
constexpr int longInteger = 4;   ///< 64-bit integers.
constexpr int boolean = 5;       ///< Booleans.
constexpr int floatNumber = 6;   ///< Single precision numbers.
constexpr int doubleNumber = 7;  ///< Double precision numbers.
constexpr int uuid = 8;          ///< UUIDs; the types "FI" do not provide it.
constexpr int cdata = 9;         ///< The text of a CDATA section.
}  // namespace algorithms

/// Encodes values of one type and decodes them again.
///
/// An application derives its own algorithm and registers it with a reader under a URI
/// (Tavrin::properties::registeredEncodingAlgorithms).
class TAVRIN_API EncodingAlgorithm {
 public:
  virtual ~EncodingAlgorithm();

  /// Decodes a value.
  /// @param length the number of octets; exactly these are read. The built-in algorithms allocate
  ///               memory for all of them before they read, so a caller that does not trust the
  ///               length first checks that the octets are there
  /// @param stream positioned after the length of the encoded data. The stream's state shows
  ///               whether it ended early; the value is then meaningless. That of a built-in
  ///               algorithm has its full length: each octet that is missing counts as 0xFF, and
  ///               the rest of a string is what it was, or zero
  /// @return the algorithm's own holder, valid until it decodes again; EncodedData::clone moves the
  ///         value
  /// @throws EncodingAlgorithmException for a length that the values cannot have, before anything
  ///         is read
  virtual EncodedData& decodeFromInputStream(std::uint32_t length, std::istream& stream) = 0;

  /// Encodes a value: the octets of writeSize, then those of the value.
  /// @param chunk  true for content of an element, false for the value of an attribute
  /// @param data   a holder of the algorithm's own type
  /// @param stream where to write
  /// @throws std::bad_cast for a holder of another type, before anything is written
  virtual void encodeToOutputStream(bool chunk, const EncodedData& data, std::ostream& stream) = 0;

  /// Writes what precedes encoded data: the form, the algorithm and the length (X.891, C.19 and
  /// C.23 in attribute values, C.20 and C.24 in content).
  ///
  /// Empty content is omitted: nothing is written. An empty attribute value is the octet 0xFF.
  /// @param index  the algorithm's number, 0 to 255; see Tavrin::algorithms
  /// @param chunk  true for content of an element, false for the value of an attribute
  /// @param length the number of octets that the caller writes next
  /// @param stream where to write
  void writeSize(int index, bool chunk, std::uint32_t length, std::ostream& stream) const;
};

/// The algorithms that an application adds, by URI. The map owns nothing.
using EncodingAlgorithmMap = std::map<std::string, EncodingAlgorithm*>;

/// Octets whose text is hexadecimal; they are not converted (X.891, 10.2).
class TAVRIN_API HexadecimalEncodingAlgorithm : public EncodingAlgorithm {
 public:
  EncodedData& decodeFromInputStream(std::uint32_t length, std::istream& stream) override;
  void encodeToOutputStream(bool chunk, const EncodedData& data, std::ostream& stream) override;
  /// Encodes a bare value.
  void encodeToOutputStream(bool chunk, const std::string& value, std::ostream& stream);
  /// Parses "007FA0": pairs of digits in either case, which white space may separate.
  /// @throws EncodingAlgorithmException for other text; see encodedDataFromText
  static HexadecimalData fromText(std::string_view text);

 private:
  HexadecimalData holder_;
};

/// Octets whose text is base64; they are not converted (X.891, 10.3).
class TAVRIN_API Base64EncodingAlgorithm : public EncodingAlgorithm {
 public:
  EncodedData& decodeFromInputStream(std::uint32_t length, std::istream& stream) override;
  void encodeToOutputStream(bool chunk, const EncodedData& data, std::ostream& stream) override;
  /// Encodes a bare value.
  void encodeToOutputStream(bool chunk, const std::string& value, std::ostream& stream);
  /// Parses "TWFu": digits and padding (RFC 4648, section 4), with white space anywhere, as of line
  /// breaks.
  /// @throws EncodingAlgorithmException for other text; see encodedDataFromText
  static Base64Data fromText(std::string_view text);

 private:
  Base64Data holder_;
};

/// 16-bit integers (X.891, 10.4).
class TAVRIN_API ShortEncodingAlgorithm : public EncodingAlgorithm {
 public:
  EncodedData& decodeFromInputStream(std::uint32_t length, std::istream& stream) override;
  void encodeToOutputStream(bool chunk, const EncodedData& data, std::ostream& stream) override;
  /// Encodes a bare value.
  void encodeToOutputStream(bool chunk, const std::vector<short>& value, std::ostream& stream);
  /// Parses "-1 0 32767".
  /// @throws EncodingAlgorithmException for other text; see encodedDataFromText
  static ShortData fromText(std::string_view text);

 private:
  ShortData holder_;
};

/// 32-bit integers. Of each 64-bit element the low 32 bits are encoded, without a check
/// (X.891, 10.5).
class TAVRIN_API IntEncodingAlgorithm : public EncodingAlgorithm {
 public:
  EncodedData& decodeFromInputStream(std::uint32_t length, std::istream& stream) override;
  void encodeToOutputStream(bool chunk, const EncodedData& data, std::ostream& stream) override;
  /// Encodes a bare value.
  void encodeToOutputStream(bool chunk, const std::vector<long>& value, std::ostream& stream);
  /// Parses "-1 0 2147483647".
  /// @throws EncodingAlgorithmException for other text; see encodedDataFromText
  static IntData fromText(std::string_view text);

 private:
  IntData holder_;
};

/// 64-bit integers (X.891, 10.6).
class TAVRIN_API LongEncodingAlgorithm : public EncodingAlgorithm {
 public:
  EncodedData& decodeFromInputStream(std::uint32_t length, std::istream& stream) override;
  void encodeToOutputStream(bool chunk, const EncodedData& data, std::ostream& stream) override;
  /// Encodes a bare value.
  void encodeToOutputStream(bool chunk, const std::vector<long>& value, std::ostream& stream);
  /// Parses "-1 0 9223372036854775807".
  /// @throws EncodingAlgorithmException for other text; see encodedDataFromText
  static LongData fromText(std::string_view text);

 private:
  LongData holder_;
};

/// Booleans, one a bit (X.891, 10.7).
class TAVRIN_API BooleanEncodingAlgorithm : public EncodingAlgorithm {
 public:
  EncodedData& decodeFromInputStream(std::uint32_t length, std::istream& stream) override;
  void encodeToOutputStream(bool chunk, const EncodedData& data, std::ostream& stream) override;
  /// Encodes a bare value.
  void encodeToOutputStream(bool chunk, const std::vector<bool>& value, std::ostream& stream);
  /// Parses "true false", which may also be "1 0".
  /// @throws EncodingAlgorithmException for other text; see encodedDataFromText
  static BooleanData fromText(std::string_view text);

 private:
  BooleanData holder_;
};

/// IEEE 754 single precision numbers (X.891, 10.8).
class TAVRIN_API FloatEncodingAlgorithm : public EncodingAlgorithm {
 public:
  EncodedData& decodeFromInputStream(std::uint32_t length, std::istream& stream) override;
  void encodeToOutputStream(bool chunk, const EncodedData& data, std::ostream& stream) override;
  /// Encodes a bare value.
  void encodeToOutputStream(bool chunk, const std::vector<float>& value, std::ostream& stream);
  /// Parses "1.5 -2e10 INF -INF NaN": each the nearest number of single precision.
  /// @throws EncodingAlgorithmException for other text; see encodedDataFromText
  static FloatData fromText(std::string_view text);

 private:
  FloatData holder_;
};

/// IEEE 754 double precision numbers (X.891, 10.9).
class TAVRIN_API DoubleEncodingAlgorithm : public EncodingAlgorithm {
 public:
  EncodedData& decodeFromInputStream(std::uint32_t length, std::istream& stream) override;
  void encodeToOutputStream(bool chunk, const EncodedData& data, std::ostream& stream) override;
  /// Encodes a bare value.
  void encodeToOutputStream(bool chunk, const std::vector<double>& value, std::ostream& stream);
  /// Parses "1.5 -2e10 INF -INF NaN": each the nearest number of double precision.
  /// @throws EncodingAlgorithmException for other text; see encodedDataFromText
  static DoubleData fromText(std::string_view text);

 private:
  DoubleData holder_;
};

/// The text of a CDATA section, in UTF-8 (X.891, 10.11).
class TAVRIN_API CDATAEncodingAlgorithm : public EncodingAlgorithm {
 public:
  EncodedData& decodeFromInputStream(std::uint32_t length, std::istream& stream) override;
  void encodeToOutputStream(bool chunk, const EncodedData& data, std::ostream& stream) override;
  /// Encodes a bare value.
  void encodeToOutputStream(bool chunk, const std::string& value, std::ostream& stream);
  /// The text itself, whatever it is.
  static CDATAData fromText(std::string_view text);

 private:
  CDATAData holder_;
};

/// UUIDs, 16 octets each (X.891, 10.10).
class TAVRIN_API UUIDEncodingAlgorithm : public EncodingAlgorithm {
 public:
  EncodedData& decodeFromInputStream(std::uint32_t length, std::istream& stream) override;
  void encodeToOutputStream(bool chunk, const EncodedData& data, std::ostream& stream) override;
  /// Encodes a bare value.
  void encodeToOutputStream(bool chunk, const std::vector<UUID>& value, std::ostream& stream);
  /// Parses "f81d4fae-7dec-11d0-a765-00a0c91e6bf6", with digits in either case.
  /// @throws EncodingAlgorithmException for other text; see encodedDataFromText
  static UUIDData fromText(std::string_view text);

 private:
  UUIDData holder_;
};

/// One of each algorithm that the "FI" types provide, and thus their readers and writers own.
class TAVRIN_API BuiltInAlgorithms {
 public:
  /// The algorithm of a number, or null where none is built in.
  /// @param index the algorithm's number; see Tavrin::algorithms
  EncodingAlgorithm* find(int index);

  HexadecimalEncodingAlgorithm hexadecimal;  ///< Number 0.
  Base64EncodingAlgorithm base64;            ///< Number 1.
  ShortEncodingAlgorithm shortInteger;       ///< Number 2.
  IntEncodingAlgorithm integer;              ///< Number 3.
  LongEncodingAlgorithm longInteger;         ///< Number 4.
  BooleanEncodingAlgorithm boolean;          ///< Number 5.
  FloatEncodingAlgorithm floatNumber;        ///< Number 6.
  DoubleEncodingAlgorithm doubleNumber;      ///< Number 7.
  CDATAEncodingAlgorithm cdata;              ///< Number 9.
};

/// Parses the text of a value of a built-in algorithm (X.891, clause 10), as the static operation
/// `fromText` of its class does.
///
/// @code
/// const auto numbers = encodedDataFromText(algorithms::floatNumber, "0.1 1e3");
/// std::cout << numbers->toString() << '\n';  // "0.1 1000"
/// @endcode
///
/// The standard separates items by one space each. Here any white space of XML may stand between
/// them and around them, and numbers may have forms that the text of a value never has: a plus
/// sign, leading zeros, other exponents. Digits are those of ASCII, whatever the locale. A
/// floating-point number is refused where only infinity or zero would be near. Text without items
/// is an empty value.
///
/// What is parsed prints as text that is parsed to the same value again: numbers exactly, as from
/// the reader "X891", but for the bits of a NaN that are its own.
/// @throws EncodingAlgorithmException for other text, with the item and its offset in octets, such
///         as `Invalid short text: "99999" at offset 6 is out of range`; and for an algorithm that
///         is not built in
TAVRIN_API std::unique_ptr<EncodedData> encodedDataFromText(int algorithm, std::string_view text);
/// Parses text by the name of the algorithm: "hexadecimal", "base64", "short", "int", "long",
/// "boolean", "float", "double", "uuid" or "cdata".
/// @throws EncodingAlgorithmException also for another name
TAVRIN_API std::unique_ptr<EncodedData> encodedDataFromText(std::string_view algorithm,
                                                            std::string_view text);

}  // namespace Tavrin
