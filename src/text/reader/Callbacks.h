#pragma once

#include <expat.h>

#include <string>

#include "EventTarget.h"

namespace Tavrin {

/// Text that expat may leave out; absent text is empty.
inline std::string textOrEmpty(const XML_Char* text) { return text ? text : std::string(); }

/// The mode of an attribute's declaration (XML 1.0, production 60); empty for a plain default.
inline const char* defaultMode(const XML_Char* defaultValue, int isRequired) {
  if (defaultValue) return isRequired ? "#FIXED" : "";
  return isRequired ? "#REQUIRED" : "#IMPLIED";
}

/// expat's callbacks for events that all readers of XML text deliver alike.
struct Callbacks {
  static EventTarget& from(void* userData) { return *static_cast<EventTarget*>(userData); }

  static void endNamespaceHandler(void* userData, const XML_Char* prefix);
  static void characterDataHandler(void* userData, const XML_Char* text, int length);
  static void processingInstructionHandler(void* userData, const XML_Char* target,
                                           const XML_Char* data);
  static void startCdataSectionHandler(void* userData);
  static void endCdataSectionHandler(void* userData);
  static void commentHandler(void* userData, const XML_Char* text);
  static void startDoctypeDeclHandler(void* userData, const XML_Char* name,
                                      const XML_Char* systemId, const XML_Char* publicId,
                                      int hasInternalSubset);
  static void endDoctypeDeclHandler(void* userData);
  static void elementDeclHandler(void* userData, const XML_Char* name, XML_Content* model);
};

}  // namespace Tavrin
