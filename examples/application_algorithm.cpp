// Content of an encoding algorithm of one's own, which writer and reader know by its URI.
#include <Tavrin/Tavrin.h>

#include <cstdint>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

using namespace Tavrin;

const char kAlgorithmURI[] = "urn:example:colours";

// The first number of those that belong to applications. The document decides, and says, which
// number the algorithm has there; the writer puts it in.
constexpr int kColourAlgorithm = 31;

struct Colour {
  std::uint8_t red, green, blue;
};

// Holds decoded colours. As text they are "#RRGGBB" with blanks between.
class ColourData : public EncodedDataTemplate<std::vector<Colour>> {
 public:
  using EncodedDataTemplate::EncodedDataTemplate;

  std::string toString() const override {
    static const char digits[] = "0123456789abcdef";
    std::string text;
    for (const Colour& colour : data_) {
      text += text.empty() ? "#" : " #";
      for (const std::uint8_t part : {colour.red, colour.green, colour.blue}) {
        text += digits[part >> 4];
        text += digits[part & 15];
      }
    }
    return text;
  }
  std::unique_ptr<EncodedData> clone() override {
    auto taken = std::make_unique<ColourData>();
    taken->data_.swap(data_);
    return taken;
  }
};

// Three octets a colour.
class ColourAlgorithm : public EncodingAlgorithm {
 public:
  EncodedData& decodeFromInputStream(std::uint32_t length, std::istream& stream) override {
    if (length % 3 != 0) throw EncodingAlgorithmException("Invalid length for colours");
    holder_.data_.clear();
    char octets[3];
    for (; length > 0 && stream.read(octets, sizeof octets); length -= 3) {
      holder_.data_.push_back({static_cast<std::uint8_t>(octets[0]),
                               static_cast<std::uint8_t>(octets[1]),
                               static_cast<std::uint8_t>(octets[2])});
    }
    return holder_;
  }
  void encodeToOutputStream(bool chunk, const EncodedData& data, std::ostream& stream) override {
    const std::vector<Colour>& colours = dynamic_cast<const ColourData&>(data).data_;
    writeSize(kColourAlgorithm, chunk, static_cast<std::uint32_t>(3 * colours.size()), stream);
    for (const Colour& colour : colours) {
      for (const std::uint8_t part : {colour.red, colour.green, colour.blue}) {
        stream << static_cast<char>(part);
      }
    }
  }

 private:
  ColourData holder_;
};

std::string writePalette(EncodingAlgorithmMap& algorithms) {
  std::ostringstream stream;
  XMLWriter_X891 writer;
  writer.setOutputStream(&stream);
  writer.setProperty(properties::registeredEncodingAlgorithms, &algorithms);
  writer.startDocument();
  writer.startElement("", "palette", "palette", AttributesImpl());
  writer.object(kAlgorithmURI, 0, ColourData({{255, 102, 0}, {0, 51, 153}}));
  writer.endElement("", "palette", "palette");
  writer.endDocument();
  return stream.str();
}

class Printer : public ContentHandler, public EncodingAlgorithmContentHandler {
 public:
  void object(const std::string& uri, int index, const EncodedData& data) override {
    std::cout << "object: " << uri << ' ' << index << ' ' << data.toString() << '\n';
  }
  void characters(const std::string& text) override { std::cout << "characters: " << text << '\n'; }
};

void readPalette(const std::string& document, EncodingAlgorithmMap& algorithms) {
  Printer printer;
  XMLReader_X891 reader;
  reader.setContentHandler(&printer);
  reader.setProperty(properties::registeredEncodingAlgorithms, &algorithms);
  // Without a handler for it, the content is text.
  MemoryStream first(document);
  reader.parse(first);
  reader.setEncodingAlgorithmContentHandler(&printer);
  MemoryStream second(document);
  reader.parse(second);
}

int main() {
  ColourAlgorithm colours;
  EncodingAlgorithmMap algorithms = {{kAlgorithmURI, &colours}};
  try {
    readPalette(writePalette(algorithms), algorithms);
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
