#include "EventPrinter.h"

#include <Tavrin/Identifiers.h>

#include <stdexcept>

#include "Text.h"

namespace tool {

void EventPrinter::attachTo(Tavrin::XMLReader& reader) {
  reader.setContentHandler(this);
  reader.setEntityResolver(this);
  reader.setProperty(Tavrin::properties::lexicalHandler,
                     static_cast<Tavrin::LexicalHandler*>(this));
}

void EventPrinter::attachDeclarationsTo(Tavrin::XMLReader& reader) {
  reader.setDTDHandler(this);
  reader.setProperty(Tavrin::properties::declarationHandler,
                     static_cast<Tavrin::DeclHandler*>(this));
}

// --- Lines ---

void EventPrinter::print(const char* event, std::initializer_list<Argument> arguments,
                         const Tavrin::Attributes* attributes) {
  const bool isJSON = format_ == Format::JSON;
  line_ = isJSON ? std::string("{\"event\":\"") + event + "\"" : std::string(event) + "(";
  bool isFirst = !isJSON;
  for (const Argument& argument : arguments) {
    appendMember(argument, isFirst);
    isFirst = false;
  }
  if (attributes) {
    line_ += isJSON ? ",\"attributes\":" : ", ";
    appendAttributes(*attributes);
  }
  line_ += isJSON ? "}\n" : ")\n";
  out_.write(line_.data(), static_cast<std::streamsize>(line_.size()));
  // There is no use in reading on. The output knows why.
  if (!out_) throw std::runtime_error("events cannot be written");
}

void EventPrinter::appendMember(const Argument& argument, bool isFirst) {
  const bool isJSON = format_ == Format::JSON;
  if (!isFirst) line_ += isJSON ? "," : ", ";
  if (isJSON) line_.append("\"").append(argument.name).append("\":");
  appendQuoted(line_, argument.value);
}

void EventPrinter::appendAttributes(const Tavrin::Attributes& attributes) {
  const char* separator = format_ == Format::JSON ? "," : ", ";
  line_ += '[';
  for (int i = 0; i < attributes.getLength(); ++i) {
    if (i > 0) line_ += separator;
    line_ += '{';
    appendMember({"uri", attributes.getURI(i)}, true);
    appendMember({"localName", attributes.getLocalName(i)}, false);
    appendMember({"qName", attributes.getQName(i)}, false);
    appendMember({"type", attributes.getType(i)}, false);
    appendMember({"value", attributes.getValue(i)}, false);
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
  print("startElement", {{"uri", uri}, {"localName", localName}, {"qName", qName}}, &attributes);
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
  return nullptr;
}

}  // namespace tool
