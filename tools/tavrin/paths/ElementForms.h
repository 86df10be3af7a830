#pragma once

#include <Tavrin/Attributes.h>

#include <memory>
#include <ostream>
#include <string>

#include "paths/NamespaceScope.h"

namespace tool {

/// How elements are printed that are results. All elements in them are handed over, too.
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

  /// A result begins: an element that is in no other one that is printed.
  virtual void begin(const Tag& tag) = 0;
  virtual void end() {}
  /// An element comes that is inside of a result and one itself: writes what has to stand in front
  /// of it. Returns what its tag needs behind its name where it stands alone.
  virtual std::string prepareInner(const NamespaceScope& scope) = 0;
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
