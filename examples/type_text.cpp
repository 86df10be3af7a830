// Turns the text of XML into typed content of Fast Infoset, by rules that tell which text holds
// what.
#include <Tavrin/Tavrin.h>

#include <iostream>
#include <sstream>
#include <string>

using namespace Tavrin;

const char kScene[] =
    "<scene><shape points='38.7223 -9.1393 38.7251 -9.15 38.7289 -9.1456 38.7312 -9.1422'>\n"
    "  <visible>true</visible>\n"
    "  <image>TWVhZG93LCByaXZlciBhbmQgYSBicmlkZ2U=</image>\n"
    "  <index>1001 1002 1003 1004 -1 1004 1003 1005 1006 -1 1007 1008 1009 1010 -1</index>\n"
    "</shape></scene>";

const char kRules[] =
    "# PATH         TYPE\n"
    "shape/@points  float\n"
    "/scene/*/image base64\n"
    "visible        boolean\n"
    "index          short\n";

std::string toFastInfoset(const std::string& text, const TypingRules& rules) {
  XMLReader_XML10 reader;
  TypedContentFilter filter(rules);
  filter.setParent(&reader);
  XMLWriter_X891 writer;
  std::ostringstream document;
  writer.setOutputStream(&document);
  connect(filter, writer);
  MemoryStream stream(text);
  filter.parse(stream);
  return document.str();
}

// Shows what is typed in a document.
class TypesPrinter : public ContentHandler, public PrimitiveTypeContentHandler {
 public:
  void startElement(const std::string& /*uri*/, const std::string& localName,
                    const std::string& /*qName*/, const Attributes& attributes) override {
    element_ = localName;
    const auto* typed = dynamic_cast<const EncodingAlgorithmAttributes*>(&attributes);
    for (int i = 0; typed != nullptr && i < typed->getLength(); ++i) {
      if (const auto* floats = dynamic_cast<const FloatData*>(typed->getAlgorithmData(i))) {
        std::cout << element_ << "/@" << typed->getQName(i) << ": " << floats->data_.size()
                  << " floats\n";
      }
    }
  }
  void bytes(const std::string& data) override {
    std::cout << element_ << ": " << data.size() << " octets\n";
  }
  void booleans(const std::vector<bool>& data) override {
    std::cout << element_ << ": " << data.size() << " boolean\n";
  }
  void shorts(const std::vector<short>& data) override {
    std::cout << element_ << ": " << data.size() << " shorts\n";
  }

 private:
  std::string element_;
};

int main() {
  try {
    MemoryStream rules(kRules);
    const std::string typed = toFastInfoset(kScene, TypingRules::read(rules));
    std::cout << toFastInfoset(kScene, TypingRules()).size() << " octets as text, " << typed.size()
              << " as values\n";
    TypesPrinter printer;
    XMLReader_X891 reader;
    connect(reader, printer);
    MemoryStream stream(typed);
    reader.parse(stream);

    TypingRules wrong;
    wrong.add("visible", "int");
    toFastInfoset(kScene, wrong);
  } catch (const SAXParseException& failure) {
    std::cout << "line " << failure.getLineNumber() << ": " << failure.getMessage() << '\n';
  } catch (const SAXException& failure) {
    std::cerr << failure.getMessage() << '\n';
    return 1;
  }
  if (std::cout.flush()) return 0;
  std::cerr << "The output cannot be written\n";
  return 1;
}
