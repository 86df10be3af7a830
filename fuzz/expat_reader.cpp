// XML text through the "Expat" reader, whole and in blocks, into the writers.
#include <cstddef>
#include <cstdint>

#include "everything.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto reader = Tavrin::XMLReaderFactory::createXMLReader("Expat");
  Everything everything;
  reader->setContentHandler(&everything);
  reader->setProperty(Tavrin::properties::lexicalHandler,
                      static_cast<Tavrin::LexicalHandler*>(&everything.xml));
  try {
    std::istringstream stream(std::string(reinterpret_cast<const char*>(data), size));
    reader->parse(stream);
  } catch (const Tavrin::SAXException&) {
    // A refusal is an answer; anything else ends the fuzzer.
  }
  reader->setContentHandler(nullptr);
  reader->setProperty(Tavrin::properties::lexicalHandler, nullptr);
  try {
    for (std::size_t i = 0; i < size; ++i) reader->parse(data + i, 1, i + 1 == size);
  } catch (const Tavrin::SAXException&) {
  }
  return 0;
}
