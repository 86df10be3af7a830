// Feeds a reader blocks as they come, here of seven octets, and tells what each one brought:
// feed_blocks < document.xml
#include <Tavrin/Tavrin.h>

#include <iostream>
#include <string>

class Printer : public Tavrin::DefaultHandler {
 public:
  void startElement(const std::string& /*uri*/, const std::string& /*localName*/,
                    const std::string& qName, const Tavrin::Attributes& /*attributes*/) override {
    std::cout << "  <" << qName << ">\n";
  }
  void endElement(const std::string& /*uri*/, const std::string& /*localName*/,
                  const std::string& qName) override {
    std::cout << "  </" << qName << ">\n";
  }
};

int main() {
  Tavrin::XMLReader_XML10 reader;
  reader.setReparseDeferral(false);  // Each tag with its last octet; the property tells the price.
  Printer printer;
  Tavrin::connect(reader, printer);
  char block[7];
  try {
    while (std::cin.read(block, sizeof block) || std::cin.gcount() > 0) {
      const std::string octets(block, static_cast<std::size_t>(std::cin.gcount()));
      std::cout << "[" << octets << "]\n";
      reader.parse(octets.data(), octets.size(), false);
    }
    reader.parse(nullptr, 0, true);  // Nothing more comes: the document has to be complete.
  } catch (const Tavrin::SAXParseException& failure) {
    std::cerr << failure.getLineNumber() << ':' << failure.getColumnNumber() << ": "
              << failure.getMessage() << '\n';
    return 1;
  }
  return std::cout.flush() ? 0 : 1;
}
