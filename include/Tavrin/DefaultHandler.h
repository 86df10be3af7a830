/// @file
/// A base for handlers that want events of several interfaces.
#pragma once

#include <Tavrin/Exceptions.h>
#include <Tavrin/Export.h>
#include <Tavrin/Handlers.h>
#include <Tavrin/TypedData.h>

namespace Tavrin {

/// All handler interfaces in one class, for an application that overrides the events that it wants
/// to hear, whatever their interface. Tavrin::connect attaches all of them to a reader.
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
/// connect(reader, count);
/// std::ifstream document("menu.xml", std::ios::binary);
/// reader.parse(document);
/// std::cout << count.elements << " elements, " << count.comments << " comments\n";
/// @endcode
///
/// All operations but fatalError do nothing, and external entities are skipped. An object that is
/// connected receives typed content as such: it does not come to characters, and is lost unless the
/// operations for it are overridden.
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
