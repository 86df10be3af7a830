/// @file
/// The base of all writers.
#pragma once

#include <Tavrin/Export.h>
#include <Tavrin/Handlers.h>

#include <cstdint>
#include <deque>
#include <ostream>
#include <string>

namespace Tavrin {

/// Receives a document as events, checks their order and keeps the stack of open elements.
///
/// The base writes nothing. A concrete writer overrides an event, calls the base operation, which
/// throws a SAXException when the event is not allowed now, and then writes. One thread uses a
/// writer at a time.
///
/// A complete document is: startDocument; optionally startDTD, declarations and endDTD; the root
/// element; endDocument. Comments, processing instructions and ignorable white space may stand
/// anywhere between, except that a CDATA section can have only text and white space. endDocument is
/// allowed without any element. reset prepares the writer for another document.
class TAVRIN_API XMLWriter : public ContentHandler,
                             public DTDHandler,
                             public DeclHandler,
                             public LexicalHandler {
 public:
  /// How far the document has come.
  enum WriterState : std::int32_t {
    Initial = 0,    ///< No document started.
    Prolog = 1,     ///< Started; neither DTD nor root element yet.
    InDTD = 2,      ///< Between startDTD and endDTD.
    AfterDTD = 3,   ///< endDTD seen; root element not yet started.
    InElement = 4,  ///< At least one element open.
    InCDATA = 5,    ///< In a CDATA section.
    AfterRoot = 6,  ///< The root element has ended.
    Ended = 7       ///< endDocument seen.
  };

  /// The names of an open element, as startElement gave them.
  struct Element {
    std::string uri;        ///< Namespace name, or empty.
    std::string localName;  ///< Name without prefix.
    std::string qName;      ///< Name with prefix and colon.
  };

  /// Without a stream.
  XMLWriter() = default;
  ~XMLWriter() override = default;
  XMLWriter(const XMLWriter&) = delete;
  XMLWriter& operator=(const XMLWriter&) = delete;

  /// Sets the stream for the document. It is not owned, must outlive its use, and is never flushed
  /// by the writer. Without a stream, events are checked and nothing is written.
  void setOutputStream(std::ostream* out) { out_ = out; }
  std::ostream* getOutputStream() const { return out_; }  ///< The stream, or null.

  /// @name Content
  /// Each throws SAXException when the event is not allowed now; the state is then as before.
  /// @{
  void startDocument() override;
  void endDocument() override;
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Attributes& attributes) override;
  /// @throws SAXException also when a name differs from that of the innermost open element
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override;
  /// @throws SAXException also for "]]>" in a CDATA section
  void characters(const std::string& text) override;
  /// @throws SAXException also for anything but space, tab, carriage return and line feed
  void ignorableWhitespace(const std::string& text) override;
  void processingInstruction(const std::string& target, const std::string& data) override;
  /// @}

  /// @name Features and properties
  /// As in XMLReader. The base knows none: each call throws SAXNotRecognizedException.
  /// @{
  virtual void setFeature(const std::string& name, bool value);  ///< Switches one on or off.
  virtual bool getFeature(const std::string& name);              ///< Whether it is on.
  /// Sets a property. The value is not owned.
  virtual void setProperty(const std::string& name, void* value);
  virtual void* getProperty(const std::string& name);  ///< The pointer that was set, or null.
  /// @}

  /// Writes what is pending in a concrete writer. It does not flush the stream.
  virtual void flush();
  /// Discards the current document, so that another one can be started on the same stream.
  virtual void reset();

  /// @name Document type, CDATA sections and comments
  /// Each throws SAXException when the event is not allowed now; the state is then as before.
  /// @{
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
  void startCDATA() override;
  void endCDATA() override;
  /// @throws SAXException also for a text that contains "-->"
  void comment(const std::string& text) override;
  /// @}

 protected:
  std::ostream* out_ = nullptr;   ///< The stream for the document, or null; not owned.
  WriterState state_ = Initial;   ///< How far the document has come.
  bool hasContent_ = false;       ///< The innermost element, DTD or CDATA section has content.
  std::deque<Element> elements_;  ///< Open elements; the innermost is the last.
};

}  // namespace Tavrin
