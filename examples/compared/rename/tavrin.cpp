// Copies a document with meals in place of dishes: rename < document.xml
#include <Tavrin/Tavrin.h>

#include <iostream>
#include <string>

class Rename : public Tavrin::XMLFilter {
 public:
  using XMLFilter::XMLFilter;

  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Tavrin::Attributes& attributes) override {
    if (qName == "dish") {
      XMLFilter::startElement(uri, "meal", "meal", attributes);
    } else {
      XMLFilter::startElement(uri, localName, qName, attributes);
    }
  }
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override {
    if (qName == "dish") {
      XMLFilter::endElement(uri, "meal", "meal");
    } else {
      XMLFilter::endElement(uri, localName, qName);
    }
  }
};

int main() {
  std::ios::sync_with_stdio(false);
  try {
    const auto reader = Tavrin::createReaderFor(std::cin);
    Rename filter(reader.get());
    Tavrin::XMLWriter_XML10 writer;
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
