#include <Tavrin/DocumentWriter.h>
#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/EncodingAlgorithms.h>
#include <Tavrin/Identifiers.h>

#include <exception>
#include <limits>
#include <span>
#include <utility>

#include "ExactNumbers.h"

namespace Tavrin {

namespace {

/// An empty list has no typed form, but empty text.
template <typename Data, typename List>
std::unique_ptr<EncodedData> typed(List list, int number, int& algorithm) {
  if (list.empty()) return nullptr;
  algorithm = number;
  return std::make_unique<Data>(std::move(list));
}

const char* checkedText(const char* text) {
  if (text == nullptr) throw SAXException("The text of a value is a null pointer");
  return text;
}

/// The names of an element or attribute. An attribute without a prefix has no namespace.
XMLWriter::Element resolve(const DocumentWriter::Namespaces& known, const std::string& qName,
                           bool isAttribute) {
  const std::size_t colon = qName.find(':');
  const bool hasPrefix = colon != std::string::npos;
  const std::string prefix = hasPrefix ? qName.substr(0, colon) : std::string();
  const std::string localName = hasPrefix ? qName.substr(colon + 1) : qName;
  if (prefix == "xml") return {namespaces::xml, localName, qName};
  if (isAttribute && !hasPrefix) return {{}, localName, qName};
  const auto found = known.find(prefix);
  if (found != known.end()) return {found->second, localName, qName};
  if (hasPrefix) throw SAXException("The prefix \"" + prefix + "\" has no namespace");
  return {{}, localName, qName};
}

void throwIf(bool hasEnded) {
  if (hasEnded) throw SAXException("The document has ended");
}

}  // namespace

DocumentWriter::Value::Value(const char* text) : text_(checkedText(text)) {}
DocumentWriter::Value::Value(std::string text) : text_(std::move(text)) {}
DocumentWriter::Value::Value(std::string_view text) : text_(text) {}
DocumentWriter::Value::Value(char character) : text_(1, character) {}
DocumentWriter::Value::Value(unsigned long number)
    : Value(number > std::numeric_limits<long>::max() ? Value(std::to_string(number))
                                                      : Value(static_cast<long>(number))) {}
DocumentWriter::Value::Value(std::vector<short> numbers)
    : data_(typed<ExactShortData>(std::move(numbers), algorithms::shortInteger, algorithm_)) {}
DocumentWriter::Value::Value(const std::vector<int>& numbers)
    : data_(typed<ExactIntData>(std::vector<long>(numbers.begin(), numbers.end()),
                                algorithms::integer, algorithm_)) {}
DocumentWriter::Value::Value(std::vector<long> numbers)
    : data_(typed<ExactLongData>(std::move(numbers), algorithms::longInteger, algorithm_)) {}
DocumentWriter::Value::Value(std::vector<float> numbers)
    : data_(typed<ExactFloatData>(std::move(numbers), algorithms::floatNumber, algorithm_)) {}
DocumentWriter::Value::Value(std::vector<double> numbers)
    : data_(typed<ExactDoubleData>(std::move(numbers), algorithms::doubleNumber, algorithm_)) {}
DocumentWriter::Value::Value(std::vector<bool> truths)
    : data_(typed<BooleanData>(std::move(truths), algorithms::boolean, algorithm_)) {}

DocumentWriter::Scope::Scope(DocumentWriter& document)
    : document_(document), depth_(document.depth()), exceptions_(std::uncaught_exceptions()) {}

DocumentWriter::DocumentWriter(XMLWriter& writer, Namespaces namespaces)
    : writer_(writer), namespaces_(std::move(namespaces)), exceptions_(std::uncaught_exceptions()) {
  writer_.startDocument();
}

// A failure to end an element must not be lost, and nothing else throws while a scope is left.
// NOLINTBEGIN(bugprone-exception-escape)
DocumentWriter::Scope::~Scope() noexcept(false) {
  if (document_.hasEnded_ || std::uncaught_exceptions() > exceptions_) return;
  while (document_.depth() >= depth_) document_.end();
}

DocumentWriter::~DocumentWriter() noexcept(false) {
  if (hasEnded_ || std::uncaught_exceptions() > exceptions_) return;
  endDocument();
}
// NOLINTEND(bugprone-exception-escape)

DocumentWriter::Scope DocumentWriter::element(const std::string& qName,
                                              std::initializer_list<Attribute> attributes) {
  start(qName, attributes);
  return Scope(*this);
}

void DocumentWriter::element(const std::string& qName, std::initializer_list<Attribute> attributes,
                             const Value& content) {
  const Scope scope = element(qName, attributes);
  write(content);
}

void DocumentWriter::write(const Value& value) {
  throwIf(hasEnded_);
  auto* const algorithms = dynamic_cast<EncodingAlgorithmContentHandler*>(&writer_);
  if (value.data() && algorithms) {
    algorithms->object({}, value.algorithm(), *value.data());
  } else if (const std::string text = value.toString(); !text.empty()) {
    writer_.characters(text);
  }
}

void DocumentWriter::start(const std::string& qName, const Attribute* attributes,
                           std::size_t count) {
  throwIf(hasEnded_);
  XMLWriter::Element name = resolve(namespaces_, qName, false);
  EncodingAlgorithmAttributesImpl list;
  for (const auto& [attributeName, value] : std::span(attributes, count)) {
    const auto [uri, localName, written] = resolve(namespaces_, attributeName, true);
    if (value.data()) {
      list.addAttribute(uri, localName, written, "CDATA", {}, value.algorithm(),
                        value.data()->copy());
    } else {
      list.addAttribute(uri, localName, written, "CDATA", value.toString());
    }
  }
  if (open_.empty()) {
    for (const auto& [prefix, uri] : namespaces_) writer_.startPrefixMapping(prefix, uri);
  }
  open_.push_back(std::move(name));
  try {
    const XMLWriter::Element& element = open_.back();
    writer_.startElement(element.uri, element.localName, element.qName, list);
  } catch (...) {
    open_.pop_back();
    throw;
  }
}

void DocumentWriter::end() {
  throwIf(hasEnded_);
  if (open_.empty()) throw SAXException("No element is open");
  endElement();
}

void DocumentWriter::endElement() {
  // What fails once is not tried again, in the destructor of an outer element.
  const XMLWriter::Element element = std::move(open_.back());
  open_.pop_back();
  writer_.endElement(element.uri, element.localName, element.qName);
  if (!open_.empty()) return;
  for (const auto& each : namespaces_) writer_.endPrefixMapping(each.first);
}

void DocumentWriter::endDocument() {
  throwIf(hasEnded_);
  hasEnded_ = true;
  while (!open_.empty()) endElement();
  writer_.endDocument();
}

}  // namespace Tavrin
