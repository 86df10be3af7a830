/// @file
/// The reader of XML text that follows XML 1.0, Namespaces in XML and SAX2 to the letter.
#pragma once

#include <Tavrin/Export.h>
#include <Tavrin/Factories.h>
#include <Tavrin/XMLReader.h>

#include <cstdint>
#include <istream>
#include <memory>
#include <string>

namespace Tavrin {

/// Reads XML 1.0 text and loses nothing that SAX2 reports; registered as "XML10". It is the reader
/// of XML text to choose, unless a program relies on the oddities of XMLReader_Expat.
///
/// Documents in UTF-8 are scanned by the library itself; a document type is read by expat, and if
/// it declares entities, so is the rest. So is the rest of a document that is
/// not well-formed, from where the scanner meets the failure. The events and the failures are those
/// of expat, whoever reads. The property Tavrin::properties::textScanner has expat read all.
///
/// @code
/// struct Text : ContentHandler {
///   void characters(const std::string& text) override { std::cout << text; }
/// } text;
/// XMLReader_XML10 reader;
/// reader.setContentHandler(&text);
/// std::ifstream document("menu.xml", std::ios::binary);
/// try {
///   reader.parse(document);
/// } catch (const SAXParseException& failure) {
///   std::cerr << "line " << failure.getLineNumber() << ": " << failure.getMessage() << '\n';
/// }
/// @endcode
///
/// - An exception of a handler, the resolver or a stream leaves parse as it was thrown, and no
///   event follows it. So does std::bad_alloc, also where expat runs out of memory. The reader can
///   then read another document.
/// - Names are always split by Namespaces in XML, and are qualified names in declarations, too:
///   `"x:2" is not a qualified name`. `xmlns=""` is startPrefixMapping("", ""). The prefix `xml`,
///   which is always bound, has no prefix mapping.
/// - Notations and unparsed entities are reported to the DTD handler, declarations to the
///   declaration handler, each where it is set. Of several declarations of an entity or an
///   attribute only the first is binding (XML 1.0, sections 3.3 and 4.2) and is reported.
/// - Attributes have the type that the DTD declares: "NMTOKEN" for an enumeration, "NOTATION" for a
///   notation type, "CDATA" where nothing is declared. DeclHandler::attributeDecl reports an
///   enumeration as "(a|b)" and a notation type as "NOTATION (a|b)".
/// - startEntity and endEntity report the boundaries of external entities: a general entity by its
///   name, a parameter entity as "%name", the external subset as "[dtd]". Those that are not read
///   (the feature is off, there is no resolver, or it returns no stream) are reported by the same
///   names to skippedEntity. Nothing external is read without a resolver.
/// - A reference in an attribute value, or in the default of an attribute, to an entity that was
///   not read has no event in SAX2, and no text replaces it. Each is reported to
///   ErrorHandler::warning, after startElement: `The entity "e" was not read: a reference to it in
///   an attribute value is lost`. A reference to an internal entity is reported once, however many
///   such references its text has. Tavrin::properties::lossCount counts these warnings.
/// - After a parameter entity that was not read, declarations of entities and attributes are not
///   processed, unless the document states that it is standalone (XML 1.0, section 5.1). Those in
///   the internal subset are reported nevertheless, and must be well-formed.
/// - The positions of a failure and of the Locator are those in the external entity that is being
///   read. The message of a failure there names the entity.
/// - The message of a failure begins with expat's words. Where these name nothing, a colon and the
///   element, entity, prefix or attribute follow, cut after 100 characters: `mismatched tag:
///   expected </b> of line 3`, `undefined entity: "e"`. A failure inside an internal entity, whose
///   position is that of the reference, ends with `(in the text of the entity "e")`.
/// - setDocumentLocator and startDocument are called when the XML declaration has been read, or
///   before the first other event or failure, so that startDocument can get what it states.
/// - A document of another version than 1.0 is read by the rules of 1.0, after a call of
///   ErrorHandler::warning (section 2.8). A version that is not "1." and digits is a failure.
///
/// Encodings: those of expat, UTF-8 by all names that iconv has for it ("utf8"), and whatever else
/// iconv knows: Shift_JIS, EUC-JP, GB18030, Big5, ISO-2022-JP, windows-1252, UTF-32, ... The name
/// must stand in the first 1,024 octets of a document or entity, in octets of ASCII; UTF-32 and
/// EBCDIC are told by their first octets (XML 1.0, appendix F). Each external entity has its own
/// encoding.
/// - Encodings in which every character is one octet, and those of ASCII have their own octets, are
///   read by expat. Others are converted to UTF-8 before, piece by piece: lines and columns count
///   characters as ever, and OctetLocator::getOctetOffset counts the octets of the document as it
///   is in UTF-8.
/// - Octets that are no character are a failure at their place: `not well-formed (invalid token):
///   octet FF is not part of a character of "EUC-JP"`.
/// - An encoding that iconv does not know is an `unknown encoding "x-none"`. So is one in which the
///   declaration that names it cannot be read: `unknown encoding "UTF-32": the declaration is in
///   another one`.
///
/// Features (see Tavrin::features; a change applies from the next document on): namespaces,
/// namespacePrefixes, externalGeneralEntities, externalParameterEntities, xmlnsURIs,
/// coalesceCharacters; isStandalone is read-only, and validation is always off. Without
/// `namespaces`, elements and attributes have a qualified name only, and declarations of namespaces
/// are attributes like others. With `namespace-prefixes`, declarations precede the other
/// attributes, in the order of the start tag, without namespace name and local name, unless
/// `xmlns-uris` is on, too.
///
/// Properties (see Tavrin::properties): lexicalHandler and declarationHandler apply from the next
/// event on; reparseDeferral from the next block on; baseURI, textScanner,
/// entityAmplificationFactor, entityAmplificationThreshold, maximumDepth and maximumCoalescedOctets
/// from the next document on;
/// documentXMLVersion ("1.0" where the document has no declaration), standalone and lossCount are
/// read-only, and concern the last document that has begun.
///
/// With coalesceCharacters, text is reported before the next event that a handler receives, or
/// before the failure that ends the document; its Locator is then at that event. What a handler
/// throws, or a stream, text that waits does not precede.
///
/// System identifiers are resolved (RFC 3986, section 5) against the URI of the entity that holds
/// the declaration: the property `base-uri` for the document, without which they stay as written.
/// LexicalHandler::startDTD has the identifier as written, as SAX2 asks.
///
/// expat does not report, and so this reader cannot: the boundaries of internal entities and of
/// character references; skipped entities inside of declarations, except in defaults of attributes;
/// the position of a default in an internal parameter entity; positions inside an internal entity,
/// for which that of the reference is reported; and ignorable white space, which is reported as
/// characters.
///
/// External entities may be nested 256 deep. Names are those of XML 1.0 up to its fourth edition,
/// in every encoding: U+00AA, U+00B5 and U+00BA, which expat accepts as letters in some, are none.
class TAVRIN_API XMLReader_XML10 : public XMLReader {
 public:
  /// What a document may cost. No honest document meets the defaults; a document that does is
  /// refused. Each limit is the property of the same name, too.
  struct Limits {
    /// How many octets an octet of input may expand to through entities, and how many through
    /// defaults of attributes, at least 1. It stops a document of a few entities that refer to each
    /// other, each several times, and one of short tags with long defaults.
    double entityAmplificationFactor = 100;
    /// How many octets entities, and defaults of attributes, may expand to before the factor
    /// counts. It lets small documents repeat what they like.
    std::uint64_t entityAmplificationThreshold = std::uint64_t{8} << 20;
    /// How many elements may be open at a time; by default any number. It stops elements inside
    /// each other without an end, for programs that keep a record of each.
    std::uint64_t maximumDepth = UINT64_MAX;
    /// How many octets of text may come between two events, with the feature coalesceCharacters. It
    /// stops text without an end that comes in small pieces, which would be kept until it ends.
    std::uint64_t maximumCoalescedOctets = std::uint64_t{1} << 30;
  };

  XMLReader_XML10();
  ~XMLReader_XML10() override;

  /// A new reader without handlers.
  static std::unique_ptr<XMLReader> create();

  /// @throws SAXException for a read-only feature, or validation
  void setFeature(const std::string& name, bool value) override;
  bool getFeature(const std::string& name) override;
  /// @throws SAXException for a read-only property, or a value that it cannot have
  void setProperty(const std::string& name, void* value) override;
  void* getProperty(const std::string& name) override;

  /// Sets all limits. They count from the next document.
  /// @throws SAXException for an amplification factor below 1; no limit is changed then
  void setLimits(const Limits& limits);
  Limits getLimits() const;  ///< Also those that were set as properties.

  /// Sets whether a tag that was cut in two may wait for more octets than its last where expat
  /// reads the document, as the property Tavrin::properties::reparseDeferral, which tells what it
  /// costs if it may not. A program that reads from a connection, and answers before that ends,
  /// sets it to false.
  void setReparseDeferral(bool value);
  bool getReparseDeferral() const;  ///< True by default.

  /// @name Handlers that are properties, too
  /// The same handler as that of the property, without a cast. A change counts from the next event.
  /// @{

  /// Sets who receives comments and the boundaries of CDATA sections, entities and the DTD.
  void setLexicalHandler(LexicalHandler* handler);
  LexicalHandler* getLexicalHandler() const;  ///< Or null.
  /// Sets who receives the declarations of the document type.
  void setDeclHandler(DeclHandler* handler);
  DeclHandler* getDeclHandler() const;  ///< Or null.
  /// @}

  /// Reads one whole document, from the stream's buffer; the stream's state flags are neither
  /// consulted nor changed. The buffer is asked for what it has, and for one octet where it has
  /// none: where it waits, the events of the octets before have been reported, but for a tag that
  /// is cut (see setReparseDeferral).
  /// @throws SAXParseException for a failure of the document, after ErrorHandler::fatalError
  /// @throws SAXException when no parser can be created, and when called from a handler
  /// @throws whatever a handler, the resolver or a stream throws
  void parse(std::istream& stream) override;

  /// Reads the next block of a document; see XMLReader::parse. A null pointer is an empty block. An
  /// empty last block ends the document like any other: a document that is not complete is a
  /// failure, and endDocument is called for a complete one. Parsing a stream, or destroying the
  /// reader, abandons the document.
  /// @param data    the block, or null, whatever the size
  /// @param size    its length in octets, however large
  /// @param isFinal true on the last block
  /// @throws as parse of a stream
  void parse(const void* data, unsigned long size, bool isFinal) override;

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
  /// keeps a copy of what has not been read of a block; a stream must stay as it is.
  ///
  /// expat completes what it has begun: the end of an empty element follows its start, say. Such
  /// events are kept as copies. So is what follows in an entity: it is read to its end before parse
  /// returns, and the Locator of these events is behind it.
  void pause();
  bool isPaused() const;  ///< Whether resume is to be called.
  /// Goes on after a pause, with exactly the events, or the failure, that would have come; with the
  /// handlers that are set by now.
  /// @throws SAXException where the reader is not paused, and as parse
  void resume();
  /// @}

 private:
  class TAVRIN_LOCAL Driver;

  std::unique_ptr<Driver> driver_;

  TAVRIN_LOCAL static const XMLReaderType type_;
};

}  // namespace Tavrin
