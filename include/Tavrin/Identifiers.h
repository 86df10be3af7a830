/// @file
/// Identifiers of features and properties, and the reserved namespace names.
///
/// Identifiers compare as whole strings, octet for octet.
#pragma once

namespace Tavrin {

/// Identifiers for setProperty and getProperty.
///
/// A property's value is an untyped pointer to the interface named here. Convert an object to that
/// interface first and only then to `void*`: a writer, say, has several interfaces and each has its
/// own address (`static_cast<LexicalHandler*>(writer)`).
namespace properties {
/// A LexicalHandler.
inline constexpr char lexicalHandler[] = "http://xml.org/sax/properties/lexical-handler";
/// A DeclHandler.
inline constexpr char declarationHandler[] = "http://xml.org/sax/properties/declaration-handler";
/// Fast Infoset reader: a PrimitiveTypeContentHandler.
inline constexpr char primitiveTypeContentHandler[] =
    "http://jvnet.org/fastinfoset/sax/properties/primitive-type-content-handler";
/// Fast Infoset reader: an EncodingAlgorithmContentHandler.
inline constexpr char encodingAlgorithmContentHandler[] =
    "http://jvnet.org/fastinfoset/sax/properties/encoding-algorithm-content-handler";
/// Fast Infoset reader: an EncodingAlgorithmMap. The writer accepts and ignores it.
inline constexpr char registeredEncodingAlgorithms[] =
    "http://jvnet.org/fastinfoset/parser/properties/registered-encoding-algorithms";
/// Fast Infoset reader: an ExternalVocabularyMap. The writer accepts and ignores it.
inline constexpr char externalVocabularies[] =
    "http://jvnet.org/fastinfoset/parser/properties/external-vocabularies";
}  // namespace properties

/// Identifiers for setFeature and getFeature.
namespace features {
/// Text writer: begin every tag, comment, instruction and declaration on a new line. Default off.
inline constexpr char autoIndent[] = "http://tavrin/sax/features/auto-indent";
/// Text writer: write an element without content as an empty-element tag. Default on.
inline constexpr char emptyTags[] = "http://tavrin/sax/features/empty-tags";
/// Text writer: begin the document with an XML declaration. Default on.
inline constexpr char xmlDeclaration[] = "http://tavrin/sax/features/xml-declaration";
}  // namespace features

/// The namespace names that Namespaces in XML reserves (section 3).
namespace namespaces {
/// Bound to the prefix `xml`.
inline constexpr char xml[] = "http://www.w3.org/XML/1998/namespace";
/// Bound to the prefix `xmlns`, that of namespace declarations.
inline constexpr char xmlns[] = "http://www.w3.org/2000/xmlns/";
}  // namespace namespaces

}  // namespace Tavrin
