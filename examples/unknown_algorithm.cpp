// A document with an encoding algorithm that this program does not know: it shows the octets, and
// copies the document with all of them.
#include <Tavrin/Tavrin.h>

#include <iostream>
#include <sstream>
#include <string>
#include <vector>

using namespace Tavrin;

const char kAlgorithmURI[] = "urn:example:colours";

// What another program writes. Its colours, three octets each, are encoded already.
std::string writePalette() {
  std::ostringstream stream;
  XMLWriter_X891 writer;
  std::vector<std::string> named = {kAlgorithmURI};
  writer.setProperty(properties::encodingAlgorithmURIs, &named);
  writer.setOutputStream(&stream);

  writer.startDocument();
  EncodingAlgorithmAttributesImpl attributes;
  attributes.addAttribute("", "paper", "paper", "CDATA", kAlgorithmURI, 31,
                          std::make_unique<RawData>("\xFF\xFF\xF0"));
  writer.startElement("", "palette", "palette", attributes);
  writer.octets(kAlgorithmURI, 31, "\x20\x40\x60\x0A\x0B\x0C");
  writer.endElement("", "palette", "palette");
  writer.endDocument();
  return stream.str();
}

// Octets come with the URI of the algorithm that has made them.
class RawPrinter : public ContentHandler, public EncodingAlgorithmContentHandler {
 public:
  void startElement(const std::string& /*uri*/, const std::string& /*localName*/,
                    const std::string& /*qName*/, const Attributes& attributes) override {
    const auto* typed = dynamic_cast<const EncodingAlgorithmAttributes*>(&attributes);
    for (int i = 0; typed != nullptr && i < typed->getLength(); ++i) {
      if (const auto* raw = dynamic_cast<const RawData*>(typed->getAlgorithmData(i))) {
        std::cout << typed->getQName(i) << ": " << raw->data_.size() << " octets of "
                  << typed->getAlgorithmURI(i) << ", as base64 " << typed->getValue(i) << '\n';
      }
    }
  }
  void octets(const std::string& uri, int /*index*/, const std::string& data) override {
    std::cout << "content: " << data.size() << " octets of " << uri << '\n';
  }
};

// A copy names the same algorithms.
class PaletteCopy : public XMLWriter_X891 {
 public:
  explicit PaletteCopy(XMLReader& reader) : reader_(reader) {}

  void startDocument() override {
    setProperty(properties::encodingAlgorithmURIs,
                reader_.getProperty(properties::encodingAlgorithmURIs));
    XMLWriter_X891::startDocument();
  }

 private:
  XMLReader& reader_;
};

int main() {
  try {
    const std::string palette = writePalette();
    XMLReader_X891 reader;
    reader.setRawOctets(true);
    RawPrinter printer;
    connect(reader, printer);
    MemoryStream document(palette);
    reader.parse(document);

    std::ostringstream copied;
    PaletteCopy copy(reader);
    copy.setOutputStream(&copied);
    connect(reader, static_cast<XMLWriter&>(copy));
    MemoryStream again(palette);
    reader.parse(again);
    std::cout << (copied.str() == palette ? "The copy is the same\n" : "The copy differs\n");
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
