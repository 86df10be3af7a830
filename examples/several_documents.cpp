// Writes messages one behind the other on one stream, and reads them back one by one.
#include <Tavrin/Tavrin.h>

#include <iostream>
#include <sstream>
#include <string>

class Texts : public Tavrin::DefaultHandler {
 public:
  void characters(const std::string& text) override { std::cout << text << '\n'; }
};

int main() {
  try {
    std::stringstream stream;
    Tavrin::XMLWriter_X891 writer;
    writer.setOutputStream(&stream);
    for (const char* name : {"first", "second", "third"}) {
      Tavrin::DocumentWriter document(writer);
      document.element("message", name);
      document.endDocument();
      writer.reset();  // The next document begins with empty tables.
    }
    std::cout << stream.str().size() << " octets\n";

    // The reader takes no octet behind the end of a document.
    Tavrin::XMLReader_X891 reader;
    Texts texts;
    Tavrin::connect(reader, texts);
    while (stream.peek() != std::stringstream::traits_type::eof()) reader.parse(stream);

    // In blocks, it tells how many octets of the block belong to the next document.
    const std::string octets = stream.str();
    std::size_t begin = 0;
    while (begin < octets.size()) {
      const std::size_t size = octets.size() - begin;
      reader.parse(octets.data() + begin, size, true);
      begin += size - reader.unusedOctets();
      std::cout << "a document ends behind octet " << begin << '\n';
    }
  } catch (const Tavrin::SAXException& failure) {
    std::cerr << failure.getMessage() << '\n';
    return 1;
  }
  return std::cout.flush() ? 0 : 1;
}
