#pragma once

#include <Tavrin/Handlers.h>
#include <Tavrin/TypedData.h>
#include <Tavrin/XMLReader.h>

#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "vocabularies/Candidates.h"

namespace tool {

/// Tells candidates what the writer X891 would write of a sample, in the same order: declarations
/// of namespaces, names, values, runs of character data and all other strings that have a table.
class SampleTally : public Tavrin::ContentHandler,
                    public Tavrin::DTDHandler,
                    public Tavrin::DeclHandler,
                    public Tavrin::LexicalHandler,
                    public Tavrin::EntityResolver,
                    public Tavrin::EncodingAlgorithmContentHandler {
 public:
  /// @param resolver gives the external entities; null leaves them out
  SampleTally(Candidates& candidates, Tavrin::EntityResolver* resolver);

  /// Lets a reader report to this object.
  void attachTo(Tavrin::XMLReader& reader);

  void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
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
  void externalEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId) override;

  std::unique_ptr<std::istream> resolveEntity(const std::string& publicId,
                                              const std::string& systemId) override;

  void octets(const std::string& uri, int index, const std::string& data) override;
  void object(const std::string& uri, int index, const Tavrin::EncodedData& data) override;

 private:
  void use(Table table, const std::string& text);
  void useIdentifiers(const std::string& publicId, const std::string& systemId);
  void endText();

  Candidates& candidates_;
  Tavrin::EntityResolver* resolver_;
  std::vector<std::pair<std::string, std::string>> declarations_;  // Of the next start tag.
  std::string text_;  // The run of character data, as far as it may be a candidate.
  std::size_t mostText_;
  bool readsTypedValues_ = false;
  bool inCDATA_ = false;
  bool inDTD_ = false;
  bool inExternalSubset_ = false;
  std::unordered_map<std::string, std::pair<std::string, std::string>> entities_;
};

}  // namespace tool
