/// @file
/// A reader that stands between another one and its handlers.
#pragma once

#include <Tavrin/DefaultHandler.h>
#include <Tavrin/Export.h>
#include <Tavrin/XMLReader.h>

#include <istream>
#include <memory>
#include <string>
#include <vector>

namespace Tavrin {

/// Passes the events of a parent, which is another reader, on to its own handlers. A derived filter
/// overrides the events that it changes, adds to or leaves out, and calls the operation of this
/// class to pass one on. The parent may be a filter in its turn.
///
/// @code
/// struct WithoutComments : XMLFilter {
///   using XMLFilter::XMLFilter;
///   void comment(const std::string&) override {}
/// };
/// XMLReader_XML10 reader;
/// WithoutComments filter(&reader);
/// XMLWriter_XML10 writer;
/// writer.setOutputStream(&std::cout);
/// connect(filter, writer);
/// std::ifstream document("menu.xml", std::ios::binary);
/// filter.parse(document);
/// @endcode
///
/// An event for which the filter has no handler ends there, and an entity for which it has no
/// resolver is skipped. Features and properties are those of the parent, but for the four
/// properties that are handlers (see Tavrin::properties): these are the filter's, whatever the
/// parent knows.
///
/// The filter is every handler of its parent, but for typed content only where it has such a
/// handler itself: content that nobody receives as typed stays text. So a derived filter that
/// overrides an operation for typed content, and has nobody to pass it on to, sets a DefaultHandler
/// for it. Typed content, and attributes with typed values, pass as they are; from a parent that
/// reads XML text there are none. The locator is the parent's.
///
/// XMLReader_Expat ends at some declarations where a handler is set for them, and so it does as a
/// parent.
class TAVRIN_API XMLFilter : public XMLReader, public DefaultHandler {
 public:
  XMLFilter() = default;  ///< Without a parent.
  /// With a parent, as setParent sets it.
  explicit XMLFilter(XMLReader* parent) { setParent(parent); }
  ~XMLFilter() override;

  /// Sets whose events pass, and sets the filter as the handler of that reader, which is not owned.
  /// Before the parent reads a document without the filter, its handlers have to be set anew.
  void setParent(XMLReader* parent);
  XMLReader* getParent() const { return parent_; }  ///< Or null.

  /// @name Features and properties
  /// As the parent has them. Without a parent none is known but the handlers.
  /// @{
  void setFeature(const std::string& name, bool value) override;
  bool getFeature(const std::string& name) override;
  void setProperty(const std::string& name, void* value) override;
  void* getProperty(const std::string& name) override;
  /// @}

  /// @name Parsing
  /// As the parent does it.
  /// @throws SAXException without a parent
  /// @{
  void parse(std::istream& stream) override;
  void parse(const void* data, unsigned long size, bool isFinal) override;
  /// @}

  /// @name Events
  /// Each is passed on to the filter's handler for it, if there is one.
  /// @{
  void setDocumentLocator(const Locator* locator) override;
  void startDocument() override;
  void endDocument() override;
  void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
  void endPrefixMapping(const std::string& prefix) override;
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
  void attributeDecl(const std::string& eName, const std::string& aName, const std::string& type,
                     const std::string& mode, const std::string& value) override;
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

  void warning(const SAXParseException& exception) override;
  void error(const SAXParseException& exception) override;
  void fatalError(const SAXParseException& exception) override;

  /// The stream of the filter's resolver; null without one.
  std::unique_ptr<std::istream> resolveEntity(const std::string& publicId,
                                              const std::string& systemId) override;

  void bytes(const std::string& data) override;
  void shorts(const std::vector<short>& data) override;
  void ints(const std::vector<long>& data) override;
  void longs(const std::vector<long>& data) override;
  void booleans(const std::vector<bool>& data) override;
  void floats(const std::vector<float>& data) override;
  void doubles(const std::vector<double>& data) override;

  void octets(const std::string& uri, int index, const std::string& data) override;
  void object(const std::string& uri, int index, const EncodedData& data) override;
  /// @}

 protected:
  DeclHandler* declHandler_ = nullptr;                                          ///< Not owned.
  LexicalHandler* lexicalHandler_ = nullptr;                                    ///< Not owned.
  PrimitiveTypeContentHandler* primitiveTypeContentHandler_ = nullptr;          ///< Not owned.
  EncodingAlgorithmContentHandler* encodingAlgorithmContentHandler_ = nullptr;  ///< Not owned.

 private:
  template <typename Access>
  bool accessHandlers(Access access);
  bool isAttached() const;
  void attach();
  void attachTyped();
  XMLReader& attachedParent();

  XMLReader* parent_ = nullptr;
};

}  // namespace Tavrin
