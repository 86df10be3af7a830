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
  virtual ~XMLReader();

  /// @name Features and properties
  /// The base knows none: each call throws SAXNotRecognizedException and changes nothing. See
  /// Tavrin::features and Tavrin::properties for the identifiers and for how to pass a handler.
  /// @{
  virtual void setFeature(const std::string& name, bool value);
  virtual bool getFeature(const std::string& name);
  virtual void setProperty(const std::string& name, void* value);
  virtual void* getProperty(const std::string& name);
  /// @}

  /// Reads one whole document.
  /// @throws SAXException     (or a class derived from it) when the document cannot be read
  virtual void parse(std::istream& stream) = 0;

  /// Reads the next block of a document. The first block starts a document; the last one carries
  /// `isFinal`.
  /// @param data    the block; it need not outlive the call
  /// @param size    its length in octets
  /// @param isFinal true on the last block
  /// @throws SAXNotRecognizedException "parse not implemented" from a reader that reads whole
  ///         streams only
  virtual void parse(const void* data, unsigned long size, bool isFinal);

  /// @name Handlers
  /// @{
  void setContentHandler(ContentHandler* handler) { contentHandler_ = handler; }
  ContentHandler* getContentHandler() const { return contentHandler_; }
  void setErrorHandler(ErrorHandler* handler) { errorHandler_ = handler; }
  ErrorHandler* getErrorHandler() const { return errorHandler_; }
  void setEntityResolver(EntityResolver* resolver) { entityResolver_ = resolver; }
  EntityResolver* getEntityResolver() const { return entityResolver_; }
  void setDTDHandler(DTDHandler* handler) { dtdHandler_ = handler; }
  DTDHandler* getDTDHandler() const { return dtdHandler_; }
  /// @}

 protected:
  XMLReader() = default;
  XMLReader(const XMLReader&) = delete;
  XMLReader& operator=(const XMLReader&) = delete;

  ContentHandler* contentHandler_ = nullptr;
  ErrorHandler* errorHandler_ = nullptr;
  EntityResolver* entityResolver_ = nullptr;
  DTDHandler* dtdHandler_ = nullptr;
};

}  // namespace Tavrin
