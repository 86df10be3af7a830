/// @file
/// The reader of Fast Infoset documents that follows ITU-T X.891.
#pragma once

#include <Tavrin/EncodingAlgorithms.h>
#include <Tavrin/Export.h>
#include <Tavrin/Factories.h>
#include <Tavrin/OwnedVocabulary.h>
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
/// refused without one, or where its text enters a table; in an attribute it is refused. With
/// setRawOctets it is reported in all of these places.
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
/// amplificationThreshold, maximumTableOctets, maximumLiteralOctets, maximumDepth,
/// maximumCoalescedOctets, rawOctets; encodingAlgorithmURIs and externalVocabulary are read-only.
/// Features, of Tavrin::features: isStandalone, coalesceCharacters.
///
/// With coalesceCharacters, text is reported before the next event that a handler receives, or
/// before the failure that ends the document; typed values that a handler receives are events. Its
/// Locator is then at that event. What a handler throws, or a stream, text that waits does not
/// precede.
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
    /// How many octets of text may come between two events, with the feature coalesceCharacters. It
    /// stops text without an end that comes in small pieces, which would be kept until it ends.
    std::uint64_t maximumCoalescedOctets = std::uint64_t{1} << 30;
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

  /// Makes an external vocabulary known (7.2.13). The reader keeps a copy, which costs the same
  /// whatever its size. Where a document refers to a URI, vocabularies that were added come before
  /// those of the property externalVocabularies.
  /// @param uri        by which documents refer to it. The next document uses the vocabulary that
  ///                   was added last with it.
  /// @param vocabulary may be empty: then documents refer to entries of their own only
  /// @throws SAXException for a URI that is empty, or no text of XML
  void addExternalVocabulary(const std::string& uri, const OwnedVocabulary& vocabulary);

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

  /// Sets whether what an unknown algorithm has made is reported as octets, and a document with an
  /// unknown external vocabulary is read as far as possible; see Tavrin::properties::rawOctets. It
  /// counts at once.
  ///
  /// - In content, EncodingAlgorithmContentHandler::octets has the octets, with the algorithm's URI
  ///   and field. Without such a handler, ContentHandler::characters has them as base64.
  /// - An attribute has them as a RawData, with URI and field (EncodingAlgorithmAttributes);
  ///   getValue gives base64.
  /// - Octets whose text would enter a table keep their place in it: an index reports them again.
  ///   They count for the limits like text, and their base64 as well.
  /// - The writer "X891" writes all of them as they were, where it has got the URIs: its property
  ///   encodingAlgorithmURIs is set from that of the reader in startDocument.
  /// - A writer of text writes base64, and no algorithm: the text is not that of the document.
  ///
  /// Refused in any case are reserved numbers (11 to 31), which are errors, numbers without a URI,
  /// and such octets in a comment or processing instruction, which are nothing but text.
  ///
  /// How many entries an unknown external vocabulary has is not in the document. So no index can be
  /// resolved, not even that of an entry of the document's own, which come behind; only built-in
  /// entries can. The document is read up to the first other index, and refused there: no name or
  /// text is made up. One that spells out all names and strings is read to its end. Programs that
  /// can find vocabularies get the URI from the property externalVocabulary and read again.
  void setRawOctets(bool value);
  bool getRawOctets() const;  ///< Also where it was set as a property.

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
  ///                block after a complete document does nothing.
  /// @throws as parse of a stream
  void parse(const void* data, unsigned long size, bool isFinal) override;

  /// How many octets at the end of the last block come after the document, once it has ended, be it
  /// in parse or resume. Another one may begin with them. Of a document that was stopped: how many
  /// come after those that had been decoded by then.
  unsigned long unusedOctets() const;

  /// @name Stopping and pausing
  /// A handler may end a document before its end, or let parse return and go on later.
  /// @{

  /// Ends the document. Called by a handler, in any event but a fatalError: no handler receives
  /// another event, not even the rest of the same start tag or endDocument, and parse returns as it
  /// does after a document. Called at another time, it gives up a document that comes in blocks or
  /// is paused; without one it does nothing. The next call of parse begins another document.
  void stop();
  /// Whether the last document that has begun was stopped.
  bool isStopped() const;
  /// Lets parse, or resume, return after the event that is under way. Called by a handler; at
  /// another time, and before a failure is thrown, it does nothing.
  ///
  /// While the reader is paused, parse is refused, and the document stays as it is. The reader
  /// keeps a copy of what has not been read of a block; a stream must stay as it is. Events that
  /// belong to the same item of the document, such as the start of an element after its prefix
  /// mappings, are kept as copies, so typed values of an application need EncodedData::copy for
  /// that.
  void pause();
  bool isPaused() const;  ///< Whether resume is to be called.
  /// Goes on after a pause, with exactly the events, or the failure, that would have come; with the
  /// handlers that are set by now.
  /// @throws SAXException where the reader is not paused, and as parse
  void resume();
  /// @}

 protected:
  /// The algorithm of a field, or null (C.29). A derived reader may return another one.
  /// @param field the algorithm's number; see Tavrin::algorithms
  /// @param uri   receives the URI of an application-defined algorithm
  virtual EncodingAlgorithm* getEncodingAlgorithm(unsigned int field, std::string& uri);

 private:
  class Decoder;
  std::unique_ptr<Decoder> decoder_;

  TAVRIN_LOCAL static const XMLReaderType type_;
};

}  // namespace Tavrin
