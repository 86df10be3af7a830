// Writes an array of floats as text, with the digits that keep them, and reads it back.
#include <libxml/xmlreader.h>
#include <libxml/xmlwriter.h>

#include <iostream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

void check(int result) {
  if (result < 0) throw std::runtime_error("The document cannot be written");
}

std::string write(const std::vector<float>& numbers) {
  const std::unique_ptr<xmlBuffer, decltype(&xmlBufferFree)> buffer(xmlBufferCreate(),
                                                                    xmlBufferFree);
  const std::unique_ptr<xmlTextWriter, decltype(&xmlFreeTextWriter)> writer(
      xmlNewTextWriterMemory(buffer.get(), 0), xmlFreeTextWriter);
  check(xmlTextWriterStartDocument(writer.get(), nullptr, "UTF-8", nullptr));
  check(xmlTextWriterStartElement(writer.get(), BAD_CAST "points"));
  for (const float number : numbers) {
    check(xmlTextWriterWriteFormatString(writer.get(), "%.9g ", static_cast<double>(number)));
  }
  check(xmlTextWriterEndDocument(writer.get()));
  check(xmlTextWriterFlush(writer.get()));
  return reinterpret_cast<const char*>(xmlBufferContent(buffer.get()));
}

std::vector<float> read(const std::string& document) {
  const std::unique_ptr<xmlTextReader, decltype(&xmlFreeTextReader)> reader(
      xmlReaderForMemory(document.data(), static_cast<int>(document.size()), nullptr, nullptr,
                         XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
      xmlFreeTextReader);
  std::string text;
  int status = 0;
  while ((status = xmlTextReaderRead(reader.get())) == 1) {
    if (xmlTextReaderNodeType(reader.get()) != XML_READER_TYPE_TEXT) continue;
    text += reinterpret_cast<const char*>(xmlTextReaderConstValue(reader.get()));
  }
  if (status < 0) throw std::runtime_error(xmlGetLastError()->message);
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
