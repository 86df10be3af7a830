#include <Tavrin/Identifiers.h>

#include "XML10Document.h"

namespace Tavrin {

namespace {

[[noreturn]] void throwNotSettable(const char* kind, const std::string& name) {
  throw SAXException(std::string(kind) + " \"" + name + "\" can only be asked");
}

[[noreturn]] void throwBadValue(const std::string& name, const char* wanted) {
  throw SAXException("Property \"" + name + "\" must be " + wanted);
}

}  // namespace

bool* XMLReader_XML10::Settings::find(const std::string& name) {
  struct Switch {
    const char* name;
    bool Features::*place;
  };
  static constexpr Switch kSwitches[] = {
      {Tavrin::features::namespaces, &Features::namespaces},
      {Tavrin::features::namespacePrefixes, &Features::namespacePrefixes},
      {Tavrin::features::externalGeneralEntities, &Features::externalGeneralEntities},
      {Tavrin::features::externalParameterEntities, &Features::externalParameterEntities},
      {Tavrin::features::xmlnsURIs, &Features::xmlnsURIs},
  };
  for (const Switch& entry : kSwitches) {
    if (name == entry.name) return &(features.*entry.place);
  }
  return nullptr;
}

void XMLReader_XML10::setFeature(const std::string& name, bool value) {
  if (bool* place = settings_->find(name)) {
    *place = value;
  } else if (name == features::validation) {
    if (value) throw SAXException("Feature \"" + name + "\" not supported");
  } else if (name == features::isStandalone) {
    throwNotSettable("Feature", name);
  } else {
    XMLReader_Expat::setFeature(name, value);
  }
}

bool XMLReader_XML10::getFeature(const std::string& name) {
  if (const bool* place = settings_->find(name)) return *place;
  if (name == features::validation) return false;
  if (name == features::isStandalone) return settings_->standalone.value_or(false);
  return XMLReader_Expat::getFeature(name);
}

void XMLReader_XML10::setProperty(const std::string& name, void* value) {
  Settings& settings = *settings_;
  if (name == properties::baseURI) {
    settings.baseURI.reset();
    if (value) settings.baseURI = *static_cast<const std::string*>(value);
  } else if (name == properties::entityAmplificationFactor) {
    const double factor =
        value ? *static_cast<const double*>(value) : Settings::kAmplificationFactor;
    if (!(factor >= 1)) throwBadValue(name, "at least 1");  // Nor is NaN.
    settings.amplificationFactor = factor;
  } else if (name == properties::entityAmplificationThreshold) {
    settings.amplificationThreshold =
        value ? *static_cast<const std::uint64_t*>(value) : Settings::kAmplificationThreshold;
  } else if (name == properties::documentXMLVersion || name == properties::standalone) {
    throwNotSettable("Property", name);
  } else {
    XMLReader_Expat::setProperty(name, value);
  }
}

void* XMLReader_XML10::getProperty(const std::string& name) {
  const auto addressOf = [](auto& value) -> void* { return value ? &*value : nullptr; };
  Settings& settings = *settings_;
  if (name == properties::baseURI) return addressOf(settings.baseURI);
  if (name == properties::entityAmplificationFactor) return &settings.amplificationFactor;
  if (name == properties::entityAmplificationThreshold) return &settings.amplificationThreshold;
  if (name == properties::documentXMLVersion) return addressOf(settings.version);
  if (name == properties::standalone) return addressOf(settings.standalone);
  return XMLReader_Expat::getProperty(name);
}

}  // namespace Tavrin
