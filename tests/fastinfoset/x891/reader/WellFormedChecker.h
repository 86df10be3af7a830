#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "X891ReaderSupport.h"

namespace x891_test {

/// Follows the events of a document and sees whether they can be written as XML 1.0 with
/// namespaces. It knows nothing of the reader.
class Checker : public Tavrin::ContentHandler,
                public Tavrin::LexicalHandler,
                public Tavrin::DTDHandler,
                public Tavrin::EncodingAlgorithmContentHandler {
 public:
  std::string mistake;     ///< The first that was made.
  std::size_t events = 0;  ///< How many there were.

  bool hasEnded() const { return place_ == kBehind; }

  void startDocument() override;
  void endDocument() override;
  void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
  void endPrefixMapping(const std::string& prefix) override;
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Tavrin::Attributes& attributes) override;
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override;
  void characters(const std::string& text) override;
  void processingInstruction(const std::string& target, const std::string& data) override;
  void skippedEntity(const std::string& name) override;

  void startDTD(const std::string& name, const std::string& publicId,
                const std::string& systemId) override;
  void endDTD() override;
  void startCDATA() override;
  void endCDATA() override;
  void comment(const std::string& text) override;

  void notationDecl(const std::string& name, const std::string& publicId,
                    const std::string& systemId) override;
  void unparsedEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId, const std::string& notation) override;

  void octets(const std::string& uri, int index, const std::string& data) override;
  void object(const std::string& uri, int index, const Tavrin::EncodedData& data) override;

 private:
  enum Place { kBefore, kInside, kBehind };

  struct Element {
    std::string uri;
    std::string localName;
    std::string qName;
    std::size_t mappings;  ///< How many were in force outside.
  };

  void expect(bool holds, const char* otherwise);
  void begin();
  void checkText(const std::string& text);
  void checkName(const std::string& name);
  void checkIds(const std::string& publicId, const std::string& systemId);
  void checkQName(const std::string& uri, const std::string& localName, const std::string& qName,
                  bool isAttribute);
  std::string boundTo(const std::string& prefix) const;

  Place place_ = kBefore;
  bool rootSeen_ = false;
  bool inDTD_ = false;
  bool dtdSeen_ = false;
  bool inCDATA_ = false;
  std::string rootName_;  ///< As the document type has it.
  std::vector<Element> open_;
  std::vector<std::pair<std::string, std::string>> mappings_;
  std::size_t pending_ = 0;         ///< Mappings whose element has not begun.
  std::vector<std::string> ended_;  ///< Prefixes whose end is to be told.
};

}  // namespace x891_test
