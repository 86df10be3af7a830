// Uses what crosses the library's border: factories, a reader driving a writer, and an exception.
#include <Tavrin/Tavrin.h>

#include <iostream>
#include <sstream>

int main() {
  std::cout << "version " << TAVRIN_VERSION_MAJOR << '.' << TAVRIN_VERSION_MINOR << '.'
            << TAVRIN_VERSION_PATCH << '\n';

  std::istringstream in("<a b='1'><c/>text</a>");
  const auto reader = Tavrin::XMLReaderFactory::createXMLReader();
  const auto writer = Tavrin::XMLWriterFactory::createXMLWriter();
  writer->setOutputStream(&std::cout);
  reader->setContentHandler(writer.get());
  reader->parse(in);
  std::cout << '\n';

  try {
    Tavrin::XMLReaderFactory::createXMLReader("none");
  } catch (const Tavrin::SAXException& exception) {
    std::cout << exception.getMessage() << '\n';
  }
}
