// Asks for a price and answers, with XML text: exchange FISH
#include <Poco/NumberFormatter.h>
#include <Poco/XML/XMLException.h>
#include <Poco/XML/XMLStreamParser.h>
#include <Poco/XML/XMLWriter.h>

#include <iostream>
#include <sstream>
#include <string>

#include "Connection.h"

using Poco::XML::XMLStreamParser;
using Poco::XML::XMLWriter;

// The text of an element, or nothing.
std::string textOf(const std::string& message, const std::string& uri, const std::string& name) {
  const Poco::XML::QName sought(uri, name);
  XMLStreamParser parser(message.data(), message.size(), "message",
                         XMLStreamParser::RECEIVE_ELEMENTS | XMLStreamParser::RECEIVE_CHARACTERS);
  std::string text;
  for (const XMLStreamParser::EventType event : parser) {
    if (event == XMLStreamParser::EV_START_ELEMENT && parser.getQName() == sought) {
      text = parser.element();
    }
  }
  return text;
}

template <typename WriteBody>
std::string envelope(const WriteBody& writeBody) {
  std::ostringstream stream;
  XMLWriter writer(stream, XMLWriter::WRITE_XML_DECLARATION);
  writer.startDocument();
  writer.startPrefixMapping("e", kSoap);
  writer.startPrefixMapping("q", kQuotes);
  writer.startElement(kSoap, "Envelope", "e:Envelope");
  writer.startElement(kSoap, "Body", "e:Body");
  writeBody(writer);
  writer.endElement(kSoap, "Body", "e:Body");
  writer.endElement(kSoap, "Envelope", "e:Envelope");
  writer.endDocument();
  return stream.str();
}

std::string request(const std::string& symbol) {
  return envelope([&](XMLWriter& writer) {
    writer.startElement(kQuotes, "GetPrice", "q:GetPrice");
    writer.dataElement(kQuotes, "symbol", "q:symbol", symbol);
    writer.endElement(kQuotes, "GetPrice", "q:GetPrice");
  });
}

std::string answer(const std::string& request) {
  const std::string symbol = textOf(request, kQuotes, "symbol");
  return envelope([&](XMLWriter& writer) {
    if (const auto price = priceOf(symbol)) {
      writer.startElement(kQuotes, "GetPriceResponse", "q:GetPriceResponse");
      writer.dataElement(kQuotes, "price", "q:price", Poco::NumberFormatter::format(*price));
      writer.endElement(kQuotes, "GetPriceResponse", "q:GetPriceResponse");
    } else {
      writer.startElement(kSoap, "Fault", "e:Fault");
      writer.dataElement("", "", "faultcode", "e:Client");
      writer.dataElement("", "", "faultstring", "No price of " + symbol);
      writer.endElement(kSoap, "Fault", "e:Fault");
    }
  });
}

int main(int argc, char* argv[]) {
  const std::string symbol = argc > 1 ? argv[1] : "FISH";
  try {
    const Connection connection;
    connection.client.send(request(symbol));
    connection.server.send(answer(connection.server.receive()));
    const std::string response = connection.client.receive();
    const std::string price = textOf(response, kQuotes, "price");
    if (!price.empty()) {
      std::cout << symbol << " costs " << price << '\n';
      return 0;
    }
    std::cerr << textOf(response, "", "faultstring") << '\n';
  } catch (const Poco::XML::XMLException& failure) {
    std::cerr << failure.displayText() << '\n';
  } catch (const std::system_error& failure) {
    std::cerr << failure.what() << '\n';
  }
  return 1;
}
