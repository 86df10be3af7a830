#pragma once

#include <Tavrin/Tavrin.h>

#include <sstream>

/// A reader's handlers that lead every event into both writers, so that what a hostile document
/// gets through a reader is also what the writers must survive.
class Everything : public Tavrin::ContentHandler {
 public:
  Everything() {
    xml.setOutputStream(&out);
    fi.setOutputStream(&out);
  }

  void startDocument() override { both(&Tavrin::ContentHandler::startDocument); }
  void endDocument() override { both(&Tavrin::ContentHandler::endDocument); }
  void startPrefixMapping(const std::string& prefix, const std::string& uri) override {
    both(&Tavrin::ContentHandler::startPrefixMapping, prefix, uri);
  }
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Tavrin::Attributes& attributes) override {
    both(&Tavrin::ContentHandler::startElement, uri, localName, qName, attributes);
  }
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override {
    both(&Tavrin::ContentHandler::endElement, uri, localName, qName);
  }
  void characters(const std::string& text) override {
    both(&Tavrin::ContentHandler::characters, text);
  }
  void processingInstruction(const std::string& target, const std::string& data) override {
    both(&Tavrin::ContentHandler::processingInstruction, target, data);
  }

  Tavrin::XMLWriter_XML xml;
  Tavrin::XMLWriter_FI fi;
  std::ostringstream out;

 private:
  template <typename Operation, typename... Arguments>
  void both(Operation operation, const Arguments&... arguments) {
    (xml.*operation)(arguments...);
    (fi.*operation)(arguments...);
  }
};
