/// @file
/// The reader of XML text.
#pragma once

#include <Tavrin/Export.h>
#include <Tavrin/Factories.h>
#include <Tavrin/XMLReader.h>

#include <istream>
#include <memory>
#include <string>

struct XML_ParserStruct;

namespace Tavrin {

/// Reads XML 1.0 text with namespaces through expat; registered as "Expat".
///
/// Input is UTF-8, UTF-16, ISO-8859-1 or US-ASCII, as detected by expat. The external DTD subset
/// and external entities are read through the EntityResolver, or passed over without one.
///
/// Properties: Tavrin::properties::lexicalHandler, Tavrin::properties::declarationHandler.
///
/// Things to know before relying on it:
/// - No exception of a handler reaches the caller of parse while the document is being read. It is
///   dropped, the parse stops, and parse throws the SAXParseException of an aborted parse. Only
///   setDocumentLocator, startDocument, endDocument and fatalError may throw through.
/// - An attribute with a prefix is split into namespace name, local name and qualified name only
///   when its local name is at least as long as its namespace name. Otherwise both names hold the
///   local name, a line feed and the prefix, as with `xml:lang`; a copy by XMLWriter_XML is then
///   not well-formed.
/// - Every attribute has the type "CDATA".
/// - Undeclaring the default namespace (`xmlns=""`) aborts the parse if there is a content handler.
/// - A notation declaration aborts the parse while a DTD handler is set; the declaration of an
///   external or unparsed entity does while a declaration handler is set (an unparsed one only
///   with a DTD handler beside it). They need a base URI, and this reader has none.
class TAVRIN_API XMLReader_Expat : public XMLReader {
 public:
  XMLReader_Expat();
  ~XMLReader_Expat() override;

  /// A new reader without handlers.
  static std::unique_ptr<XMLReader> create();

  /// Sets the lexical or the declaration handler; a change counts from the next event.
  /// @throws SAXNotRecognizedException for any other identifier
  void setProperty(const std::string& name, void* value) override;
  /// The lexical or the declaration handler, or null.
  /// @throws SAXNotRecognizedException for any other identifier
  void* getProperty(const std::string& name) override;

  /// Reads one whole document, in blocks of 1,048,576 octets, from the stream's buffer; the
  /// stream's state flags are neither consulted nor changed.
  /// @throws SAXParseException with expat's message, after ErrorHandler::fatalError; the reader
  ///         can then read another document
  /// @throws SAXException when no parser could be created, and when called from a handler
  void parse(std::istream& stream) override;

  /// Reads the next block of a document; see XMLReader::parse. A null pointer with `isFinal` gives
  /// the document up: no endDocument follows.
  ///
  /// The events of what a block completes may come with a later block, at the latest with the last:
  /// expat 2.6, and 2.5 with the correction of CVE-2023-52425, do not try a token that was cut in
  /// two again before much more has come.
  /// @param data    the block, or null
  /// @param size    its length in octets, narrowed to a signed 32-bit count, as expat takes it
  /// @param isFinal true on the last block
  /// @throws as parse of a stream
  void parse(const void* data, unsigned long size, bool isFinal) override;

 protected:
  struct Callbacks;
  struct Event;
  /// Frees a parser.
  struct ParserDeleter {
    /// @param parser not null
    void operator()(XML_ParserStruct* parser) const;
  };

  DeclHandler* declHandler_ = nullptr;        ///< Not owned.
  LexicalHandler* lexicalHandler_ = nullptr;  ///< Not owned.

  std::unique_ptr<Event> event_;  ///< Of the open document.

  /// The document's parser, while a document is open.
  XML_ParserStruct* parser() const { return parser_.get(); }
  /// Calls setDocumentLocator and startDocument.
  void announceDocument();

  /// Whether events are delivered. Where it is off, makeReady is asked before an event.
  bool ready_ = true;

  /// @name Steps that a derived reader may take in another way
  /// @{

  /// A new parser, which the caller owns, or null.
  virtual XML_ParserStruct* createParser() const;
  /// Installs the callbacks in the new parser.
  virtual void configureParser();
  /// A locator for the new parser.
  virtual std::unique_ptr<Locator> createLocator() const;
  /// The parser is ready and has read nothing yet.
  virtual void beginDocument();
  /// Before an event that finds ready_ off.
  /// @return whether the event is to be delivered
  virtual bool makeReady();
  /// Called while what a handler threw inside of expat is being caught.
  virtual void handlerThrew();
  /// Gives a block to the parser.
  /// @return expat's status
  virtual int parseBlock(const void* data, unsigned long size, bool isFinal);
  /// expat has failed: tells the error handler, and throws.
  [[noreturn]] virtual void reportError();
  /// expat has read the whole document.
  virtual void endDocument();
  /// Called while what ends a parse is being caught: throws what the caller is to get.
  [[noreturn]] virtual void leaveParse();
  /// Frees what belongs to the open document.
  virtual void releaseParser();
  /// @}

 private:
  class Locator_Expat;

  void setupParser();
  template <typename Parse>
  void guardParse(Parse parse);

  std::unique_ptr<Locator> locator_;
  std::unique_ptr<XML_ParserStruct, ParserDeleter> parser_;
  bool parsing_ = false;  // A call of parse is on the stack.

  static const XMLReaderType type_;
};

}  // namespace Tavrin
