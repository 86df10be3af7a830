// Indents a document by two spaces for each level: pretty < document.xml
#include <Poco/SAX/InputSource.h>
#include <Poco/SAX/SAXException.h>
#include <Poco/SAX/SAXParser.h>
#include <Poco/SAX/WhitespaceFilter.h>
#include <Poco/XML/XMLWriter.h>

#include <iostream>

using Poco::XML::XMLReader;
using Poco::XML::XMLWriter;

int main() {
  std::ios::sync_with_stdio(false);
  try {
    XMLWriter writer(std::cout, XMLWriter::WRITE_XML_DECLARATION | XMLWriter::PRETTY_PRINT);
    writer.setIndent("  ");
    Poco::XML::SAXParser parser;
    Poco::XML::WhitespaceFilter filter(&parser);
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
