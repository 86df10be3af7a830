#include <Tavrin/Factories.h>

#include "BuiltInTypes.h"
#include "Registry.h"

namespace Tavrin {

std::map<std::string, const XMLReaderType*>* XMLReaderFactory::typeMap_ = nullptr;
std::map<std::string, const XMLWriterType*>* XMLWriterFactory::typeMap_ = nullptr;

namespace {

using Readers = Registry<XMLReaderType>;
using Writers = Registry<XMLWriterType>;

[[gnu::used]] const auto* const keptByPrograms = builtInTypes;

}  // namespace

XMLReaderType::XMLReaderType(const std::string& name, CreateFunction create)
    : name_(name), create_(create) {
  XMLReaderFactory::addType(this);
}
XMLReaderType::~XMLReaderType() { XMLReaderFactory::removeType(this); }

void XMLReaderFactory::addType(const XMLReaderType* type) { Readers::add(typeMap_, type); }
void XMLReaderFactory::removeType(const XMLReaderType* type) { Readers::remove(typeMap_, type); }

std::unique_ptr<XMLReader> XMLReaderFactory::createXMLReader(const std::string& name) {
  const XMLReaderType* type = Readers::find(typeMap_, name);
  if (type == nullptr) throw SAXException("Unknown XML Reader: \"" + name + "\"");
  return type->create_();
}
std::unique_ptr<XMLReader> XMLReaderFactory::createXMLReader() { return createXMLReader("Expat"); }
std::vector<std::string> XMLReaderFactory::getTypeNames() { return Readers::names(typeMap_); }

XMLWriterType::XMLWriterType(const std::string& name, CreateFunction create)
    : name_(name), create_(create) {
  XMLWriterFactory::addType(this);
}
XMLWriterType::~XMLWriterType() { XMLWriterFactory::removeType(this); }

void XMLWriterFactory::addType(const XMLWriterType* type) { Writers::add(typeMap_, type); }
void XMLWriterFactory::removeType(const XMLWriterType* type) { Writers::remove(typeMap_, type); }

std::unique_ptr<XMLWriter> XMLWriterFactory::createXMLWriter(const std::string& name) {
  const XMLWriterType* type = Writers::find(typeMap_, name);
  if (type == nullptr) throw SAXException("Unknown XML Writer: \"" + name + "\"");
  return type->create_();
}
std::unique_ptr<XMLWriter> XMLWriterFactory::createXMLWriter() { return createXMLWriter("XML"); }
std::vector<std::string> XMLWriterFactory::getTypeNames() { return Writers::names(typeMap_); }

}  // namespace Tavrin
