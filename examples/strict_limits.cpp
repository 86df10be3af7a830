// Reads documents of strangers with limits of its own.
#include <Tavrin/Tavrin.h>

#include <iostream>
#include <string>

const char kLaughs[] =
    "<!DOCTYPE a [<!ENTITY b 'haha'> <!ENTITY c '&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;'>\n"
    "<!ENTITY d '&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;'> <!ENTITY e '&d;&d;&d;&d;&d;&d;&d;&d;'>]>\n"
    "<a>&e;&e;&e;&e;</a>";

int main() {
  Tavrin::XMLReader_XML10::Limits limits;
  limits.entityAmplificationFactor = 10;
  limits.entityAmplificationThreshold = 1000;
  limits.maximumDepth = 50;

  Tavrin::XMLReader_XML10 reader;
  reader.setLimits(limits);
  std::string deep;
  for (int i = 0; i < 60; ++i) deep += "<a>";
  for (const std::string& document : {std::string(kLaughs), deep, std::string("<a>fine</a>")}) {
    try {
      Tavrin::MemoryStream stream(document);
      reader.parse(stream);  // After a failure, the reader takes the next document.
      std::cout << "read\n";
    } catch (const Tavrin::SAXParseException& failure) {
      std::cout << "line " << failure.getLineNumber() << ": " << failure.getMessage() << '\n';
    }
  }
  return std::cout.flush() ? 0 : 1;
}
