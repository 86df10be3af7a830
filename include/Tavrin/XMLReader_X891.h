/// @file
/// The reader of Fast Infoset documents that follows ITU-T X.891.
#pragma once

#include <Tavrin/EncodingAlgorithms.h>
#include <Tavrin/Export.h>
#include <Tavrin/Factories.h>
#include <Tavrin/TypedData.h>
#include <Tavrin/XMLReader.h>

#include <cstdint>
#include <istream>
#include <memory>
#include <string>

namespace Tavrin {

/// Reads Fast Infoset documents as ITU-T X.891 | ISO/IEC 24824-1 defines them, whoever wrote them;
/// registered as "X891". It is the reader of Fast Infoset to choose, also for documents that are
/// not trusted: what it reports can be written as XML 1.0 with namespaces, or the document is
/// refused, and limits bound the memory and time that a document needs.
///
/// @code
/// XMLWriter_XML10 writer;
/// writer.setOutputStream(&std::cout);
/// XMLReader_X891 reader;
/// reader.setContentHandler(&writer);
/// reader.setDTDHandler(&writer);
/// reader.setLexicalHandler(&writer);
/// std::ifstream document("menu.finf", std::ios::binary);
/// reader.parse(document);
/// @endcode
///
/// It decodes the whole format: the XML declaration, the initial vocabulary with built-in, external
/// and own entries, every form of index and length, UTF-8, UTF-16 and restricted alphabets, the ten
/// built-in encoding algorithms, and those that the application registers. It checks names,
/// characters, UTF-8, unique attributes, prefixes in scope and that there is one root element; not
/// the characters of an external vocabulary, which is the application's own. A document that states
/// another version of XML is read by the rules of 1.0, with a call of ErrorHandler::warning after
/// startDocument; one that states 1.1 may undeclare prefixes.
///
/// The format does not hold the name of the document type. That of the root element is reported, so
/// everything between the document type declaration and the root element is reported together with
/// the root element. Notations and unparsed entities come between startDTD and endDTD; where a
/// document has some but no document type declaration, a startDTD without identifiers and an endDTD
/// are reported before the root element.
///
/// The format gives identifiers to references to entities, where XML declares a name once. They are
/// reported to DeclHandler::externalEntityDecl before the first reference to the name that has
/// some, in the content; ContentHandler::skippedEntity reports each reference. References to one
/// name with different identifiers are refused: no declaration in XML could declare both.
///
/// Typed content is reported to the first of these that is set: for a CDATA section the lexical
/// handler and the content handler; the primitive type handler (which has no operation for UUIDs);
/// the encoding algorithm handler; the content handler, as text. The text of numbers is the same in
/// every locale; that of floating-point numbers has as many digits as are needed to read the same
/// numbers again, and INF, -INF and NaN as XML Schema spells them. Data of an algorithm that is
/// neither built in nor registered is reported to the encoding algorithm handler as octets, or is
/// refused without one; in an attribute it is refused.
///
/// Failures of a document are reported to ErrorHandler::fatalError and thrown as a
/// SAXParseException with the line -1 and, as column, the number of octets of the document that
/// were read by then (at most 2147483647). What handlers and registered algorithms throw leaves
/// parse as it was thrown, but for an EncodingAlgorithmException, which is a failure of the
/// document. After either, the reader can read another document.
///
/// The reader consumes no octet after the document's last one, so documents may follow each other
/// on one stream; all tables are empty at the beginning of each. Elements may be nested as deep as
/// memory and Tavrin::properties::maximumDepth allow; a level needs at most 24 octets of memory (72
/// if its name is in an external vocabulary), and its namespace declarations what
/// maximumTableOctets counts for them. Whatever a document claims, memory is bounded by the limits
/// and a small multiple of what has arrived. The message of a failure at a limit ends with its
/// property: `Literal longer than 100 octets (property maximum-literal-octets)`.
///
/// Properties, of Tavrin::properties: lexicalHandler, declarationHandler,
/// primitiveTypeContentHandler, encodingAlgorithmContentHandler, registeredEncodingAlgorithms,
/// externalVocabularies, documentXMLVersion, standalone, amplificationFactor,
/// amplificationThreshold, maximumTableOctets, maximumLiteralOctets, maximumDepth. Feature:
/// Tavrin::features::isStandalone.
class TAVRIN_API XMLReader_X891 : public XMLReader {
 public:
  /// What a document may cost. No honest document meets the defaults; a document that does is
  /// refused. Each limit is the property of the same name, too.
  struct Limits {
    /// How many octets may be delivered for each octet of the document, at least 1: from tables,
    /// and those that a restricted alphabet, booleans or an algorithm of the application make of
    /// fewer. It stops a document of a few octets that stores one long string or name, and refers
    /// to it again and again.
    double amplificationFactor = 1000;
    /// How many octets may be delivered from tables before the factor counts. It lets small
    /// documents repeat what they like.
    std::uint64_t amplificationThreshold = std::uint64_t{8} << 20;
    /// How many octets the tables may take together, and what the reader keeps beside them. It
    /// stops a document without an end that is nothing but entries of tables, namespace
    /// declarations, attributes of one tag, or a prolog.
    std::uint64_t maximumTableOctets = std::uint64_t{512} << 20;
    /// How many octets one string or typed value may take in the document, or its text where that
    /// is longer. It stops a single string without an end.
    std::uint64_t maximumLiteralOctets = std::uint64_t{1} << 30;
    /// How many elements may be open at a time; by default any number. It stops elements inside
    /// each other without an end, for programs that keep a record of each.
    std::uint64_t maximumDepth = UINT64_MAX;
  };

  XMLReader_X891();
  ~XMLReader_X891() override;

  /// A new reader without handlers.
  static std::unique_ptr<XMLReader> create();

  /// @throws SAXException for a property that can only be read, and for an amplification factor
  ///         below 1
  void setProperty(const std::string& name, void* value) override;
  void* getProperty(const std::string& name) override;
  /// @throws SAXException for isStandalone, which can only be read
  void setFeature(const std::string& name, bool value) override;
  bool getFeature(const std::string& name) override;

  /// Sets all limits. They count at once.
  /// @throws SAXException for an amplification factor below 1; no limit is changed then
  void setLimits(const Limits& limits);
  Limits getLimits() const;  ///< Also those that were set as properties.

  /// @name Handlers that are properties, too
  /// The same handler as that of the property, without a cast. A change counts from the next event.
  /// @{

  /// Sets who receives comments and the boundaries of CDATA sections and the DTD.
  void setLexicalHandler(LexicalHandler* handler);
  LexicalHandler* getLexicalHandler() const;  ///< Or null.
  /// Sets who receives the identifiers of entities.
  void setDeclHandler(DeclHandler* handler);
  DeclHandler* getDeclHandler() const;  ///< Or null.
  /// Sets who receives content of built-in encoding algorithms as arrays.
  void setPrimitiveTypeContentHandler(PrimitiveTypeContentHandler* handler);
  PrimitiveTypeContentHandler* getPrimitiveTypeContentHandler() const;  ///< Or null.
  /// Sets who receives all other content of encoding algorithms.
  void setEncodingAlgorithmContentHandler(EncodingAlgorithmContentHandler* handler);
  EncodingAlgorithmContentHandler* getEncodingAlgorithmContentHandler() const;  ///< Or null.
  /// @}

  using XMLReader::parse;

  /// Reads one document.
  /// @throws SAXParseException for a stream that is not such a document. No endDocument follows,
  ///         and the reader can read another document.
  void parse(std::istream& stream) override;

  /// Reads the next block of a document; see XMLReader::parse. Blocks may have any size. Each event
  /// is reported by the call that has its last octet; of a block, only the beginning of an item
  /// that is not complete is kept.
  ///
  /// A document ends with its last octet: the call that has it reports the end, whether the block
  /// is final or not, and the next call begins another document.
  /// @param data    null for an empty block; not used after the call
  /// @param size    octets of the block
  /// @param isFinal whether a document that is not complete has no more octets. An empty final
  /// block
  ///                after a complete document does nothing.
  /// @throws as parse of a stream
  void parse(const void* data, unsigned long size, bool isFinal) override;

  /// How many octets at the end of the last block come after the document. Another one may begin
  /// with them.
  unsigned long unusedOctets() const;

 protected:
  /// The algorithm of a field, or null (C.29). A derived reader may return another one.
  /// @param field the algorithm's number; see Tavrin::algorithms
  /// @param uri   receives the URI of an application-defined algorithm
  virtual EncodingAlgorithm* getEncodingAlgorithm(unsigned int field, std::string& uri);

  class Decoder;                      ///< Of the library alone.
  std::unique_ptr<Decoder> decoder_;  ///< Likewise.

 private:
  TAVRIN_LOCAL static const XMLReaderType type_;
};

}  // namespace Tavrin
