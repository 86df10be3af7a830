// Copies a document, event by event: copy_document < document.xml > copy.xml
// With other types than XML10 it converts: copy_document XML10 X891 < document.xml > document.fi
#include <Tavrin/Tavrin.h>

#include <iostream>

namespace properties = Tavrin::properties;

// Whether the document is standalone is no event, but a property, from startDocument on. When it is
// passed on, the content goes to the writer itself.
class Beginning : public Tavrin::ContentHandler {
 public:
  Beginning(Tavrin::XMLReader& reader, Tavrin::XMLWriter& writer)
      : reader_(reader), writer_(writer) {}

  void startDocument() override {
    writer_.setProperty(properties::standalone, reader_.getProperty(properties::standalone));
    writer_.startDocument();
    reader_.setContentHandler(&writer_);
  }

 private:
  Tavrin::XMLReader& reader_;
  Tavrin::XMLWriter& writer_;
};

// A reader warns of what no event tells: the copy would lack it.
class Strictness : public Tavrin::ErrorHandler {
 public:
  void warning(const Tavrin::SAXParseException& loss) override { throw loss; }
};

void copy(const char* readerType, const char* writerType) {
  const auto reader = Tavrin::XMLReaderFactory::createXMLReader(readerType);
  const auto writer = Tavrin::XMLWriterFactory::createXMLWriter(writerType);
  writer->setOutputStream(&std::cout);
  Beginning beginning(*reader, *writer);
  Strictness strictness;
  Tavrin::connect(*reader, *writer);
  Tavrin::connect(*reader, beginning);
  Tavrin::connect(*reader, strictness);
  reader->parse(std::cin);
}

int main(int argc, char* argv[]) {
  try {
    copy(argc > 1 ? argv[1] : "XML10", argc > 2 ? argv[2] : "XML10");
  } catch (const Tavrin::SAXParseException& failure) {  // In Fast Infoset, octet -1:N.
    std::cerr << failure.getLineNumber() << ':' << failure.getColumnNumber() << ": "
              << failure.getMessage() << '\n';
    return 1;
  } catch (const Tavrin::SAXException& failure) {  // What the writer cannot write.
    std::cerr << failure.getMessage() << '\n';
    return 1;
  } catch (const Tavrin::FastInfosetException& failure) {  // Not a SAXException.
    std::cerr << failure.getMessage() << '\n';
    return 1;
  }
  if (std::cout.flush()) return 0;  // Writers leave the checking of the stream to its owner.
  std::cerr << "The output cannot be written\n";
  return 1;
}
