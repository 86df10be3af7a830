#include <Tavrin/XMLReader.h>

#include "Properties.h"

namespace Tavrin {

void XMLReader::setFeature(const std::string& name, bool) { throwFeatureNotRecognized(name); }

bool XMLReader::getFeature(const std::string& name) { throwFeatureNotRecognized(name); }

void XMLReader::setProperty(const std::string& name, void*) { throwPropertyNotRecognized(name); }

void* XMLReader::getProperty(const std::string& name) { throwPropertyNotRecognized(name); }

void XMLReader::parse(const void*, unsigned long, bool) {
  throw SAXNotRecognizedException("parse not implemented");
}

}  // namespace Tavrin
