/// @file
/// The reader of XML text that follows XML 1.0, Namespaces in XML and SAX2 to the letter.
#pragma once

#include <Tavrin/Export.h>
#include <Tavrin/Factories.h>
#include <Tavrin/XMLReader.h>

#include <istream>
#include <memory>
#include <string>

namespace Tavrin {

/// Reads XML 1.0 text through expat and loses nothing that SAX2 reports; registered as "XML10".
///
/// It has none of the oddities of XMLReader_Expat:
/// - An exception that a handler, the resolver or a stream throws leaves parse as it was thrown,
///   whatever its type, and no event follows it. The reader can then read another document.
/// - Where there is no memory left, be it for expat, that is std::bad_alloc and no failure of the
///   document.
/// - Names are always split by Namespaces in XML, whatever stands in a namespace name, and are
///   qualified names in declarations, too: `"x:2" is not a qualified name`. `xmlns=""` is
///   startPrefixMapping("", ""). The prefix `xml`, which is always bound, has no prefix mapping,
///   also where it is declared.
/// - Notations and unparsed entities go to the DTD handler, declarations to the declaration
///   handler, each where it is set. Of several declarations of an entity or an attribute only the
///   first counts (XML 1.0, sections 3.3 and 4.2) and is reported.
/// - Attributes have the type that the DTD declares: "NMTOKEN" for an enumeration, "NOTATION" for a
///   notation type, "CDATA" where nothing is declared. DeclHandler::attributeDecl tells an
///   enumeration as "(a|b)" and a notation type as "NOTATION (a|b)".
/// - startEntity and endEntity tell the borders of external entities: a general entity by its name,
///   a parameter entity as "%name", the external subset as "[dtd]". Those that are not read are
///   reported by the same names to skippedEntity: the feature is off, there is no resolver, or it
///   gives no stream. Nothing external is read without a resolver.
/// - A reference in an attribute value, or in the default of an attribute, to an entity that was
///   not read has no event in SAX2, and no text takes its place. For each, ErrorHandler::warning is
///   called with its position: `The entity "e" was not read: a reference to it in an attribute
///   value is lost`. For one in a start tag that comes behind startElement. A reference to an
///   internal entity is told of once, however many of them its text has, with the name of the
///   first. Tavrin::properties::lossCount counts such warnings.
/// - Behind a parameter entity that was not read, declarations of entities and attributes do not
///   count, unless the document states that it is standalone (XML 1.0, section 5.1): references to
///   the entities are skipped, the attributes have no default and are "CDATA". Those in the
///   internal subset are reported all the same, and must be well-formed.
/// - The position of a failure, and what the Locator tells, is that of the external entity that is
///   being read; the message of a failure there names the entity.
///
/// setDocumentLocator and startDocument come when the XML declaration has been read, or before the
/// first other event or failure, so that the properties below can be asked in startDocument.
///
/// Versions: a document of another version than 1.0 is read by the rules of 1.0, after a call of
/// ErrorHandler::warning (XML 1.0, fifth edition, section 2.8). A version that is not "1." and
/// digits is a failure.
///
/// Encodings: those of expat, UTF-8 by all names that iconv has for it ("utf8"), and through iconv
/// those in which every character is one octet and ASCII is ASCII. Others are refused. A name is
/// looked for in the first kibioctet of a document or entity.
///
/// Features: Tavrin::features::namespaces, namespacePrefixes, externalGeneralEntities,
/// externalParameterEntities, xmlnsURIs; only to be asked isStandalone; validation, which can only
/// be off. A change counts from the next document.
/// - Without `namespaces`, elements and attributes have a qualified name only, declarations of
///   namespaces are attributes like others, and there are no prefix mappings.
/// - With `namespace-prefixes`, declarations stand in front of the other attributes, in the order
///   of the start tag, without namespace name and local name; with `xmlns-uris`, too, they are in
///   the namespace of `xmlns` and have a local name.
///
/// Properties: Tavrin::properties::lexicalHandler, declarationHandler, which count from the next
/// event; baseURI, entityAmplificationFactor, entityAmplificationThreshold, maximumDepth, which
/// count from the next document; only to be asked documentXMLVersion ("1.0" where the document has
/// no declaration), standalone and lossCount, which tell of the last document that has begun. The
/// message of a failure at a limit names the property by the end of its identifier.
///
/// System identifiers are resolved (RFC 3986, section 5) against the URI of the entity that holds
/// the declaration: the property `base-uri` for the document, which leaves them as written where it
/// is not set, and the resolved system identifier for an external entity. LexicalHandler::startDTD
/// has the identifier as written, as SAX2 asks.
///
/// What expat does not let a reader see:
/// - the borders of internal entities and of character references;
/// - skipped entities inside of declarations, but for defaults of attributes;
/// - where in an internal parameter entity a default stands: a warning may come of another
///   reference in such an entity;
/// - positions inside an internal entity: the place of the reference is told;
/// - ignorable white space in element content: it comes as characters.
///
/// External entities may be nested 256 deep. Names are those of XML 1.0 up to its fourth edition,
/// in every encoding: U+00AA, U+00B5 and U+00BA, which expat takes for letters in some, are none.
class TAVRIN_API XMLReader_XML10 : public XMLReader {
 public:
  XMLReader_XML10();
  ~XMLReader_XML10() override;

  /// A new reader without handlers.
  static std::unique_ptr<XMLReader> create();

  /// Switches a feature on or off, from the next document on.
  /// @throws SAXNotRecognizedException for an unknown identifier
  /// @throws SAXException              for a feature that can only be asked, or validation
  void setFeature(const std::string& name, bool value) override;
  /// Whether a feature is on.
  /// @throws SAXNotRecognizedException for an unknown identifier
  bool getFeature(const std::string& name) override;
  /// Sets a property; values are copied.
  /// @throws SAXNotRecognizedException for an unknown identifier
  /// @throws SAXException              for a property that can only be asked, or a bad value
  void setProperty(const std::string& name, void* value) override;
  /// The value of a property, or null where it has none.
  /// @throws SAXNotRecognizedException for an unknown identifier
  void* getProperty(const std::string& name) override;

  /// Reads one whole document, from the stream's buffer; the stream's state flags are neither
  /// consulted nor changed.
  /// @throws SAXParseException with expat's message, after ErrorHandler::fatalError
  /// @throws SAXException when no parser could be created, and when called from a handler
  /// @throws whatever a handler, the resolver or a stream throws
  void parse(std::istream& stream) override;

  /// Reads the next block of a document; see XMLReader::parse. A null pointer is an empty block. An
  /// empty last block ends the document as any other: a document that is not complete is a failure,
  /// a complete one has its endDocument. A document is given up by parsing a stream, or with the
  /// reader.
  ///
  /// The events of what a block completes may come with a later block, at the latest with the last:
  /// expat 2.6, and 2.5 with the correction of CVE-2023-52425, do not try a token that was cut in
  /// two again before much more has come.
  /// @param data    the block, or null, whatever the size
  /// @param size    its length in octets, however large
  /// @param isFinal true on the last block
  /// @throws as parse of a stream
  void parse(const void* data, unsigned long size, bool isFinal) override;

 private:
  class TAVRIN_LOCAL Driver;

  std::unique_ptr<Driver> driver_;

  static const XMLReaderType type_;
};

}  // namespace Tavrin
