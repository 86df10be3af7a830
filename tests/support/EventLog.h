#pragma once

#include <Tavrin/Tavrin.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

/// The events of a document as lines of text, one an event, so that a test compares whole logs.
///
/// A line is the operation's name and its arguments in order: `startElement(urn:x, a, p:a, [])`.
/// An attribute is `{uri, localName, qName, type, value}`. Control characters show as \n, \r, \t or
/// \xNN, and a backslash as two. Octets show as hexadecimal, `bytes(00 7F A0)`; typed values as
/// their class and text, `object(urn:x, 32, IntData{1 -2})`; floating-point numbers so that no two
/// that differ show alike.
class EventLog : public Tavrin::ContentHandler,
                 public Tavrin::DTDHandler,
                 public Tavrin::DeclHandler,
                 public Tavrin::LexicalHandler,
                 public Tavrin::ErrorHandler,
                 public Tavrin::EntityResolver,
                 public Tavrin::PrimitiveTypeContentHandler,
                 public Tavrin::EncodingAlgorithmContentHandler {
 public:
  using Lines = std::vector<std::string>;

  /// Consecutive `characters` events become one line. Off shows each as it came.
  bool mergeCharacters = true;
  /// An attribute with a typed value shows three more fields: `..., algorithm URI, index, value}`.
  bool showAlgorithms = false;
  /// Off leaves out `setDocumentLocator`, which not all readers of a test call.
  bool showLocator = true;
  /// Called before an event is logged, with the number of events so far. May throw.
  std::function<void(std::size_t)> beforeEvent;
  /// What resolveEntity answers, by system identifier; any other gives no stream.
  std::map<std::string, std::string> entities;

  /// Sets this log as content handler, error handler, lexical handler and entity resolver.
  void attachTo(Tavrin::XMLReader& reader);
  /// Sets this log as DTD handler and declaration handler.
  void attachDeclarationsTo(Tavrin::XMLReader& reader);
  /// Sets this log as handler of primitive types.
  void attachPrimitiveTypesTo(Tavrin::XMLReader& reader);
  /// Sets this log as handler of encoding algorithms.
  void attachAlgorithmsTo(Tavrin::XMLReader& reader);

  const Lines& lines() const { return lines_; }
  /// join(lines())
  std::string text() const;
  std::size_t eventCount() const { return eventCount_; }
  void clear();

  /// The text as a line shows it.
  static std::string show(const std::string& text);
  /// Octets as a line shows them.
  static std::string showOctets(const std::string& octets);
  /// A typed value as a line shows it; an application's own is `EncodedData{...}`.
  static std::string showValue(const Tavrin::EncodedData& value);

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

  void warning(const Tavrin::SAXParseException& exception) override;
  void error(const Tavrin::SAXParseException& exception) override;
  void fatalError(const Tavrin::SAXParseException& exception) override;

  std::unique_ptr<std::istream> resolveEntity(const std::string& publicId,
                                              const std::string& systemId) override;

  void bytes(const std::string& data) override;
  void shorts(const std::vector<short>& data) override;
  void ints(const std::vector<long>& data) override;
  void longs(const std::vector<long>& data) override;
  void booleans(const std::vector<bool>& data) override;
  void floats(const std::vector<float>& data) override;
  void doubles(const std::vector<double>& data) override;

  void octets(const std::string& uri, int index, const std::string& data) override;
  void object(const std::string& uri, int index, const Tavrin::EncodedData& data) override;

 private:
  void add(const std::string& operation, const std::vector<std::string>& arguments);
  void addFailure(const std::string& operation, const Tavrin::SAXParseException& exception);

  Lines lines_;
  std::size_t eventCount_ = 0;
  bool inCharacters_ = false;
};

/// The lines of a log as one text, each ended by a line feed: GoogleTest shows how two such texts
/// differ line by line.
std::string join(const EventLog::Lines& lines);
