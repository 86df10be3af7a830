#pragma once

#include <Tavrin/Attributes.h>

#include <memory>
#include <ostream>
#include <string>

#include "paths/NamespaceScope.h"

namespace tool {

/// How elements are printed that are results, with all that is inside of them.
class ElementForm {
 public:
  struct Tag {
    const std::string& uri;
    const std::string& localName;
    const std::string& qName;
    const Tavrin::Attributes& attributes;
    const NamespaceScope& scope;
  };

  virtual ~ElementForm() = default;

  /// An element comes that is a result, and in no other one.
  /// @return what its tag needs behind its name so that it can stand alone
  virtual std::string begin(const NamespaceScope& scope) = 0;
  /// Likewise of one that is inside of another result. Writes what has to stand in front of it.
  virtual std::string beginInner(const NamespaceScope& scope) = 0;
  /// Writes the tag in one piece, whichever element it is of.
  virtual void startElement(const Tag& tag) = 0;
  virtual void endElement(const std::string& uri, const std::string& localName,
                          const std::string& qName) = 0;
  virtual void characters(const std::string& text) = 0;
  virtual void comment(const std::string& text) = 0;
  virtual void instruction(const std::string& target, const std::string& data) = 0;
  virtual void startCDATA() {}
  virtual void endCDATA() {}
};

/// As XML text that is well-formed by itself: the outermost tag declares all namespaces in scope.
std::unique_ptr<ElementForm> makeXMLForm(std::ostream& out);
/// As JSON objects.
std::unique_ptr<ElementForm> makeJSONForm(std::ostream& out);
/// As their text, or as a JSON string of it without the quotes.
std::unique_ptr<ElementForm> makeTextForm(std::ostream& out, bool isJSON);

/// Writes a text as it is, or as it stands between the quotes of a JSON string.
void writeText(std::ostream& out, const std::string& text, bool isJSON);

}  // namespace tool
