#pragma once

#include <Tavrin/XMLReader_XML10.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <exception>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "AttributeTypes.h"
#include "Callbacks.h"

namespace Tavrin {

/// What an application sets and asks. All of it outlives the document.
struct XMLReader_XML10::Settings {
  struct Features {
    bool namespaces = true;
    bool namespacePrefixes = false;
    bool externalGeneralEntities = true;
    bool externalParameterEntities = true;
    bool xmlnsURIs = false;
  };

  static constexpr double kAmplificationFactor = 100;
  static constexpr std::uint64_t kAmplificationThreshold = std::uint64_t{8} * 1024 * 1024;

  /// The switch of a feature, or null.
  bool* find(const std::string& name);

  Features features;
  std::optional<std::string> baseURI;
  double amplificationFactor = kAmplificationFactor;
  std::uint64_t amplificationThreshold = kAmplificationThreshold;

  // Of the last document that has begun.
  std::optional<std::string> version;
  std::optional<bool> standalone;
};

/// An external entity that can be referred to.
struct XMLReader_XML10::DeclaredEntity {
  std::string name;  ///< As SAX2 reports it: "[dtd]", "%name" or "name".
  std::string publicId;
  std::string systemId;  ///< Resolved.
};

/// What belongs to the open document.
struct XMLReader_XML10::Document {
  /// An external entity that is being read, or the document itself.
  struct OpenEntity {
    XML_Parser parser;
    const DeclaredEntity* entity;
  };

  Document(XML_Parser parser, const Settings& settings)
      : features(settings.features),
        self{{}, {}, settings.baseURI.value_or(std::string())},
        open{{parser, &self}} {}

  const OpenEntity& current() const { return open.back(); }
  std::string resolve(const XML_Char* systemId) const;

  const Settings::Features features;
  const DeclaredEntity self;
  std::vector<OpenEntity> open;

  /// The external entities that are declared. What expat calls the base of an entity is its number
  /// here: expat hands on with a reference what was set when the entity was declared. The external
  /// subset is number 0 and has no base.
  std::deque<DeclaredEntity> entities{1};

  // What the XML declaration states.
  std::string version = "1.0";
  std::optional<bool> standalone;

  AttributeTypes attributeTypes;
  /// The namespace declarations of the start tag that follows, while they are to be attributes.
  std::vector<std::pair<std::string, std::string>> declarations;
  /// What the parse failed for.
  std::exception_ptr failure;
  /// What an encoding is refused for, to follow expat's message.
  std::string encodingProblem;
};

/// The callbacks in which this reader differs from its base.
struct XMLReader_XML10::Callbacks : XMLReader_Expat::Callbacks {
  static void install(XML_Parser parser, const Settings::Features& features);

  static XMLReader_XML10& from(void* userData) {
    return static_cast<XMLReader_XML10&>(XMLReader_Expat::Callbacks::from(userData));
  }

  // Elements and content: XML10Content.cpp.
  static void startElementHandler(void* userData, const XML_Char* name,
                                  const XML_Char** attributes);
  static void endElementHandler(void* userData, const XML_Char* name);
  static void startNamespaceHandler(void* userData, const XML_Char* prefix, const XML_Char* uri);
  static void skippedEntityHandler(void* userData, const XML_Char* name, int isParameterEntity);

  // Declarations: XML10Declarations.cpp.
  static void xmlDeclHandler(void* userData, const XML_Char* version, const XML_Char* encoding,
                             int standalone);
  static void startDoctypeDeclHandler(void* userData, const XML_Char* name,
                                      const XML_Char* systemId, const XML_Char* publicId,
                                      int hasInternalSubset);
  static void notationDeclHandler(void* userData, const XML_Char* name, const XML_Char* base,
                                  const XML_Char* systemId, const XML_Char* publicId);
  static void entityDeclHandler(void* userData, const XML_Char* name, int isParameterEntity,
                                const XML_Char* value, int valueLength, const XML_Char* base,
                                const XML_Char* systemId, const XML_Char* publicId,
                                const XML_Char* notationName);
  static void elementDeclHandler(void* userData, const XML_Char* name, XML_Content* model);
  static void attlistDeclHandler(void* userData, const XML_Char* elementName,
                                 const XML_Char* attributeName, const XML_Char* type,
                                 const XML_Char* defaultValue, int isRequired);

  // External entities and encodings: XML10Entities.cpp.
  static int externalEntityRefHandler(XML_Parser argument, const XML_Char* context,
                                      const XML_Char* base, const XML_Char* systemId,
                                      const XML_Char* publicId);
  static int unknownEncodingHandler(void* data, const XML_Char* name, XML_Encoding* encoding);
};

}  // namespace Tavrin
