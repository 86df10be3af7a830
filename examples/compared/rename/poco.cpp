// Copies a document with meals in place of dishes: rename < document.xml
#include <Poco/SAX/InputSource.h>
#include <Poco/SAX/SAXException.h>
#include <Poco/SAX/SAXParser.h>
#include <Poco/SAX/XMLFilterImpl.h>
#include <Poco/XML/XMLWriter.h>

#include <iostream>

using Poco::XML::XMLFilterImpl;
using Poco::XML::XMLReader;
using Poco::XML::XMLString;
using Poco::XML::XMLWriter;

class Rename : public XMLFilterImpl {
 public:
  using XMLFilterImpl::XMLFilterImpl;

  void startElement(const XMLString& uri, const XMLString& localName, const XMLString& qname,
                    const Poco::XML::Attributes& attributes) override {
    if (qname == "dish") {
      XMLFilterImpl::startElement(uri, "meal", "meal", attributes);
    } else {
      XMLFilterImpl::startElement(uri, localName, qname, attributes);
    }
  }
  void endElement(const XMLString& uri, const XMLString& localName,
                  const XMLString& qname) override {
    if (qname == "dish") {
      XMLFilterImpl::endElement(uri, "meal", "meal");
    } else {
      XMLFilterImpl::endElement(uri, localName, qname);
    }
  }
};

int main() {
  std::ios::sync_with_stdio(false);
  try {
    XMLWriter writer(std::cout, XMLWriter::WRITE_XML_DECLARATION);
    Poco::XML::SAXParser parser;
    Rename filter(&parser);
    filter.setFeature(XMLReader::FEATURE_NAMESPACE_PREFIXES, true);
    filter.setContentHandler(&writer);
    filter.setProperty(XMLReader::PROPERTY_LEXICAL_HANDLER,
                       static_cast<Poco::XML::LexicalHandler*>(&writer));
    Poco::XML::InputSource source(std::cin);
    filter.parse(&source);
  } catch (const Poco::XML::SAXParseException& failure) {
    std::cerr << failure.getLineNumber() << ':' << failure.getColumnNumber() + 1 << ": "
              << failure.message() << '\n';
    return 1;
  } catch (const Poco::Exception& failure) {
    std::cerr << failure.displayText() << '\n';
    return 1;
  }
  if (std::cout.flush()) return 0;
  std::cerr << "The output cannot be written\n";
  return 1;
}
