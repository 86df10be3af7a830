// Writes a document by hand, as XML text and as Fast Infoset: write_menu
#include <Tavrin/Tavrin.h>

#include <iostream>
#include <sstream>

void writeMenu(Tavrin::XMLWriter& writer) {
  Tavrin::DocumentWriter document(writer, {{"m", "urn:menu"}});
  const auto menu = document.element("m:menu", {{"version", 2}, {"xml:lang", "en"}});
  writer.comment(" What the kitchen has today. ");
  {
    const auto dish = document.element("m:dish", {{"vegan", false}});
    document.element("m:name", "Fish & chips");
    document.element("m:prices", {5.5, 7.25});
  }
  document.endDocument();
}

int main() {
  try {
    Tavrin::XMLWriter_XML10 text;
    text.setFeature(Tavrin::features::autoIndent, true);
    text.setOutputStream(&std::cout);
    writeMenu(text);

    Tavrin::XMLWriter_X891 binary;
    std::ostringstream octets;
    binary.setOutputStream(&octets);
    writeMenu(binary);
    std::cout << "\nAs Fast Infoset: " << octets.str().size() << " octets\n";
  } catch (const Tavrin::SAXException& failure) {
    std::cerr << failure.getMessage() << '\n';
    return 1;
  }
  return std::cout.flush() ? 0 : 1;
}
