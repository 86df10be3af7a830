#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLReader_XML10.h>

#include "../../sax/Properties.h"
#include "XML10Driver.h"

namespace Tavrin {

using text::XML10Settings;

namespace {

/// The switch of a feature, or null.
bool* find(const std::string& name, XML10Settings::Features& switches) {
  if (name == features::namespaces) return &switches.namespaces;
  if (name == features::namespacePrefixes) return &switches.namespacePrefixes;
  if (name == features::externalGeneralEntities) return &switches.externalGeneralEntities;
  if (name == features::externalParameterEntities) return &switches.externalParameterEntities;
  if (name == features::coalesceCharacters) return &switches.coalesceCharacters;
  if (name == features::xmlnsURIs) return &switches.xmlnsURIs;
  return nullptr;
}

void checkTextScanner(const void* value) {
  if (value == nullptr) return;
  const std::string& scanner = *static_cast<const std::string*>(value);
  if (scanner == XML10Settings::kAutomatic || scanner == XML10Settings::kExpat) return;
  throw SAXException(std::string("Property \"") + properties::textScanner + "\" must be \"" +
                     XML10Settings::kAutomatic + "\" or \"" + XML10Settings::kExpat + '"');
}

}  // namespace

class XMLReader_XML10::Driver : public text::XML10Driver {
 public:
  using XML10Driver::XML10Driver;

  template <typename Access>
  bool accessProperty(Access access) {
    constexpr Limits kStandard;
    Limits& limits = settings.limits;
    return access(properties::lexicalHandler, pointers.lexical) ||
           access(properties::declarationHandler, pointers.decl) ||
           access(properties::baseURI, settings.baseURI) ||
           access(properties::reparseDeferral, settings.reparseDeferral,
                  text::XML10Settings::kReparseDeferral) ||
           access(properties::textScanner, settings.textScanner,
                  std::string(XML10Settings::kAutomatic)) ||
           access(properties::entityAmplificationFactor, limits.entityAmplificationFactor,
                  kStandard.entityAmplificationFactor) ||
           access(properties::entityAmplificationThreshold, limits.entityAmplificationThreshold,
                  kStandard.entityAmplificationThreshold) ||
           access(properties::maximumDepth, limits.maximumDepth, kStandard.maximumDepth) ||
           access(properties::maximumCoalescedOctets, limits.maximumCoalescedOctets,
                  kStandard.maximumCoalescedOctets) ||
           access(properties::documentXMLVersion, ReadOnly{facts.version}) ||
           access(properties::standalone, ReadOnly{facts.standalone}) ||
           access(properties::lossCount, ReadOnly{facts.losses});
  }
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

void XMLReader_XML10::stop() { driver_->stop(); }

bool XMLReader_XML10::isStopped() const { return driver_->isStopped(); }

void XMLReader_XML10::pause() { driver_->pause(); }

bool XMLReader_XML10::isPaused() const { return driver_->isPaused(); }

void XMLReader_XML10::resume() { driver_->resume(); }

void XMLReader_XML10::setFeature(const std::string& name, bool value) {
  if (bool* place = find(name, driver_->settings.features)) {
    *place = value;
  } else if (name == features::validation) {
    if (value) throw SAXException("Feature \"" + name + "\" not supported");
  } else if (name == features::isStandalone) {
    throwCanOnlyBeAsked("Feature", name);
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
  if (name == properties::entityAmplificationFactor) checkFactor(name, value);
  if (name == properties::textScanner) checkTextScanner(value);
  const bool isKnown = driver_->accessProperty(PropertySetter{name, value});
  if (!isKnown) XMLReader::setProperty(name, value);
}

void* XMLReader_XML10::getProperty(const std::string& name) {
  if (name == text::kDriverProperty) return static_cast<text::XML10Driver*>(driver_.get());
  void* value = nullptr;
  const bool isKnown = driver_->accessProperty(PropertyGetter{name, value});
  return isKnown ? value : XMLReader::getProperty(name);
}

void XMLReader_XML10::setLimits(const Limits& limits) {
  checkFactor(properties::entityAmplificationFactor, &limits.entityAmplificationFactor);
  driver_->settings.limits = limits;
}

XMLReader_XML10::Limits XMLReader_XML10::getLimits() const { return driver_->settings.limits; }

void XMLReader_XML10::setReparseDeferral(bool value) { driver_->settings.reparseDeferral = value; }

bool XMLReader_XML10::getReparseDeferral() const { return driver_->settings.reparseDeferral; }

void XMLReader_XML10::setLexicalHandler(LexicalHandler* handler) {
  driver_->pointers.lexical = handler;
}

LexicalHandler* XMLReader_XML10::getLexicalHandler() const { return driver_->pointers.lexical; }

void XMLReader_XML10::setDeclHandler(DeclHandler* handler) { driver_->pointers.decl = handler; }

DeclHandler* XMLReader_XML10::getDeclHandler() const { return driver_->pointers.decl; }

}  // namespace Tavrin
