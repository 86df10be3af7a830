/// @file
/// Typed content: values that are encoded as numbers or octets, not as text.
#pragma once

#include <Tavrin/Export.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Tavrin {

/// Receives typed content. Every operation does nothing unless it is overridden.
///
/// The arguments belong to the caller and are valid during the call only.
class TAVRIN_API PrimitiveTypeContentHandler {
 public:
  virtual ~PrimitiveTypeContentHandler() = default;

  /// Octets (of hexadecimal or base64 content), or the text of a CDATA section.
  virtual void bytes(const std::string& data);
  virtual void shorts(const std::vector<short>& data);    ///< 16-bit integers.
  virtual void ints(const std::vector<long>& data);       ///< 32-bit integers, in 64-bit elements.
  virtual void longs(const std::vector<long>& data);      ///< 64-bit integers.
  virtual void booleans(const std::vector<bool>& data);   ///< Booleans.
  virtual void floats(const std::vector<float>& data);    ///< IEEE 754 single precision numbers.
  virtual void doubles(const std::vector<double>& data);  ///< IEEE 754 double precision numbers.
};

/// A typed value: what an encoding algorithm decodes into and encodes from.
class TAVRIN_API EncodedData {
 public:
  virtual ~EncodedData() = default;

  /// The value as text.
  virtual std::string toString() const = 0;

  /// Moves the value into a new holder of the same type, which the caller owns. This holder is
  /// empty afterwards: a decoded value is moved, not copied.
  virtual std::unique_ptr<EncodedData> clone() = 0;

  /// Delivers the value to the handler's matching operation. The base delivers nothing.
  virtual void callContentHandler(PrimitiveTypeContentHandler& handler) const;

  /// Copies the value into a new holder of the same type, which the caller owns. This holder keeps
  /// its value. The holders of the library can be copied; one of an application can where it
  /// overrides copyEncodedData.
  /// @throws EncodingAlgorithmException "This typed value cannot be copied" where it does not
  std::unique_ptr<EncodedData> copy() const { return copyEncodedData(); }

 protected:
  /// Implements copy. A holder of an application is unlikely to have an operation of this name.
  virtual std::unique_ptr<EncodedData> copyEncodedData() const;
};

/// A holder of one value.
template <typename T>
class TAVRIN_API EncodedDataTemplate : public EncodedData {
 public:
  EncodedDataTemplate() = default;  ///< Holds an empty value.
  /// Holds a value.
  explicit EncodedDataTemplate(T data) : data_(std::move(data)) {}

  T data_{};  ///< The value; callers and decoders set it.
};

/// Octets whose text is hexadecimal (X.891, 10.2): "007FA0".
class TAVRIN_API HexadecimalData : public EncodedDataTemplate<std::string> {
 public:
  using EncodedDataTemplate::EncodedDataTemplate;  ///< Holds a value, or an empty one.
  std::string toString() const override;
  std::unique_ptr<EncodedData> clone() override;
  void callContentHandler(PrimitiveTypeContentHandler& handler) const override;  ///< Calls bytes.

 protected:
  std::unique_ptr<EncodedData> copyEncodedData() const override;
};

/// Octets whose text is base64 (X.891, 10.3; RFC 4648, section 4), in one line: "TWFu".
class TAVRIN_API Base64Data : public EncodedDataTemplate<std::string> {
 public:
  using EncodedDataTemplate::EncodedDataTemplate;  ///< Holds a value, or an empty one.
  std::string toString() const override;
  std::unique_ptr<EncodedData> clone() override;
  void callContentHandler(PrimitiveTypeContentHandler& handler) const override;  ///< Calls bytes.

 protected:
  std::unique_ptr<EncodedData> copyEncodedData() const override;
};

/// The text of a CDATA section, in UTF-8 (X.891, 10.11).
class TAVRIN_API CDATAData : public EncodedDataTemplate<std::string> {
 public:
  using EncodedDataTemplate::EncodedDataTemplate;  ///< Holds a value, or an empty one.
  std::string toString() const override;
  std::unique_ptr<EncodedData> clone() override;
  void callContentHandler(PrimitiveTypeContentHandler& handler) const override;  ///< Calls bytes.

 protected:
  std::unique_ptr<EncodedData> copyEncodedData() const override;
};

/// 16-bit integers (X.891, 10.4): "-1 0 32767".
class TAVRIN_API ShortData : public EncodedDataTemplate<std::vector<short>> {
 public:
  using EncodedDataTemplate::EncodedDataTemplate;  ///< Holds a value, or an empty one.
  std::string toString() const override;
  std::unique_ptr<EncodedData> clone() override;
  void callContentHandler(PrimitiveTypeContentHandler& handler) const override;  ///< Calls shorts.

 protected:
  std::unique_ptr<EncodedData> copyEncodedData() const override;
};

/// 32-bit integers (X.891, 10.5). An element outside the 32-bit range shows whole in the text, but
/// only its low 32 bits are encoded.
class TAVRIN_API IntData : public EncodedDataTemplate<std::vector<long>> {
 public:
  using EncodedDataTemplate::EncodedDataTemplate;  ///< Holds a value, or an empty one.
  std::string toString() const override;
  std::unique_ptr<EncodedData> clone() override;
  void callContentHandler(PrimitiveTypeContentHandler& handler) const override;  ///< Calls ints.

 protected:
  std::unique_ptr<EncodedData> copyEncodedData() const override;
};

/// 64-bit integers (X.891, 10.6).
class TAVRIN_API LongData : public EncodedDataTemplate<std::vector<long>> {
 public:
  using EncodedDataTemplate::EncodedDataTemplate;  ///< Holds a value, or an empty one.
  std::string toString() const override;
  std::unique_ptr<EncodedData> clone() override;
  void callContentHandler(PrimitiveTypeContentHandler& handler) const override;  ///< Calls longs.

 protected:
  std::unique_ptr<EncodedData> copyEncodedData() const override;
};

/// Booleans (X.891, 10.7): "true false".
class TAVRIN_API BooleanData : public EncodedDataTemplate<std::vector<bool>> {
 public:
  using EncodedDataTemplate::EncodedDataTemplate;  ///< Holds a value, or an empty one.
  std::string toString() const override;
  std::unique_ptr<EncodedData> clone() override;
  /// Calls booleans.
  void callContentHandler(PrimitiveTypeContentHandler& handler) const override;

 protected:
  std::unique_ptr<EncodedData> copyEncodedData() const override;
};

/// IEEE 754 single precision numbers (X.891, 10.8), as text with 6 significant digits.
class TAVRIN_API FloatData : public EncodedDataTemplate<std::vector<float>> {
 public:
  using EncodedDataTemplate::EncodedDataTemplate;  ///< Holds a value, or an empty one.
  std::string toString() const override;
  std::unique_ptr<EncodedData> clone() override;
  void callContentHandler(PrimitiveTypeContentHandler& handler) const override;  ///< Calls floats.

 protected:
  std::unique_ptr<EncodedData> copyEncodedData() const override;
};

/// IEEE 754 double precision numbers (X.891, 10.9), as text with 12 significant digits.
class TAVRIN_API DoubleData : public EncodedDataTemplate<std::vector<double>> {
 public:
  using EncodedDataTemplate::EncodedDataTemplate;  ///< Holds a value, or an empty one.
  std::string toString() const override;
  std::unique_ptr<EncodedData> clone() override;
  void callContentHandler(PrimitiveTypeContentHandler& handler) const override;  ///< Calls doubles.

 protected:
  std::unique_ptr<EncodedData> copyEncodedData() const override;
};

/// A universally unique identifier (RFC 4122): its octets in the order in which they are written.
using UUID = std::array<std::uint8_t, 16>;

/// UUIDs (X.891, 10.10): "f81d4fae-7dec-11d0-a765-00a0c91e6bf6". PrimitiveTypeContentHandler has no
/// operation for them, so callContentHandler delivers nothing.
class TAVRIN_API UUIDData : public EncodedDataTemplate<std::vector<UUID>> {
 public:
  using EncodedDataTemplate::EncodedDataTemplate;  ///< Holds a value, or an empty one.
  std::string toString() const override;
  std::unique_ptr<EncodedData> clone() override;

 protected:
  std::unique_ptr<EncodedData> copyEncodedData() const override;
};

/// Octets of an encoding algorithm that the reader does not know, as the document has them; see
/// Tavrin::properties::rawOctets. Which algorithm it is stands beside the value, for example in
/// EncodingAlgorithmAttributes::getAlgorithmURI.
///
/// @code
/// EncodingAlgorithmAttributesImpl attributes;
/// attributes.addAttribute("", "paper", "paper", "CDATA", "urn:example:colours", 31,
///                         std::make_unique<RawData>("\xFF\xFF\xF0"));
/// if (const auto* raw = dynamic_cast<const RawData*>(attributes.getAlgorithmData(0))) {
///   std::cout << attributes.getAlgorithmURI(0) << ": " << raw->data_.size() << " octets\n";
/// }
/// @endcode
///
/// Nobody knows their text. As text they are base64 (RFC 4648, section 4), so that nothing is lost
/// where text is all that a receiver takes. callContentHandler delivers nothing.
class TAVRIN_API RawData : public EncodedDataTemplate<std::string> {
 public:
  using EncodedDataTemplate::EncodedDataTemplate;  ///< Holds a value, or an empty one.
  std::string toString() const override;
  std::unique_ptr<EncodedData> clone() override;

 protected:
  std::unique_ptr<EncodedData> copyEncodedData() const override;
};

/// Receives content of encoding algorithms that the receiver may or may not know. Every operation
/// does nothing unless it is overridden.
class TAVRIN_API EncodingAlgorithmContentHandler {
 public:
  virtual ~EncodingAlgorithmContentHandler() = default;

  /// Content that is still encoded.
  /// @param uri   names an application-defined algorithm; empty for the others
  /// @param index the algorithm's field: its index in the standard's table minus 1
  /// @param data  the octets
  virtual void octets(const std::string& uri, int index, const std::string& data);

  /// Decoded content.
  /// @param uri   names an application-defined algorithm; empty for the others
  /// @param index the algorithm's field: its index in the standard's table minus 1
  /// @param data  the value; a handler that keeps it copies it (EncodedData::copy)
  virtual void object(const std::string& uri, int index, const EncodedData& data);
};

}  // namespace Tavrin
