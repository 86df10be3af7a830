/// @file
/// The handler interfaces: how a reader reports a document, and how a writer receives one.
///
/// Every operation does nothing unless it is overridden, so an application overrides just what it
/// needs. Strings hold UTF-8. Handlers belong to the application: readers and writers hold plain
/// pointers to them and never delete them. References that a handler gets are valid during the call
/// only.
#pragma once

#include <Tavrin/Attributes.h>
#include <Tavrin/Exceptions.h>
#include <Tavrin/Export.h>

#include <cstdint>
#include <istream>
#include <memory>
#include <string>

namespace Tavrin {

/// Reports the position of the current event in the document.
class TAVRIN_API Locator {
 public:
  virtual ~Locator();

  virtual std::string getPublicId() const = 0;       ///< Public identifier of the entity, or empty.
  virtual std::string getSystemId() const = 0;       ///< System identifier of the entity, or empty.
  virtual std::int32_t getLineNumber() const = 0;    ///< Current line, from 1.
  virtual std::int32_t getColumnNumber() const = 0;  ///< Current column, from 1.
};

/// A locator that counts octets, too. The readers "XML10" and "X891" set one:
/// `dynamic_cast<const OctetLocator*>(locator)`.
class TAVRIN_API OctetLocator : public Locator {
 public:
  ~OctetLocator() override;

  /// An offset in the document, or in the external entity that is being read, in octets from 0:
  /// with "XML10" that of the markup or text of the current event, which is the end of an empty tag
  /// for the end of its element; with "X891" that of the end of the event's octets, which is how
  /// many were read.
  virtual std::uint64_t getOctetOffset() const = 0;
};

/// The content of a document, in document order.
class TAVRIN_API ContentHandler {
 public:
  virtual ~ContentHandler() = default;

  /// Called before startDocument, by readers that know positions.
  /// @param locator belongs to the reader and must not be used after endDocument
  virtual void setDocumentLocator(const Locator* locator);
  virtual void startDocument();  ///< The document begins.
  virtual void endDocument();    ///< The document ended; not called after a failure.

  /// A namespace declaration (Namespaces in XML, section 3), before the startElement it stands on.
  /// @param prefix empty for the default namespace
  /// @param uri    the namespace name
  virtual void startPrefixMapping(const std::string& prefix, const std::string& uri);
  /// The end of a namespace declaration's scope, after the endElement it stood on.
  virtual void endPrefixMapping(const std::string& prefix);

  /// A start tag, or the start of an empty element.
  /// @param uri        the namespace name, or empty
  /// @param localName  the name without prefix
  /// @param qName      the name as written
  /// @param attributes valid during the call; namespace declarations are not among them
  virtual void startElement(const std::string& uri, const std::string& localName,
                            const std::string& qName, const Attributes& attributes);
  /// An end tag, or the end of an empty element, with the names of its startElement.
  virtual void endElement(const std::string& uri, const std::string& localName,
                          const std::string& qName);

  /// Character data. One run of text may come in several calls.
  virtual void characters(const std::string& text);
  /// White space that has no meaning in its place.
  virtual void ignorableWhitespace(const std::string& text);
  /// A processing instruction (XML 1.0, section 2.6).
  virtual void processingInstruction(const std::string& target, const std::string& data);
  /// A reference to an entity that was not read.
  virtual void skippedEntity(const std::string& name);
};

/// Notations and unparsed entities (XML 1.0, sections 4.7 and 4.2.2).
class TAVRIN_API DTDHandler {
 public:
  virtual ~DTDHandler() = default;

  /// A notation; identifiers that are absent are empty.
  virtual void notationDecl(const std::string& name, const std::string& publicId,
                            const std::string& systemId);
  /// An unparsed entity; an absent public identifier is empty.
  virtual void unparsedEntityDecl(const std::string& name, const std::string& publicId,
                                  const std::string& systemId, const std::string& notationName);
};

/// The declarations of the document type (XML 1.0, sections 3.2, 3.3 and 4.2).
class TAVRIN_API DeclHandler {
 public:
  virtual ~DeclHandler() = default;

  /// An element type declaration.
  /// @param name  the element's name
  /// @param model the content model without blanks, for example "(a,(b|c)+)", "EMPTY" or "ANY"
  virtual void elementDecl(const std::string& name, const std::string& model);
  /// The declaration of one attribute.
  /// @param eName the element's name
  /// @param aName the attribute's name
  /// @param type  the type, for example "CDATA" or "(yes|no)"
  /// @param mode  "#IMPLIED", "#REQUIRED", "#FIXED" or empty
  /// @param value the default value, empty where there is none
  virtual void attributeDecl(const std::string& eName, const std::string& aName,
                             const std::string& type, const std::string& mode,
                             const std::string& value);
  /// An internal entity; the name of a parameter entity begins with "%".
  virtual void internalEntityDecl(const std::string& name, const std::string& value);
  /// An external parsed entity; the name of a parameter entity begins with "%".
  virtual void externalEntityDecl(const std::string& name, const std::string& publicId,
                                  const std::string& systemId);
};

/// What a document has besides its content: comments, the boundaries of CDATA sections, entities
/// and the document type declaration.
class TAVRIN_API LexicalHandler {
 public:
  virtual ~LexicalHandler() = default;

  /// The document type declaration begins; absent identifiers are empty.
  virtual void startDTD(const std::string& name, const std::string& publicId,
                        const std::string& systemId);
  virtual void endDTD();                              ///< The document type declaration ended.
  virtual void startEntity(const std::string& name);  ///< An entity begins.
  virtual void endEntity(const std::string& name);    ///< An entity ended.
  virtual void startCDATA();                          ///< A CDATA section begins.
  virtual void endCDATA();                            ///< A CDATA section ended.
  virtual void comment(const std::string& text);      ///< A comment, without its delimiters.
};

/// Receives a reader's warnings, and its failures before they are thrown. The reader throws after
/// fatalError returns.
class TAVRIN_API ErrorHandler {
 public:
  virtual ~ErrorHandler() = default;

  virtual void warning(const SAXParseException& exception);     ///< Something worth knowing.
  virtual void error(const SAXParseException& exception);       ///< A failure; the parse continues.
  virtual void fatalError(const SAXParseException& exception);  ///< A failure that ends the parse.
};

/// Finds the text of external entities.
class TAVRIN_API EntityResolver {
 public:
  virtual ~EntityResolver() = default;

  /// Opens an external entity (XML 1.0, section 4.2.2).
  /// @param publicId the public identifier, or empty
  /// @param systemId the system identifier as written, or empty
  /// @return the stream to read the entity from, which the reader deletes; with an empty pointer
  ///         (the default), the reader skips the entity
  virtual std::unique_ptr<std::istream> resolveEntity(const std::string& publicId,
                                                      const std::string& systemId);
};

}  // namespace Tavrin
