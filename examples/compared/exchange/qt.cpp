// Asks for a price and answers, with XML text: exchange FISH
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <iostream>
#include <stdexcept>
#include <string>

#include "Connection.h"

// The text of an element, or nothing.
std::string textOf(const std::string& message, const QString& uri, const QString& name) {
  QXmlStreamReader reader(QByteArray::fromStdString(message));
  QString text;
  while (!reader.atEnd() && !reader.hasError()) {
    reader.readNext();
    if (!reader.isStartElement()) continue;
    if (reader.namespaceUri() == uri && reader.name() == name) text = reader.readElementText();
  }
  if (reader.hasError()) throw std::runtime_error(reader.errorString().toStdString());
  return text.toStdString();
}

template <typename WriteBody>
std::string envelope(const WriteBody& writeBody) {
  QByteArray message;
  QXmlStreamWriter writer(&message);
  writer.writeStartDocument();
  writer.writeNamespace(kSoap, "e");
  writer.writeNamespace(kQuotes, "q");
  writer.writeStartElement(kSoap, "Envelope");
  writer.writeStartElement(kSoap, "Body");
  writeBody(writer);
  writer.writeEndDocument();
  return message.toStdString();
}

std::string request(const std::string& symbol) {
  return envelope([&](QXmlStreamWriter& writer) {
    writer.writeStartElement(kQuotes, "GetPrice");
    writer.writeTextElement(kQuotes, "symbol", QString::fromStdString(symbol));
    writer.writeEndElement();
  });
}

std::string answer(const std::string& request) {
  const std::string symbol = textOf(request, kQuotes, "symbol");
  return envelope([&](QXmlStreamWriter& writer) {
    if (const auto price = priceOf(symbol)) {
      writer.writeStartElement(kQuotes, "GetPriceResponse");
      writer.writeTextElement(kQuotes, "price", QString::number(*price));
    } else {
      writer.writeStartElement(kSoap, "Fault");
      writer.writeTextElement("faultcode", "e:Client");
      writer.writeTextElement("faultstring", QString::fromStdString("No price of " + symbol));
    }
    writer.writeEndElement();
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
  } catch (const std::runtime_error& failure) {
    std::cerr << failure.what() << '\n';
  }
  return 1;
}
