// Prints elements that have nothing but text, in a loop of its own, and stops at the first note:
// next_text < menu.xml
#include <Tavrin/Tavrin.h>

#include <iostream>
#include <string>

class Texts : public Tavrin::ContentHandler {
 public:
  explicit Texts(Tavrin::XMLReader_XML10& reader) : reader_(reader) {}

  const std::string& name() const { return name_; }
  const std::string& text() const { return text_; }

  void startElement(const std::string& /*uri*/, const std::string& /*localName*/,
                    const std::string& qName, const Tavrin::Attributes& /*attributes*/) override {
    name_ = qName;
    text_.clear();
  }

  // There is one such call, however the document writes the text.
  void characters(const std::string& text) override { text_ = text; }

  void endElement(const std::string& /*uri*/, const std::string& /*localName*/,
                  const std::string& qName) override {
    if (qName == name_ && !text_.empty()) reader_.pause();
  }

 private:
  Tavrin::XMLReader_XML10& reader_;
  std::string name_;
  std::string text_;
};

int main() {
  Tavrin::XMLReader_XML10 reader;
  Texts texts(reader);
  reader.setContentHandler(&texts);
  reader.setFeature(Tavrin::features::coalesceCharacters, true);
  try {
    reader.parse(std::cin);
    while (reader.isPaused()) {
      std::cout << texts.name() << ": " << texts.text() << '\n';
      if (texts.name() == "note") {
        reader.stop();
      } else {
        reader.resume();
      }
    }
  } catch (const Tavrin::SAXParseException& failure) {
    std::cerr << failure.getLineNumber() << ':' << failure.getColumnNumber() << ": "
              << failure.getMessage() << '\n';
    return 1;
  }
  if (std::cout.flush()) return 0;
  std::cerr << "The output cannot be written\n";
  return 1;
}
