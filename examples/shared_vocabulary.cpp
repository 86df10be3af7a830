// A message that shrinks: its names and usual values are in a vocabulary that writer and reader
// share.
#include <Tavrin/Tavrin.h>

#include <iostream>
#include <sstream>
#include <string>

using namespace Tavrin;

const char kWeather[] = "urn:example:weather";

// Both sides must mean the same by this. A vocabulary that has changed needs another URI.
const char kVocabularyURI[] = "urn:example:weather:1";

OwnedVocabulary makeVocabulary() {
  OwnedVocabulary vocabulary;
  for (const char* name : {"report", "station", "sky"}) {
    vocabulary.addElementName(kWeather, name, std::string("w:") + name);
  }
  vocabulary.addAttributeName("", "temperature");
  vocabulary.addAttributeName("", "unit");
  vocabulary.addAttributeValue("celsius");
  for (const char* sky : {"clear", "cloudy", "raining"}) vocabulary.addCharacters(sky);
  return vocabulary;
}

std::string writeReport(XMLWriter_X891& writer) {
  std::ostringstream stream;
  writer.reset();
  writer.setOutputStream(&stream);
  AttributesImpl attributes;
  attributes.addAttribute("", "temperature", "temperature", "CDATA", "21");
  attributes.addAttribute("", "unit", "unit", "CDATA", "celsius");
  writer.startDocument();
  writer.startPrefixMapping("w", kWeather);
  writer.startElement(kWeather, "report", "w:report", AttributesImpl());
  writer.startElement(kWeather, "station", "w:station", attributes);
  writer.startElement(kWeather, "sky", "w:sky", AttributesImpl());
  writer.characters("cloudy");
  writer.endElement(kWeather, "sky", "w:sky");
  writer.endElement(kWeather, "station", "w:station");
  writer.endElement(kWeather, "report", "w:report");
  writer.endPrefixMapping("w");
  writer.endDocument();
  return stream.str();
}

void printReport(XMLReader_X891& reader, const std::string& report) {
  XMLWriter_XML10 text;
  text.setOutputStream(&std::cout);
  connect(reader, text);
  MemoryStream stream(report);
  reader.parse(stream);
  std::cout << '\n';
}

int main() {
  try {
    // A vocabulary can be kept in a file; this one is in memory.
    std::stringstream file;
    makeVocabulary().write(file);
    const OwnedVocabulary vocabulary = OwnedVocabulary::read(file);

    XMLWriter_X891 writer;
    std::cout << "without: " << writeReport(writer).size() << " octets\n";
    writer.setInitialVocabulary(vocabulary);
    std::cout << "with it inside: " << writeReport(writer).size() << " octets\n";
    writer.setInitialVocabulary(OwnedVocabulary());
    writer.setExternalVocabulary(kVocabularyURI, vocabulary);
    const std::string report = writeReport(writer);
    std::cout << "with its URI: " << report.size() << " octets\n";

    XMLReader_X891 reader;
    reader.addExternalVocabulary(kVocabularyURI, vocabulary);
    printReport(reader, report);
  } catch (const SAXException& failure) {
    std::cerr << failure.getMessage() << '\n';
    return 1;
  }
  if (std::cout.flush()) return 0;
  std::cerr << "The output cannot be written\n";
  return 1;
}
