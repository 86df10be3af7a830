/// @file
/// Identifiers of features and properties, and the reserved namespace names.
///
/// Identifiers compare as whole strings, octet for octet. They have internal linkage: a shared
/// object that uses one can be unloaded.
#pragma once

namespace Tavrin {

/// Identifiers for setProperty and getProperty.
///
/// A property's value is an untyped pointer to the interface named here. Convert an object to that
/// interface first and only then to `void*`: a writer, say, has several interfaces and each has its
/// own address (`static_cast<LexicalHandler*>(writer)`).
///
/// Where a type of value is named instead, setProperty copies what the pointer points to, and null
/// restores the default; getProperty gives a pointer to the copy, valid until the property changes,
/// or null where there is no value.
namespace properties {
/// A LexicalHandler.
constexpr char lexicalHandler[] = "http://xml.org/sax/properties/lexical-handler";
/// A DeclHandler.
constexpr char declarationHandler[] = "http://xml.org/sax/properties/declaration-handler";
/// Fast Infoset reader: a PrimitiveTypeContentHandler.
constexpr char primitiveTypeContentHandler[] =
    "http://jvnet.org/fastinfoset/sax/properties/primitive-type-content-handler";
/// Fast Infoset reader: an EncodingAlgorithmContentHandler.
constexpr char encodingAlgorithmContentHandler[] =
    "http://jvnet.org/fastinfoset/sax/properties/encoding-algorithm-content-handler";
/// Readers "FI" and "X891", writer "X891": the application's algorithms by their URIs, an
/// EncodingAlgorithmMap. The writer "FI" accepts and ignores it.
constexpr char registeredEncodingAlgorithms[] =
    "http://jvnet.org/fastinfoset/parser/properties/registered-encoding-algorithms";
/// Readers "FI" and "X891", writer "X891": the vocabularies that documents may refer to by their
/// URIs, an ExternalVocabularyMap. The writer "FI" accepts and ignores it.
constexpr char externalVocabularies[] =
    "http://jvnet.org/fastinfoset/parser/properties/external-vocabularies";

/// "XML10" and "X891": the version of XML that the document states, a `std::string`. A reader only
/// reports it, from startDocument on.
constexpr char documentXMLVersion[] = "http://xml.org/sax/properties/document-xml-version";
/// "XML10" and "X891": whether the document states that it is standalone, a `bool`; null where it
/// states nothing. A reader only reports it, from startDocument on.
constexpr char standalone[] = "http://tavrin/sax/properties/standalone";

/// Reader "XML10": the URI of the document, a `std::string`, against which relative system
/// identifiers are resolved (RFC 3986, section 5). Without one they are reported as written.
constexpr char baseURI[] = "http://tavrin/sax/properties/base-uri";
/// Reader "XML10": how many octets an octet of input may expand to through entities, and how many
/// through defaults of attributes, a `double` of at least 1. Default 100.
constexpr char entityAmplificationFactor[] =
    "http://tavrin/sax/properties/entity-amplification-factor";
/// Reader "XML10": how many octets entities, and defaults of attributes, may expand to before the
/// factor counts, a `std::uint64_t`. Default 8 MiB.
constexpr char entityAmplificationThreshold[] =
    "http://tavrin/sax/properties/entity-amplification-threshold";
/// Reader "XML10": how often ErrorHandler::warning has reported something that the document holds
/// and no event can report, a `std::uint64_t`. It can only be read, also in warning, and refers to
/// the last document that has begun.
constexpr char lossCount[] = "http://tavrin/sax/properties/loss-count";
/// Reader "XML10": whether expat waits before it tries a token again that the octets so far cut in
/// two, a `bool`. It then tries when there is twice as much, so the event of the token may come
/// with later octets, at the latest with the last. Without that, each event comes with its last
/// octet, but a token of many octets that arrives in small blocks takes time in proportion to its
/// square: set it to false only for senders who may take that time (CVE-2023-52425). Default true.
/// It has no effect with an expat that never waits, as those before 2.6.0 do without their
/// distributor's correction.
constexpr char reparseDeferral[] = "http://tavrin/sax/properties/reparse-deferral";

/// Reader "XML10": who reads the text, a `std::string`. "automatic", the default: documents in
/// UTF-8 are scanned by the library itself, which takes less than half of the time, unless their
/// document type declares entities; all others are read by expat. "expat": all documents are. The
/// events are the same, and so are the failures, for which expat has the last word. It counts from
/// the next document on.
constexpr char textScanner[] = "http://tavrin/sax/properties/text-scanner";

/// "XML10" and "X891": how many elements may be open at a time, a `std::uint64_t`. A deeper
/// document is refused. Default: any number.
constexpr char maximumDepth[] = "http://tavrin/sax/properties/maximum-depth";

/// "XML10" and "X891": how many octets of text the feature coalesceCharacters puts together, a
/// `std::uint64_t`. A document with more text between two events is refused. It stops text without
/// an end that comes in small pieces. Default 1 GiB.
constexpr char maximumCoalescedOctets[] = "http://tavrin/sax/properties/maximum-coalesced-octets";

/// Writer "XML10": the spaces by which a level is indented, an `unsigned`. Default 2.
constexpr char indentWidth[] = "http://tavrin/sax/properties/indent-width";
/// Writer "XML10": the character that delimits attribute values, a `char`: apostrophe (the default)
/// or quotation mark.
constexpr char quoteCharacter[] = "http://tavrin/sax/properties/quote-character";

/// Reader "X891": how many octets may be delivered from tables for each octet of the document, a
/// `double` of at least 1. It stops a document of a few octets that stores one long string or name
/// and refers to it again and again. Text that a restricted alphabet, booleans or an algorithm of
/// the application decode from fewer octets counts likewise. Default 1000.
constexpr char amplificationFactor[] = "http://tavrin/fastinfoset/properties/amplification-factor";
/// Reader "X891": how many octets may be delivered from tables before the factor counts, a
/// `std::uint64_t`. Default 8 MiB.
constexpr char amplificationThreshold[] =
    "http://tavrin/fastinfoset/properties/amplification-threshold";
/// "X891": how many octets of memory the tables of a document may need together, a `std::uint64_t`.
/// A string counts as its length plus 128 octets, a name as three times the length of its parts
/// plus 320: no less than a reader needs for them. In a reader, other things count likewise as long
/// as they are kept: namespace declarations of open elements, attributes of a start tag and the
/// memory that their text needs beyond its octets, items before the root element, identifiers of
/// entities. It stops an endless document that consists of nothing else. A reader refuses a
/// document that needs more (default 512 MiB), a writer adds no more entries (default 64 MiB).
constexpr char maximumTableOctets[] = "http://tavrin/fastinfoset/properties/maximum-table-octets";
/// Reader "X891": how many octets one string or typed value may have in the document, and the text
/// that is decoded from a restricted alphabet, UTF-16, booleans or by an algorithm of the
/// application, a `std::uint64_t`. It stops a single endless string. Default 1 GiB.
constexpr char maximumLiteralOctets[] =
    "http://tavrin/fastinfoset/properties/maximum-literal-octets";
/// Reader "X891": whether a document is read as far as possible although it uses encoding
/// algorithms, or an external vocabulary, that are unknown, a `bool`. XMLReader_X891::setRawOctets
/// tells what is reported then. Default false: the document is refused.
constexpr char rawOctets[] = "http://tavrin/fastinfoset/properties/raw-octets";
/// "X891": the URIs of the encoding algorithms that a document names, a
/// `std::vector<std::string>` in the order of their fields, which begin at 31. A reader only
/// reports them, from startDocument on; a number without a URI has an empty one. A writer names
/// those that are not empty in each document, before those of registeredEncodingAlgorithms.
constexpr char encodingAlgorithmURIs[] =
    "http://tavrin/fastinfoset/properties/encoding-algorithm-uris";
/// Writer "X891": the greatest length in octets of attribute values that are added to their table,
/// a `std::uint64_t`. Default 32.
constexpr char indexedAttributeValueLength[] =
    "http://tavrin/fastinfoset/properties/indexed-attribute-value-length";
/// Writer "X891": the greatest length in octets of character chunks that are added to their table,
/// a `std::uint64_t`. Default 32.
constexpr char indexedChunkLength[] = "http://tavrin/fastinfoset/properties/indexed-chunk-length";
/// Writer "X891": whether attribute values, character chunks and other strings of these lengths are
/// added to their tables, a `std::string`: `always`, `never` (entries of vocabularies are used all
/// the same) or `adaptive`, the default. That judges the values of each attribute, and the chunks
/// of each element, by windows of 2048 that are in the table or might be added. Of the first
/// window, 8 must be in the table when they come, in each window after it 16 more, up to 256. Where
/// they are fewer, none of the next 2048 is added; then the windows begin again. Each pause is
/// twice as long as the one before, up to 131072 values, until a window has found 256. So the first
/// 2048 of a name are written as with `always`. What is in a table is written as its index at all
/// times. A change applies from the next value on.
constexpr char valueIndexing[] = "http://tavrin/fastinfoset/properties/value-indexing";
/// Writer "X891": an ExternalVocabulary whose entries are written at the beginning of each document
/// and used in it.
constexpr char initialVocabulary[] = "http://tavrin/fastinfoset/properties/initial-vocabulary";
/// "X891": the URI, a `std::string`, of the entry of externalVocabularies that documents refer to
/// and use. A reader only reports that of the last document that has begun, known or not, also
/// after the document was refused for it: a program can then add the vocabulary and read again.
constexpr char externalVocabulary[] = "http://tavrin/fastinfoset/properties/external-vocabulary";
}  // namespace properties

/// Identifiers for setFeature and getFeature.
namespace features {
/// Text writer: begin every tag, comment, processing instruction and declaration on a
/// new line. Default off.
constexpr char autoIndent[] = "http://tavrin/sax/features/auto-indent";
/// Text writer: write an element without content as an empty-element tag. Default on.
constexpr char emptyTags[] = "http://tavrin/sax/features/empty-tags";
/// Text writer: begin the document with an XML declaration. Default on.
constexpr char xmlDeclaration[] = "http://tavrin/sax/features/xml-declaration";

/// Reader "XML10": split names by Namespaces in XML and report prefix mappings. Default on.
constexpr char namespaces[] = "http://xml.org/sax/features/namespaces";
/// Reader "XML10": report namespace declarations as attributes, too. Default off.
constexpr char namespacePrefixes[] = "http://xml.org/sax/features/namespace-prefixes";
/// Reader "XML10": read external general entities through the resolver. Default on.
constexpr char externalGeneralEntities[] = "http://xml.org/sax/features/external-general-entities";
/// Reader "XML10": read the external subset and external parameter entities through the resolver.
/// Default on.
constexpr char externalParameterEntities[] =
    "http://xml.org/sax/features/external-parameter-entities";
/// Reader "XML10": namespace declarations that are reported as attributes are in the namespace of
/// `xmlns`. Default off: they have no namespace.
constexpr char xmlnsURIs[] = "http://xml.org/sax/features/xmlns-uris";
/// Readers "XML10" and "X891": all text between two other events that a handler receives is one
/// ContentHandler::characters, of at most properties::maximumCoalescedOctets. Default off. A change
/// applies from the next document on.
constexpr char coalesceCharacters[] = "http://tavrin/sax/features/coalesce-characters";
/// Readers "XML10" and "X891": whether the document states that it is standalone. It can only be
/// read, from startDocument on.
constexpr char isStandalone[] = "http://xml.org/sax/features/is-standalone";
/// Reader "XML10": whether documents are validated. It can only be read: they are not.
constexpr char validation[] = "http://xml.org/sax/features/validation";
}  // namespace features

/// The namespace names that Namespaces in XML reserves (section 3).
namespace namespaces {
/// Bound to the prefix `xml`.
constexpr char xml[] = "http://www.w3.org/XML/1998/namespace";
/// Bound to the prefix `xmlns`, that of namespace declarations.
constexpr char xmlns[] = "http://www.w3.org/2000/xmlns/";
}  // namespace namespaces

}  // namespace Tavrin
