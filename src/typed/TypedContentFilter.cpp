#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/EncodingAlgorithms.h>
#include <Tavrin/TypedContentFilter.h>

#include <string_view>
#include <utility>

#include "ChooseType.h"
#include "TextForms.h"
#include "TypingPaths.h"

namespace Tavrin {

/// What the filter knows of the document, and what it keeps of it.
class TypedContentFilter::Typing {
 public:
  Typing(const TypingRules& rules, const Options& options) : paths(rules), settings(options) {}

  /// The value of text; without data where it stays text.
  /// @throws EncodingAlgorithmException where it is not of the type
  TypedText convert(int type, std::string_view text) const;

  TypingPaths paths;
  const Options settings;

  const Locator* locator = nullptr;
  bool hasLocator = false;  // The document that comes next has one.

  bool isKeeping = false;  // The text of an element.
  int keptType = kNoType;  // What becomes of it.
  std::string name;        // Of the element, where too much text is a failure.
  std::string kept;
};

TypedText TypedContentFilter::Typing::convert(int type, std::string_view text) const {
  if (type == kAutomaticType) return chooseType(text);
  if (text.empty() || (type != algorithms::cdata && isBlank(text))) return {};
  TextFault fault;
  if (settings.exact) {
    if (auto data = parseValue(type, text, TextForm::canonical, fault)) {
      return {type, std::move(data)};
    }
  }
  auto data = parseValue(type, text, TextForm::any, fault);
  if (data != nullptr) return settings.exact ? TypedText() : TypedText{type, std::move(data)};
  if (settings.lenient) return {};
  throw EncodingAlgorithmException(describe(type, text, fault));
}

TypedContentFilter::TypedContentFilter(const TypingRules& rules)
    : TypedContentFilter(rules, Options()) {}

TypedContentFilter::TypedContentFilter(const TypingRules& rules, const Options& options)
    : typing_(std::make_unique<Typing>(rules, options)) {}

TypedContentFilter::~TypedContentFilter() = default;

/// Fails as readers do.
void TypedContentFilter::refuse(const std::string& message) {
  typing_->isKeeping = false;
  const Locator* const locator = typing_->locator;
  const SAXParseException failure(message, locator ? locator->getLineNumber() : -1,
                                  locator ? locator->getColumnNumber() : -1);
  fatalError(failure);
  throw failure;
}

// --- The document ---

void TypedContentFilter::setDocumentLocator(const Locator* locator) {
  typing_->locator = locator;
  typing_->hasLocator = true;
  XMLFilter::setDocumentLocator(locator);
}

void TypedContentFilter::startDocument() {
  if (!typing_->hasLocator) typing_->locator = nullptr;  // It was that of another parent.
  typing_->hasLocator = false;
  typing_->isKeeping = false;
  typing_->paths.clear();
  XMLFilter::startDocument();
}

// --- Elements ---

namespace {

bool isDeclaration(const std::string& qName) {
  return qName.compare(0, 5, "xmlns") == 0 && (qName.size() == 5 || qName[5] == ':');
}

void copy(const Attributes& attributes, EncodingAlgorithmAttributesImpl& list) {
  if (const auto* const typed = dynamic_cast<const EncodingAlgorithmAttributes*>(&attributes)) {
    list.copyAttributes(*typed);
  } else {
    list.setAttributes(attributes);
  }
}

bool isTyped(const Attributes& attributes, int index) {
  const auto* const typed = dynamic_cast<const EncodingAlgorithmAttributes*>(&attributes);
  return typed != nullptr && typed->getAlgorithmData(index) != nullptr;
}

}  // namespace

void TypedContentFilter::startElement(const std::string& uri, const std::string& localName,
                                      const std::string& qName, const Attributes& attributes) {
  release();
  TypingPaths& paths = typing_->paths;
  paths.push(uri, localName, qName);
  EncodingAlgorithmAttributesImpl list;
  const int length = paths.hasAttributeRules() ? attributes.getLength() : 0;
  for (int i = 0; i < length; ++i) {
    const std::string& name = attributes.getQName(i);
    const int type = paths.attributeType(attributes.getURI(i), attributes.getLocalName(i), name);
    if (type == kNoType || isDeclaration(name) || isTyped(attributes, i)) continue;
    TypedText value;
    try {
      value = typing_->convert(type, attributes.getValue(i));
    } catch (const EncodingAlgorithmException& failure) {
      refuse("The attribute \"" + attributes.getQName(i) + "\" of the element \"" + qName +
             "\" cannot be typed: " + failure.getMessage());
    }
    if (value.data == nullptr) continue;
    if (list.attributes_.empty()) copy(attributes, list);
    auto& attribute = *list.attributes_[static_cast<std::size_t>(i)];
    attribute.algorithmIndex = value.algorithm;
    attribute.algorithmData = std::move(value.data);
  }
  const bool isCopied = !list.attributes_.empty();
  XMLFilter::startElement(uri, localName, qName, isCopied ? list : attributes);
  typing_->keptType = paths.contentType();
  typing_->isKeeping = typing_->keptType != kNoType && receives(typing_->keptType);
  typing_->kept.clear();
  if (typing_->isKeeping && typing_->keptType != kAutomaticType) typing_->name = qName;
}

void TypedContentFilter::endElement(const std::string& uri, const std::string& localName,
                                    const std::string& qName) {
  if (typing_->isKeeping) deliver(qName);
  typing_->paths.pop();
  XMLFilter::endElement(uri, localName, qName);
}

/// Whether anybody receives content of a type as typed.
bool TypedContentFilter::receives(int type) const {
  if (encodingAlgorithmContentHandler_ != nullptr) return true;
  if (type == algorithms::cdata && lexicalHandler_ != nullptr) return true;
  return primitiveTypeContentHandler_ != nullptr && type != algorithms::uuid;
}

/// Delivers the text of an element that ends.
void TypedContentFilter::deliver(const std::string& qName) {
  typing_->isKeeping = false;
  const std::string& text = typing_->kept;
  TypedText value;
  try {
    value = typing_->convert(typing_->keptType, text);
  } catch (const EncodingAlgorithmException& failure) {
    refuse("The text of the element \"" + qName + "\" cannot be typed: " + failure.getMessage());
  }
  if (value.data == nullptr || !receives(value.algorithm)) {
    if (!text.empty()) XMLFilter::characters(text);
  } else if (value.algorithm == algorithms::cdata && lexicalHandler_ != nullptr) {
    XMLFilter::startCDATA();
    XMLFilter::characters(text);
    XMLFilter::endCDATA();
  } else if (primitiveTypeContentHandler_ != nullptr && value.algorithm != algorithms::uuid) {
    value.data->callContentHandler(*primitiveTypeContentHandler_);
  } else {
    XMLFilter::object({}, value.algorithm, *value.data);
  }
}

/// Passes on text that is not all that its element has.
void TypedContentFilter::release() {
  if (!typing_->isKeeping) return;
  typing_->isKeeping = false;
  if (!typing_->kept.empty()) XMLFilter::characters(typing_->kept);
}

void TypedContentFilter::characters(const std::string& text) {
  if (!typing_->isKeeping) return XMLFilter::characters(text);
  const Options& options = typing_->settings;
  const bool isAutomatic = typing_->keptType == kAutomaticType;
  const bool isTooLong = text.size() > options.maximumTextOctets ||
                         typing_->kept.size() > options.maximumTextOctets - text.size();
  if (isTooLong && !isAutomatic && !options.lenient) {
    refuse("The text of the element \"" + typing_->name + "\" cannot be typed: it is longer than " +
           std::to_string(options.maximumTextOctets) + " octets (maximumTextOctets)");
  }
  const bool cannotHaveValue =
      isAutomatic && typing_->kept.empty() && !text.empty() && !mayHaveValue(text[0]);
  if (!isTooLong && !cannotHaveValue) {
    typing_->kept += text;
    return;
  }
  release();
  XMLFilter::characters(text);
}

// --- Events after which text is not all that its element has ---

void TypedContentFilter::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  release();
  XMLFilter::startPrefixMapping(prefix, uri);
}
void TypedContentFilter::ignorableWhitespace(const std::string& text) {
  release();
  XMLFilter::ignorableWhitespace(text);
}
void TypedContentFilter::processingInstruction(const std::string& target, const std::string& data) {
  release();
  XMLFilter::processingInstruction(target, data);
}
void TypedContentFilter::skippedEntity(const std::string& name) {
  release();
  XMLFilter::skippedEntity(name);
}
void TypedContentFilter::externalEntityDecl(const std::string& name, const std::string& publicId,
                                            const std::string& systemId) {
  release();
  XMLFilter::externalEntityDecl(name, publicId, systemId);
}
void TypedContentFilter::startEntity(const std::string& name) {
  release();
  XMLFilter::startEntity(name);
}
void TypedContentFilter::endEntity(const std::string& name) {
  release();
  XMLFilter::endEntity(name);
}
void TypedContentFilter::startCDATA() {
  release();
  XMLFilter::startCDATA();
}
void TypedContentFilter::endCDATA() {
  release();
  XMLFilter::endCDATA();
}
void TypedContentFilter::comment(const std::string& text) {
  release();
  XMLFilter::comment(text);
}
void TypedContentFilter::warning(const SAXParseException& exception) {
  release();
  XMLFilter::warning(exception);
}
void TypedContentFilter::error(const SAXParseException& exception) {
  release();
  XMLFilter::error(exception);
}
void TypedContentFilter::fatalError(const SAXParseException& exception) {
  release();
  XMLFilter::fatalError(exception);
}
std::unique_ptr<std::istream> TypedContentFilter::resolveEntity(const std::string& publicId,
                                                                const std::string& systemId) {
  release();
  return XMLFilter::resolveEntity(publicId, systemId);
}
void TypedContentFilter::bytes(const std::string& data) {
  release();
  XMLFilter::bytes(data);
}
void TypedContentFilter::shorts(const std::vector<short>& data) {
  release();
  XMLFilter::shorts(data);
}
void TypedContentFilter::ints(const std::vector<long>& data) {
  release();
  XMLFilter::ints(data);
}
void TypedContentFilter::longs(const std::vector<long>& data) {
  release();
  XMLFilter::longs(data);
}
void TypedContentFilter::booleans(const std::vector<bool>& data) {
  release();
  XMLFilter::booleans(data);
}
void TypedContentFilter::floats(const std::vector<float>& data) {
  release();
  XMLFilter::floats(data);
}
void TypedContentFilter::doubles(const std::vector<double>& data) {
  release();
  XMLFilter::doubles(data);
}
void TypedContentFilter::octets(const std::string& uri, int index, const std::string& data) {
  release();
  XMLFilter::octets(uri, index, data);
}
void TypedContentFilter::object(const std::string& uri, int index, const EncodedData& data) {
  release();
  XMLFilter::object(uri, index, data);
}

}  // namespace Tavrin
