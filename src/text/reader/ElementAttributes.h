#pragma once

#include <Tavrin/Attributes.h>

#include <string>
#include <vector>

#include "AttributeTypes.h"

namespace Tavrin {

/// The attributes of one start tag after another. Records and their strings are used again, and a
/// name that stood at the same position in the last start tag is not taken apart again.
///
/// It answers like AttributesImpl, also to what is not in it.
class ElementAttributes : public Attributes {
 public:
  void clear() { size_ = 0; }
  /// Appends an attribute by the name that expat gives.
  /// @param splits whether expat has processed the name for namespaces, always the same
  void add(const char* name, const char* value, bool splits);
  /// Appends a namespace declaration.
  /// @param prefix    empty for the default namespace
  /// @param inXmlns whether it is in the namespace of `xmlns`
  void addDeclaration(const std::string& prefix, const std::string& uri, bool inXmlns);
  /// How many octets the names and values of attributes take.
  /// @param first the position of the first that counts
  std::size_t octetsFrom(std::size_t first) const;
  /// Sets the types; an attribute that is not declared is "CDATA".
  /// @param types null where nothing is declared
  void setTypes(const AttributeTypes::OfElement* types);

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

 private:
  struct Record {
    std::string name;  // As expat gave it; empty for a namespace declaration.
    std::string uri;
    std::string localName;
    std::string qName;
    std::string type = "CDATA";
    std::string value;
  };

  Record& append();
  const Record& at(int index) const;

  std::vector<Record> records_;
  std::size_t size_ = 0;  // How many records are in use.
};

}  // namespace Tavrin
