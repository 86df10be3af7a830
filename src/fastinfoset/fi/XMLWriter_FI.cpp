#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/XMLWriter_FI.h>

#include <tuple>

#include "../../xml/NamespaceBindings.h"
#include "../Encoder.h"
#include "../format/Octets.h"

// The writer as an object. The format is encoded in the files that Decoder.h names.

namespace Tavrin {

using namespace fastinfoset;

const XMLWriterType XMLWriter_FI::type_("FI", &XMLWriter_FI::create);

namespace {

void checkName(const std::string& name) {
  if (name.empty()) throw SAXException("Empty name");
}

[[noreturn]] void throwUnknownAlgorithm(const std::string& uri) {
  throw EncodingAlgorithmException("Unknown encoding algorithm - " + uri);
}

}  // namespace

class TAVRIN_LOCAL XMLWriter_FI::Encoder final : public fastinfoset::Encoder {
 public:
  using fastinfoset::Encoder::Encoder;

  EncodingAlgorithm* findAlgorithm(const std::string& uri, int index) {
    return uri.empty() ? builtIn_.find(index) : nullptr;
  }

  EncodingAlgorithm& algorithmFor(const std::string& uri, int index) {
    EncodingAlgorithm* const algorithm = findAlgorithm(uri, index);
    if (algorithm == nullptr) throwUnknownAlgorithm(uri);
    return *algorithm;
  }

  /// Refuses a start tag before any of it is written.
  void checkStartTag(const std::string& localName, const Attributes& attributes) {
    checkName(localName);
    const int length = attributes.getLength();
    if (length == 0) return;
    const auto* const typed = findTypedForm(attributes, known_.untyped);
    for (int i = 0; i < length; ++i) {
      if (isInXmlns(attributes, i)) continue;
      checkName(attributes.getLocalName(i));
      if (typed != nullptr && typed->getAlgorithmData(i) != nullptr) {
        algorithmFor(typed->getAlgorithmURI(i), typed->getAlgorithmIndex(i));
      }
    }
  }

  void encodeAttributes(const Attributes& attributes) {
    const auto* const typed = findTypedForm(attributes, known_.untyped);
    perform([&] {
      const int length = attributes.getLength();
      for (int i = 0; i < length; ++i) {
        sendOctets();
        if (isInXmlns(attributes, i)) continue;
        known_.qName = attributes.getQName(i);
        known_.uri = attributes.getURI(i);
        known_.localName = attributes.getLocalName(i);
        const EventName name = {known_.uri, known_.localName, known_.qName};
        checkName(name.localName);
        encodeAttributeName(name);
        sendOctets();
        if (const EncodedData* const data = typed ? typed->getAlgorithmData(i) : nullptr) {
          EncodingAlgorithm& algorithm =
              algorithmFor(typed->getAlgorithmURI(i), typed->getAlgorithmIndex(i));
          if (out_ != nullptr) algorithm.encodeToOutputStream(false, *data, *out_);
        } else {
          const std::string& value = attributes.getValue(i);
          const bool adds = isIndexed(kAttributeValues, value);
          encodeString(kAttributeValues, adds, value);
        }
      }
    });
    pendingTerminator_ = true;
  }
};

XMLWriter_FI::XMLWriter_FI()
    : encoder_(std::make_unique<Encoder>(
          kDialectFI, Encoder::Shared{out_, pendingTerminator_, characters_, builtIn_})) {}

XMLWriter_FI::~XMLWriter_FI() = default;

std::unique_ptr<XMLWriter> XMLWriter_FI::create() { return std::make_unique<XMLWriter_FI>(); }

// --- Properties ---

void XMLWriter_FI::setProperty(const std::string& name, void* value) {
  if (name == properties::registeredEncodingAlgorithms ||
      name == properties::externalVocabularies) {
    return;
  }
  XMLWriter::setProperty(name, value);
}

void* XMLWriter_FI::getProperty(const std::string& name) {
  if (name == properties::registeredEncodingAlgorithms ||
      name == properties::externalVocabularies) {
    return nullptr;
  }
  return XMLWriter::getProperty(name);
}

// --- Document ---

void XMLWriter_FI::startDocument() {
  XMLWriter::startDocument();
  pendingTerminator_ = false;
  // A document with indices of another document's tables could not be read by itself.
  encoder_->clearTables();
  if (out_ == nullptr) return;
  encoder_->perform([this] { encoder_->encodeHeader(0); });
}

void XMLWriter_FI::endDocument() {
  XMLWriter::endDocument();
  encoder_->finishDocument();
}

void XMLWriter_FI::processingInstruction(const std::string& target, const std::string& data) {
  XMLWriter::processingInstruction(target, data);
  checkName(target);
  encoder_->encodeProcessingInstruction(target, data);
}

void XMLWriter_FI::comment(const std::string& text) {
  XMLWriter::comment(text);
  encoder_->encodeComment(text);
}

// --- Elements ---

void XMLWriter_FI::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  xml::addDeclaration(namespaces_, prefix, uri);
}

// The attributes may be code of an application, which may inspect the stream: all octets before a
// value must be in the stream when the application is asked for it.
void XMLWriter_FI::startElement(const std::string& uri, const std::string& localName,
                                const std::string& qName, const Attributes& attributes) {
  XMLWriter::startElement(uri, localName, qName, attributes);
  encoder_->checkStartTag(localName, attributes);
  encoder_->perform([&] {
    encoder_->flushCharacters();
    encoder_->flushTerminator(false);
    encoder_->sendOctets();
    const bool hasAttributes = countAttributes(attributes) > 0;
    unsigned flag = hasAttributes ? kElementAttributes : 0;
    if (!namespaces_.empty()) {
      if (out_ != nullptr) {
        encoder_->put(kNamespacesFollow | flag);
        encoder_->encodeNamespaces(namespaces_);
      }
      // Also where the rest of the tag is refused, they belong to no other tag.
      namespaces_.clear();
      flag = 0;  // The octet before the declarations had it.
    }
    if (out_ != nullptr) encoder_->encodeElementName(flag, {uri, localName, qName});
    if (!hasAttributes) return;
    if (out_ != nullptr) encoder_->encodeAttributes(attributes);
    // The end of the attributes may share an octet with the end of the element.
    pendingTerminator_ = true;
  });
}

void XMLWriter_FI::endElement(const std::string& uri, const std::string& localName,
                              const std::string& qName) {
  XMLWriter::endElement(uri, localName, qName);
  encoder_->finishElement();
}

// --- Names and attributes ---

int XMLWriter_FI::countAttributes(const Attributes& attributes) const {
  int count = 0;
  const int length = attributes.getLength();
  for (int i = 0; i < length; ++i) {
    if (!isInXmlns(attributes, i)) ++count;
  }
  return count;
}

void XMLWriter_FI::encodeAttributes(const Attributes& attributes) {
  encoder_->encodeAttributes(attributes);
}

// --- Text and typed content ---

// Text is buffered until another item follows, so that a chunk is as long as it can be.
void XMLWriter_FI::characters(const std::string& text) {
  XMLWriter::characters(text);
  characters_ += text;
}

// Text before the section that is still buffered becomes part of it. The octets are fixed: keep.
void XMLWriter_FI::endCDATA() {
  XMLWriter::endCDATA();
  encoder_->flushTerminator(false);
  if (out_) builtIn_.cdata.encodeToOutputStream(true, characters_, *out_);
  characters_.clear();
}

void XMLWriter_FI::bytes(const std::string& data) {
  encoder_->encodeContent(builtIn_.base64, data);
}

void XMLWriter_FI::shorts(const std::vector<short>& data) {
  encoder_->encodeContent(builtIn_.shortInteger, data);
}

void XMLWriter_FI::ints(const std::vector<long>& data) {
  encoder_->encodeContent(builtIn_.integer, data);
}

void XMLWriter_FI::longs(const std::vector<long>& data) {
  encoder_->encodeContent(builtIn_.longInteger, data);
}

void XMLWriter_FI::booleans(const std::vector<bool>& data) {
  encoder_->encodeContent(builtIn_.boolean, data);
}

void XMLWriter_FI::floats(const std::vector<float>& data) {
  encoder_->encodeContent(builtIn_.floatNumber, data);
}

void XMLWriter_FI::doubles(const std::vector<double>& data) {
  encoder_->encodeContent(builtIn_.doubleNumber, data);
}

void XMLWriter_FI::object(const std::string& uri, int index, const EncodedData& data) {
  encoder_->encodeContent(encoder_->algorithmFor(uri, index), data);
}

void XMLWriter_FI::octets(const std::string& uri, int index, const std::string& data) {
  if (index < 0 || index > static_cast<int>(kLastAlgorithmField)) throwUnknownAlgorithm(uri);
  encoder_->flushCharacters();
  encoder_->flushTerminator(false);
  if (!out_) return;
  // Number and length have the same form for every algorithm.
  builtIn_.base64.writeSize(index, true, static_cast<std::uint32_t>(data.size()), *out_);
  encoder_->write(data);
}

EncodingAlgorithm* XMLWriter_FI::getEncodingAlgorithm(const std::string& uri, int index) {
  return encoder_->findAlgorithm(uri, index);
}

// --- Names and primitives, for derived writers ---

bool XMLWriter_FI::QualifiedName::operator<(const QualifiedName& other) const {
  return std::tie(localName, prefix, namespaceName) <
         std::tie(other.localName, other.prefix, other.namespaceName);
}

bool XMLWriter_FI::QualifiedName::operator==(const QualifiedName& other) const {
  return localName == other.localName && prefix == other.prefix &&
         namespaceName == other.namespaceName;
}

void XMLWriter_FI::encodeIndex(int bits, unsigned int index) { encoder_->encodeIndex(bits, index); }

namespace {

/// Adds an entry to a table of a derived writer.
template <typename Key>
void addTo(std::map<Key, unsigned>& table, const Key& entry) {
  table.emplace(entry, static_cast<unsigned>(table.size()));
}

}  // namespace

void XMLWriter_FI::encodeString(std::map<std::string, unsigned>* table, bool addToTable,
                                const std::string& text) {
  const bool adds = addToTable && table != nullptr;
  if (table != nullptr && !text.empty()) {
    if (const auto found = table->find(text); found != table->end()) {
      return encodeIndex(kStringIndex, found->second);
    }
    if (adds) addTo(*table, text);
  }
  encoder_->encodeLiteralString(adds, text);
}

void XMLWriter_FI::encodeIdentifier(std::map<std::string, unsigned>* table,
                                    const std::string& text) {
  if (const auto found = table->find(text); found != table->end()) {
    return encodeIndex(kStringIndex, found->second);
  }
  addTo(*table, text);
  encoder_->encodeLiteralIdentifier(text);
}

void XMLWriter_FI::encodeQualifiedName(int bits, std::map<QualifiedName, unsigned>& table,
                                       const QualifiedName& name) {
  const auto indices = encoder_->findNameParts(name.prefix, name.namespaceName);
  addTo(table, name);
  encoder_->encodeLiteralName(static_cast<unsigned>(bits),
                              {name.prefix, name.namespaceName, name.localName}, indices);
}

void XMLWriter_FI::encodeNamespaces(const std::vector<std::string>& pairs) {
  encoder_->encodeNamespaces(pairs);
}

void XMLWriter_FI::encodeCharacters(const std::string& text) { encoder_->encodeCharacters(text); }

void XMLWriter_FI::flushTerminator(bool final) { encoder_->flushTerminator(final); }

void XMLWriter_FI::flushCharacters() { encoder_->flushCharacters(); }

}  // namespace Tavrin
