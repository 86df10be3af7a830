/// @file
/// How a reader and what receives its events are put together in one call.
#pragma once

#include <Tavrin/DefaultHandler.h>
#include <Tavrin/Export.h>
#include <Tavrin/Handlers.h>
#include <Tavrin/TypedData.h>
#include <Tavrin/XMLReader.h>
#include <Tavrin/XMLWriter.h>

#include <type_traits>

namespace Tavrin {

/// The handler interfaces of an object, each with its own address; null for those that it has not.
/// It is made from any object that has a virtual operation, and holds nothing of its own: the
/// object must outlive its use.
struct HandlerSet {
  /// Finds all interfaces, also those that only the class of the object itself has.
  ///
  /// A writer that has encoding algorithms, and a DefaultHandler, are not given primitive types: by
  /// them hexadecimal octets would become base64, because PrimitiveTypeContentHandler::bytes does
  /// not tell which they are. A DefaultHandler calls its operations for these types itself.
  template <typename Object, std::enable_if_t<std::is_polymorphic_v<Object>, int> = 0>
  HandlerSet(Object& object)  // NOLINT(google-explicit-constructor): any object is a set.
      : content(dynamic_cast<ContentHandler*>(&object)),
        dtd(dynamic_cast<DTDHandler*>(&object)),
        declarations(dynamic_cast<DeclHandler*>(&object)),
        lexical(dynamic_cast<LexicalHandler*>(&object)),
        errors(dynamic_cast<ErrorHandler*>(&object)),
        entities(dynamic_cast<EntityResolver*>(&object)),
        primitiveTypes(dynamic_cast<PrimitiveTypeContentHandler*>(&object)),
        encodingAlgorithms(dynamic_cast<EncodingAlgorithmContentHandler*>(&object)) {
    const bool isWriter = encodingAlgorithms && dynamic_cast<XMLWriter*>(content);
    if (isWriter || dynamic_cast<DefaultHandler*>(content)) primitiveTypes = nullptr;
  }

  ContentHandler* content;                              ///< Content.
  DTDHandler* dtd;                                      ///< Notations and unparsed entities.
  DeclHandler* declarations;                            ///< Declarations of the document type.
  LexicalHandler* lexical;                              ///< Comments and boundaries.
  ErrorHandler* errors;                                 ///< Failures and warnings.
  EntityResolver* entities;                             ///< Opens external entities.
  PrimitiveTypeContentHandler* primitiveTypes;          ///< Typed content as arrays.
  EncodingAlgorithmContentHandler* encodingAlgorithms;  ///< Typed content as objects and octets.
};

/// Lets a reader report to a writer, so that parsing a document copies or converts it.
///
/// @code
/// XMLWriter_X891 writer;
/// std::ofstream copy("menu.finf", std::ios::binary);
/// writer.setOutputStream(&copy);
/// XMLReader_XML10 reader;
/// connect(reader, writer);
/// std::ifstream document("menu.xml", std::ios::binary);
/// reader.parse(document);
/// @endcode
///
/// The reader reports content, notations and unparsed entities, declarations, lexical events and
/// typed content to the writer, as far as both have them, and to nobody else: other handlers of
/// these events are taken off. Typed content goes to a writer as HandlerSet has it, and is text
/// where the writer has no form for it. The error handler and the entity resolver stay as they are.
/// What is no event is not copied: whether the document is standalone (Tavrin::properties).
///
/// It is for all types of readers and writers. XMLReader_Expat ends at some declarations where a
/// handler is set for them, as its description tells.
TAVRIN_API void connect(XMLReader& reader, XMLWriter& writer);

/// Lets a reader report to an object, by all handler interfaces that the object has. Handlers of
/// other interfaces stay, so several objects may share the events.
///
/// @code
/// struct Comments : ContentHandler, LexicalHandler, ErrorHandler {
///   void comment(const std::string& text) override { std::cout << text << '\n'; }
///   void warning(const SAXParseException& problem) override {
///     std::cerr << problem.getMessage() << '\n';
///   }
/// } comments;
/// XMLReader_XML10 reader;
/// connect(reader, comments);
/// std::ifstream document("menu.xml", std::ios::binary);
/// reader.parse(document);
/// @endcode
///
/// An interface for events that the reader does not have is passed over.
/// @param reader   whose handlers are set
/// @param handlers an object that has one handler interface or more; or a set
TAVRIN_API void connect(XMLReader& reader, const HandlerSet& handlers);

}  // namespace Tavrin
