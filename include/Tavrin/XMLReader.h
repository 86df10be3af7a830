/// @file
/// The base of all readers.
#pragma once

#include <Tavrin/Export.h>
#include <Tavrin/Handlers.h>

#include <istream>
#include <string>

namespace Tavrin {

/// Reads documents and reports them to handlers, synchronously and in document order.
///
/// A reader may read any number of documents, one after another; one thread uses it at a time.
/// Handlers are not owned and must outlive the parse; a null handler switches its events off.
/// A handler must not call `parse` of the reader that calls it.
class TAVRIN_API XMLReader {
 public:
  virtual ~XMLReader() = default;
  XMLReader(const XMLReader&) = delete;
  XMLReader& operator=(const XMLReader&) = delete;

  /// @name Features and properties
  /// See Tavrin::features and Tavrin::properties for the identifiers and for how to pass a handler.
  /// For an unknown one, SAXNotRecognizedException `Feature "name" not recognized`, or `Property
  /// ...`, is thrown and nothing changes. The base knows none.
  /// @{
  virtual void setFeature(const std::string& name, bool value);  ///< Switches one on or off.
  virtual bool getFeature(const std::string& name);              ///< Whether it is on.
  /// Sets a property, most often a handler. The value is not owned; null removes it.
  virtual void setProperty(const std::string& name, void* value);
  virtual void* getProperty(const std::string& name);  ///< The pointer that was set, or null.
  /// @}

  /// Reads one whole document.
  /// @throws SAXException (or a class derived from it) when the document cannot be read
  virtual void parse(std::istream& stream) = 0;

  /// Reads the next block of a document. The first block starts a document; the last one has
  /// `isFinal`. Events may be reported with a later block than the one that completes them, at the
  /// latest with the last: expat may wait for more octets after a token that was cut in two.
  /// @param data    the block; it need not outlive the call
  /// @param size    its length in octets
  /// @param isFinal true on the last block
  /// @throws SAXNotRecognizedException "parse not implemented" from a reader that reads whole
  ///         streams only
  virtual void parse(const void* data, unsigned long size, bool isFinal);

  /// @name Handlers
  /// All are null at first. The lexical and the declaration handler are properties.
  /// @{

  /// Sets who receives the document's content.
  void setContentHandler(ContentHandler* handler) { contentHandler_ = handler; }
  ContentHandler* getContentHandler() const { return contentHandler_; }  ///< Or null.
  /// Sets who receives failures before they are thrown.
  void setErrorHandler(ErrorHandler* handler) { errorHandler_ = handler; }
  ErrorHandler* getErrorHandler() const { return errorHandler_; }  ///< Or null.
  /// Sets who opens external entities.
  void setEntityResolver(EntityResolver* resolver) { entityResolver_ = resolver; }
  EntityResolver* getEntityResolver() const { return entityResolver_; }  ///< Or null.
  /// Sets who receives notations and unparsed entities.
  void setDTDHandler(DTDHandler* handler) { dtdHandler_ = handler; }
  DTDHandler* getDTDHandler() const {
    return dtdHandler_;
  }  ///< Or null.
     /// @}

 protected:
  XMLReader() = default;

  ContentHandler* contentHandler_ = nullptr;  ///< Not owned.
  ErrorHandler* errorHandler_ = nullptr;      ///< Not owned.
  EntityResolver* entityResolver_ = nullptr;  ///< Not owned.
  DTDHandler* dtdHandler_ = nullptr;          ///< Not owned.
};

}  // namespace Tavrin
