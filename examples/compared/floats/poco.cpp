// Writes an array of floats as text, with the digits that keep them, and reads it back.
#include <Poco/XML/XMLException.h>
#include <Poco/XML/XMLStreamParser.h>
#include <Poco/XML/XMLWriter.h>

#include <iostream>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

std::string write(const std::vector<float>& numbers) {
  std::ostringstream text;
  text.precision(std::numeric_limits<float>::max_digits10);
  for (const float number : numbers) text << number << ' ';
  std::ostringstream stream;
  Poco::XML::XMLWriter writer(stream, Poco::XML::XMLWriter::WRITE_XML_DECLARATION);
  writer.startDocument();
  writer.dataElement("", "", "points", text.str());
  writer.endDocument();
  return stream.str();
}

std::vector<float> read(const std::string& document) {
  Poco::XML::XMLStreamParser parser(document.data(), document.size(), "points");
  std::istringstream stream(parser.element("points"));
  parser.nextExpect(Poco::XML::XMLStreamParser::EV_EOF);
  std::vector<float> numbers;
  for (float number; stream >> number;) numbers.push_back(number);
  return numbers;
}

int main() {
  std::vector<float> numbers;
  for (int i = 0; i < 1000; ++i) numbers.push_back(static_cast<float>(i) / 3);
  try {
    if (read(write(numbers)) == numbers) {
      std::cout << numbers.size() << " floats came back\n";
      return 0;
    }
    std::cerr << "Other floats came back\n";
  } catch (const Poco::XML::XMLException& failure) {
    std::cerr << failure.displayText() << '\n';
  }
  return 1;
}
