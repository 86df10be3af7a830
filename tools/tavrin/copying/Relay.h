#pragma once

#include <Tavrin/Handlers.h>
#include <Tavrin/TypedData.h>
#include <Tavrin/XMLReader.h>
#include <Tavrin/XMLWriter.h>

#include <exception>
#include <string>

#include "files/Input.h"
#include "files/Output.h"
#include "reading/EntityDeclarations.h"
#include "reading/WayBack.h"

namespace tool {

/// Passes the events of a document from a reader to a writer, and sees to it that nothing of the
/// content is missing: a reference to an entity that was not read ends the work, unless the writer
/// keeps such references, and so does content that the writer has no form for. The external part of
/// the document type may be missing.
///
/// Declarations, and what a document states of itself, are passed on where reader and writer follow
/// the standards. Other readers stop at some declarations, other writers break some.
///
/// Comments, instructions, notations and unparsed entities in the external subset stay there: the
/// copy refers to it, too. Fast Infoset does not tell what is from there, so that a copy of the
/// copy would declare the notations twice, which is not valid (XML 1.0, section 4.7).
///
/// Typed content keeps its type where the writer takes it, and is passed on as text where not. It
/// comes as objects of encoding algorithms and not as primitive types, which do not tell
/// hexadecimal from base64.
///
/// Readers may keep the exceptions of handlers to themselves, so the first failure is kept here.
class Relay : public Tavrin::ContentHandler,
              public Tavrin::DTDHandler,
              public Tavrin::DeclHandler,
              public Tavrin::LexicalHandler,
              public Tavrin::EntityResolver,
              public Tavrin::EncodingAlgorithmContentHandler {
 public:
  /// @param output   where the writer's stream leads; null where writing cannot fail
  /// @param input    for messages
  /// @param resolver gives the external entities; null leaves them out
  Relay(Tavrin::XMLWriter& writer, const Output* output, const Input& input,
        Tavrin::EntityResolver* resolver = nullptr);

  /// Names the reader whose events come, maybe by way of another handler. They are attached to the
  /// relay with declarations only where these are passed on.
  void expectFrom(Tavrin::XMLReader& reader);
  /// Whether declarations are passed on.
  bool takesDeclarations() const { return readerFollowsStandard_ && writerFollowsStandard_; }
  /// Whether the writer has to be told of entities before the reader tells of them.
  bool needsEntityDeclarations() const;
  /// Sets the entities that the document type is to declare, beside its own; null for none.
  void declare(const EntityDeclarations* entities) { entities_ = entities; }
  /// Whether the copy keeps less of entities than would do for a copy of the copy.
  bool mayLackWayBack() const;
  /// Sets who sees what has no way back, to warn of it; null for nobody.
  void watch(WayBack* wayBack) { wayBack_ = wayBack; }
  /// Takes note of an external entity that is not read.
  void passOver(const std::string& systemId);
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
  void pass(Event event);
  [[noreturn]] void fail(const std::string& message);
  void passOnStatements();

  Tavrin::XMLWriter& writer_;
  Tavrin::EncodingAlgorithmContentHandler* typedWriter_;  // The same writer, or null.
  const Output* output_;
  const Input& input_;
  Tavrin::XMLReader* reader_ = nullptr;
  Tavrin::EntityResolver* resolver_;
  const Tavrin::Locator* locator_ = nullptr;
  const EntityDeclarations* entities_ = nullptr;
  WayBack* wayBack_ = nullptr;
  bool readerFollowsStandard_ = false;
  bool readerIsTyped_ = false;
  bool writerFollowsStandard_;
  bool inDTD_ = false;
  bool inExternalSubset_ = false;
  std::exception_ptr failure_;
};

}  // namespace tool
