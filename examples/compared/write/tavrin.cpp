// Writes a picture and a message: write svg "Fish & chips", write soap FISH
#include <Tavrin/Tavrin.h>

#include <iostream>
#include <string>

void writePicture(Tavrin::XMLWriter& writer, const std::string& title) {
  Tavrin::DocumentWriter document(writer, {{"", "http://www.w3.org/2000/svg"}});
  const auto picture = document.element("svg", {{"viewBox", "0 0 100 40"}});
  document.element("title", title);
  writer.comment(" Three plates ");
  for (const int x : {20, 50, 80}) document.element("circle", {{"cx", x}, {"cy", 20}, {"r", 7.5}});
  document.endDocument();
}

void writeMessage(Tavrin::XMLWriter& writer, const std::string& symbol) {
  Tavrin::DocumentWriter document(
      writer, {{"e", "http://schemas.xmlsoap.org/soap/envelope/"}, {"q", "urn:example:quotes"}});
  const auto envelope = document.element("e:Envelope");
  {
    const auto header = document.element("e:Header");
    document.element("q:token", {{"e:mustUnderstand", 1}}, "a<b");
  }
  const auto body = document.element("e:Body");
  const auto request = document.element("q:GetPrice");
  document.element("q:symbol", symbol);
  document.endDocument();
}

int main(int argc, char* argv[]) {
  if (argc != 3) return 2;
  try {
    Tavrin::XMLWriter_XML10 writer;
    writer.setOutputStream(&std::cout);
    if (argv[1] == std::string("svg")) {
      writePicture(writer, argv[2]);
    } else {
      writeMessage(writer, argv[2]);
    }
  } catch (const Tavrin::SAXException& failure) {
    std::cerr << failure.getMessage() << '\n';
    return 1;
  }
  if (std::cout.flush()) return 0;
  std::cerr << "The output cannot be written\n";
  return 1;
}
