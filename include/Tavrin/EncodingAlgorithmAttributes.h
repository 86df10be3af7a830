/// @file
/// Attribute lists whose values may be typed.
#pragma once

#include <Tavrin/Attributes.h>
#include <Tavrin/Export.h>
#include <Tavrin/TypedData.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Tavrin {

/// An attribute list whose values may be typed. Used as a plain Attributes, it gives their text.
class TAVRIN_API EncodingAlgorithmAttributes : public Attributes {
 public:
  ~EncodingAlgorithmAttributes() override;

  /// @name By position, from 0
  /// @{

  /// The URI of an application-defined algorithm, otherwise empty.
  virtual const std::string& getAlgorithmURI(int index) const = 0;
  /// The number of the algorithm (see Tavrin::algorithms), or -1 for a value that is text.
  virtual int getAlgorithmIndex(int index) const = 0;
  /// The typed value, or null for a value that is text. It belongs to the list.
  virtual const EncodedData* getAlgorithmData(int index) const = 0;
  /// @}

  /// @name By name
  /// As by position. Names compare octet for octet; the first match counts.
  /// @{
  virtual const std::string& getAlgorithmURI(const std::string& uri,
                                             const std::string& localName) const = 0;  ///< URI.
  virtual const std::string& getAlgorithmURI(const std::string& qName) const = 0;      ///< URI.
  /// The number.
  virtual int getAlgorithmIndex(const std::string& uri, const std::string& localName) const = 0;
  virtual int getAlgorithmIndex(const std::string& qName) const = 0;  ///< The number.
  virtual const EncodedData* getAlgorithmData(const std::string& uri,
                                              const std::string& localName) const = 0;  ///< Value.
  virtual const EncodedData* getAlgorithmData(const std::string& qName) const = 0;      ///< Value.
  /// @}
};

/// The list that the reader "FI" fills, new for each element, and from which the Fast Infoset
/// writers get typed values.
///
/// Access by a position outside the list, or by a name that is not in it, throws std::out_of_range
/// with the text "vector::_M_range_check". The first getValue by position of a typed value converts
/// it to text, which is kept; getValue by name does not convert, so its result is empty until then.
/// For that reason threads must not share a list, even to read it.
class TAVRIN_API EncodingAlgorithmAttributesImpl : public EncodingAlgorithmAttributes {
 public:
  /// One attribute.
  struct Attribute {
    std::string uri;            ///< Namespace name, empty without a namespace.
    std::string localName;      ///< Name without prefix.
    std::string qName;          ///< Name with prefix and colon.
    std::string type;           ///< Type text.
    mutable std::string value;  ///< Text; of a typed value, after getValue.
    std::string algorithmURI;   ///< URI of an application-defined algorithm, otherwise empty.
    std::int32_t algorithmIndex = -1;            ///< Number of the algorithm; -1 for text.
    std::unique_ptr<EncodedData> algorithmData;  ///< Typed value; null for text.
  };

  EncodingAlgorithmAttributesImpl() = default;
  ~EncodingAlgorithmAttributesImpl() override = default;

  int getLength() const override;
  const std::string& getURI(int index) const override;
  const std::string& getLocalName(int index) const override;
  const std::string& getQName(int index) const override;
  const std::string& getType(int index) const override;
  const std::string& getValue(int index) const override;
  int getIndex(const std::string& uri, const std::string& localName) const override;
  int getIndex(const std::string& qName) const override;
  const std::string& getType(const std::string& uri, const std::string& localName) const override;
  const std::string& getType(const std::string& qName) const override;
  const std::string& getValue(const std::string& uri, const std::string& localName) const override;
  const std::string& getValue(const std::string& qName) const override;

  const std::string& getAlgorithmURI(int index) const override;
  int getAlgorithmIndex(int index) const override;
  const EncodedData* getAlgorithmData(int index) const override;
  const std::string& getAlgorithmURI(const std::string& uri,
                                     const std::string& localName) const override;
  const std::string& getAlgorithmURI(const std::string& qName) const override;
  int getAlgorithmIndex(const std::string& uri, const std::string& localName) const override;
  int getAlgorithmIndex(const std::string& qName) const override;
  const EncodedData* getAlgorithmData(const std::string& uri,
                                      const std::string& localName) const override;
  const EncodedData* getAlgorithmData(const std::string& qName) const override;

  /// The position of the first attribute with this namespace name and local name, or -1.
  int findAttribute(const std::string& uri, const std::string& localName) const;
  /// The position of the first attribute with this qualified name, or -1.
  int findAttribute(const std::string& qName) const;

  /// Replaces the whole list by a copy of another one in which every value is text.
  /// @throws std::length_error "vector::reserve" for a negative length; the list is then empty
  void setAttributes(const Attributes& other);
  /// Not to be called: it ends the process. A silent text copy would lose the values' types;
  /// copyAttributes keeps them.
  [[noreturn]] void setAttributes(const EncodingAlgorithmAttributes& other);

  /// Replaces the whole list by a copy of another one, typed values included (EncodedData::copy).
  /// Where it throws, the list is what it was.
  /// @throws EncodingAlgorithmException for a typed value that cannot be copied
  /// @throws std::length_error "vector::reserve" for a negative length
  void copyAttributes(const EncodingAlgorithmAttributes& other);

  /// Appends an attribute whose value is text. Nothing is checked, not even that names are unique.
  void addAttribute(const std::string& uri, const std::string& localName, const std::string& qName,
                    const std::string& type, const std::string& value);
  /// Appends an attribute with a typed value.
  /// @param uri            namespace name, empty without a namespace
  /// @param localName      name without prefix
  /// @param qName          name with prefix and colon
  /// @param type           type text, for example "CDATA"
  /// @param algorithmURI   URI of an application-defined algorithm, otherwise empty
  /// @param algorithmIndex number of the algorithm; see Tavrin::algorithms
  /// @param data           the value, which the list owns from now on
  void addAttribute(const std::string& uri, const std::string& localName, const std::string& qName,
                    const std::string& type, const std::string& algorithmURI, int algorithmIndex,
                    std::unique_ptr<EncodedData> data);

  std::vector<std::unique_ptr<Attribute>> attributes_;  ///< The attributes, in order.

 private:
  TAVRIN_LOCAL const Attribute& at(int index) const;
};

}  // namespace Tavrin
