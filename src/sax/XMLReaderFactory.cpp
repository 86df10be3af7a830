#include <Tavrin/Factories.h>
#include <Tavrin/XMLReader.h>

#include "Registry.h"

namespace Tavrin {

std::map<std::string, const XMLReaderType*>* XMLReaderFactory::typeMap_ = nullptr;

XMLReaderType::XMLReaderType(const std::string& name, CreateFunction create)
    : name_(name), create_(create) {
  XMLReaderFactory::addType(this);
}

XMLReaderType::~XMLReaderType() { XMLReaderFactory::removeType(this); }

void XMLReaderFactory::addType(const XMLReaderType* type) {
  Registry<XMLReaderType>::add(typeMap_, type);
}

void XMLReaderFactory::removeType(const XMLReaderType* type) {
  Registry<XMLReaderType>::remove(typeMap_, type);
}

std::unique_ptr<XMLReader> XMLReaderFactory::createXMLReader(const std::string& name) {
  const XMLReaderType* type = Registry<XMLReaderType>::find(typeMap_, name);
  if (type == nullptr) throw SAXException("Unknown XML Reader: \"" + name + "\"");
  return type->create_();
}

std::unique_ptr<XMLReader> XMLReaderFactory::createXMLReader() { return createXMLReader("Expat"); }

std::vector<std::string> XMLReaderFactory::getTypeNames() {
  return Registry<XMLReaderType>::names(typeMap_);
}

}  // namespace Tavrin
