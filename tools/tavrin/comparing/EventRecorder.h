#pragma once

#include <Tavrin/Handlers.h>
#include <Tavrin/TypedData.h>
#include <Tavrin/XMLReader.h>

#include <exception>
#include <memory>
#include <string>

#include "comparing/RecordWriter.h"
#include "files/Input.h"

namespace tool {

/// Records the events that make up the content of a document, so that documents in different
/// encodings have the same events:
/// - Text is one run of records, whatever calls, CDATA sections or typed values it comes in.
/// - The end of a prefix mapping is left out: it goes without saying where the element ends.
/// - The document type is left out, with references and comments within it, and its external subset
///   whole.
///
/// A document that is not the first of its input begins with an event of its own.
///
/// Document types and the borders of CDATA sections are recorded on demand.
class EventRecorder : public Tavrin::ContentHandler,
                      public Tavrin::LexicalHandler,
                      public Tavrin::EntityResolver,
                      public Tavrin::EncodingAlgorithmContentHandler {
 public:
  /// @param findsLines where the document has lines, octets are enough, with anchors
  /// @param resolver gives the external entities; null leaves them out
  EventRecorder(BlockQueue& queue, const Input& input, bool lexical, bool findsLines,
                Tavrin::EntityResolver* resolver);

  /// Lets a reader report to this recorder.
  void attachTo(Tavrin::XMLReader& reader);
  /// Hands over what is left.
  /// @param isCutOff the document could not be read to its end
  void finish(bool isCutOff);
  /// Throws what a handler threw: readers may keep that to themselves.
  void check() const;

  void setDocumentLocator(const Tavrin::Locator* locator) override;
  void startDocument() override;
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

  void octets(const std::string& uri, int index, const std::string& data) override;
  void object(const std::string& uri, int index, const Tavrin::EncodedData& data) override;

 private:
  template <typename Work>
  void guard(Work work);
  Place advance();
  void setAnchor(std::uint64_t octet);
  void begin(RecordKind kind);
  void end();
  template <typename... Strings>
  void record(RecordKind kind, const Strings&... strings);
  template <typename... Strings>
  void recordIf(bool wanted, RecordKind kind, const Strings&... strings);
  void recordText(const std::string& text);
  void noteTextBegins();

  const Input& input_;
  bool lexical_;
  bool findsLines_;
  Tavrin::EntityResolver* resolver_;
  bool readerFollowsStandard_ = false;
  const Tavrin::Locator* locator_ = nullptr;
  const Tavrin::OctetLocator* octets_ = nullptr;  // The same, where these are enough.
  std::uint64_t nextAnchor_ = 0;                  // An event from here on is the next one.
  std::uint64_t end_;                             // The last octet of the event before.
  bool inDTD_ = false;
  bool inExternalSubset_ = false;
  RecordWriter records_;
  Place textPlace_;
  std::string entity_;  // In which the last record is, or the text to which it belongs.
  std::exception_ptr failure_;
};

}  // namespace tool
