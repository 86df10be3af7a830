// Tells where a document is wrong, in both encodings, and where each element stood.
#include <Tavrin/Tavrin.h>

#include <iostream>
#include <sstream>
#include <string>

class Positions : public Tavrin::DefaultHandler {
 public:
  void setDocumentLocator(const Tavrin::Locator* locator) override { locator_ = locator; }
  void startElement(const std::string& /*uri*/, const std::string& /*localName*/,
                    const std::string& qName, const Tavrin::Attributes& /*attributes*/) override {
    std::cout << qName << " at " << locator_->getLineNumber() << ':' << locator_->getColumnNumber();
    // Octets are counted in 64 bits, also where lines and columns are not known.
    if (const auto* octets = dynamic_cast<const Tavrin::OctetLocator*>(locator_)) {
      std::cout << ", octet " << octets->getOctetOffset();
    }
    std::cout << '\n';
  }
  void warning(const Tavrin::SAXParseException& problem) override {
    std::cout << "warning, line " << problem.getLineNumber() << ": " << problem.getMessage()
              << '\n';
  }

 private:
  const Tavrin::Locator* locator_ = nullptr;
};

void read(const std::string& octets) {
  try {
    Tavrin::MemoryStream stream(octets);
    const auto reader = Tavrin::createReaderFor(stream);
    Positions positions;
    Tavrin::connect(*reader, positions);
    reader->parse(stream);
  } catch (const Tavrin::SAXParseException& failure) {
    if (failure.getLineNumber() < 0) {
      std::cout << "octet " << failure.getColumnNumber() << ": " << failure.getMessage() << '\n';
    } else {
      std::cout << failure.getLineNumber() << ':' << failure.getColumnNumber() << ": "
                << failure.getMessage() << '\n';
    }
  }
}

int main() {
  read("<?xml version='1.1'?>\n<menu>\n  <dish>\n</menu>");

  std::ostringstream octets;
  Tavrin::XMLWriter_X891 writer;
  writer.setOutputStream(&octets);
  Tavrin::DocumentWriter document(writer);
  document.element("menu", "Fish");
  document.endDocument();
  read(octets.str().substr(0, octets.str().size() - 3));  // Cut off.
  return std::cout.flush() ? 0 : 1;
}
