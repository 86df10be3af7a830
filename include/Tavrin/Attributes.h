/// @file
/// Attribute lists: the interface through which a start tag's attributes are read, and the list
/// that owns its strings.
#pragma once

#include <Tavrin/Export.h>

#include <string>
#include <vector>

namespace Tavrin {

/// Read-only list of the attributes of one start tag, in document order.
///
/// A list that ContentHandler::startElement gets is valid during that call only. Each
/// implementation defines what happens for a position or name that is not in the list.
class TAVRIN_API Attributes {
 public:
  virtual ~Attributes();

  /// The number of attributes.
  virtual int getLength() const = 0;

  /// @name By position, from 0
  /// @{
  virtual const std::string& getURI(int index) const = 0;        ///< Namespace name, or empty.
  virtual const std::string& getLocalName(int index) const = 0;  ///< Name without prefix.
  virtual const std::string& getQName(int index) const = 0;      ///< Name with prefix and colon.
  virtual const std::string& getType(int index) const = 0;       ///< Type, for example "CDATA".
  virtual const std::string& getValue(int index) const = 0;      ///< Value as text, in UTF-8.
  /// @}

  /// @name By name
  /// Names compare octet for octet; the first match counts.
  /// @{

  /// The position of an attribute, or -1 when there is none of that name.
  virtual int getIndex(const std::string& uri, const std::string& localName) const = 0;
  /// The position of an attribute, or -1 when there is none of that name.
  virtual int getIndex(const std::string& qName) const = 0;
  virtual const std::string& getType(const std::string& uri,
                                     const std::string& localName) const = 0;  ///< Type by name.
  virtual const std::string& getType(const std::string& qName) const = 0;      ///< Type by name.
  virtual const std::string& getValue(const std::string& uri,
                                      const std::string& localName) const = 0;  ///< Value by name.
  virtual const std::string& getValue(const std::string& qName) const = 0;      ///< Value by name.
  /// @}
};

/// The plain attribute list: records of five strings, searched linearly.
///
/// Access by a position outside the list, or by a name that is not in it, throws std::out_of_range
/// with the text "vector::_M_range_check"; ask getIndex first when an attribute may be absent.
class TAVRIN_API AttributesImpl : public Attributes {
 public:
  /// One attribute.
  struct Attribute {
    std::string uri;        ///< Namespace name, empty without a namespace.
    std::string localName;  ///< Name without prefix.
    std::string qName;  ///< Name as written: prefix, colon, local name, or the local name alone.
    std::string type;   ///< Type text.
    std::string value;  ///< Value.
  };

  ~AttributesImpl() override = default;

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

  /// The position of the first attribute with this namespace name and local name, or -1.
  int findAttribute(const std::string& uri, const std::string& localName) const;
  /// The position of the first attribute with this qualified name, or -1.
  int findAttribute(const std::string& qName) const;

  /// Replaces the whole list by a copy of another one, record by record in its order.
  void setAttributes(const Attributes& other);

  /// Appends one attribute. Nothing is checked: equal names may stand more than once.
  void addAttribute(const std::string& uri, const std::string& localName, const std::string& qName,
                    const std::string& type, const std::string& value);

  /// The records, in document order.
  std::vector<Attribute> attributes_;

 private:
  TAVRIN_LOCAL const Attribute& at(int index) const;
};

}  // namespace Tavrin
