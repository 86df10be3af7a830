// Asks for a price and answers, with XML text: exchange FISH
#include <libxml/xmlreader.h>
#include <libxml/xmlwriter.h>

#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

#include "Connection.h"

const xmlChar* chars(const std::string& text) {
  return reinterpret_cast<const xmlChar*>(text.c_str());
}

void check(int result) {
  if (result < 0) throw std::runtime_error("The message cannot be written");
}

// The text of an element, or nothing.
std::string textOf(const std::string& message, const std::string& uri, const std::string& name) {
  const std::unique_ptr<xmlTextReader, decltype(&xmlFreeTextReader)> reader(
      xmlReaderForMemory(message.data(), static_cast<int>(message.size()), nullptr, nullptr,
                         XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
      xmlFreeTextReader);
  std::string text;
  int status = 0;
  while ((status = xmlTextReaderRead(reader.get())) == 1) {
    if (xmlTextReaderNodeType(reader.get()) != XML_READER_TYPE_ELEMENT) continue;
    const xmlChar* const found = xmlTextReaderConstNamespaceUri(reader.get());
    if (!xmlStrEqual(found ? found : BAD_CAST "", chars(uri))) continue;
    if (!xmlStrEqual(xmlTextReaderConstLocalName(reader.get()), chars(name))) continue;
    xmlChar* const content = xmlTextReaderReadString(reader.get());
    if (content) text = reinterpret_cast<const char*>(content);
    xmlFree(content);
  }
  if (status < 0) throw std::runtime_error(xmlGetLastError()->message);
  return text;
}

template <typename WriteBody>
std::string envelope(const WriteBody& writeBody) {
  const std::unique_ptr<xmlBuffer, decltype(&xmlBufferFree)> buffer(xmlBufferCreate(),
                                                                    xmlBufferFree);
  const std::unique_ptr<xmlTextWriter, decltype(&xmlFreeTextWriter)> writer(
      xmlNewTextWriterMemory(buffer.get(), 0), xmlFreeTextWriter);
  check(xmlTextWriterStartDocument(writer.get(), nullptr, "UTF-8", nullptr));
  check(xmlTextWriterStartElement(writer.get(), BAD_CAST "e:Envelope"));
  check(xmlTextWriterWriteAttribute(writer.get(), BAD_CAST "xmlns:e", chars(kSoap)));
  check(xmlTextWriterWriteAttribute(writer.get(), BAD_CAST "xmlns:q", chars(kQuotes)));
  check(xmlTextWriterStartElement(writer.get(), BAD_CAST "e:Body"));
  writeBody(writer.get());
  check(xmlTextWriterEndDocument(writer.get()));
  check(xmlTextWriterFlush(writer.get()));
  return reinterpret_cast<const char*>(xmlBufferContent(buffer.get()));
}

std::string request(const std::string& symbol) {
  return envelope([&](xmlTextWriterPtr writer) {
    check(xmlTextWriterStartElement(writer, BAD_CAST "q:GetPrice"));
    check(xmlTextWriterWriteElement(writer, BAD_CAST "q:symbol", chars(symbol)));
    check(xmlTextWriterEndElement(writer));
  });
}

std::string answer(const std::string& request) {
  const std::string symbol = textOf(request, kQuotes, "symbol");
  return envelope([&](xmlTextWriterPtr writer) {
    if (const auto price = priceOf(symbol)) {
      check(xmlTextWriterStartElement(writer, BAD_CAST "q:GetPriceResponse"));
      check(xmlTextWriterWriteFormatElement(writer, BAD_CAST "q:price", "%g", *price));
    } else {
      check(xmlTextWriterStartElement(writer, BAD_CAST "e:Fault"));
      check(xmlTextWriterWriteElement(writer, BAD_CAST "faultcode", BAD_CAST "e:Client"));
      check(xmlTextWriterWriteElement(writer, BAD_CAST "faultstring",
                                      chars("No price of " + symbol)));
    }
    check(xmlTextWriterEndElement(writer));
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
