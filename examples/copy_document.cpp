// Copies a document, event by event: copy_document < document.xml > copy.xml
#include <Tavrin/Tavrin.h>

#include <iostream>

int main() {
  const auto reader = Tavrin::XMLReaderFactory::createXMLReader("Expat");
  const auto writer = Tavrin::XMLWriterFactory::createXMLWriter("XML");
  writer->setOutputStream(&std::cout);

  // A writer is a set of handlers. A property is a pointer to just the interface that it names.
  reader->setContentHandler(writer.get());
  reader->setProperty(Tavrin::properties::lexicalHandler,
                      static_cast<Tavrin::LexicalHandler*>(writer.get()));
  try {
    reader->parse(std::cin);
  } catch (const Tavrin::SAXException& failure) {
    std::cerr << failure.getMessage() << '\n';
    return 1;
  }
  std::cout.flush();
  return std::cout ? 0 : 1;  // Writers leave the checking of the stream to its owner.
}
