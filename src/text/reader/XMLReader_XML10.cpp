#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLReader_XML10.h>

#include "XML10Driver.h"

namespace Tavrin {

using text::XML10Settings;

namespace {

[[noreturn]] void throwNotSettable(const char* kind, const std::string& name) {
  throw SAXException(std::string(kind) + " \"" + name + "\" can only be asked");
}

[[noreturn]] void throwBadValue(const std::string& name, const char* wanted) {
  throw SAXException("Property \"" + name + "\" must be " + wanted);
}

/// The switch of a feature, or null.
bool* find(const std::string& name, XML10Settings::Features& switches) {
  if (name == features::namespaces) return &switches.namespaces;
  if (name == features::namespacePrefixes) return &switches.namespacePrefixes;
  if (name == features::externalGeneralEntities) return &switches.externalGeneralEntities;
  if (name == features::externalParameterEntities) return &switches.externalParameterEntities;
  if (name == features::xmlnsURIs) return &switches.xmlnsURIs;
  return nullptr;
}

template <typename Value>
Value valueOr(const void* value, Value fallback) {
  return value ? *static_cast<const Value*>(value) : fallback;
}

}  // namespace

class XMLReader_XML10::Driver : public text::XML10Driver {
  using XML10Driver::XML10Driver;
};

const XMLReaderType XMLReader_XML10::type_("XML10", &XMLReader_XML10::create);

XMLReader_XML10::XMLReader_XML10()
    : driver_(std::make_unique<Driver>(
          text::HandlerPointers{contentHandler_, errorHandler_, entityResolver_, dtdHandler_})) {}

XMLReader_XML10::~XMLReader_XML10() = default;

std::unique_ptr<XMLReader> XMLReader_XML10::create() { return std::make_unique<XMLReader_XML10>(); }

void XMLReader_XML10::parse(std::istream& stream) { driver_->parse(stream); }

void XMLReader_XML10::parse(const void* data, unsigned long size, bool isFinal) {
  driver_->parse(data, size, isFinal);
}

void XMLReader_XML10::setFeature(const std::string& name, bool value) {
  if (bool* place = find(name, driver_->settings.features)) {
    *place = value;
  } else if (name == features::validation) {
    if (value) throw SAXException("Feature \"" + name + "\" not supported");
  } else if (name == features::isStandalone) {
    throwNotSettable("Feature", name);
  } else {
    XMLReader::setFeature(name, value);
  }
}

bool XMLReader_XML10::getFeature(const std::string& name) {
  if (const bool* place = find(name, driver_->settings.features)) return *place;
  if (name == features::validation) return false;
  if (name == features::isStandalone) return driver_->facts.standalone.value_or(false);
  return XMLReader::getFeature(name);
}

void XMLReader_XML10::setProperty(const std::string& name, void* value) {
  XML10Settings& settings = driver_->settings;
  if (name == properties::lexicalHandler) {
    driver_->handlers.lexical = static_cast<LexicalHandler*>(value);
  } else if (name == properties::declarationHandler) {
    driver_->handlers.decl = static_cast<DeclHandler*>(value);
  } else if (name == properties::baseURI) {
    settings.baseURI.reset();
    if (value) settings.baseURI = *static_cast<const std::string*>(value);
  } else if (name == properties::entityAmplificationFactor) {
    const double factor = valueOr(value, XML10Settings::kAmplificationFactor);
    if (!(factor >= 1)) throwBadValue(name, "at least 1");  // Nor is NaN.
    settings.amplificationFactor = factor;
  } else if (name == properties::entityAmplificationThreshold) {
    settings.amplificationThreshold = valueOr(value, XML10Settings::kAmplificationThreshold);
  } else if (name == properties::maximumDepth) {
    settings.maximumDepth = valueOr(value, XML10Settings::kMaximumDepth);
  } else if (name == properties::documentXMLVersion || name == properties::standalone ||
             name == properties::lossCount) {
    throwNotSettable("Property", name);
  } else {
    XMLReader::setProperty(name, value);
  }
}

void* XMLReader_XML10::getProperty(const std::string& name) {
  const auto addressOf = [](auto& value) -> void* { return value ? &*value : nullptr; };
  XML10Settings& settings = driver_->settings;
  if (name == properties::lexicalHandler) return driver_->handlers.lexical;
  if (name == properties::declarationHandler) return driver_->handlers.decl;
  if (name == properties::baseURI) return addressOf(settings.baseURI);
  if (name == properties::entityAmplificationFactor) return &settings.amplificationFactor;
  if (name == properties::entityAmplificationThreshold) return &settings.amplificationThreshold;
  if (name == properties::documentXMLVersion) return addressOf(driver_->facts.version);
  if (name == properties::standalone) return addressOf(driver_->facts.standalone);
  if (name == properties::maximumDepth) return &settings.maximumDepth;
  if (name == properties::lossCount) return &driver_->facts.losses;
  return XMLReader::getProperty(name);
}

}  // namespace Tavrin
