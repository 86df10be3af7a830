#pragma once

#include <Tavrin/Handlers.h>
#include <Tavrin/TypedData.h>
#include <Tavrin/XMLReader.h>
#include <Tavrin/XMLWriter.h>

#include <array>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "copying/Relay.h"
#include "files/EntityFiles.h"
#include "files/Input.h"
#include "measuring/EventOctets.h"
#include "measuring/Measurement.h"
#include "options/ReadingOptions.h"
#include "reading/EntityDeclarations.h"

namespace tool {

/// Measures a document: hands every event to a writer of each encoding and sorts the octets that
/// come of it. A writer that refuses one gets no more.
class Measurer : public Tavrin::ContentHandler,
                 public Tavrin::DTDHandler,
                 public Tavrin::DeclHandler,
                 public Tavrin::LexicalHandler,
                 public Tavrin::EntityResolver,
                 public Tavrin::EncodingAlgorithmContentHandler {
 public:
  Measurer(Measurement& measurement, Input& input, const ReadingOptions& options,
           EntityFiles& entities);
  ~Measurer() override;

  /// Reads a document and adds what it takes to the measurement.
  /// @throws Failure when it cannot be read, or when there is a copy in neither encoding
  void measure(Tavrin::XMLReader& reader);

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

  std::unique_ptr<std::istream> resolveEntity(const std::string& publicId,
                                              const std::string& systemId) override;

  void octets(const std::string& uri, int index, const std::string& data) override;
  void object(const std::string& uri, int index, const Tavrin::EncodedData& data) override;

 private:
  class Side;

  void refuse(Side& side, const Failure& failure);
  template <typename Event>
  void pass(OctetKind content, Event event, const std::string* element = nullptr);
  template <typename Event>
  void passTo(Side& side, OctetKind content, Event event);
  void passText(const std::string& text, void (Tavrin::ContentHandler::*event)(const std::string&));
  std::array<std::uint64_t, kEncodingCount> ofBoth(std::uint64_t (*octetsOf)(const EventOctets&,
                                                                             std::size_t),
                                                   std::size_t i) const;
  void addText();
  void addStringsOf(const Tavrin::Attributes& attributes);

  Measurement& measurement_;
  Input& input_;
  EntityFiles& entities_;
  std::vector<std::unique_ptr<Side>> sides_;
  std::string text_;  // The beginning of text whose end has not come,
  std::uint64_t textSize_ = 0;
  std::uint64_t textOctets_ = 0;  // and what it takes as XML text.
};

}  // namespace tool
