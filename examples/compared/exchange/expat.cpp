// Asks for a price and answers, with XML text: exchange FISH
#include <expat.h>

#include <iostream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>

#include "Connection.h"

// The text of the element of a name, which expat gives as the namespace name, a blank and the rest.
struct Search {
  std::string name;
  std::string text;
  int depth;  // Of elements that are open from the one that is sought on.
};

void XMLCALL startElement(void* data, const char* name, const char** /*attributes*/) {
  Search& search = *static_cast<Search*>(data);
  if (search.depth > 0 || name == search.name) ++search.depth;
}

void XMLCALL endElement(void* data, const char* /*name*/) {
  Search& search = *static_cast<Search*>(data);
  if (search.depth > 0) --search.depth;
}

void XMLCALL characters(void* data, const char* text, int length) {
  Search& search = *static_cast<Search*>(data);
  if (search.depth > 0) search.text.append(text, static_cast<std::size_t>(length));
}

// The text of an element, or nothing.
std::string textOf(const std::string& message, const std::string& uri, const std::string& name) {
  const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(
      XML_ParserCreateNS(nullptr, ' '), XML_ParserFree);
  Search search{uri.empty() ? name : uri + ' ' + name, "", 0};
  XML_SetUserData(parser.get(), &search);
  XML_SetElementHandler(parser.get(), startElement, endElement);
  XML_SetCharacterDataHandler(parser.get(), characters);
  const int size = static_cast<int>(message.size());
  if (XML_Parse(parser.get(), message.data(), size, XML_TRUE) == XML_STATUS_ERROR) {
    throw std::runtime_error(XML_ErrorString(XML_GetErrorCode(parser.get())));
  }
  return search.text;
}

std::string escapedText(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (std::string_view("&<>\r").find(c) == std::string_view::npos) {
      result += c;
    } else {
      result += "&#" + std::to_string(static_cast<int>(c)) + ';';
    }
  }
  return result;
}

std::string envelope(const std::string& body) {
  std::ostringstream stream;
  stream << R"(<?xml version="1.0" encoding="UTF-8"?>)"
         << "<e:Envelope xmlns:e=\"" << kSoap << "\" xmlns:q=\"" << kQuotes << "\"><e:Body>" << body
         << "</e:Body></e:Envelope>";
  return stream.str();
}

std::string request(const std::string& symbol) {
  return envelope("<q:GetPrice><q:symbol>" + escapedText(symbol) + "</q:symbol></q:GetPrice>");
}

std::string answer(const std::string& request) {
  const std::string symbol = textOf(request, kQuotes, "symbol");
  std::ostringstream body;
  if (const auto price = priceOf(symbol)) {
    body << "<q:GetPriceResponse><q:price>" << *price << "</q:price></q:GetPriceResponse>";
  } else {
    body << "<e:Fault><faultcode>e:Client</faultcode><faultstring>"
         << escapedText("No price of " + symbol) << "</faultstring></e:Fault>";
  }
  return envelope(body.str());
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
