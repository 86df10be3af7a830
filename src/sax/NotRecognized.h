#pragma once

#include <Tavrin/Exceptions.h>

#include <string>

namespace Tavrin {

// Readers and writers refuse an unknown identifier with the same words; the identifier stands in
// the message exactly as the caller gave it.

[[noreturn]] inline void throwFeatureNotRecognized(const std::string& name) {
  throw SAXNotRecognizedException("Feature \"" + name + "\" not recognized");
}

[[noreturn]] inline void throwPropertyNotRecognized(const std::string& name) {
  throw SAXNotRecognizedException("Property \"" + name + "\" not recognized");
}

}  // namespace Tavrin
