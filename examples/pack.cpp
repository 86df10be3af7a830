// Reads a document, be it XML text or Fast Infoset, and writes it as Fast Infoset, where numbers
// are numbers: pack < model.xml > model.fi
#include <Tavrin/Tavrin.h>

#include <iostream>

int main() {
  std::ios::sync_with_stdio(false);
  try {
    Tavrin::TypingRules rules;
    rules.add("Coordinate/@point", "float");  // This attribute is an array of floats,
    rules.add("*", "auto");                   // and other text, where it comes back as it was.
    rules.add("@*", "auto");

    const auto reader = Tavrin::createReaderFor(std::cin);
    Tavrin::TypedContentFilter filter(rules);
    filter.setParent(reader.get());
    Tavrin::XMLWriter_X891 writer;
    writer.setOutputStream(&std::cout);
    Tavrin::connect(filter, writer);
    filter.parse(std::cin);
  } catch (const Tavrin::SAXParseException& failure) {  // In Fast Infoset, octet -1:N.
    std::cerr << failure.getLineNumber() << ':' << failure.getColumnNumber() << ": "
              << failure.getMessage() << '\n';
    return 1;
  } catch (const Tavrin::SAXException& failure) {  // What Fast Infoset has no form for.
    std::cerr << failure.getMessage() << '\n';
    return 1;
  } catch (const std::ios_base::failure& failure) {  // A folder cannot be read.
    std::cerr << failure.what() << '\n';
    return 1;
  }
  if (std::cout.flush()) return 0;  // Writers leave the checking of the stream to its owner.
  std::cerr << "The output cannot be written\n";
  return 1;
}
