// Writes arrays of numbers as typed content beside text, and reads them back as arrays.
#include <Tavrin/Tavrin.h>

#include <iostream>
#include <sstream>
#include <string>
#include <vector>

using namespace Tavrin;

// A track: its name as text, its positions as floats, the times as an attribute of typed values.
std::string writeTrack() {
  std::ostringstream stream;
  XMLWriter_X891 writer;
  writer.setOutputStream(&stream);

  writer.startDocument();
  writer.startElement("", "track", "track", AttributesImpl());
  writer.startElement("", "name", "name", AttributesImpl());
  writer.characters("Morning walk");
  writer.endElement("", "name", "name");
  EncodingAlgorithmAttributesImpl attributes;
  attributes.addAttribute("", "seconds", "seconds", "CDATA", "", algorithms::integer,
                          std::make_unique<IntData>(std::vector<long>{0, 60, 125}));
  writer.startElement("", "points", "points", attributes);
  writer.floats({38.7223F, -9.1393F, 38.7251F, -9.15F, 38.7289F, -9.1456F});
  writer.endElement("", "points", "points");
  writer.endElement("", "track", "track");
  writer.endDocument();
  return stream.str();
}

// Text comes to characters, numbers come to floats: they never were text.
class TrackPrinter : public ContentHandler, public PrimitiveTypeContentHandler {
 public:
  void startElement(const std::string& /*uri*/, const std::string& localName,
                    const std::string& /*qName*/, const Attributes& attributes) override {
    std::cout << localName << '\n';
    const auto* typed = dynamic_cast<const EncodingAlgorithmAttributes*>(&attributes);
    for (int i = 0; typed != nullptr && i < typed->getLength(); ++i) {
      if (const auto* ints = dynamic_cast<const IntData*>(typed->getAlgorithmData(i))) {
        std::cout << "  " << typed->getQName(i) << ": " << ints->data_.size()
                  << " ints, the last is " << ints->data_.back() << '\n';
      }
    }
  }
  void characters(const std::string& text) override { std::cout << "  text: " << text << '\n'; }
  void floats(const std::vector<float>& data) override {
    for (std::size_t i = 0; i < data.size(); i += 2) {
      std::cout << "  point: " << data[i] << ", " << data[i + 1] << '\n';
    }
  }
};

void readTrack(const std::string& document) {
  TrackPrinter printer;
  XMLReader_X891 reader;
  connect(reader, printer);
  MemoryStream stream(document);
  reader.parse(stream);
}

int main() {
  try {
    readTrack(writeTrack());
  } catch (const SAXParseException& failure) {  // A binary document has octets for columns.
    std::cerr << "octet " << failure.getColumnNumber() << ": " << failure.getMessage() << '\n';
    return 1;
  } catch (const SAXException& failure) {
    std::cerr << failure.getMessage() << '\n';
    return 1;
  } catch (const EncodingAlgorithmException& failure) {  // Not a SAXException.
    std::cerr << failure.getMessage() << '\n';
    return 1;
  }
  if (std::cout.flush()) return 0;
  std::cerr << "The output cannot be written\n";
  return 1;
}
