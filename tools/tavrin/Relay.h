#pragma once

#include <Tavrin/Handlers.h>
#include <Tavrin/XMLReader.h>
#include <Tavrin/XMLWriter.h>

#include <exception>
#include <string>

#include "Output.h"

namespace tool {

/// Passes the events of a document from a reader to a writer, and sees to it that nothing of the
/// content is missing: a reference to an entity that was not read ends the work. The external part
/// of the document type may be missing.
///
/// Readers may keep the exceptions of handlers to themselves, so the first failure is kept here.
class Relay : public Tavrin::ContentHandler,
              public Tavrin::LexicalHandler,
              public Tavrin::EntityResolver {
 public:
  /// @param documentName for messages
  Relay(Tavrin::XMLWriter& writer, const Output& output, const std::string& documentName)
      : writer_(writer), output_(output), documentName_(documentName) {}

  /// Sets this relay as content handler, lexical handler and entity resolver.
  void attachTo(Tavrin::XMLReader& reader);
  /// Throws the failure that was kept, if there is one.
  void check() const;

  void setDocumentLocator(const Tavrin::Locator* locator) override;
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

  void startDTD(const std::string& name, const std::string& publicId,
                const std::string& systemId) override;
  void endDTD() override;
  void startEntity(const std::string& name) override;
  void endEntity(const std::string& name) override;
  void startCDATA() override;
  void endCDATA() override;
  void comment(const std::string& text) override;

  std::unique_ptr<std::istream> resolveEntity(const std::string& publicId,
                                              const std::string& systemId) override;

 private:
  template <typename Event>
  void pass(Event event);
  [[noreturn]] void fail(const std::string& message);

  Tavrin::XMLWriter& writer_;
  const Output& output_;
  std::string documentName_;
  const Tavrin::Locator* locator_ = nullptr;
  bool inDTD_ = false;
  std::exception_ptr failure_;
};

}  // namespace tool
