#pragma once

#include <Tavrin/Exceptions.h>
#include <Tavrin/XMLReader.h>

namespace Tavrin {

/// Sets a handler that is a property. A reader that does not know it has no such events.
inline void setIfKnown(XMLReader& reader, const char* property, void* handler) {
  try {
    reader.setProperty(property, handler);
  } catch (const SAXNotRecognizedException&) {
  }
}

}  // namespace Tavrin
