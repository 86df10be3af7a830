#include <Tavrin/Factories.h>
#include <Tavrin/XMLWriter.h>

#include "Registry.h"

namespace Tavrin {

std::map<std::string, const XMLWriterType*>* XMLWriterFactory::typeMap_ = nullptr;

XMLWriterType::XMLWriterType(const std::string& name, CreateFunction create)
    : name_(name), create_(create) {
  XMLWriterFactory::addType(this);
}

XMLWriterType::~XMLWriterType() { XMLWriterFactory::removeType(this); }

void XMLWriterFactory::addType(const XMLWriterType* type) {
  Registry<XMLWriterType>::add(typeMap_, type);
}

void XMLWriterFactory::removeType(const XMLWriterType* type) {
  Registry<XMLWriterType>::remove(typeMap_, type);
}

std::unique_ptr<XMLWriter> XMLWriterFactory::createXMLWriter(const std::string& name) {
  const XMLWriterType* type = Registry<XMLWriterType>::find(typeMap_, name);
  if (type == nullptr) throw SAXException("Unknown XML Writer: \"" + name + "\"");
  return type->create_();
}

std::unique_ptr<XMLWriter> XMLWriterFactory::createXMLWriter() { return createXMLWriter("XML"); }

std::vector<std::string> XMLWriterFactory::getTypeNames() {
  return Registry<XMLWriterType>::names(typeMap_);
}

}  // namespace Tavrin
