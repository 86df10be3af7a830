// Converts many messages with one reader and one writer: what they have allocated serves the next.
#include <Tavrin/Tavrin.h>

#include <iostream>
#include <sstream>
#include <string>

class Converter {
 public:
  Converter() {
    Tavrin::connect(reader_, writer_);
    writer_.setOutputStream(&octets_);
  }

  std::string convert(const std::string& text) {
    octets_.str("");
    writer_.reset();  // Also after a message that failed.
    Tavrin::MemoryStream stream(text);
    reader_.parse(stream);
    return octets_.str();
  }

 private:
  Tavrin::XMLReader_XML10 reader_;
  Tavrin::XMLWriter_X891 writer_;
  std::ostringstream octets_;
};

int main() {
  Converter converter;
  for (const char* message : {"<m>one</m>", "<m>two</n>", "<m>three</m>"}) {
    try {
      std::cout << converter.convert(message).size() << " octets\n";
    } catch (const Tavrin::SAXException& failure) {
      std::cout << failure.getMessage() << '\n';
    }
  }
  return std::cout.flush() ? 0 : 1;
}
