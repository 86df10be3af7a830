/// @file
/// The writer of Fast Infoset documents.
#pragma once

#include <Tavrin/EncodingAlgorithms.h>
#include <Tavrin/Export.h>
#include <Tavrin/Factories.h>
#include <Tavrin/TypedData.h>
#include <Tavrin/XMLWriter.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Tavrin {

/// Writes Fast Infoset documents (ITU-T X.891) for the "FI" reader; registered as "FI". Its octets
/// are fixed, oddities included, for programs that rely on them; all others choose XMLWriter_X891,
/// whose documents every reader understands.
///
/// @code
/// std::ofstream document("points.finf", std::ios::binary);
/// XMLWriter_FI writer;
/// writer.setOutputStream(&document);
/// writer.startDocument();
/// writer.startElement("", "points", "points", AttributesImpl());
/// writer.floats({0.5F, 1.5F, 2.5F});
/// writer.endElement("", "points", "points");
/// writer.endDocument();
/// @endcode
///
/// Besides the events of XML it accepts typed content, through PrimitiveTypeContentHandler and
/// EncodingAlgorithmContentHandler, and typed attribute values, when the attributes of startElement
/// are an EncodingAlgorithmAttributes. Names and short strings (under 7 octets) enter tables and
/// are written as an index when they are repeated; the tables are emptied by startDocument.
///
/// Things to know before relying on it:
/// - Namespace declarations come from startPrefixMapping alone; attributes in the namespace of
///   `xmlns` are left out. A prefix or namespace name that was never declared is refused.
/// - Ignorable white space, the document type, declarations and entity boundaries are not written.
/// - Text before a CDATA section is written as a part of the section.
/// - A document in which the 17th or a later distinct short chunk of text is repeated cannot be
/// read
///   again: the index is written without the marker of its form, so a reader decodes its first
///   octet as another chunk and the rest as the next item. Most such documents are refused, some
///   are read as other documents.
/// - The URI of octets is not written: the algorithm is identified by its number alone.
/// - Integers of ints are cut to their low 32 bits.
/// - Typed content is accepted at any point; it is not checked against the state of the document.
class TAVRIN_API XMLWriter_FI : public XMLWriter,
                                public PrimitiveTypeContentHandler,
                                public EncodingAlgorithmContentHandler {
 public:
  /// A name as the tables hold it; a part that is absent is empty.
  struct QualifiedName {
    std::string prefix;         ///< Prefix.
    std::string namespaceName;  ///< Namespace name.
    std::string localName;      ///< Local name.

    /// By local name, then prefix, then namespace name.
    bool operator<(const QualifiedName& other) const;
    /// Whether all parts are the same.
    bool operator==(const QualifiedName& other) const;
  };

  XMLWriter_FI();
  ~XMLWriter_FI() override;

  /// A new writer without a stream.
  static std::unique_ptr<XMLWriter> create();

  /// @name Events
  /// As in XMLWriter. An event that is not allowed at this point is refused first.
  /// @{
  void startDocument() override;
  void endDocument() override;
  void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
  /// @throws SAXException "Empty name", "Undeclared prefix ..." or "Undeclared namespace ..."
  /// @throws EncodingAlgorithmException for a typed attribute whose algorithm is not built in.
  ///         Nothing is written then.
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Attributes& attributes) override;
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override;
  void characters(const std::string& text) override;
  /// @throws SAXException "Empty name" for an empty target
  void processingInstruction(const std::string& target, const std::string& data) override;
  void endCDATA() override;
  void comment(const std::string& text) override;
  /// @}

  /// The two properties of the Fast Infoset reader that name algorithms and vocabularies are
  /// accepted and ignored.
  void setProperty(const std::string& name, void* value) override;
  /// Null for the two properties that setProperty accepts.
  void* getProperty(const std::string& name) override;

  /// @name Typed content
  /// @{
  void bytes(const std::string& data) override;  ///< Base64 content.
  void shorts(const std::vector<short>& data) override;
  void ints(const std::vector<long>& data) override;
  void longs(const std::vector<long>& data) override;
  void booleans(const std::vector<bool>& data) override;
  void floats(const std::vector<float>& data) override;
  void doubles(const std::vector<double>& data) override;
  /// @throws EncodingAlgorithmException for a number below 0 or above 255; nothing is written then
  void octets(const std::string& uri, int index, const std::string& data) override;
  /// @throws EncodingAlgorithmException for an algorithm that is not built in; nothing is written
  /// then
  void object(const std::string& uri, int index, const EncodedData& data) override;
  /// @}

  /// The writer's algorithm, or null.
  /// @param uri   empty for the built-in algorithms, the only ones there are
  /// @param index the algorithm's number; see Tavrin::algorithms
  EncodingAlgorithm* getEncodingAlgorithm(const std::string& uri, int index);

 protected:
  /// @name Primitives
  /// They write at once, without a check that there is a stream. The index of an entry that is
  /// added to a table is the number of entries before it.
  /// @{

  /// Writes an index that begins on the second bit (C.25).
  /// @param bits  the first bit of the octet: 0x80 or 0
  /// @param index the position in a table, from 0
  void encodeIndex(int bits, unsigned int index);
  /// Writes a non-identifying string, or its index (C.14).
  /// @param table      where an index is searched; may be null
  /// @param addToTable whether a literal is added to the table
  /// @param text       the string
  void encodeString(std::map<std::string, unsigned int>* table, bool addToTable,
                    const std::string& text);
  /// Writes an identifying string, or its index (C.13). A literal is added to the table.
  void encodeIdentifier(std::map<std::string, unsigned int>* table, const std::string& text);
  /// Writes a literal name and adds it to the table (C.17, C.18).
  /// @param bits  the bits of the octet that are not those of the parts
  /// @param table the table of element or of attribute names
  /// @param name  the name; its prefix and namespace name are built in or declared
  /// @throws SAXException "Undeclared prefix ..." or "Undeclared namespace ..."; nothing is written
  ///         then
  void encodeQualifiedName(int bits, std::map<QualifiedName, unsigned int>& table,
                           const QualifiedName& name);
  /// Writes namespace declarations and the terminator after them (C.12).
  /// @param pairs prefix, namespace name, prefix, namespace name, ...
  void encodeNamespaces(const std::vector<std::string>& pairs);
  /// Writes a character chunk, or its index (C.15); nothing for an empty text.
  void encodeCharacters(const std::string& text);
  /// Writes the attributes that are not namespace declarations (C.4); their terminator is pending.
  void encodeAttributes(const Attributes& attributes);
  /// @}

  /// The number of attributes that are not namespace declarations.
  int countAttributes(const Attributes& attributes) const;

  /// Writes the pending terminator; with `final`, together with another one.
  void flushTerminator(bool final);
  /// Writes the buffered text as one chunk.
  void flushCharacters();

  bool pendingTerminator_ = false;       ///< Two in a row share an octet.
  std::string characters_;               ///< Text since the last item.
  std::vector<std::string> namespaces_;  ///< Prefix, namespace name, ... for the next start tag.
  BuiltInAlgorithms builtIn_;            ///< The algorithms.

 private:
  class Encoder;
  const std::unique_ptr<Encoder> encoder_;

  TAVRIN_LOCAL static const XMLWriterType type_;
};

}  // namespace Tavrin
