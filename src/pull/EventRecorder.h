#pragma once

#include <Tavrin/Handlers.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLReader.h>

#include <string>

#include "EventQueue.h"

namespace Tavrin {

/// Appends what a reader reports to a queue.
class EventRecorder : public ContentHandler,
                      public DTDHandler,
                      public DeclHandler,
                      public LexicalHandler {
 public:
  explicit EventRecorder(EventQueue& queue) : recorded_(queue) {}

  /// Becomes the handler of all events of a reader.
  void attachTo(XMLReader& reader);
  /// Records positions, too.
  void trackPositions() { tracks_ = true; }
  /// That of the event that is under way.
  EventPosition positionHere() const;

  void setDocumentLocator(const Locator* locator) override { locator_ = locator; }
  void startDocument() override { add(PullEvent::startDocument); }
  void endDocument() override { add(PullEvent::endDocument); }
  void startPrefixMapping(const std::string& prefix, const std::string& uri) override {
    recorded_.addMapping(prefix, uri);
  }
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Attributes& attributes) override {
    recorded_.addStartElement(uri, localName, qName, attributes);
    if (tracks_) recorded_.addPosition(positionHere());
  }
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override {
    add(PullEvent::endElement, uri, localName, qName);
  }
  void characters(const std::string& text) override { add(PullEvent::characters, text); }
  void ignorableWhitespace(const std::string& text) override {
    add(PullEvent::ignorableWhitespace, text);
  }
  void processingInstruction(const std::string& target, const std::string& data) override {
    add(PullEvent::processingInstruction, target, data);
  }
  void skippedEntity(const std::string& name) override { add(PullEvent::skippedEntity, name); }

  void notationDecl(const std::string& name, const std::string& publicId,
                    const std::string& systemId) override {
    add(PullEvent::notationDecl, name, publicId, systemId);
  }
  void unparsedEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId, const std::string& notation) override {
    add(PullEvent::unparsedEntityDecl, name, publicId, systemId, notation);
  }

  void elementDecl(const std::string& name, const std::string& model) override {
    add(PullEvent::elementDecl, name, model);
  }
  void attributeDecl(const std::string& eName, const std::string& aName, const std::string& type,
                     const std::string& mode, const std::string& value) override {
    add(PullEvent::attributeDecl, eName, aName, type, mode, value);
  }
  void internalEntityDecl(const std::string& name, const std::string& value) override {
    add(PullEvent::internalEntityDecl, name, value);
  }
  void externalEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId) override {
    add(PullEvent::externalEntityDecl, name, publicId, systemId);
  }

  void startDTD(const std::string& name, const std::string& publicId,
                const std::string& systemId) override {
    add(PullEvent::startDTD, name, publicId, systemId);
  }
  void endDTD() override { add(PullEvent::endDTD); }
  void startEntity(const std::string& name) override { add(PullEvent::startEntity, name); }
  void endEntity(const std::string& name) override { add(PullEvent::endEntity, name); }
  void startCDATA() override { add(PullEvent::startCDATA); }
  void endCDATA() override { add(PullEvent::endCDATA); }
  void comment(const std::string& text) override { add(PullEvent::comment, text); }

 private:
  template <typename... Parts>
  void add(PullEvent event, const Parts&... parts) {
    recorded_.add(event, parts...);
    if (tracks_) recorded_.addPosition(positionHere());
  }

  EventQueue& recorded_;
  const Locator* locator_ = nullptr;
  bool tracks_ = false;
};

}  // namespace Tavrin
