// Indents a document by two spaces for each level: pretty < document.xml
#include <Tavrin/Tavrin.h>

#include <iostream>
#include <string>

class WithoutBlanks : public Tavrin::XMLFilter {
 public:
  using XMLFilter::XMLFilter;
  void characters(const std::string& text) override {
    if (text.find_first_not_of(" \t\r\n") != std::string::npos) XMLFilter::characters(text);
  }
};

int main() {
  std::ios::sync_with_stdio(false);
  try {
    const auto reader = Tavrin::createReaderFor(std::cin);
    reader->setFeature(Tavrin::features::coalesceCharacters, true);
    WithoutBlanks filter(reader.get());
    Tavrin::XMLWriter_XML10 writer;
    writer.setFeature(Tavrin::features::autoIndent, true);
    writer.setOutputStream(&std::cout);
    Tavrin::connect(filter, writer);
    filter.parse(std::cin);
  } catch (const Tavrin::SAXParseException& failure) {
    std::cerr << failure.getLineNumber() << ':' << failure.getColumnNumber() << ": "
              << failure.getMessage() << '\n';
    return 1;
  } catch (const Tavrin::SAXException& failure) {
    std::cerr << failure.getMessage() << '\n';
    return 1;
  } catch (const std::ios_base::failure& failure) {  // What the stream's buffer throws.
    std::cerr << failure.what() << '\n';
    return 1;
  }
  if (std::cout.flush()) return 0;
  std::cerr << "The output cannot be written\n";
  return 1;
}
