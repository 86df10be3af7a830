// Content of an encoding algorithm of one's own. Writer and reader agree on its number through an
// external vocabulary, a table that both know by its URI.
#include <Tavrin/Tavrin.h>

#include <cstdint>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

using namespace Tavrin;

const char kAlgorithmURI[] = "urn:example:colours";
const char kVocabularyURI[] = "urn:example:vocabulary";

// Numbers from 32 on belong to applications: this one is the first entry of the vocabulary's table.
constexpr int kColourAlgorithm = 32;

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
    const std::string octets = encode(dynamic_cast<const ColourData&>(data));
    writeSize(kColourAlgorithm, chunk, static_cast<std::uint32_t>(octets.size()), stream);
    stream << octets;
  }
  static std::string encode(const ColourData& data) {
    std::string octets;
    for (const Colour& colour : data.data_) {
      for (const std::uint8_t part : {colour.red, colour.green, colour.blue}) {
        octets += static_cast<char>(part);
      }
    }
    return octets;
  }

 private:
  ColourData holder_;
};

std::string writePalette() {
  std::ostringstream stream;
  XMLWriter_FI writer;
  writer.setOutputStream(&stream);
  writer.startDocument();
  writer.startElement("", "palette", "palette", AttributesImpl());
  // The writer holds the built-in algorithms alone; octets of others go through it as they are.
  writer.octets(kAlgorithmURI, kColourAlgorithm,
                ColourAlgorithm::encode(ColourData({{255, 102, 0}, {0, 51, 153}})));
  writer.endElement("", "palette", "palette");
  writer.endDocument();

  // Nor does it name a vocabulary. The producer does: the fifth octet announces an initial
  // vocabulary (0x20); its two octets say that it is an external one (0x10 00); its URI follows
  // behind its length minus 1.
  std::string document = stream.str();
  const std::string uri = kVocabularyURI;
  std::string vocabulary = {0x20, 0x10, 0x00};
  vocabulary += static_cast<char>(uri.size() - 1);
  document.replace(4, 1, vocabulary + uri);
  return document;
}

class Printer : public ContentHandler, public EncodingAlgorithmContentHandler {
 public:
  void object(const std::string& uri, int index, const EncodedData& data) override {
    std::cout << "object: " << uri << ' ' << index << ' ' << data.toString() << '\n';
  }
  void characters(const std::string& text) override { std::cout << "characters: " << text << '\n'; }
};

int main() {
  const char* const algorithmURIs[] = {kAlgorithmURI};
  ExternalVocabulary vocabulary;
  vocabulary.encodingAlgorithms = {algorithmURIs, 1, 1};
  ExternalVocabularyMap vocabularies = {{kVocabularyURI, &vocabulary}};
  ColourAlgorithm colours;
  EncodingAlgorithmMap algorithmMap = {{kAlgorithmURI, &colours}};

  Printer printer;
  XMLReader_FI reader;
  reader.setContentHandler(&printer);
  reader.setProperty(properties::registeredEncodingAlgorithms, &algorithmMap);
  reader.setProperty(properties::externalVocabularies, &vocabularies);
  const std::string document = writePalette();
  try {
    // Without a handler for it, the content is text.
    std::istringstream first(document);
    reader.parse(first);
    reader.setProperty(properties::encodingAlgorithmContentHandler,
                       static_cast<EncodingAlgorithmContentHandler*>(&printer));
    std::istringstream second(document);
    reader.parse(second);
  } catch (const SAXException& failure) {
    std::cerr << failure.getMessage() << '\n';
    return 1;
  } catch (const EncodingAlgorithmException& failure) {
    std::cerr << failure.getMessage() << '\n';
    return 1;
  }
}
