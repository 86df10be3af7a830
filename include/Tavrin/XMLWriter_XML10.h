/// @file
/// The writer of XML text that loses nothing.
#pragma once

#include <Tavrin/Export.h>
#include <Tavrin/Factories.h>
#include <Tavrin/XMLWriter.h>

#include <memory>
#include <string>

namespace Tavrin {

/// Writes XML 1.0 (fifth edition) with Namespaces in XML 1.0, in UTF-8; registered as "XML10".
///
/// Whatever it is given, what it writes is well-formed, with regard to namespaces too, and comes
/// back as it was, or the event is refused with a SAXException that names the reason. A refused
/// event leaves no octet behind and the writer as it was before: what follows may go on from there.
/// So does one that fails for another reason, in the attributes that are given or for want of
/// memory, as long as nothing of it may have been written. Otherwise, and where the stream throws,
/// every further event is refused (`The document cannot go on after a failure: the writer must be
/// reset`), until reset.
///
/// Features: Tavrin::features::autoIndent, emptyTags and xmlDeclaration. Properties, each with a
/// type of value: Tavrin::properties::indentWidth, quoteCharacter, standalone and
/// documentXMLVersion, which can be any `1.[0-9]+`; what is written is XML 1.0, and says so.
/// Features and properties count from the next event, and stay when the writer is reset.
///
/// **Names.** An element or attribute comes with namespace name, local name and qualified name.
/// They must fit each other and the prefix mappings in force: what binds a prefix, and the default
/// namespace, is always declared by startPrefixMapping or by an attribute. In events of a reader
/// that does not process namespaces, namespace and local names are empty: then the prefix must be
/// bound, to anything. Attributes named `xmlns` or `xmlns:p` are declarations as startPrefixMapping
/// makes them; one that says the same as a mapping is left out.
///
/// **Text.** Each string is UTF-8 in itself: a character may not be split between two calls. In
/// text, `<`, `>`, `&` and carriage return are escaped; in attribute values and namespace names
/// `<`,
/// `&`, the quote, tab, line feed and carriage return. In a CDATA section, `]]>` is split between
/// two sections, and a carriage return stands as a reference between two sections. An empty section
/// leaves no trace.
///
/// **Document type.** Declarations, comments and processing instructions between
/// startEntity("[dtd]") and its endEntity are in the external subset, to which the document refers,
/// and are not written; nor are those of an external parameter entity, to which a reference is
/// written. Without startEntity everything is in the internal subset. skippedEntity writes a
/// reference, if the entity is declared or may be declared where this writer does not see it.
/// General entities that were read are written as their text. The defaults of declared attributes
/// count when names are checked. What is declared after a parameter entity that was skipped counts
/// for nothing: a reference to an entity is written whatever its text.
///
/// **Auto-indent** never adds white space to an element that has text of any kind, white space and
/// references among it, nor inside its descendants, nor where `xml:space` says `preserve`. That
/// text is coming may show only at the end of an element. So, while auto-indent is on, the octets
/// of the root element are held back in memory until it ends, or until text directly inside of it
/// rules indentation out. flush writes them at once, without line breaks, and indents nothing more
/// in the elements that are open. Levels from the hundredth on are indented alike.
///
/// What XML text cannot hold comes back changed: a carriage return in a comment, a processing
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
  /// Each throws SAXException when it may not come now, or when what it brings cannot be written.
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

  /// Switches one of the three features on or off.
  /// @throws SAXNotRecognizedException for any other identifier
  void setFeature(const std::string& name, bool value) override;
  /// Whether one of the three features is on.
  /// @throws SAXNotRecognizedException for any other identifier
  bool getFeature(const std::string& name) override;
  /// Sets one of the five properties.
  /// @throws SAXException for a value that it cannot have
  /// @throws SAXNotRecognizedException for any other identifier
  void setProperty(const std::string& name, void* value) override;
  /// The value of one of the five properties; null where the document says nothing of being
  /// standalone.
  /// @throws SAXNotRecognizedException for any other identifier
  void* getProperty(const std::string& name) override;

  /// Completes an open start tag, CDATA opening or internal subset bracket, and writes what
  /// auto-indent holds back.
  void flush() override;
  /// Forgets the document, with what auto-indent holds back.
  void reset() override;

 private:
  class Composer;
  const std::unique_ptr<Composer> composer_;

  static const XMLWriterType type_;
};

}  // namespace Tavrin
