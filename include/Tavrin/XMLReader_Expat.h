/// @file
/// The reader of XML text.
#pragma once

#include <Tavrin/Export.h>
#include <Tavrin/Factories.h>
#include <Tavrin/XMLReader.h>

#include <istream>
#include <memory>
#include <string>

namespace Tavrin {

/// Reads XML 1.0 text with namespaces through expat; registered as "Expat". It is what
/// XMLReaderFactory creates by default. Its behaviour is fixed, oddities included, for programs
/// that rely on it; all others choose XMLReader_XML10.
///
/// @code
/// struct Outline : ContentHandler {
///   void startElement(const std::string&, const std::string&, const std::string& qName,
///                     const Attributes& attributes) override {
///     std::cout << qName << " has " << attributes.getLength() << " attributes\n";
///   }
/// } outline;
/// XMLReader_Expat reader;
/// reader.setContentHandler(&outline);
/// std::ifstream document("menu.xml", std::ios::binary);
/// reader.parse(document);
/// @endcode
///
/// Input is UTF-8, UTF-16, ISO-8859-1 or US-ASCII, as detected by expat. The external DTD subset
/// and external entities are read through the EntityResolver, or skipped without one.
///
/// Properties: Tavrin::properties::lexicalHandler, declarationHandler; a change applies from the
/// next event on.
///
/// What a program that relies on it must know:
/// - No exception of a handler reaches the caller of parse while the document is being read. It is
///   dropped, the parse stops, and parse throws the SAXParseException of an aborted parse. Only
///   exceptions of setDocumentLocator, startDocument, endDocument and fatalError leave parse.
/// - An attribute with a prefix is split into namespace name, local name and qualified name only
///   when its local name is at least as long as its namespace name. Otherwise both names hold the
///   local name, a line feed and the prefix, as with `xml:lang`; a copy by XMLWriter_XML is then
///   not well-formed.
/// - Every attribute has the type "CDATA". The list that startElement is given is an
///   AttributesImpl.
/// - Undeclaring the default namespace (`xmlns=""`) aborts the parse if there is a content handler.
/// - A notation declaration aborts the parse while a DTD handler is set, and the declaration of an
///   external or unparsed entity while a declaration handler is set. They need a base URI, and this
///   reader has none.
class TAVRIN_API XMLReader_Expat : public XMLReader {
 public:
  XMLReader_Expat();
  ~XMLReader_Expat() override;

  /// A new reader without handlers.
  static std::unique_ptr<XMLReader> create();

  void setProperty(const std::string& name, void* value) override;
  void* getProperty(const std::string& name) override;

  /// Reads one whole document, in blocks of 1,048,576 octets, from the stream's buffer; the
  /// stream's state flags are neither consulted nor changed.
  /// @throws SAXParseException with expat's message, after ErrorHandler::fatalError; the reader
  ///         can then read another document
  /// @throws SAXException when no parser can be created, and when called from a handler
  void parse(std::istream& stream) override;

  /// Reads the next block of a document; see XMLReader::parse.
  ///
  /// A null pointer is not a block: without `isFinal`, it only begins a document where none is
  /// open. With `isFinal` it abandons the document, whatever the size: a missing rest is no
  /// failure, endDocument is not called, not even for a complete document, and the reader can read
  /// another one. To end a document whose last block came without `isFinal`, pass an empty block
  /// that is not null.
  /// @param data    the block, or null
  /// @param size    its length in octets, narrowed to a signed 32-bit count, as expat has it
  /// @param isFinal true on the last block
  /// @throws as parse of a stream
  void parse(const void* data, unsigned long size, bool isFinal) override;

 private:
  class TAVRIN_LOCAL Driver;

  std::unique_ptr<Driver> driver_;

  TAVRIN_LOCAL static const XMLReaderType type_;
};

}  // namespace Tavrin
