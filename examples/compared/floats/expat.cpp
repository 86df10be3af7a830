// Writes an array of floats as text, with the digits that keep them, and reads it back.
#include <expat.h>

#include <iostream>
#include <limits>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

std::string write(const std::vector<float>& numbers) {
  std::ostringstream stream;
  stream.precision(std::numeric_limits<float>::max_digits10);
  stream << R"(<?xml version="1.0" encoding="UTF-8"?><points>)";
  for (const float number : numbers) stream << number << ' ';
  stream << "</points>";
  return stream.str();
}

void XMLCALL characters(void* data, const char* text, int length) {
  static_cast<std::string*>(data)->append(text, static_cast<std::size_t>(length));
}

std::vector<float> read(const std::string& document) {
  const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(
      XML_ParserCreate(nullptr), XML_ParserFree);
  std::string text;
  XML_SetUserData(parser.get(), &text);
  XML_SetCharacterDataHandler(parser.get(), characters);
  const int size = static_cast<int>(document.size());
  if (XML_Parse(parser.get(), document.data(), size, XML_TRUE) == XML_STATUS_ERROR) {
    throw std::runtime_error(XML_ErrorString(XML_GetErrorCode(parser.get())));
  }
  std::vector<float> numbers;
  std::istringstream stream(text);
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
  } catch (const std::runtime_error& failure) {
    std::cerr << failure.what() << '\n';
  }
  return 1;
}
