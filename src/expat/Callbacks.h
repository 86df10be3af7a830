#pragma once

#include <Tavrin/XMLReader_Expat.h>
#include <expat.h>

#include <cstdint>
#include <istream>
#include <string>

namespace Tavrin {

/// The block in which input is read, straight into expat's own buffer.
inline constexpr int kBlockSize = 1024 * 1024;

/// Separates the parts of a name that expat has processed for namespaces: namespace name, local
/// name, prefix. A line feed cannot stand in a name, and in a namespace name only as a reference.
inline constexpr XML_Char kNameSeparator = '\n';

/// Feeds a whole stream to a parser, in blocks.
/// @return the parser's last status; XML_STATUS_ERROR also when it gives no buffer
XML_Status parseStream(XML_Parser parser, std::istream& stream, int blockSize);

inline std::int32_t lineOf(XML_Parser parser) {
  return static_cast<std::int32_t>(XML_GetCurrentLineNumber(parser));
}

// expat counts columns from 0.
inline std::int32_t columnOf(XML_Parser parser) {
  return static_cast<std::int32_t>(XML_GetCurrentColumnNumber(parser) + 1);
}

/// Text that expat may leave out; absent text is empty.
inline std::string textOrEmpty(const XML_Char* text) { return text ? text : std::string(); }

/// The mode of an attribute's declaration (XML 1.0, production 60); empty for a plain default.
inline const char* defaultMode(const XML_Char* defaultValue, int isRequired) {
  if (defaultValue) return isRequired ? "#FIXED" : "";
  return isRequired ? "#REQUIRED" : "#IMPLIED";
}

/// expat's callbacks. The user data of every parser, also that of an external entity, is the
/// reader.
struct XMLReader_Expat::Callbacks {
  static void install(XML_Parser parser, XMLReader_Expat* reader);

  // Element and namespace events: ElementEvents.cpp.
  static void startElementHandler(void* userData, const XML_Char* name,
                                  const XML_Char** attributes);
  static void endElementHandler(void* userData, const XML_Char* name);
  static void startNamespaceHandler(void* userData, const XML_Char* prefix, const XML_Char* uri);
  static void endNamespaceHandler(void* userData, const XML_Char* prefix);

  // Content and lexical events: ContentEvents.cpp.
  static void characterDataHandler(void* userData, const XML_Char* text, int length);
  static void processingInstructionHandler(void* userData, const XML_Char* target,
                                           const XML_Char* data);
  static void skippedEntityHandler(void* userData, const XML_Char* name, int isParameterEntity);
  static void startCdataSectionHandler(void* userData);
  static void endCdataSectionHandler(void* userData);
  static void commentHandler(void* userData, const XML_Char* text);

  // DTD, declaration and external entity events: DTDEvents.cpp.
  static void startDoctypeDeclHandler(void* userData, const XML_Char* name,
                                      const XML_Char* systemId, const XML_Char* publicId,
                                      int hasInternalSubset);
  static void endDoctypeDeclHandler(void* userData);
  static void notationDeclHandler(void* userData, const XML_Char* name, const XML_Char* base,
                                  const XML_Char* systemId, const XML_Char* publicId);
  static void entityDeclHandler(void* userData, const XML_Char* name, int isParameterEntity,
                                const XML_Char* value, int valueLength, const XML_Char* base,
                                const XML_Char* systemId, const XML_Char* publicId,
                                const XML_Char* notationName);
  static void attlistDeclHandler(void* userData, const XML_Char* elementName,
                                 const XML_Char* attributeName, const XML_Char* type,
                                 const XML_Char* defaultValue, int isRequired);
  static void elementDeclHandler(void* userData, const XML_Char* name, XML_Content* model);
  static int externalEntityRefHandler(XML_Parser argument, const XML_Char* context,
                                      const XML_Char* base, const XML_Char* systemId,
                                      const XML_Char* publicId);

  static XMLReader_Expat& from(void* userData) { return *static_cast<XMLReader_Expat*>(userData); }

  /// Runs a callback's work. An exception must not unwind through expat, which is C: the reader
  /// takes it, and the parse stops.
  template <typename Work>
  static void guard(XMLReader_Expat& reader, Work work) {
    try {
      if (reader.ready_ || reader.makeReady()) work();
    } catch (...) {
      reader.handlerThrew();
    }
  }

  /// Runs the work that calls a handler, where it is set. The handler is a reference to the
  /// reader's own pointer, because an earlier event may have taken it off.
  template <typename Handler, typename Work>
  static void deliver(XMLReader_Expat& reader, Handler* const& handler, Work work) {
    if (!handler) return;
    guard(reader, [&] {
      if (handler) work(*handler);
    });
  }

 private:
  static XML_Status readExternalEntity(XMLReader_Expat& reader, const XML_Char* context,
                                       const std::string& publicId, const std::string& systemId);
};

}  // namespace Tavrin
