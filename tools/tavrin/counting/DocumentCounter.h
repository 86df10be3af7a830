#pragma once

#include <Tavrin/Handlers.h>
#include <Tavrin/TypedData.h>
#include <Tavrin/XMLReader.h>

#include <cstdint>
#include <string>
#include <unordered_set>

#include "copying/Relay.h"
#include "files/Failure.h"

namespace tool {

/// Counts what a document holds, without comments and instructions of its external subset, and
/// hands every event on to a relay until that refuses one. Memory grows with the number of distinct
/// names, not with the document.
class DocumentCounter : public Tavrin::ContentHandler,
                        public Tavrin::DTDHandler,
                        public Tavrin::DeclHandler,
                        public Tavrin::LexicalHandler,
                        public Tavrin::EntityResolver,
                        public Tavrin::EncodingAlgorithmContentHandler {
 public:
  struct Counts {
    std::uint64_t elements = 0;
    std::uint64_t attributes = 0;
    std::uint64_t textOctets = 0;
    std::uint64_t attributeOctets = 0;
    std::uint64_t comments = 0;
    std::uint64_t instructions = 0;
    std::uint64_t depth = 0;
    std::uint64_t typedValues = 0;
    std::uint64_t typedItems = 0;
  };

  /// @param resolver gives the external entities; null leaves them out
  DocumentCounter(Relay& relay, Tavrin::EntityResolver* resolver)
      : relay_(relay), resolver_(resolver) {}

  /// Lets a reader report to this counter: declarations only where the relay takes them.
  void attachTo(Tavrin::XMLReader& reader);

  const Counts& counts() const { return counts_; }
  /// Different names of elements and attributes: namespace name and qualified name.
  std::size_t distinctNames() const { return names_.size(); }
  /// Hands on no more events, as if the relay had refused one with this failure.
  void refuse(const Failure& failure);
  /// Why the relay refused the document; empty if it took all of it.
  const std::string& refusal() const { return refusal_; }

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
  template <typename Event>
  void forward(Event event);
  void countName(const std::string& uri, const std::string& qName);
  void countAttributes(const Tavrin::Attributes& attributes);
  void countTyped(const Tavrin::EncodedData& data);

  Relay& relay_;
  Tavrin::EntityResolver* resolver_;
  bool inExternalSubset_ = false;
  Counts counts_;
  std::uint64_t openElements_ = 0;
  std::unordered_set<std::string> names_;
  std::string name_;  // Kept for its storage.
  std::string refusal_;
};

}  // namespace tool
