#pragma once

#include <string>
#include <vector>

#include "../../sax/AttributesByName.h"
#include "AttributeTypes.h"

namespace Tavrin::text {

/// The attributes of the current start tag. The next one reuses the memory, and a name that had the
/// same position in the previous start tag is not split again.
///
/// For an attribute that is not in the list, it throws what AttributesImpl throws.
class ElementAttributes final : public AttributesByName<ElementAttributes, Attributes> {
 public:
  void clear() { size_ = 0; }
  /// Appends an attribute by the name that expat gives.
  /// @param splits whether expat has processed names for namespaces
  void add(const char* name, const char* value, bool splits);
  /// Appends a namespace declaration.
  /// @param prefix  empty for the default namespace
  /// @param inXmlns whether it is in the namespace of `xmlns`, or in none
  void addDeclaration(const std::string& prefix, const std::string& uri, bool inXmlns);
  /// How many octets the names and values have from an attribute on.
  std::size_t octetsFrom(std::size_t first) const;
  /// Sets the types; an attribute that is not declared is "CDATA".
  /// @param types null where nothing is declared
  void setTypes(const AttributeTypes::OfElement* types);

  using AttributesByName::getType;
  using AttributesByName::getValue;
  int getLength() const override { return static_cast<int>(size_); }
  const std::string& getURI(int index) const override { return at(index).uri; }
  const std::string& getLocalName(int index) const override { return at(index).localName; }
  const std::string& getQName(int index) const override { return at(index).qName; }
  const std::string& getType(int index) const override { return at(index).type; }
  const std::string& getValue(int index) const override { return at(index).value; }

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
  const Record& at(int index) const { return records_[checkIndex(index, size_)]; }

  std::vector<Record> records_;
  std::size_t size_ = 0;  // How many records are in use.
};

}  // namespace Tavrin::text
