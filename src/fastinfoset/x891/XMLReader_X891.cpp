#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLReader_X891.h>

#include <algorithm>
#include <limits>

#include "X891Decoder.h"

// The reader as an object: creation, properties, failures. Beside it in this folder: Document.cpp
// (header, components, vocabulary), Text.cpp (formats of strings), WellFormed.cpp (checks) and
// Delivery.cpp (what handlers hear). All else is what readers of Fast Infoset share.

namespace Tavrin {

const XMLReaderType XMLReader_X891::type_("X891", &XMLReader_X891::create);

class XMLReader_X891::Decoder final : public fastinfoset::X891Decoder {
 public:
  explicit Decoder(XMLReader_X891& reader)
      : X891Decoder({reader.contentHandler_, reader.errorHandler_, reader.dtdHandler_}),
        reader_(reader) {}

 private:
  /// A derived reader may put another algorithm in its place.
  EncodingAlgorithm* getEncodingAlgorithm(unsigned field, std::string& uri) override {
    return reader_.getEncodingAlgorithm(field, uri);
  }

  XMLReader_X891& reader_;
};

XMLReader_X891::XMLReader_X891() : decoder_(std::make_unique<Decoder>(*this)) {}

XMLReader_X891::~XMLReader_X891() = default;

std::unique_ptr<XMLReader> XMLReader_X891::create() { return std::make_unique<XMLReader_X891>(); }

void XMLReader_X891::setProperty(const std::string& name, void* value) {
  if (!decoder_->setProperty(name, value)) XMLReader::setProperty(name, value);
}

void* XMLReader_X891::getProperty(const std::string& name) {
  void* value = nullptr;
  return decoder_->getProperty(name, value) ? value : XMLReader::getProperty(name);
}

void XMLReader_X891::setFeature(const std::string& name, bool value) {
  if (name == features::isStandalone) throw SAXException("Feature \"" + name + "\" cannot be set");
  XMLReader::setFeature(name, value);
}

bool XMLReader_X891::getFeature(const std::string& name) {
  return name == features::isStandalone ? decoder_->isStandalone() : XMLReader::getFeature(name);
}

void XMLReader_X891::parse(std::istream& stream) { decoder_->parse(stream); }

EncodingAlgorithm* XMLReader_X891::getEncodingAlgorithm(unsigned int field, std::string& uri) {
  return decoder_->findAlgorithm(field, uri);
}

// --- The decoder ---

namespace fastinfoset {

X891Decoder::X891Decoder(const Handlers& handlers) : Decoder(kDialectX891, handlers) {
  maximumTableOctets_ = kMaximumTableOctets;
  maximumLiteralOctets_ = kMaximumLiteralOctets;
}

namespace {

template <typename Value>
void assign(Value& property, const void* value, Value byDefault) {
  property = value ? *static_cast<const Value*>(value) : byDefault;
}

}  // namespace

bool X891Decoder::setProperty(const std::string& name, void* value) {
  if (name == properties::amplificationFactor) {
    double factor = 0;
    assign(factor, value, kAmplificationFactor);
    if (!(factor >= 1)) throw SAXException("Amplification factor below 1");
    amplificationFactor_ = factor;
    document_.allowedFromTables = 0;
  } else if (name == properties::amplificationThreshold) {
    assign(amplificationThreshold_, value, kAmplificationThreshold);
    document_.allowedFromTables = 0;
  } else if (name == properties::maximumTableOctets) {
    assign(maximumTableOctets_, value, kMaximumTableOctets);
  } else if (name == properties::maximumLiteralOctets) {
    assign(maximumLiteralOctets_, value, kMaximumLiteralOctets);
  } else if (name == properties::maximumDepth) {
    assign(maximumDepth_, value, std::uint64_t{UINT64_MAX});
  } else if (name == properties::documentXMLVersion || name == properties::standalone) {
    throw SAXException("Property \"" + name + "\" cannot be set");
  } else {
    return Decoder::setProperty(name, value);
  }
  return true;
}

bool X891Decoder::getProperty(const std::string& name, void*& value) {
  if (name == properties::amplificationFactor) {
    value = &amplificationFactor_;
  } else if (name == properties::amplificationThreshold) {
    value = &amplificationThreshold_;
  } else if (name == properties::maximumTableOctets) {
    value = &maximumTableOctets_;
  } else if (name == properties::maximumLiteralOctets) {
    value = &maximumLiteralOctets_;
  } else if (name == properties::maximumDepth) {
    value = &maximumDepth_;
  } else if (name == properties::documentXMLVersion) {
    value = &document_.version;
  } else if (name == properties::standalone) {
    value = document_.standalone ? &*document_.standalone : nullptr;
  } else {
    return Decoder::getProperty(name, value);
  }
  return true;
}

SAXParseException X891Decoder::exceptionHere(const std::string& message) const {
  constexpr std::uint64_t kMost = std::numeric_limits<std::int32_t>::max();
  return {message, -1, static_cast<std::int32_t>(std::min(input_.count(), kMost))};
}

void X891Decoder::throwFailure(const std::string& message) const {
  const SAXParseException exception = exceptionHere(message);
  if (errorHandler_) errorHandler_->fatalError(exception);
  throw exception;
}

void X891Decoder::beginDocument() {
  Decoder::beginDocument();
  if (isUsed_) document_ = {};
  isUsed_ = true;
}

}  // namespace fastinfoset

}  // namespace Tavrin
