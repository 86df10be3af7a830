/// @file
/// The writer of Fast Infoset documents that follows ITU-T X.891.
#pragma once

#include <Tavrin/EncodingAlgorithms.h>
#include <Tavrin/Export.h>
#include <Tavrin/Factories.h>
#include <Tavrin/OwnedVocabulary.h>
#include <Tavrin/TypedData.h>
#include <Tavrin/XMLWriter.h>

#include <memory>
#include <string>
#include <vector>

namespace Tavrin {

/// Writes Fast Infoset documents that any reader of ITU-T X.891 understands; registered as "X891".
/// It is the writer of Fast Infoset to choose: what it writes is well-formed (XML 1.0, Namespaces
/// in XML), or the event is refused.
///
/// @code
/// std::ifstream text("menu.xml", std::ios::binary);
/// std::ofstream document("menu.finf", std::ios::binary);
/// XMLWriter_X891 writer;
/// writer.setOutputStream(&document);
/// XMLReader_XML10 reader;
/// reader.setContentHandler(&writer);
/// reader.setDTDHandler(&writer);
/// reader.setProperty(properties::lexicalHandler, static_cast<LexicalHandler*>(&writer));
/// reader.setProperty(properties::declarationHandler, static_cast<DeclHandler*>(&writer));
/// reader.parse(text);
/// @endcode
///
/// It accepts the events of XMLWriter and typed content, and writes what the format can hold: the
/// identifiers of the document type and its processing instructions, notations, unparsed entities,
/// references to entities that were skipped, CDATA sections, white space. The name of the document
/// type, its comments and other declarations, and the boundaries of entities are not written. A
/// document type that has nothing but notations and unparsed entities needs no item of its own:
/// they belong to the document.
///
/// A refusal is a SAXException that names the reason, such as `You cannot put character U+0001 into
/// character data` or `The prefix "p" is not declared`, before any octet of the event is written.
/// Reasons are the order of events; invalid characters and UTF-8; names and namespaces that do not
/// fit each other; what a comment or processing instruction cannot hold; identifiers that are not
/// valid, or missing in an unparsed entity; a document without a root element; a vocabulary that is
/// unknown or not possible (see setProperty); and limits, with the property that would change them.
///
/// An event that fails for another reason, in the attributes that are given, in the stream, or for
/// lack of memory, has no effect either where none of its octets may have been written. Otherwise
/// every further event is refused (`The document cannot go on after a failure: the writer must be
/// reset`), until reset.
///
/// Attributes that are namespace declarations count as startPrefixMapping, unless it has reported
/// them already: those whose qualified name is `xmlns` or begins with `xmlns:`, and, without a
/// qualified name, those in the namespace of declarations. `xml` needs no declaration. White space
/// before the data of a processing instruction is omitted: in XML text it does not belong to the
/// data. Empty identifiers of the document type and of notations are omitted.
///
/// A reader adds names and identifiers of any size to its tables, and so does the writer. A
/// document whose tables would need more than 512 MiB, or than
/// Tavrin::properties::maximumTableOctets if that is more, is refused. Values, chunks and other
/// strings are added up to a length (indexedAttributeValueLength, also for other strings, and
/// indexedChunkLength), as long as the tables need no more than maximumTableOctets. No table has
/// more than 2^20 entries. Where too few values of an attribute, or chunks of an element, come
/// back, no more of them are added until some do (valueIndexing). That depends on the events alone:
/// the same events have the same octets.
///
/// Everything that precedes the root element is buffered until the root element begins, because
/// notations and unparsed entities are written first.
class TAVRIN_API XMLWriter_X891 : public XMLWriter,
                                  public PrimitiveTypeContentHandler,
                                  public EncodingAlgorithmContentHandler {
 public:
  XMLWriter_X891();
  ~XMLWriter_X891() override;

  /// A new writer without a stream.
  static std::unique_ptr<XMLWriter> create();

  /// @name Events
  /// As in XMLWriter. An event that is refused has no effect.
  /// @{
  /// @throws SAXException also `Unknown external vocabulary "U"`
  void startDocument() override;
  /// @throws SAXException also `You cannot end a document without an element`
  void endDocument() override;
  void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
  /// @throws SAXException also for a vocabulary that is not possible, at the root element
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Attributes& attributes) override;
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override;
  void characters(const std::string& text) override;
  /// In an element, written as character data.
  void ignorableWhitespace(const std::string& text) override;
  void processingInstruction(const std::string& target, const std::string& data) override;
  /// In an element, writes an unexpanded entity reference (C.6) with the identifiers that
  /// externalEntityDecl gave; elsewhere, and for parameter entities and the external subset,
  /// it does nothing.
  /// @throws SAXException "You cannot refer to an entity at this point" in a CDATA section, which
  ///         holds no references
  void skippedEntity(const std::string& name) override;
  void notationDecl(const std::string& name, const std::string& publicId,
                    const std::string& systemId) override;
  void unparsedEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId, const std::string& notationName) override;
  /// Writes nothing; skippedEntity uses the identifiers. It is also allowed in an element, where
  /// the reader "X891" reports it.
  void externalEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId) override;
  void internalEntityDecl(const std::string& name, const std::string& value) override;
  void elementDecl(const std::string& name, const std::string& model) override;
  void attributeDecl(const std::string& eName, const std::string& aName, const std::string& type,
                     const std::string& mode, const std::string& value) override;
  void startDTD(const std::string& name, const std::string& publicId,
                const std::string& systemId) override;
  void endDTD() override;
  void startCDATA() override;
  /// Writes the section as a chunk of the cdata algorithm; nothing for an empty one. A section that
  /// holds its own end, `]]>`, becomes two, between the brackets and `>`.
  void endCDATA() override;
  void comment(const std::string& text) override;
  /// @}

  /// Discards the current document with its tables and text. Properties are kept.
  void reset() override;

  /// Sets a property of the writer "X891" (see Tavrin::properties): documentXMLVersion, standalone,
  /// registeredEncodingAlgorithms, externalVocabularies, externalVocabulary, initialVocabulary,
  /// encodingAlgorithmURIs, indexedAttributeValueLength, indexedChunkLength, valueIndexing,
  /// maximumTableOctets, maximumDepth. Until the root element begins, the first seven apply to the
  /// current document, later to the next one. Maps, and the arrays of vocabularies, belong to the
  /// application and must outlive their use.
  ///
  /// The algorithms of encodingAlgorithmURIs and then those of registeredEncodingAlgorithms are
  /// named in each document, in the order of the list and of the map, after those of the two
  /// vocabularies; their fields begin at 31. Of an initial vocabulary,
  /// the defined entries are written. Parts of its names that are in no table are added.
  ///
  /// startElement refuses the root with a SAXException where the vocabularies are not possible: an
  /// entry that is empty; a restricted alphabet of fewer than two characters, or with one twice; a
  /// name with a prefix, but no namespace; more than 225 encoding algorithms, 241 restricted
  /// alphabets or 1048576 entries in a table; and as for names and text elsewhere.
  /// @throws SAXException for an XML version that does not match `1.[0-9]+` (XML 1.0, production
  ///         26)
  void setProperty(const std::string& name, void* value) override;
  void* getProperty(const std::string& name) override;

  /// @name Vocabularies
  /// The writer keeps a copy of each, which costs the same whatever its size: so does the beginning
  /// of a document, with one of the two. With both, or with one of them as a property, each
  /// document makes tables of the second anew. Until the root element begins, they apply to the
  /// current document, later to the next one.
  /// @{

  /// Puts a vocabulary into each document, so that any reader understands it. It takes the place of
  /// the property initialVocabulary, and the property that of it.
  /// @param vocabulary one without entries for none
  void setInitialVocabulary(const OwnedVocabulary& vocabulary);
  /// Refers to a vocabulary that the reader must know, too. It sets the property externalVocabulary
  /// to the URI, which comes before one of the same URI in the property externalVocabularies; a
  /// null property ends it.
  /// @throws SAXException for a URI that is empty, or no text of XML
  void setExternalVocabulary(const std::string& uri, const OwnedVocabulary& vocabulary);
  /// @}

  /// @name Typed content
  /// Each throws SAXException "You cannot write character data at this point" anywhere but in an
  /// element, and writes nothing for an empty value. A value of more than 4294967295 octets is
  /// refused.
  /// @{
  void bytes(const std::string& data) override;  ///< Base64 content.
  void shorts(const std::vector<short>& data) override;
  /// @throws SAXException `N is not a 32-bit integer`
  void ints(const std::vector<long>& data) override;
  void longs(const std::vector<long>& data) override;
  void booleans(const std::vector<bool>& data) override;
  void floats(const std::vector<float>& data) override;
  void doubles(const std::vector<double>& data) override;
  /// Writes octets that are encoded already.
  /// @param uri   the algorithm, which a vocabulary, encodingAlgorithmURIs or
  ///              registeredEncodingAlgorithms names; where it is empty, the index counts
  /// @param index a built-in algorithm (0 to 9), or the field of a named one (31 and above)
  /// @param data  what the algorithm made; of a built-in one, it is checked
  /// @throws EncodingAlgorithmException "Unknown encoding algorithm - ", the URI or the number, and
  ///         the property that would make it known; or for octets that a built-in algorithm cannot
  ///         have made
  void octets(const std::string& uri, int index, const std::string& data) override;
  /// Encodes a value.
  /// @param uri   names a registered algorithm; where it is empty, the index counts
  /// @param index a built-in algorithm (0 to 9), or the field of a registered one
  /// @param data  a holder of the algorithm's own type; or of a named algorithm, a RawData, which
  ///              is written as `octets` does. So it is in attributes.
  /// @throws EncodingAlgorithmException "Unknown encoding algorithm - " as `octets`; or `The
  ///         algorithm "U" announced other octets than it wrote`
  /// @throws std::bad_cast for a holder of another type
  void object(const std::string& uri, int index, const EncodedData& data) override;
  /// @}

  /// The algorithm that encodes, or null.
  /// @param uri   names a registered algorithm; where it is empty, the index counts
  /// @param index a built-in algorithm (0 to 9), or the field of a registered one
  EncodingAlgorithm* getEncodingAlgorithm(const std::string& uri, int index);

 private:
  class Encoder;
  const std::unique_ptr<Encoder> encoder_;

  TAVRIN_LOCAL static const XMLWriterType type_;
};

}  // namespace Tavrin
