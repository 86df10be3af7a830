// Copies a document with meals in place of dishes: rename < document.xml
#include <libxml/xmlreader.h>
#include <libxml/xmlwriter.h>
#include <unistd.h>

#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

void check(int result) {
  if (result < 0) throw std::runtime_error("The output cannot be written");
}

const xmlChar* renamed(const xmlChar* name) {
  return xmlStrEqual(name, BAD_CAST "dish") ? BAD_CAST "meal" : name;
}

void copyElement(xmlTextReaderPtr reader, xmlTextWriterPtr writer) {
  const bool isEmpty = xmlTextReaderIsEmptyElement(reader) == 1;
  check(xmlTextWriterStartElement(writer, renamed(xmlTextReaderConstName(reader))));
  while (xmlTextReaderMoveToNextAttribute(reader) == 1) {
    check(xmlTextWriterWriteAttribute(writer, xmlTextReaderConstName(reader),
                                      xmlTextReaderConstValue(reader)));
  }
  if (isEmpty) check(xmlTextWriterEndElement(writer));
}

void copyNode(xmlTextReaderPtr reader, xmlTextWriterPtr writer) {
  const xmlChar* const value = xmlTextReaderConstValue(reader);
  switch (xmlTextReaderNodeType(reader)) {
    case XML_READER_TYPE_ELEMENT:
      copyElement(reader, writer);
      break;
    case XML_READER_TYPE_END_ELEMENT:
      check(xmlTextWriterFullEndElement(writer));
      break;
    case XML_READER_TYPE_TEXT:
    case XML_READER_TYPE_WHITESPACE:
    case XML_READER_TYPE_SIGNIFICANT_WHITESPACE:
      check(xmlTextWriterWriteString(writer, value));
      break;
    case XML_READER_TYPE_CDATA:
      check(xmlTextWriterWriteCDATA(writer, value));
      break;
    case XML_READER_TYPE_COMMENT:
      check(xmlTextWriterWriteComment(writer, value));
      break;
    case XML_READER_TYPE_PROCESSING_INSTRUCTION:
      check(xmlTextWriterWritePI(writer, xmlTextReaderConstName(reader), value));
      break;
    default:
      break;
  }
}

// Failures follow each other, and the first one tells what is wrong.
template <typename Error>
void keepFirst(void* first, Error* failure) {
  std::string& text = *static_cast<std::string*>(first);
  if (!text.empty() || failure->level < XML_ERR_ERROR) return;
  text =
      std::to_string(failure->line) + ':' + std::to_string(failure->int2) + ": " + failure->message;
}

// Writes failures of the document to a string.
bool copyDocument(std::string& failure) {
  const std::unique_ptr<xmlTextReader, decltype(&xmlFreeTextReader)> reader(
      xmlReaderForFd(STDIN_FILENO, nullptr, nullptr, XML_PARSE_NOENT), xmlFreeTextReader);
  xmlTextReaderSetStructuredErrorHandler(reader.get(), keepFirst, &failure);
  const std::unique_ptr<xmlTextWriter, decltype(&xmlFreeTextWriter)> writer(
      xmlNewTextWriter(xmlOutputBufferCreateFd(STDOUT_FILENO, nullptr)), xmlFreeTextWriter);
  check(xmlTextWriterStartDocument(writer.get(), nullptr, "UTF-8", nullptr));
  int status = 0;
  while ((status = xmlTextReaderRead(reader.get())) == 1) copyNode(reader.get(), writer.get());
  if (status < 0) return false;
  check(xmlTextWriterEndDocument(writer.get()));
  check(xmlTextWriterFlush(writer.get()));
  return true;
}

// Failures are told by this program alone.
void ignore(void* /*context*/, const char* /*format*/, ...) {}

int main() {
  xmlSetGenericErrorFunc(nullptr, ignore);
  try {
    std::string failure;
    if (copyDocument(failure)) return 0;
    std::cerr << failure;
  } catch (const std::runtime_error& failure) {
    std::cerr << failure.what() << '\n';
  }
  return 1;
}
