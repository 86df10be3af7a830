#include <Tavrin/Identifiers.h>

#include "XML10Driver.h"

namespace Tavrin {

namespace {

[[noreturn]] void throwNotSettable(const char* kind, const std::string& name) {
  throw SAXException(std::string(kind) + " \"" + name + "\" can only be asked");
}

[[noreturn]] void throwBadValue(const std::string& name, const char* wanted) {
  throw SAXException("Property \"" + name + "\" must be " + wanted);
}

}  // namespace

bool* XML10Settings::find(const std::string& name) {
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

const XMLReaderType XMLReader_XML10::type_("XML10", &XMLReader_XML10::create);

XMLReader_XML10::State::State(XMLReader_XML10& reader)
    : driver({reader.contentHandler_, reader.errorHandler_, reader.entityResolver_,
              reader.dtdHandler_, settings.declHandler, settings.lexicalHandler},
             settings) {}

XMLReader_XML10::XMLReader_XML10() : state_(std::make_unique<State>(*this)) {}

XMLReader_XML10::~XMLReader_XML10() = default;

std::unique_ptr<XMLReader> XMLReader_XML10::create() { return std::make_unique<XMLReader_XML10>(); }

void XMLReader_XML10::parse(std::istream& stream) { state_->driver.parse(stream); }

void XMLReader_XML10::parse(const void* data, unsigned long size, bool isFinal) {
  state_->driver.parse(data, size, isFinal);
}

void XMLReader_XML10::setFeature(const std::string& name, bool value) {
  if (bool* place = state_->settings.find(name)) {
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
  if (const bool* place = state_->settings.find(name)) return *place;
  if (name == features::validation) return false;
  if (name == features::isStandalone) return state_->settings.standalone.value_or(false);
  return XMLReader::getFeature(name);
}

void XMLReader_XML10::setProperty(const std::string& name, void* value) {
  XML10Settings& settings = state_->settings;
  if (name == properties::lexicalHandler) {
    settings.lexicalHandler = static_cast<LexicalHandler*>(value);
  } else if (name == properties::declarationHandler) {
    settings.declHandler = static_cast<DeclHandler*>(value);
  } else if (name == properties::baseURI) {
    settings.baseURI.reset();
    if (value) settings.baseURI = *static_cast<const std::string*>(value);
  } else if (name == properties::entityAmplificationFactor) {
    const double factor =
        value ? *static_cast<const double*>(value) : XML10Settings::kAmplificationFactor;
    if (!(factor >= 1)) throwBadValue(name, "at least 1");  // Nor is NaN.
    settings.amplificationFactor = factor;
  } else if (name == properties::entityAmplificationThreshold) {
    settings.amplificationThreshold =
        value ? *static_cast<const std::uint64_t*>(value) : XML10Settings::kAmplificationThreshold;
  } else if (name == properties::maximumDepth) {
    settings.maximumDepth =
        value ? *static_cast<const std::uint64_t*>(value) : XML10Settings::kMaximumDepth;
  } else if (name == properties::documentXMLVersion || name == properties::standalone ||
             name == properties::lossCount) {
    throwNotSettable("Property", name);
  } else {
    XMLReader::setProperty(name, value);
  }
}

void* XMLReader_XML10::getProperty(const std::string& name) {
  const auto addressOf = [](auto& value) -> void* { return value ? &*value : nullptr; };
  XML10Settings& settings = state_->settings;
  if (name == properties::lexicalHandler) return settings.lexicalHandler;
  if (name == properties::declarationHandler) return settings.declHandler;
  if (name == properties::baseURI) return addressOf(settings.baseURI);
  if (name == properties::entityAmplificationFactor) return &settings.amplificationFactor;
  if (name == properties::entityAmplificationThreshold) return &settings.amplificationThreshold;
  if (name == properties::documentXMLVersion) return addressOf(settings.version);
  if (name == properties::standalone) return addressOf(settings.standalone);
  if (name == properties::maximumDepth) return &settings.maximumDepth;
  if (name == properties::lossCount) return &settings.losses;
  return XMLReader::getProperty(name);
}

}  // namespace Tavrin
