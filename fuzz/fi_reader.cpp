// Fast Infoset through the "FI" reader: as text into the writers, and typed into the "FI" writer.
#include <cstddef>
#include <cstdint>
#include <iostream>

#include "everything.h"

namespace {

void parse(Tavrin::XMLReader& reader, const std::string& document) {
  try {
    std::istringstream stream(document);
    reader.parse(stream);
  } catch (const Tavrin::SAXException&) {
    // A refusal is an answer; anything else ends the fuzzer.
  } catch (const Tavrin::EncodingAlgorithmException&) {
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  std::cout.setstate(std::ios::badbit);  // The reader prints what it delivers to no handler.
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string document(reinterpret_cast<const char*>(data), size);
  const auto reader = Tavrin::XMLReaderFactory::createXMLReader("FI");
  Everything everything;
  reader->setContentHandler(&everything);
  parse(*reader, document);

  Tavrin::XMLWriter_FI typed;
  std::ostringstream out;
  typed.setOutputStream(&out);
  reader->setContentHandler(&typed);
  reader->setProperty(Tavrin::properties::lexicalHandler,
                      static_cast<Tavrin::LexicalHandler*>(&typed));
  reader->setProperty(Tavrin::properties::primitiveTypeContentHandler,
                      static_cast<Tavrin::PrimitiveTypeContentHandler*>(&typed));
  reader->setProperty(Tavrin::properties::encodingAlgorithmContentHandler,
                      static_cast<Tavrin::EncodingAlgorithmContentHandler*>(&typed));
  parse(*reader, document);
  return 0;
}
