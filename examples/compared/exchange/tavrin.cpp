// Asks for a price and answers, with XML text or Fast Infoset: exchange FISH, exchange FISH X891
#include <Tavrin/Tavrin.h>

#include <iostream>
#include <memory>
#include <sstream>
#include <string>

#include "Connection.h"

// The text of an element, or nothing.
std::string textOf(const std::string& message, std::string_view uri, std::string_view name) {
  Tavrin::MemoryStream stream(message);
  Tavrin::PullReader reader(stream);
  std::string text;
  while (reader.nextElement()) {
    if (reader.uri() == uri && reader.localName() == name) text = reader.readText();
  }
  return text;
}

template <typename WriteBody>
std::string envelope(const std::string& type, const WriteBody& writeBody) {
  std::ostringstream stream;
  const auto writer = Tavrin::XMLWriterFactory::createXMLWriter(type);
  writer->setOutputStream(&stream);
  Tavrin::DocumentWriter document(*writer, {{"e", kSoap}, {"q", kQuotes}});
  const auto envelope = document.element("e:Envelope");
  const auto body = document.element("e:Body");
  writeBody(document);
  document.endDocument();
  return stream.str();
}

std::string request(const std::string& type, const std::string& symbol) {
  return envelope(type, [&](Tavrin::DocumentWriter& document) {
    const auto call = document.element("q:GetPrice");
    document.element("q:symbol", symbol);
  });
}

std::string answer(const std::string& type, const std::string& request) {
  const std::string symbol = textOf(request, kQuotes, "symbol");
  return envelope(type, [&](Tavrin::DocumentWriter& document) {
    if (const auto price = priceOf(symbol)) {
      const auto response = document.element("q:GetPriceResponse");
      document.element("q:price", *price);
    } else {
      const auto fault = document.element("e:Fault");
      document.element("faultcode", "e:Client");
      document.element("faultstring", "No price of " + symbol);
    }
  });
}

int main(int argc, char* argv[]) {
  const std::string symbol = argc > 1 ? argv[1] : "FISH";
  const std::string type = argc > 2 ? argv[2] : "XML10";
  try {
    const Connection connection;
    connection.client.send(request(type, symbol));
    connection.server.send(answer(type, connection.server.receive()));
    const std::string response = connection.client.receive();
    const std::string price = textOf(response, kQuotes, "price");
    if (!price.empty()) {
      std::cout << symbol << " costs " << price << '\n';
      return 0;
    }
    std::cerr << textOf(response, "", "faultstring") << '\n';
  } catch (const Tavrin::SAXException& failure) {
    std::cerr << failure.getMessage() << '\n';
  } catch (const std::system_error& failure) {
    std::cerr << failure.what() << '\n';
  }
  return 1;
}
