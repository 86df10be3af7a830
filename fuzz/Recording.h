#pragma once

#include <Tavrin/Tavrin.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

/// A typed value that outlives the event that brought it.
struct TypedValue {
  std::string algorithmURI;
  int algorithmIndex = -1;
  std::shared_ptr<Tavrin::EncodedData> data;  ///< Null for octets that are still encoded.
  std::string octets;                         ///< The value's items as octets, to be compared.
};

/// A holder of the same value. Its octets are empty where the holder is the application's own.
TypedValue keep(const std::string& algorithmURI, int algorithmIndex,
                const Tavrin::EncodedData& data);

/// One event with all that it brought.
struct Event {
  enum Kind {
    startDocument,
    endDocument,
    startPrefixMapping,
    endPrefixMapping,
    startElement,
    endElement,
    characters,
    ignorableWhitespace,
    processingInstruction,
    skippedEntity,
    notationDecl,
    unparsedEntityDecl,
    elementDecl,
    attributeDecl,
    internalEntityDecl,
    externalEntityDecl,
    startDTD,
    endDTD,
    startEntity,
    endEntity,
    startCDATA,
    endCDATA,
    comment,
    octets,
    object
  };
  struct Attribute {
    std::string uri, localName, qName, type, value;
    TypedValue typed;  ///< Without an algorithm where the value is text.
  };

  Kind kind;
  std::vector<std::string> texts = {};  ///< The strings in the order of the operation.
  std::vector<Attribute> attributes = {};
  TypedValue value = {};

  /// One line, so that events which differ show it.
  std::string show() const;
};

using Events = std::vector<Event>;

/// Keeps the events of a reader.
class Recording : public Tavrin::ContentHandler,
                  public Tavrin::DTDHandler,
                  public Tavrin::DeclHandler,
                  public Tavrin::LexicalHandler,
                  public Tavrin::EncodingAlgorithmContentHandler {
 public:
  /// Takes typed content and attributes as such; otherwise all is text.
  explicit Recording(bool typed) : typed_(typed) {}

  void attachTo(Tavrin::XMLReader& reader);

  Events events;
  /// Called after each event.
  std::function<void()> afterEvent = [] {};

  void startDocument() override { add(Event::startDocument); }
  void endDocument() override { add(Event::endDocument); }
  void startPrefixMapping(const std::string& prefix, const std::string& uri) override {
    add(Event::startPrefixMapping, {prefix, uri});
  }
  void endPrefixMapping(const std::string& prefix) override {
    add(Event::endPrefixMapping, {prefix});
  }
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Tavrin::Attributes& attributes) override;
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override {
    add(Event::endElement, {uri, localName, qName});
  }
  void characters(const std::string& text) override { add(Event::characters, {text}); }
  void ignorableWhitespace(const std::string& text) override {
    add(Event::ignorableWhitespace, {text});
  }
  void processingInstruction(const std::string& target, const std::string& data) override {
    add(Event::processingInstruction, {target, data});
  }
  void skippedEntity(const std::string& name) override { add(Event::skippedEntity, {name}); }
  void notationDecl(const std::string& name, const std::string& publicId,
                    const std::string& systemId) override {
    add(Event::notationDecl, {name, publicId, systemId});
  }
  void unparsedEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId, const std::string& notationName) override {
    add(Event::unparsedEntityDecl, {name, publicId, systemId, notationName});
  }
  void elementDecl(const std::string& name, const std::string& model) override {
    add(Event::elementDecl, {name, model});
  }
  void attributeDecl(const std::string& eName, const std::string& aName, const std::string& type,
                     const std::string& mode, const std::string& value) override {
    add(Event::attributeDecl, {eName, aName, type, mode, value});
  }
  void internalEntityDecl(const std::string& name, const std::string& value) override {
    add(Event::internalEntityDecl, {name, value});
  }
  void externalEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId) override {
    add(Event::externalEntityDecl, {name, publicId, systemId});
  }
  void startDTD(const std::string& name, const std::string& publicId,
                const std::string& systemId) override {
    add(Event::startDTD, {name, publicId, systemId});
  }
  void endDTD() override { add(Event::endDTD); }
  void startEntity(const std::string& name) override { add(Event::startEntity, {name}); }
  void endEntity(const std::string& name) override { add(Event::endEntity, {name}); }
  void startCDATA() override { add(Event::startCDATA); }
  void endCDATA() override { add(Event::endCDATA); }
  void comment(const std::string& text) override { add(Event::comment, {text}); }
  void octets(const std::string& uri, int index, const std::string& data) override;
  void object(const std::string& uri, int index, const Tavrin::EncodedData& data) override;

 private:
  void add(Event::Kind kind, std::vector<std::string> texts = {}) {
    add(Event{kind, std::move(texts)});
  }
  void add(Event event) {
    events.push_back(std::move(event));
    afterEvent();
  }

  bool typed_;
};

/// Gives one event to a writer. Typed content goes to writers that take it only.
void send(const Event& event, Tavrin::XMLWriter& writer);
