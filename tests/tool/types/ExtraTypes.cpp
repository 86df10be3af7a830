#include <Tavrin/Tavrin.h>

#include <iostream>
#include <iterator>
#include <new>
#include <stdexcept>
#include <string>

namespace {

using Tavrin::properties::declarationHandler;
using Tavrin::properties::lexicalHandler;

/// Stands in for the reader of text. A document that does not begin with "<" is the name of
/// something to do that text cannot bring about; see the names in run.
class ScriptReader : public Tavrin::XMLReader_Expat {
 public:
  static std::unique_ptr<Tavrin::XMLReader> create() { return std::make_unique<ScriptReader>(); }

  void setProperty(const std::string& name, void* value) override {
    if (name == Tavrin::properties::encodingAlgorithmContentHandler) {
      algorithmHandler_ = static_cast<Tavrin::EncodingAlgorithmContentHandler*>(value);
    } else {
      XMLReader_Expat::setProperty(name, value);
    }
  }

  void parse(std::istream& stream) override {
    if (stream.peek() == '<') {
      XMLReader_Expat::parse(stream);
    } else {
      run(std::string(std::istreambuf_iterator<char>(stream), {}));
    }
  }

 private:
  void run(const std::string& name) {
    if (name == "every event") {
      everyEvent();
    } else if (name == "not UTF-8") {
      notUTF8();
    } else if (name == "objects") {
      objects();
    } else if (name == "print") {
      std::cout << "a diagnostic" << std::endl;
      shortDocument();
    } else if (name == "skipped entity") {
      contentHandler_->startDocument();
      contentHandler_->skippedEntity("e");
    } else if (name == "SAXException") {
      throw Tavrin::SAXException("the reader\ngives up");
    } else if (name == "SAXParseException") {
      throw Tavrin::SAXParseException("the reader gives up", 7, 8);
    } else if (name == "octet") {
      throw Tavrin::SAXParseException("the reader gives up", -1, 2147483647);
    } else if (name == "EncodingAlgorithmException") {
      throw Tavrin::EncodingAlgorithmException("the data is broken");
    } else if (name == "bad_alloc") {
      throw std::bad_alloc();
    } else {
      throw std::logic_error("no such script: " + name);
    }
  }

  /// Values of an application's algorithm and of a built-in one.
  void objects() {
    contentHandler_->startDocument();
    contentHandler_->startElement("", "a", "a", Tavrin::AttributesImpl());
    if (algorithmHandler_) {
      algorithmHandler_->object("", Tavrin::algorithms::integer, Tavrin::IntData({7}));
      algorithmHandler_->object("urn:app", 40, Tavrin::ShortData({1, 2}));
    }
    contentHandler_->endElement("", "a", "a");
    contentHandler_->endDocument();
  }

  void shortDocument() {
    contentHandler_->startDocument();
    contentHandler_->startElement("", "a", "a", Tavrin::AttributesImpl());
    contentHandler_->endElement("", "a", "a");
    contentHandler_->endDocument();
  }

  void everyEvent() {
    auto& lexical = *static_cast<Tavrin::LexicalHandler*>(getProperty(lexicalHandler));
    auto& declarations = *static_cast<Tavrin::DeclHandler*>(getProperty(declarationHandler));
    Tavrin::AttributesImpl attributes;
    attributes.addAttribute("u", "l", "q:l", "NMTOKEN", "v");
    attributes.addAttribute("", "", "", "", "");
    contentHandler_->setDocumentLocator(nullptr);
    contentHandler_->startDocument();
    lexical.startDTD("n", "p", "s");
    dtdHandler_->notationDecl("n", "p", "s");
    dtdHandler_->unparsedEntityDecl("n", "p", "s", "o");
    declarations.elementDecl("n", "m");
    declarations.attributeDecl("e", "a", "t", "m", "v");
    declarations.internalEntityDecl("n", "v");
    declarations.externalEntityDecl("n", "p", "s");
    lexical.endDTD();
    contentHandler_->startPrefixMapping("p", "u");
    contentHandler_->startElement("u", "l", "q", attributes);
    lexical.startEntity("n");
    lexical.startCDATA();
    contentHandler_->characters("t");
    lexical.endCDATA();
    lexical.endEntity("n");
    contentHandler_->ignorableWhitespace(" \n");
    contentHandler_->skippedEntity("n");
    entityResolver_->resolveEntity("p", "s");
    lexical.comment("t");
    contentHandler_->processingInstruction("t", "d");
    contentHandler_->endElement("u", "l", "q");
    contentHandler_->endPrefixMapping("p");
    contentHandler_->endDocument();
  }

  void notUTF8() {
    using namespace std::string_literals;
    for (const std::string& text :
         {"\xFF"s, "a\x80z"s, "\xC1\xBFz"s, "\xE0\x9F\xBF"s, "\xED\xA0\x80"s, "\xF0\x8F\xBF\xBF"s,
          "\xF4\x90\x80\x80"s, "\xF5\x80\x80\x80"s, "\xC3"s, "\xE2\x82"s, "\xF0\x9F\x98"s,
          "\xE2\x82z"s, "\xC3\xC3\xA4"s, "a\0b"s,
          // The borders of what is valid.
          "\x7F\xC2\x80"s, "\xDF\xBF\xE0\xA0\x80"s, "\xED\x9F\xBF\xEE\x80\x80"s,
          "\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"s}) {
      contentHandler_->characters(text);
    }
  }

  Tavrin::EncodingAlgorithmContentHandler* algorithmHandler_ = nullptr;
};

/// Knows no property.
class PlainReader : public Tavrin::XMLReader {
 public:
  static std::unique_ptr<Tavrin::XMLReader> create() { return std::make_unique<PlainReader>(); }
  void parse(std::istream&) override {}
};

/// The text writer, with a diagnostic for every element.
class ChattyWriter : public Tavrin::XMLWriter_XML {
 public:
  static std::unique_ptr<Tavrin::XMLWriter> create() { return std::make_unique<ChattyWriter>(); }
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Tavrin::Attributes& attributes) override {
    std::cout << "element " << qName << "\n";
    XMLWriter_XML::startElement(uri, localName, qName, attributes);
  }
};

/// Fails in one way or another, as the event is.
class RefusingWriter : public Tavrin::XMLWriter_XML {
 public:
  static std::unique_ptr<Tavrin::XMLWriter> create() { return std::make_unique<RefusingWriter>(); }
  void comment(const std::string&) override { throw Tavrin::SAXException("no comment"); }
  void processingInstruction(const std::string&, const std::string&) override {
    throw Tavrin::EncodingAlgorithmException("no instruction");
  }
  void characters(const std::string&) override { throw std::bad_alloc(); }
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Tavrin::Attributes& attributes) override {
    if (qName == "refused") throw Tavrin::SAXException("no start");
    XMLWriter_XML::startElement(uri, localName, qName, attributes);
  }
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override {
    if (qName == "refused") throw std::bad_alloc();
    XMLWriter_XML::endElement(uri, localName, qName);
  }
  void endDocument() override { throw Tavrin::SAXException("no end"); }
};

/// Has no feature, and writes nothing.
class SilentWriter : public Tavrin::XMLWriter {
 public:
  static std::unique_ptr<Tavrin::XMLWriter> create() { return std::make_unique<SilentWriter>(); }
};

// The last registration of a name counts.
const Tavrin::XMLReaderType scriptReader("xml10", &ScriptReader::create);
const Tavrin::XMLReaderType plainReader("Plain", &PlainReader::create);
const Tavrin::XMLWriterType chattyWriter("Chatty", &ChattyWriter::create);
const Tavrin::XMLWriterType refusingWriter("Refusing", &RefusingWriter::create);
const Tavrin::XMLWriterType silentWriter("Silent", &SilentWriter::create);

}  // namespace
