// Counts the elements of a document, with its progress on standard error: count < document.xml
#include <Poco/XML/XMLStreamParser.h>
#include <Poco/XML/XMLStreamParserException.h>

#include <iostream>

using Poco::XML::XMLStreamParser;

int main() {
  std::ios::sync_with_stdio(false);
  unsigned long elements = 0;
  try {
    XMLStreamParser parser(std::cin, "standard input", XMLStreamParser::RECEIVE_ELEMENTS);
    for (const XMLStreamParser::EventType event : parser) {
      if (event != XMLStreamParser::EV_START_ELEMENT) continue;
      if (++elements % 1000 == 0) std::cerr << elements << " elements\n";
    }
  } catch (const Poco::XML::XMLStreamParserException& failure) {
    std::cerr << failure.line() << ':' << failure.column() + 1 << ": " << failure.description()
              << '\n';
    return 1;
  }
  std::cout << elements << " elements\n";
  if (std::cout.flush()) return 0;
  std::cerr << "The output cannot be written\n";
  return 1;
}
