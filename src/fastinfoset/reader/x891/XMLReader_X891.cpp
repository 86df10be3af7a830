#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLReader_X891.h>

#include <algorithm>
#include <limits>

#include "../../Dialect.h"
#include "State.h"

// The reader as an object: creation, properties, failures. Beside it in this folder: Document.cpp
// (header, components, vocabulary), Text.cpp (formats of strings), WellFormed.cpp (checks) and
// Delivery.cpp (what handlers hear). All else is that of XMLReader_FI.

namespace Tavrin {

const XMLReaderType XMLReader_X891::type_("X891", &XMLReader_X891::create);

XMLReader_X891::XMLReader_X891()
    : XMLReader_FI(fastinfoset::kDialectX891), state_(std::make_unique<State>()) {
  maximumTableOctets_ = State::kMaximumTableOctets;
  maximumLiteralOctets_ = State::kMaximumLiteralOctets;
}

XMLReader_X891::~XMLReader_X891() = default;

std::unique_ptr<XMLReader> XMLReader_X891::create() { return std::make_unique<XMLReader_X891>(); }

namespace {

template <typename Value>
void assign(Value& property, const void* value, Value byDefault) {
  property = value ? *static_cast<const Value*>(value) : byDefault;
}

}  // namespace

void XMLReader_X891::setProperty(const std::string& name, void* value) {
  if (name == properties::amplificationFactor) {
    double factor = 0;
    assign(factor, value, State::kAmplificationFactor);
    if (!(factor >= 1)) throw SAXException("Amplification factor below 1");
    state_->amplificationFactor = factor;
    state_->document.allowedFromTables = 0;
  } else if (name == properties::amplificationThreshold) {
    assign(state_->amplificationThreshold, value, State::kAmplificationThreshold);
    state_->document.allowedFromTables = 0;
  } else if (name == properties::maximumTableOctets) {
    assign(maximumTableOctets_, value, State::kMaximumTableOctets);
  } else if (name == properties::maximumLiteralOctets) {
    assign(maximumLiteralOctets_, value, State::kMaximumLiteralOctets);
  } else if (name == properties::documentXMLVersion || name == properties::standalone) {
    throw SAXException("Property \"" + name + "\" cannot be set");
  } else {
    XMLReader_FI::setProperty(name, value);
  }
}

void* XMLReader_X891::getProperty(const std::string& name) {
  State::Document& document = state_->document;
  if (name == properties::amplificationFactor) return &state_->amplificationFactor;
  if (name == properties::amplificationThreshold) return &state_->amplificationThreshold;
  if (name == properties::maximumTableOctets) return &maximumTableOctets_;
  if (name == properties::maximumLiteralOctets) return &maximumLiteralOctets_;
  if (name == properties::documentXMLVersion) return &document.version;
  if (name == properties::standalone) return document.standalone ? &*document.standalone : nullptr;
  return XMLReader_FI::getProperty(name);
}

void XMLReader_X891::setFeature(const std::string& name, bool value) {
  if (name == features::isStandalone) throw SAXException("Feature \"" + name + "\" cannot be set");
  XMLReader_FI::setFeature(name, value);
}

bool XMLReader_X891::getFeature(const std::string& name) {
  if (name == features::isStandalone) return state_->document.standalone.value_or(false);
  return XMLReader_FI::getFeature(name);
}

void XMLReader_X891::dialectThrowFailure(const std::string& message) const {
  constexpr std::uint64_t kMost = std::numeric_limits<std::int32_t>::max();
  const SAXParseException exception(message, -1,
                                    static_cast<std::int32_t>(std::min(octetsRead_, kMost)));
  if (errorHandler_) errorHandler_->fatalError(exception);
  throw exception;
}

// Nothing outlives a document.
void XMLReader_X891::dialectClearTables() {
  XMLReader_FI::dialectClearTables();
  restrictedAlphabets_.clear();
  encodingAlgorithms_.clear();
  externalVocabulary_ = nullptr;
  if (state_->isUsed) state_->document = {};
  state_->isUsed = true;
}

}  // namespace Tavrin
