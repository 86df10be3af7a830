#pragma once

#include <Tavrin/XMLReader_Expat.h>

#include "Callbacks.h"
#include "ElementName.h"
#include "Parser.h"

namespace Tavrin {

class XMLReader_Expat::Locator_Expat : public Locator {
 public:
  explicit Locator_Expat(XML_Parser parser) : parser_(parser) {}

  std::string getPublicId() const override { return {}; }
  std::string getSystemId() const override { return {}; }
  std::int32_t getLineNumber() const override { return lineOf(parser_); }
  std::int32_t getColumnNumber() const override { return columnOf(parser_); }

 private:
  XML_Parser parser_;
};

/// Leads a reader through its documents. It stands apart so that a class derived from the reader
/// finds no names there that it might use itself.
class XMLReader_Expat::Driver final : public EventTarget {
 public:
  explicit Driver(XMLReader_Expat& reader);

  void parse(std::istream& stream);
  void parse(const void* data, unsigned long size, bool isFinal);
  /// Frees what belongs to the open document.
  void releaseParser();

 private:
  friend XMLReader_Expat;
  struct Callbacks;

  /// @param parse the work of a call of parse
  template <typename Parse>
  void guardParse(Parse parse);
  void endDocument();
  [[noreturn]] void reportError();
  void handlerThrew() override;
  XML_Status readExternalEntity(const XML_Char* context, const std::string& publicId,
                                const std::string& systemId);

  XMLReader_Expat& reader_;
  bool parsing_ = false;  // A call of parse is on the stack.
  ElementName element_;
};

/// expat's callbacks. Those that this reader has alone are in ExpatElements.cpp and
/// ExpatDeclarations.cpp.
struct XMLReader_Expat::Driver::Callbacks : Tavrin::Callbacks {
  static void install(XML_Parser parser, Driver& driver);

  static Driver& from(void* userData) {
    return static_cast<Driver&>(Tavrin::Callbacks::from(userData));
  }

  static void startElementHandler(void* userData, const XML_Char* name,
                                  const XML_Char** attributes);
  static void endElementHandler(void* userData, const XML_Char* name);
  static void startNamespaceHandler(void* userData, const XML_Char* prefix, const XML_Char* uri);

  static void skippedEntityHandler(void* userData, const XML_Char* name, int isParameterEntity);
  static void notationDeclHandler(void* userData, const XML_Char* name, const XML_Char* base,
                                  const XML_Char* systemId, const XML_Char* publicId);
  static void entityDeclHandler(void* userData, const XML_Char* name, int isParameterEntity,
                                const XML_Char* value, int valueLength, const XML_Char* base,
                                const XML_Char* systemId, const XML_Char* publicId,
                                const XML_Char* notationName);
  static void attlistDeclHandler(void* userData, const XML_Char* elementName,
                                 const XML_Char* attributeName, const XML_Char* type,
                                 const XML_Char* defaultValue, int isRequired);
  static int externalEntityRefHandler(XML_Parser argument, const XML_Char* context,
                                      const XML_Char* base, const XML_Char* systemId,
                                      const XML_Char* publicId);
};

}  // namespace Tavrin
