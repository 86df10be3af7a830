#pragma once

#include <Tavrin/Handlers.h>
#include <Tavrin/XMLReader.h>

#include <initializer_list>
#include <memory>
#include <ostream>
#include <string>

namespace tool {

/// Prints every event that it receives, on one line each: as the call it is, or as a JSON object
/// whose members are the call's arguments. The locator is not printed.
class EventPrinter : public Tavrin::ContentHandler,
                     public Tavrin::DTDHandler,
                     public Tavrin::DeclHandler,
                     public Tavrin::LexicalHandler,
                     public Tavrin::EntityResolver {
 public:
  enum class Format { Text, JSON };

  EventPrinter(std::ostream& out, Format format) : out_(out), format_(format) {}

  /// Sets this printer as content handler, lexical handler and entity resolver.
  void attachTo(Tavrin::XMLReader& reader);
  /// Sets this printer as DTD handler and declaration handler.
  void attachDeclarationsTo(Tavrin::XMLReader& reader);

  void startDocument() override;
  void endDocument() override;
  void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
  void endPrefixMapping(const std::string& prefix) override;
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Tavrin::Attributes& attributes) override;
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override;
  void characters(const std::string& text) override;
  void ignorableWhitespace(const std::string& text) override;
  void processingInstruction(const std::string& target, const std::string& data) override;
  void skippedEntity(const std::string& name) override;

  void notationDecl(const std::string& name, const std::string& publicId,
                    const std::string& systemId) override;
  void unparsedEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId, const std::string& notationName) override;

  void elementDecl(const std::string& name, const std::string& model) override;
  void attributeDecl(const std::string& eName, const std::string& aName, const std::string& type,
                     const std::string& mode, const std::string& value) override;
  void internalEntityDecl(const std::string& name, const std::string& value) override;
  void externalEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId) override;

  void startDTD(const std::string& name, const std::string& publicId,
                const std::string& systemId) override;
  void endDTD() override;
  void startEntity(const std::string& name) override;
  void endEntity(const std::string& name) override;
  void startCDATA() override;
  void endCDATA() override;
  void comment(const std::string& text) override;

  /// Prints the call and returns no stream: external entities are not read.
  std::unique_ptr<std::istream> resolveEntity(const std::string& publicId,
                                              const std::string& systemId) override;

 private:
  struct Argument {
    const char* name;
    const std::string& value;
  };

  void print(const char* event, std::initializer_list<Argument> arguments,
             const Tavrin::Attributes* attributes = nullptr);
  void appendMember(const Argument& argument, bool isFirst);
  void appendAttributes(const Tavrin::Attributes& attributes);

  std::ostream& out_;
  Format format_;
  std::string line_;  // Kept for its storage.
};

}  // namespace tool
