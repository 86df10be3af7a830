/// @file
/// A base for handlers that want events of several interfaces.
#pragma once

#include <Tavrin/Exceptions.h>
#include <Tavrin/Export.h>
#include <Tavrin/Handlers.h>
#include <Tavrin/TypedData.h>

#include <string>
#include <vector>

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
/// All other operations do nothing, and external entities are skipped. Typed content comes to
/// characters as the text that a reader without handlers for it reports, unless the operation for
/// it is overridden.
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

  /// @name Typed content
  /// Each calls characters with the text of the value, unless that is empty.
  ///
  /// Tavrin::connect sets the object as EncodingAlgorithmContentHandler only: to `object` a reader
  /// tells what bytes do not show, which is whether their text is hexadecimal or base64. Bytes that
  /// do not come through `object` become base64.
  /// @{
  void bytes(const std::string& data) override;
  void shorts(const std::vector<short>& data) override;
  void ints(const std::vector<long>& data) override;
  void longs(const std::vector<long>& data) override;
  void booleans(const std::vector<bool>& data) override;
  void floats(const std::vector<float>& data) override;
  void doubles(const std::vector<double>& data) override;
  /// Calls the operation above for the value. One of UUIDs, or of an application's algorithm, which
  /// have no such operation, goes to characters at once.
  void object(const std::string& uri, int index, const EncodedData& data) override;
  /// Nobody knows the text of these octets. They become base64, as RawData.
  void octets(const std::string& uri, int index, const std::string& data) override;
  /// @}

 private:
  const EncodedData* value_ = nullptr;  // What object has been called with.
};

}  // namespace Tavrin
