// Writes a picture and a message: write svg "Fish & chips", write soap FISH
#include <Poco/NumberFormatter.h>
#include <Poco/SAX/AttributesImpl.h>
#include <Poco/XML/XMLException.h>
#include <Poco/XML/XMLWriter.h>

#include <iostream>
#include <string>

using Poco::NumberFormatter;
using Poco::XML::AttributesImpl;
using Poco::XML::XMLWriter;

void writePicture(XMLWriter& writer, const std::string& title) {
  const std::string svg = "http://www.w3.org/2000/svg";
  writer.startDocument();
  writer.startPrefixMapping("", svg);
  AttributesImpl size;
  size.addAttribute("", "viewBox", "viewBox", "CDATA", "0 0 100 40");
  writer.startElement(svg, "svg", "svg", size);
  writer.dataElement(svg, "title", "title", title);
  const std::string comment = " Three plates ";
  writer.comment(comment.data(), 0, static_cast<int>(comment.size()));
  for (const int x : {20, 50, 80}) {
    AttributesImpl plate;
    plate.addAttribute("", "cx", "cx", "CDATA", NumberFormatter::format(x));
    plate.addAttribute("", "cy", "cy", "CDATA", NumberFormatter::format(20));
    plate.addAttribute("", "r", "r", "CDATA", NumberFormatter::format(7.5));
    writer.emptyElement(svg, "circle", "circle", plate);
  }
  writer.endElement(svg, "svg", "svg");
  writer.endDocument();
}

void writeMessage(XMLWriter& writer, const std::string& symbol) {
  const std::string soap = "http://schemas.xmlsoap.org/soap/envelope/";
  const std::string quotes = "urn:example:quotes";
  writer.startDocument();
  writer.startPrefixMapping("e", soap);
  writer.startPrefixMapping("q", quotes);
  writer.startElement(soap, "Envelope", "e:Envelope");
  writer.startElement(soap, "Header", "e:Header");
  AttributesImpl duty;
  duty.addAttribute(soap, "mustUnderstand", "e:mustUnderstand", "CDATA", "1");
  writer.startElement(quotes, "token", "q:token", duty);
  writer.characters("a<b");
  writer.endElement(quotes, "token", "q:token");
  writer.endElement(soap, "Header", "e:Header");
  writer.startElement(soap, "Body", "e:Body");
  writer.startElement(quotes, "GetPrice", "q:GetPrice");
  writer.dataElement(quotes, "symbol", "q:symbol", symbol);
  writer.endElement(quotes, "GetPrice", "q:GetPrice");
  writer.endElement(soap, "Body", "e:Body");
  writer.endElement(soap, "Envelope", "e:Envelope");
  writer.endDocument();
}

int main(int argc, char* argv[]) {
  if (argc != 3) return 2;
  try {
    XMLWriter writer(std::cout, XMLWriter::WRITE_XML_DECLARATION);
    if (argv[1] == std::string("svg")) {
      writePicture(writer, argv[2]);
    } else {
      writeMessage(writer, argv[2]);
    }
  } catch (const Poco::XML::XMLException& failure) {
    std::cerr << failure.displayText() << '\n';
    return 1;
  }
  if (std::cout.flush()) return 0;
  std::cerr << "The output cannot be written\n";
  return 1;
}
