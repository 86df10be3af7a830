/// @file
/// The reader of Fast Infoset documents.
#pragma once

#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/EncodingAlgorithms.h>
#include <Tavrin/Export.h>
#include <Tavrin/Factories.h>
#include <Tavrin/Vocabulary.h>
#include <Tavrin/XMLReader.h>

#include <cstdint>
#include <istream>
#include <memory>
#include <string>
#include <vector>

namespace Tavrin {

/// Reads Fast Infoset documents (ITU-T X.891) as the "FI" writer writes them; registered as "FI".
/// It reads a dialect, whose behaviour is fixed: choose it for documents of that writer, and
/// XMLReader_X891 for all others.
///
/// @code
/// struct Sum : PrimitiveTypeContentHandler {
///   void floats(const std::vector<float>& data) override {
///     for (const float item : data) sum += item;
///   }
///   float sum = 0;
/// } sum;
/// XMLReader_FI reader;
/// reader.setProperty(properties::primitiveTypeContentHandler,
///                    static_cast<PrimitiveTypeContentHandler*>(&sum));
/// std::ifstream document("points.finf", std::ios::binary);
/// reader.parse(document);
/// @endcode
///
/// Properties: lexicalHandler, declarationHandler, primitiveTypeContentHandler,
/// encodingAlgorithmContentHandler, registeredEncodingAlgorithms and externalVocabularies of
/// Tavrin::properties. None is owned.
///
/// Typed content is reported to the first of these that is set: for a CDATA section the lexical
/// handler and the content handler; the primitive type handler (built-in algorithms); the encoding
/// algorithm handler; the content handler, as text. A typed value belongs to its algorithm and is
/// valid during the call.
///
/// The reader consumes no octet beyond the document's last one, so documents may follow each other
/// in one stream. Whatever a document claims about its lengths, memory grows only with the octets
/// that arrive; elements may be nested as deep as memory allows.
///
/// Things to know before relying on it:
/// - The number of items of a list is the encoded field itself, and prefixes and namespace names of
///   a namespace declaration are counted from 0, without the built-in `xml`.
/// - UTF-16 strings and restricted alphabets are not decoded: they give empty text, and their
///   octets are read as the next item. The uuid algorithm is not provided.
/// - Of an algorithm's number in content, bit 0x40 is not read.
/// - Version, character encoding scheme, additional data and entity references are printed to
///   standard output and delivered to no handler.
/// - An external vocabulary, restricted alphabets and algorithm URIs are also used for the
/// documents
///   that follow, until another document has its own.
class TAVRIN_API XMLReader_FI : public XMLReader {
 public:
  /// A name as the surrogate tables hold it; a part that is absent is empty.
  struct QualifiedName {
    std::string prefix;         ///< Prefix.
    std::string namespaceName;  ///< Namespace name.
    std::string localName;      ///< Local name.
  };

  XMLReader_FI();
  ~XMLReader_FI() override;

  /// A new reader without handlers.
  static std::unique_ptr<XMLReader> create();

  void setProperty(const std::string& name, void* value) override;
  void* getProperty(const std::string& name) override;

  using XMLReader::parse;

  /// Reads one document.
  /// @throws SAXException for a stream that is not such a document; no endDocument follows, and the
  ///         reader can read another document
  /// @throws EncodingAlgorithmException for encoded data of a wrong length
  void parse(std::istream& stream) override;

 protected:
  /// @name Integers (X.891, C.21 to C.28)
  /// The argument is the octet in which the integer begins; those that follow are read. Bits that
  /// do not belong to the integer are ignored; a form that does not exist is refused with a
  /// SAXException.
  /// @{

  /// A position that begins on the second bit (C.25).
  unsigned long decodeIndex(int octet);
  /// A position that begins on the third bit (C.27).
  unsigned long decodeElementIndex(int octet);
  /// A position that begins on the fourth bit (C.28).
  unsigned long decodeCharactersIndex(int octet);
  /// A length that begins on the second bit (C.22).
  unsigned long decodeIdentifierLength(int octet);
  /// A length that begins on the fifth bit (C.23).
  unsigned long decodeStringLength(int octet);
  /// A length that begins on the seventh bit (C.24).
  unsigned long decodeCharactersLength(int octet);
  /// The number of items of a list (C.21), all its octets. The field itself is the number; in
  /// X.891, the number minus the least that the form has.
  unsigned long decodeNumberOfItems();
  /// @}

  /// @name Strings (X.891, C.13 and C.14)
  /// @{

  /// An entry of a table: the external entries first, then the document's own. Either may be null.
  std::string getString(unsigned long index, const std::vector<std::string>* table,
                        const StringTable* external) const;
  /// A non-identifying string whose first octet was read. Where it is not decoded, `out` is
  /// unchanged.
  void decodeString(int octet, std::vector<std::string>* table, const StringTable* external,
                    std::string& out);
  /// A non-identifying string.
  void decodeString(std::vector<std::string>* table, const StringTable* external, std::string& out);
  /// An identifying string. A literal is added to the table, if there is one.
  void decodeIdentifier(std::vector<std::string>* table, std::string& out);
  /// @}

  /// @name Document (X.891, C.2)
  /// @{

  /// Reads the header up to its first wrong octet, and returns whether there was none (12.6, 12.7).
  bool isFastInfosetDocument();
  void decodeAdditionalData();     ///< Prints it (C.2.4).
  void decodeInitialVocabulary();  ///< Fills the tables, selects the external vocabulary (C.2.5).
  void decodeNotations();          ///< Reports them to the DTD handler (C.2.6).
  void decodeUnparsedEntities();   ///< Reports them to the DTD handler (C.2.7).
  void decodeCharacterEncodingScheme();  ///< Prints it (C.2.8).
  void decodeVersion();                  ///< Prints it (C.2.10).

  /// A table of an initial vocabulary, in the form of non-identifying strings.
  void decodeStringTable(std::vector<std::string>& table);
  /// A table of an initial vocabulary, in the form of identifying strings.
  void decodeIdentifierTable(std::vector<std::string>& table);
  /// A table of names of an initial vocabulary.
  void decodeQualifiedNameTable(std::vector<QualifiedName>& table);

  /// Decodes a document type declaration whose first octet was read (C.9).
  /// @return true when it ended with a double terminator, which ends the document too
  bool decodeDTD(int octet);
  /// @}

  /// @name Elements (X.891, C.3 and C.4)
  /// @{

  /// Decodes an element, with all that is in it, whose first octet was read.
  /// @return true when it ended with a double terminator that also ends what contains it
  bool decodeElement(int octet);
  /// Decodes the namespace declarations of an element (C.12).
  /// @param declarations receives prefix, namespace name, prefix, namespace name, ...
  void decodeNamespaces(std::vector<std::string>& declarations);
  /// Decodes a literal name whose first octet was read, and adds it to the table (C.17, C.18).
  /// @return the new entry, valid until the table changes
  QualifiedName& decodeQualifiedName(int octet, std::vector<QualifiedName>& table);
  /// An entry of the element names: the external entries first, then the document's own.
  QualifiedName getElementName(unsigned long index) const;
  /// An entry of the attribute names: the external entries first, then the document's own.
  QualifiedName getAttributeName(unsigned long index) const;
  /// Decodes the attributes of an element.
  /// @return true when the list ended with a double terminator, which ends the element too
  bool decodeAttributes(EncodingAlgorithmAttributesImpl& attributes);
  /// @}

  /// @name Content (X.891, C.5 to C.8)
  /// @{

  /// Decodes and delivers a character chunk whose first octet was read (C.7).
  void decodeCharacters(int octet);
  /// The algorithm of a field, or null (C.29).
  /// @param field the algorithm's number; see Tavrin::algorithms
  /// @param uri   receives the URI of an application-defined algorithm
  EncodingAlgorithm* getEncodingAlgorithm(unsigned int field, std::string& uri);
  void decodeComment();                ///< Decodes and delivers a comment (C.8).
  void decodeProcessingInstruction();  ///< Decodes and delivers one (C.5).
  /// Decodes and prints an entity reference whose first octet was read (C.6).
  void decodeUnexpandedEntityReference(int octet);
  /// @}

 private:
  class Decoder;
  std::unique_ptr<Decoder> decoder_;

  TAVRIN_LOCAL static const XMLReaderType type_;
};

}  // namespace Tavrin
