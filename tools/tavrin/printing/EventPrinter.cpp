#include "printing/EventPrinter.h"

#include "printing/Text.h"

namespace tool {

namespace {

std::string base64(const std::string& octets) { return Tavrin::Base64Data(octets).toString(); }

}  // namespace

void EventPrinter::printBorder(std::uint64_t number, std::uint64_t octet) {
  const std::string second = std::to_string(number);
  const std::string place = std::to_string(octet);
  sink_(isJSON() ? "{\"document\":" + second + ",\"octet\":" + place + "}\n"
                 : "--- document " + second + ": octet " + place + " ---\n");
}

// --- Lines ---

void EventPrinter::begin(const char* event) {
  line_ = isJSON() ? std::string("{\"event\":\"") + event + "\"" : std::string(event) + "(";
  first_ = !isJSON();
}

void EventPrinter::end() {
  line_ += isJSON() ? "}\n" : ")\n";
  sink_(line_);
}

void EventPrinter::print(const char* event, std::initializer_list<Argument> arguments) {
  begin(event);
  for (const Argument& argument : arguments) append(argument);
  end();
}

template <typename Vector>
void EventPrinter::printValues(const char* event, const Vector& values) {
  begin(event);
  appendName("values");
  line_ += '[';
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (i > 0) line_ += separator();
    appendValue(line_, values[i]);
  }
  line_ += ']';
  end();
}

void EventPrinter::printAlgorithm(const char* event, const std::string& uri, int index,
                                  const Argument& argument) {
  begin(event);
  append({"uri", uri});
  appendNumber("index", index);
  append(argument);
  end();
}

/// Appends what stands in front of a value.
void EventPrinter::appendName(const char* name) {
  if (!first_) line_ += separator();
  first_ = false;
  if (isJSON()) line_.append("\"").append(name).append("\":");
}

void EventPrinter::append(const Argument& argument) {
  appendName(argument.name);
  appendQuoted(line_, argument.value);
}

void EventPrinter::appendNumber(const char* name, int number) {
  appendName(name);
  line_ += std::to_string(number);
}

void EventPrinter::appendAttributes(const Tavrin::Attributes& attributes) {
  const auto* typed = dynamic_cast<const Tavrin::EncodingAlgorithmAttributes*>(&attributes);
  appendName("attributes");
  line_ += '[';
  for (int i = 0; i < attributes.getLength(); ++i) {
    if (i > 0) line_ += separator();
    line_ += '{';
    first_ = true;
    append({"uri", attributes.getURI(i)});
    append({"localName", attributes.getLocalName(i)});
    append({"qName", attributes.getQName(i)});
    append({"type", attributes.getType(i)});
    append({"value", attributes.getValue(i)});
    if (typed && typed->getAlgorithmData(i)) {
      append({"algorithmURI", typed->getAlgorithmURI(i)});
      appendNumber("algorithmIndex", typed->getAlgorithmIndex(i));
    }
    line_ += '}';
  }
  line_ += ']';
}

// --- Content ---

void EventPrinter::startDocument() { print("startDocument", {}); }

void EventPrinter::endDocument() { print("endDocument", {}); }

void EventPrinter::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  print("startPrefixMapping", {{"prefix", prefix}, {"uri", uri}});
}

void EventPrinter::endPrefixMapping(const std::string& prefix) {
  print("endPrefixMapping", {{"prefix", prefix}});
}

void EventPrinter::startElement(const std::string& uri, const std::string& localName,
                                const std::string& qName, const Tavrin::Attributes& attributes) {
  begin("startElement");
  append({"uri", uri});
  append({"localName", localName});
  append({"qName", qName});
  appendAttributes(attributes);
  end();
}

void EventPrinter::endElement(const std::string& uri, const std::string& localName,
                              const std::string& qName) {
  print("endElement", {{"uri", uri}, {"localName", localName}, {"qName", qName}});
}

void EventPrinter::characters(const std::string& text) { print("characters", {{"text", text}}); }

void EventPrinter::ignorableWhitespace(const std::string& text) {
  print("ignorableWhitespace", {{"text", text}});
}

void EventPrinter::processingInstruction(const std::string& target, const std::string& data) {
  print("processingInstruction", {{"target", target}, {"data", data}});
}

void EventPrinter::skippedEntity(const std::string& name) {
  print("skippedEntity", {{"name", name}});
}

// --- Declarations ---

void EventPrinter::notationDecl(const std::string& name, const std::string& publicId,
                                const std::string& systemId) {
  print("notationDecl", {{"name", name}, {"publicId", publicId}, {"systemId", systemId}});
}

void EventPrinter::unparsedEntityDecl(const std::string& name, const std::string& publicId,
                                      const std::string& systemId,
                                      const std::string& notationName) {
  print("unparsedEntityDecl", {{"name", name},
                               {"publicId", publicId},
                               {"systemId", systemId},
                               {"notationName", notationName}});
}

void EventPrinter::elementDecl(const std::string& name, const std::string& model) {
  print("elementDecl", {{"name", name}, {"model", model}});
}

void EventPrinter::attributeDecl(const std::string& eName, const std::string& aName,
                                 const std::string& type, const std::string& mode,
                                 const std::string& value) {
  print("attributeDecl",
        {{"eName", eName}, {"aName", aName}, {"type", type}, {"mode", mode}, {"value", value}});
}

void EventPrinter::internalEntityDecl(const std::string& name, const std::string& value) {
  print("internalEntityDecl", {{"name", name}, {"value", value}});
}

void EventPrinter::externalEntityDecl(const std::string& name, const std::string& publicId,
                                      const std::string& systemId) {
  print("externalEntityDecl", {{"name", name}, {"publicId", publicId}, {"systemId", systemId}});
}

// --- Lexical events and entities ---

void EventPrinter::startDTD(const std::string& name, const std::string& publicId,
                            const std::string& systemId) {
  print("startDTD", {{"name", name}, {"publicId", publicId}, {"systemId", systemId}});
}

void EventPrinter::endDTD() { print("endDTD", {}); }

void EventPrinter::startEntity(const std::string& name) { print("startEntity", {{"name", name}}); }

void EventPrinter::endEntity(const std::string& name) { print("endEntity", {{"name", name}}); }

void EventPrinter::startCDATA() { print("startCDATA", {}); }

void EventPrinter::endCDATA() { print("endCDATA", {}); }

void EventPrinter::comment(const std::string& text) { print("comment", {{"text", text}}); }

std::unique_ptr<std::istream> EventPrinter::resolveEntity(const std::string& publicId,
                                                          const std::string& systemId) {
  print("resolveEntity", {{"publicId", publicId}, {"systemId", systemId}});
  return resolver_ ? resolver_->resolveEntity(publicId, systemId) : nullptr;
}

// --- Typed content ---

void EventPrinter::bytes(const std::string& data) { print("bytes", {{"data", base64(data)}}); }

void EventPrinter::shorts(const std::vector<short>& data) { printValues("shorts", data); }

void EventPrinter::ints(const std::vector<long>& data) { printValues("ints", data); }

void EventPrinter::longs(const std::vector<long>& data) { printValues("longs", data); }

void EventPrinter::booleans(const std::vector<bool>& data) { printValues("booleans", data); }

void EventPrinter::floats(const std::vector<float>& data) { printValues("floats", data); }

void EventPrinter::doubles(const std::vector<double>& data) { printValues("doubles", data); }

void EventPrinter::octets(const std::string& uri, int index, const std::string& data) {
  printAlgorithm("octets", uri, index, {"data", base64(data)});
}

void EventPrinter::object(const std::string& uri, int index, const Tavrin::EncodedData& data) {
  printAlgorithm("object", uri, index, {"text", data.toString()});
}

}  // namespace tool
