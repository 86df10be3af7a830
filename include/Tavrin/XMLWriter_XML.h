/// @file
/// The writer of XML text.
#pragma once

#include <Tavrin/Export.h>
#include <Tavrin/Factories.h>
#include <Tavrin/XMLWriter.h>

#include <memory>
#include <string>
#include <vector>

namespace Tavrin {

/// Writes XML 1.0 text in UTF-8, without a buffer of its own; registered as "XML". It is what
/// XMLWriterFactory creates by default. Its behaviour is fixed, oddities included, for programs
/// that rely on its octets; all others choose XMLWriter_XML10, which checks what it is given.
///
/// @code
/// XMLWriter_XML writer;
/// writer.setOutputStream(&std::cout);
/// writer.startDocument();
/// writer.startElement("", "greeting", "greeting", AttributesImpl());
/// writer.characters("Hello & goodbye");
/// writer.endElement("", "greeting", "greeting");
/// writer.endDocument();
/// @endcode
///
/// Features: Tavrin::features::autoIndent, emptyTags and xmlDeclaration. They may be changed at any
/// time; a change applies from the next event on.
///
/// A start tag, the opening of a CDATA section and the bracket of an internal subset are completed
/// by the first content that follows, or by flush. Stream errors are not checked: check the
/// stream's state when the document is done.
///
/// What a program that relies on it must know:
/// - Names, namespace names, comments, processing instructions and declarations are written as
///   given.
/// - In attribute values `<`, `&`, `'` and line feed are escaped; in text `<`, `>` and `&`. So a
///   reader does not get back a carriage return, nor a tab in an attribute value.
/// - autoIndent adds white space to text: the end tag of an element with content begins a new line.
/// - Skipped entities are not written.
/// - An attribute declaration is always written with a default value in quotes, so a parser reads
///   only those back that have a default.
/// - A notation or unparsed entity with a public identifier repeats its name after the system
///   identifier (`<!NOTATION n PUBLIC "p" "s"n>`), and an empty root element with emptyTags off is
///   written as `<r</r>`: neither is well-formed.
/// - A refused event may leave a completed start tag and an indentation in the stream.
class TAVRIN_API XMLWriter_XML : public XMLWriter {
 public:
  XMLWriter_XML() = default;
  ~XMLWriter_XML() override = default;

  /// A new writer without a stream, its features at their defaults.
  static std::unique_ptr<XMLWriter> create();

  void startDocument() override;
  /// Keeps the declaration for the next start tag; without a stream it is dropped.
  void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Attributes& attributes) override;
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override;
  void characters(const std::string& text) override;
  void ignorableWhitespace(const std::string& text) override;
  void processingInstruction(const std::string& target, const std::string& data) override;

  void setFeature(const std::string& name, bool value) override;
  bool getFeature(const std::string& name) override;

  /// Completes an open start tag, CDATA opening or internal subset bracket.
  void flush() override;
  void reset() override;

  void notationDecl(const std::string& name, const std::string& publicId,
                    const std::string& systemId) override;
  void unparsedEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId, const std::string& notationName) override;
  void elementDecl(const std::string& name, const std::string& model) override;
  void attributeDecl(const std::string& eName, const std::string& aName, const std::string& type,
                     const std::string& mode, const std::string& value) override;
  void internalEntityDecl(const std::string& name, const std::string& value) override;
  void externalEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId) override;
  void startDTD(const std::string& name, const std::string& publicId,
                const std::string& systemId) override;
  void endDTD() override;
  void startCDATA() override;
  void endCDATA() override;
  void comment(const std::string& text) override;

 protected:
  /// Completes what the innermost container leaves open before its first content, and writes it.
  void startChild();
  /// If auto-indent is on, breaks the line by ignorableWhitespace.
  void indent();

  bool autoIndent_ = false;              ///< The feature auto-indent.
  bool emptyTags_ = true;                ///< The feature empty-tags.
  bool xmlDeclaration_ = true;           ///< The feature xml-declaration.
  std::vector<std::string> namespaces_;  ///< Declared by the next start tag: prefix, name, ...

 private:
  TAVRIN_LOCAL static const XMLWriterType type_;
};

}  // namespace Tavrin
