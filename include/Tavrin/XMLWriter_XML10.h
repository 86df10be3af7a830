/// @file
/// The writer of XML text that loses nothing.
#pragma once

#include <Tavrin/Export.h>
#include <Tavrin/Factories.h>
#include <Tavrin/XMLWriter.h>

#include <memory>
#include <string>

namespace Tavrin {

/// Writes XML 1.0 (fifth edition) with Namespaces in XML 1.0, in UTF-8; registered as "XML10". It
/// is the writer of XML text to choose: what it writes is well-formed and is read back as it was.
/// An event for which that is impossible is refused with a SAXException that names the reason.
///
/// @code
/// XMLWriter_XML10 writer;
/// writer.setOutputStream(&std::cout);
/// AttributesImpl attributes;
/// attributes.addAttribute("", "price", "price", "CDATA", "< 5");
/// writer.startDocument();
/// writer.startPrefixMapping("m", "urn:menu");
/// writer.startElement("urn:menu", "dish", "m:dish", attributes);
/// writer.characters("Fish & chips");
/// writer.endElement("urn:menu", "dish", "m:dish");
/// writer.endDocument();
/// @endcode
///
/// A refused event writes nothing and leaves the writer as it was before: other events may follow.
/// So does one that fails because the given attributes throw or memory runs out, as long as nothing
/// of it may have been written. Otherwise, and where the stream throws, every further event is
/// refused until reset (`The document cannot go on after a failure: the writer must be reset`).
///
/// Features: Tavrin::features::autoIndent, emptyTags and xmlDeclaration. Properties:
/// Tavrin::properties::indentWidth, quoteCharacter, standalone, maximumDepth and
/// documentXMLVersion, which can be any `1.[0-9]+`; what is written and declared is XML 1.0. A
/// change applies from the next event on, and reset does not undo it.
///
/// **Names.** An element or attribute has a namespace name, local name and qualified name. They
/// must agree with each other and with the prefix mappings in scope: prefixes and the default
/// namespace are always declared, by startPrefixMapping or by an attribute. In events of a reader
/// that does not process namespaces, namespace names and local names are empty: then the prefix
/// must be bound, to any namespace. Attributes named `xmlns` or `xmlns:p` are declarations like
/// those of startPrefixMapping; one that repeats a mapping is not written.
///
/// **Text.** Each string is complete UTF-8: a character may not be split between two calls. In
/// text, `<`, `>`, `&` and carriage return are escaped; in attribute values and namespace names
/// `<`, `&`, the quote, tab, line feed and carriage return. In a CDATA section, `]]>` is split
/// between two sections, and a carriage return is a reference between two sections. An empty
/// section is not written.
///
/// **Document type.** Declarations, comments and processing instructions between
/// startEntity("[dtd]") and its endEntity are in the external subset, to which the document refers,
/// and are not written; nor are those of an external parameter entity, to which a reference is
/// written. Without startEntity, all declarations belong to the internal subset. skippedEntity
/// writes a reference, if the entity is declared or may be declared where this writer does not see
/// it. General entities that were read are written as their text. When names are checked, the
/// defaults of declared attributes are, too. Declarations after a parameter entity that was skipped
/// are not binding: a reference to an entity declared there is written whatever its text.
///
/// **Auto-indent** never adds white space to an element that has text of any kind, white space and
/// references included, nor to its descendants, nor where `xml:space` is `preserve`. Whether an
/// element has text may be known only at its end. So, while auto-indent is on, the octets of the
/// root element are kept in memory until it ends, or until text directly inside of it forbids
/// indentation. flush writes them at once, without line breaks, and nothing more is indented in the
/// open elements. All levels from the hundredth on have the same indentation.
///
/// What XML text cannot hold is read back changed: a carriage return in a comment, a processing
/// instruction or an identifier as a line feed; the data of a processing instruction without its
/// leading white space; white space outside of the root element not at all.
///
/// Without auto-indent, what an event writes reaches the stream in one piece before it returns. The
/// stream is neither flushed nor checked. Without a stream, events are checked all the same.
class TAVRIN_API XMLWriter_XML10 : public XMLWriter {
 public:
  XMLWriter_XML10();
  ~XMLWriter_XML10() override;

  /// A new writer without a stream, its features and properties at their defaults.
  static std::unique_ptr<XMLWriter> create();

  /// @name Events
  /// Each throws SAXException when it is not allowed now, or when its strings cannot be written.
  /// @{
  void startDocument() override;
  /// @throws SAXException also for a document without an element
  void endDocument() override;
  void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Attributes& attributes) override;
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override;
  void characters(const std::string& text) override;
  void ignorableWhitespace(const std::string& text) override;
  void processingInstruction(const std::string& target, const std::string& data) override;
  void skippedEntity(const std::string& name) override;

  void notationDecl(const std::string& name, const std::string& publicId,
                    const std::string& systemId) override;
  void unparsedEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId, const std::string& notationName) override;
  void elementDecl(const std::string& name, const std::string& model) override;
  /// @param eName the element's name
  /// @param aName the attribute's name
  /// @param type  a type of XML 1.0, production 54; a blank after NOTATION may be missing
  /// @param mode  "#IMPLIED" or "#REQUIRED" without a value, "#FIXED" or nothing with one
  /// @param value the default value
  void attributeDecl(const std::string& eName, const std::string& aName, const std::string& type,
                     const std::string& mode, const std::string& value) override;
  /// @param name  begins with "%" where the entity is a parameter entity
  /// @param value the replacement text (XML 1.0, section 4.5)
  void internalEntityDecl(const std::string& name, const std::string& value) override;
  void externalEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId) override;
  void startDTD(const std::string& name, const std::string& publicId,
                const std::string& systemId) override;
  void endDTD() override;
  void startEntity(const std::string& name) override;
  void endEntity(const std::string& name) override;
  void startCDATA() override;
  void endCDATA() override;
  void comment(const std::string& text) override;
  /// @}

  void setFeature(const std::string& name, bool value) override;
  bool getFeature(const std::string& name) override;
  /// @throws SAXException for a value that the property cannot have
  void setProperty(const std::string& name, void* value) override;
  void* getProperty(const std::string& name) override;

  /// Completes an open start tag, CDATA opening or internal subset bracket, and writes what
  /// auto-indent keeps pending.
  void flush() override;
  /// Discards the document, and what auto-indent keeps pending.
  void reset() override;

 private:
  class Composer;
  const std::unique_ptr<Composer> composer_;

  TAVRIN_LOCAL static const XMLWriterType type_;
};

}  // namespace Tavrin
