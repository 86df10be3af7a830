#include "EventLog.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <sstream>
#include <type_traits>

namespace {

/// The items with a space between them.
template <typename Item>
std::string showItems(const std::vector<Item>& items) {
  std::ostringstream text;
  text.precision(std::numeric_limits<double>::max_digits10);
  if (std::is_same_v<Item, float>) text.precision(std::numeric_limits<float>::max_digits10);
  for (std::size_t i = 0; i < items.size(); ++i) text << (i > 0 ? " " : "") << Item{items[i]};
  return text.str();
}

const char* classOf(const Tavrin::EncodedData& value) {
  if (dynamic_cast<const Tavrin::HexadecimalData*>(&value)) return "HexadecimalData";
  if (dynamic_cast<const Tavrin::Base64Data*>(&value)) return "Base64Data";
  if (dynamic_cast<const Tavrin::CDATAData*>(&value)) return "CDATAData";
  if (dynamic_cast<const Tavrin::ShortData*>(&value)) return "ShortData";
  if (dynamic_cast<const Tavrin::IntData*>(&value)) return "IntData";
  if (dynamic_cast<const Tavrin::LongData*>(&value)) return "LongData";
  if (dynamic_cast<const Tavrin::BooleanData*>(&value)) return "BooleanData";
  if (dynamic_cast<const Tavrin::FloatData*>(&value)) return "FloatData";
  if (dynamic_cast<const Tavrin::DoubleData*>(&value)) return "DoubleData";
  return "EncodedData";
}

}  // namespace

void EventLog::attachTo(Tavrin::XMLReader& reader) {
  reader.setContentHandler(this);
  reader.setErrorHandler(this);
  reader.setEntityResolver(this);
  reader.setProperty(Tavrin::properties::lexicalHandler,
                     static_cast<Tavrin::LexicalHandler*>(this));
}

void EventLog::attachDeclarationsTo(Tavrin::XMLReader& reader) {
  reader.setDTDHandler(this);
  reader.setProperty(Tavrin::properties::declarationHandler,
                     static_cast<Tavrin::DeclHandler*>(this));
}

void EventLog::attachPrimitiveTypesTo(Tavrin::XMLReader& reader) {
  reader.setProperty(Tavrin::properties::primitiveTypeContentHandler,
                     static_cast<Tavrin::PrimitiveTypeContentHandler*>(this));
}

void EventLog::attachAlgorithmsTo(Tavrin::XMLReader& reader) {
  reader.setProperty(Tavrin::properties::encodingAlgorithmContentHandler,
                     static_cast<Tavrin::EncodingAlgorithmContentHandler*>(this));
}

void EventLog::clear() {
  lines_.clear();
  eventCount_ = 0;
  inCharacters_ = false;
}

std::string EventLog::show(const std::string& text) {
  const auto isPlain = [](char c) {
    return static_cast<unsigned char>(c) >= 0x20 && c != 0x7F && c != '\\';
  };
  std::string shown;
  auto next = text.begin();
  while (true) {
    // Texts may be long: what needs no escape is taken as one piece.
    const auto special = std::find_if_not(next, text.end(), isPlain);
    shown.append(next, special);
    if (special == text.end()) return shown;
    switch (*special) {
      case '\n':
        shown += "\\n";
        break;
      case '\r':
        shown += "\\r";
        break;
      case '\t':
        shown += "\\t";
        break;
      case '\\':
        shown += "\\\\";
        break;
      default:
        char code[5];
        std::snprintf(code, sizeof code, "\\x%02X", static_cast<unsigned char>(*special));
        shown += code;
    }
    next = special + 1;
  }
}

std::string EventLog::showOctets(const std::string& octets) {
  std::string shown;
  for (const char c : octets) {
    char code[4];
    std::snprintf(code, sizeof code, shown.empty() ? "%02X" : " %02X",
                  static_cast<unsigned char>(c));
    shown += code;
  }
  return shown;
}

std::string EventLog::showValue(const Tavrin::EncodedData& value) {
  return std::string(classOf(value)) + "{" + show(value.toString()) + "}";
}

void EventLog::add(const std::string& operation, const std::vector<std::string>& arguments) {
  if (beforeEvent) beforeEvent(eventCount_);
  ++eventCount_;
  std::string line = operation + "(";
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (i > 0) line += ", ";
    line += arguments[i];
  }
  lines_.push_back(line + ")");
  inCharacters_ = false;
}

void EventLog::addFailure(const std::string& operation,
                          const Tavrin::SAXParseException& exception) {
  add(operation, {show(exception.getMessage()), std::to_string(exception.getLineNumber()),
                  std::to_string(exception.getColumnNumber())});
}

void EventLog::setDocumentLocator(const Tavrin::Locator*) {
  if (showLocator) add("setDocumentLocator", {});
}

void EventLog::startDocument() { add("startDocument", {}); }

void EventLog::endDocument() { add("endDocument", {}); }

void EventLog::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  add("startPrefixMapping", {show(prefix), show(uri)});
}

void EventLog::endPrefixMapping(const std::string& prefix) {
  add("endPrefixMapping", {show(prefix)});
}

void EventLog::startElement(const std::string& uri, const std::string& localName,
                            const std::string& qName, const Tavrin::Attributes& attributes) {
  const auto* typed = showAlgorithms
                          ? dynamic_cast<const Tavrin::EncodingAlgorithmAttributes*>(&attributes)
                          : nullptr;
  std::string list = "[";
  for (int i = 0; i < attributes.getLength(); ++i) {
    if (i > 0) list += ", ";
    list += "{" + show(attributes.getURI(i)) + ", " + show(attributes.getLocalName(i)) + ", " +
            show(attributes.getQName(i)) + ", " + show(attributes.getType(i)) + ", " +
            show(attributes.getValue(i));
    if (typed && typed->getAlgorithmData(i)) {
      list += ", " + show(typed->getAlgorithmURI(i)) + ", " +
              std::to_string(typed->getAlgorithmIndex(i)) + ", " +
              showValue(*typed->getAlgorithmData(i));
    }
    list += "}";
  }
  add("startElement", {show(uri), show(localName), show(qName), list + "]"});
}

void EventLog::endElement(const std::string& uri, const std::string& localName,
                          const std::string& qName) {
  add("endElement", {show(uri), show(localName), show(qName)});
}

void EventLog::characters(const std::string& text) {
  if (mergeCharacters && inCharacters_) {
    if (beforeEvent) beforeEvent(eventCount_);
    ++eventCount_;
    lines_.back().insert(lines_.back().size() - 1, show(text));
    return;
  }
  add("characters", {show(text)});
  inCharacters_ = true;
}

void EventLog::ignorableWhitespace(const std::string& text) {
  add("ignorableWhitespace", {show(text)});
}

void EventLog::processingInstruction(const std::string& target, const std::string& data) {
  add("processingInstruction", {show(target), show(data)});
}

void EventLog::skippedEntity(const std::string& name) { add("skippedEntity", {show(name)}); }

void EventLog::notationDecl(const std::string& name, const std::string& publicId,
                            const std::string& systemId) {
  add("notationDecl", {show(name), show(publicId), show(systemId)});
}

void EventLog::unparsedEntityDecl(const std::string& name, const std::string& publicId,
                                  const std::string& systemId, const std::string& notationName) {
  add("unparsedEntityDecl", {show(name), show(publicId), show(systemId), show(notationName)});
}

void EventLog::elementDecl(const std::string& name, const std::string& model) {
  add("elementDecl", {show(name), show(model)});
}

void EventLog::attributeDecl(const std::string& eName, const std::string& aName,
                             const std::string& type, const std::string& mode,
                             const std::string& value) {
  add("attributeDecl", {show(eName), show(aName), show(type), show(mode), show(value)});
}

void EventLog::internalEntityDecl(const std::string& name, const std::string& value) {
  add("internalEntityDecl", {show(name), show(value)});
}

void EventLog::externalEntityDecl(const std::string& name, const std::string& publicId,
                                  const std::string& systemId) {
  add("externalEntityDecl", {show(name), show(publicId), show(systemId)});
}

void EventLog::startDTD(const std::string& name, const std::string& publicId,
                        const std::string& systemId) {
  add("startDTD", {show(name), show(publicId), show(systemId)});
}

void EventLog::endDTD() { add("endDTD", {}); }

void EventLog::startEntity(const std::string& name) { add("startEntity", {show(name)}); }

void EventLog::endEntity(const std::string& name) { add("endEntity", {show(name)}); }

void EventLog::startCDATA() { add("startCDATA", {}); }

void EventLog::endCDATA() { add("endCDATA", {}); }

void EventLog::comment(const std::string& text) { add("comment", {show(text)}); }

void EventLog::warning(const Tavrin::SAXParseException& exception) {
  addFailure("warning", exception);
}

void EventLog::error(const Tavrin::SAXParseException& exception) { addFailure("error", exception); }

void EventLog::fatalError(const Tavrin::SAXParseException& exception) {
  addFailure("fatalError", exception);
}

std::unique_ptr<std::istream> EventLog::resolveEntity(const std::string& publicId,
                                                      const std::string& systemId) {
  add("resolveEntity", {show(publicId), show(systemId)});
  const auto found = entities.find(systemId);
  if (found == entities.end()) return nullptr;
  return std::make_unique<std::istringstream>(found->second);
}

void EventLog::bytes(const std::string& data) { add("bytes", {showOctets(data)}); }

void EventLog::shorts(const std::vector<short>& data) { add("shorts", {showItems(data)}); }

void EventLog::ints(const std::vector<long>& data) { add("ints", {showItems(data)}); }

void EventLog::longs(const std::vector<long>& data) { add("longs", {showItems(data)}); }

void EventLog::booleans(const std::vector<bool>& data) { add("booleans", {showItems(data)}); }

void EventLog::floats(const std::vector<float>& data) { add("floats", {showItems(data)}); }

void EventLog::doubles(const std::vector<double>& data) { add("doubles", {showItems(data)}); }

void EventLog::octets(const std::string& uri, int index, const std::string& data) {
  add("octets", {show(uri), std::to_string(index), showOctets(data)});
}

void EventLog::object(const std::string& uri, int index, const Tavrin::EncodedData& data) {
  add("object", {show(uri), std::to_string(index), showValue(data)});
}

std::string EventLog::text() const { return join(lines_); }

std::string join(const EventLog::Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}
