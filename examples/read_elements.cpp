// Prints the elements of a document, XML text or Fast Infoset, as an outline:
// read_elements < document.xml
#include <Tavrin/Tavrin.h>

#include <iostream>
#include <string>

class Outline : public Tavrin::ContentHandler {
 public:
  void startElement(const std::string& /*uri*/, const std::string& /*localName*/,
                    const std::string& qName, const Tavrin::Attributes& attributes) override {
    std::cout << std::string(2 * depth_++, ' ') << qName;
    for (int i = 0; i < attributes.getLength(); ++i) {
      std::cout << ' ' << attributes.getQName(i) << "='" << attributes.getValue(i) << '\'';
    }
    std::cout << '\n';
  }

  void endElement(const std::string& /*uri*/, const std::string& /*localName*/,
                  const std::string& /*qName*/) override {
    --depth_;
  }

 private:
  std::size_t depth_ = 0;
};

int main() {
  std::ios::sync_with_stdio(false);
  Outline outline;
  try {
    const auto reader = Tavrin::createReaderFor(std::cin);
    Tavrin::connect(*reader, outline);
    reader->parse(std::cin);
  } catch (const Tavrin::SAXParseException& failure) {
    std::cerr << failure.getLineNumber() << ':' << failure.getColumnNumber() << ": "
              << failure.getMessage() << '\n';
    return 1;
  } catch (const std::ios_base::failure& failure) {  // Of the input: a directory is none.
    std::cerr << failure.what() << '\n';
    return 1;
  }
  if (std::cout.flush()) return 0;
  std::cerr << "The output cannot be written\n";
  return 1;
}
