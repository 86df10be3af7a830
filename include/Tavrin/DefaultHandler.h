/// @file
/// A base for handlers that want events of several interfaces.
#pragma once

#include <Tavrin/Exceptions.h>
#include <Tavrin/Export.h>
#include <Tavrin/Handlers.h>
#include <Tavrin/TypedData.h>

namespace Tavrin {

/// All handler interfaces in one class, for an application that overrides the events that it wants
/// to hear, whatever their interface.
///
/// @code
/// struct Count : DefaultHandler {
///   void startElement(const std::string&, const std::string&, const std::string&,
///                     const Attributes&) override {
///     ++elements;
///   }
///   void comment(const std::string&) override { ++comments; }
///   int elements = 0;
///   int comments = 0;
/// } count;
/// XMLReader_XML10 reader;
/// reader.setContentHandler(&count);
/// reader.setProperty(properties::lexicalHandler, static_cast<LexicalHandler*>(&count));
/// std::ifstream document("menu.xml", std::ios::binary);
/// reader.parse(document);
/// std::cout << count.elements << " elements, " << count.comments << " comments\n";
/// @endcode
///
/// All operations do nothing, and external entities are skipped, but for fatalError. An object of
/// this class that is attached as a whole hears typed content as such, and drops it unless the
/// operations for it are overridden: such content does not come to characters.
class TAVRIN_API DefaultHandler : public ContentHandler,
                                  public DTDHandler,
                                  public DeclHandler,
                                  public LexicalHandler,
                                  public ErrorHandler,
                                  public EntityResolver,
                                  public PrimitiveTypeContentHandler,
                                  public EncodingAlgorithmContentHandler {
 public:
  ~DefaultHandler() override;

  /// Throws the failure, as SAX2 has it. The library's readers throw the same one afterwards
  /// anyway; with a reader of an application, too, no document goes on after such a failure.
  /// @throws SAXParseException always
  void fatalError(const SAXParseException& exception) override;
};

}  // namespace Tavrin
