// A filter between a reader and a writer: every dish becomes a meal, and prices are left out.
// rename_elements < menu.xml
#include <Tavrin/Tavrin.h>

#include <iostream>
#include <string>

class Rename : public Tavrin::XMLFilter {
 public:
  using XMLFilter::XMLFilter;

  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Tavrin::Attributes& attributes) override {
    if (left_ > 0 || localName == "price") {
      ++left_;
    } else if (qName == "dish") {
      XMLFilter::startElement(uri, "meal", "meal", attributes);
    } else {
      XMLFilter::startElement(uri, localName, qName, attributes);
    }
  }
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override {
    if (left_ > 0) {
      --left_;
    } else if (qName == "dish") {
      XMLFilter::endElement(uri, "meal", "meal");
    } else {
      XMLFilter::endElement(uri, localName, qName);
    }
  }
  void characters(const std::string& text) override {
    if (left_ == 0) XMLFilter::characters(text);
  }

 private:
  int left_ = 0;  // How many elements are open of those that are left out.
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
  } catch (const Tavrin::SAXException& failure) {
    std::cerr << failure.getMessage() << '\n';
    return 1;
  } catch (const std::ios_base::failure& failure) {  // Of the input: a directory is none.
    std::cerr << failure.what() << '\n';
    return 1;
  }
  return std::cout.flush() ? 0 : 1;
}
