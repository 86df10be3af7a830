// A shared object of an application, with a type of reader of its own. It uses something of every
// public header: whatever these leave in an application's object must not keep it loaded.
#include <Tavrin/Tavrin.h>

#include <sstream>

namespace {

/// Reports the identifiers that a program may use.
class PluginReader : public Tavrin::XMLReader {
 public:
  static std::unique_ptr<XMLReader> create() { return std::make_unique<PluginReader>(); }

  void setProperty(const std::string& name, void* value) override {
    if (name == Tavrin::properties::lexicalHandler) {
      lexicalHandler_ = static_cast<Tavrin::LexicalHandler*>(value);
    } else {
      XMLReader::setProperty(name, value);
    }
  }

  void parse(std::istream&) override {
    // By address, so that the constants themselves are there.
    for (const char* identifier :
         {Tavrin::properties::lexicalHandler, Tavrin::properties::declarationHandler,
          Tavrin::features::autoIndent, Tavrin::namespaces::xml, Tavrin::namespaces::xmlns}) {
      if (lexicalHandler_) lexicalHandler_->comment(identifier);
    }
    useEveryHeader();
  }

 private:
  void useEveryHeader() {
    Tavrin::IntData ints({1, 2});
    Tavrin::ShortData shorts;
    Tavrin::LongData longs;
    Tavrin::BooleanData booleans;
    Tavrin::FloatData floats;
    Tavrin::DoubleData doubles;
    Tavrin::HexadecimalData hexadecimal;
    Tavrin::Base64Data base64;
    Tavrin::CDATAData text;
    Tavrin::EncodingAlgorithmMap algorithms;
    Tavrin::IntEncodingAlgorithm algorithm;
    // The operator [] of std::map would bring a unique symbol of the standard library (GCC 12).
    algorithms.emplace("urn:ints", &algorithm);
    Tavrin::ExternalVocabularyMap vocabularies;
    Tavrin::ExternalVocabulary vocabulary;
    vocabularies.emplace("urn:vocabulary", &vocabulary);
    Tavrin::EncodingAlgorithmAttributesImpl typed;
    typed.addAttribute("", "a", "a", "CDATA", "", 3, ints.clone());
    for (const int* number : {&Tavrin::algorithms::hexadecimal, &Tavrin::algorithms::base64,
                              &Tavrin::algorithms::shortInteger, &Tavrin::algorithms::integer,
                              &Tavrin::algorithms::longInteger, &Tavrin::algorithms::boolean,
                              &Tavrin::algorithms::floatNumber, &Tavrin::algorithms::doubleNumber,
                              &Tavrin::algorithms::uuid, &Tavrin::algorithms::cdata}) {
      algorithms.emplace(std::string(static_cast<std::size_t>(*number), 'a'), &algorithm);
    }
    Tavrin::AttributesImpl list;
    list.setAttributes(typed);
    std::ostringstream octets;
    Tavrin::XMLWriter_FI fastInfoset;
    Tavrin::XMLWriter_X891 standard;
    Tavrin::XMLWriter_XML xml;
    Tavrin::XMLWriter_XML10 xml10;
    for (Tavrin::XMLWriter* writer :
         std::initializer_list<Tavrin::XMLWriter*>{&fastInfoset, &standard, &xml, &xml10}) {
      writer->setOutputStream(&octets);
      writer->startDocument();
      writer->startElement("", "a", "a", list);
      writer->endElement("", "a", "a");
      writer->endDocument();
    }
    for (const char* name : {"Expat", "XML10"}) {
      std::istringstream document("<a/>");
      Tavrin::XMLReaderFactory::createXMLReader(name)->parse(document);
    }
    Tavrin::XMLReader_Expat expat;
    Tavrin::XMLReader_XML10 reader10;
    Tavrin::XMLReader_FI readerFI;
    Tavrin::XMLReader_X891 readerX891;
    try {
      throw Tavrin::SAXParseException("caught at once", 1, 1);
    } catch (const Tavrin::SAXException&) {
    }
  }

  Tavrin::LexicalHandler* lexicalHandler_ = nullptr;
};

const Tavrin::XMLReaderType type("Plugin", &PluginReader::create);

}  // namespace
