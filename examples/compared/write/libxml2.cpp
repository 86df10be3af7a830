// Writes a picture and a message: write svg "Fish & chips", write soap FISH
#include <libxml/xmlwriter.h>
#include <unistd.h>

#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

void check(int result) {
  if (result < 0) throw std::runtime_error("The output cannot be written");
}

void start(xmlTextWriterPtr writer, const char* name) {
  check(xmlTextWriterStartElement(writer, BAD_CAST name));
}

void attribute(xmlTextWriterPtr writer, const char* name, const char* value) {
  check(xmlTextWriterWriteAttribute(writer, BAD_CAST name, BAD_CAST value));
}

void writePicture(xmlTextWriterPtr writer, const char* title) {
  check(xmlTextWriterStartDocument(writer, nullptr, "UTF-8", nullptr));
  start(writer, "svg");
  attribute(writer, "xmlns", "http://www.w3.org/2000/svg");
  attribute(writer, "viewBox", "0 0 100 40");
  check(xmlTextWriterWriteElement(writer, BAD_CAST "title", BAD_CAST title));
  check(xmlTextWriterWriteComment(writer, BAD_CAST " Three plates "));
  for (const int x : {20, 50, 80}) {
    start(writer, "circle");
    check(xmlTextWriterWriteFormatAttribute(writer, BAD_CAST "cx", "%d", x));
    check(xmlTextWriterWriteFormatAttribute(writer, BAD_CAST "cy", "%d", 20));
    check(xmlTextWriterWriteFormatAttribute(writer, BAD_CAST "r", "%g", 7.5));
    check(xmlTextWriterEndElement(writer));
  }
  check(xmlTextWriterEndDocument(writer));
}

void writeMessage(xmlTextWriterPtr writer, const char* symbol) {
  check(xmlTextWriterStartDocument(writer, nullptr, "UTF-8", nullptr));
  start(writer, "e:Envelope");
  attribute(writer, "xmlns:e", "http://schemas.xmlsoap.org/soap/envelope/");
  attribute(writer, "xmlns:q", "urn:example:quotes");
  start(writer, "e:Header");
  start(writer, "q:token");
  attribute(writer, "e:mustUnderstand", "1");
  check(xmlTextWriterWriteString(writer, BAD_CAST "a<b"));
  check(xmlTextWriterEndElement(writer));
  check(xmlTextWriterEndElement(writer));
  start(writer, "e:Body");
  start(writer, "q:GetPrice");
  check(xmlTextWriterWriteElement(writer, BAD_CAST "q:symbol", BAD_CAST symbol));
  check(xmlTextWriterEndDocument(writer));
}

// Failures are told by this program alone.
void ignore(void* /*context*/, const char* /*format*/, ...) {}

int main(int argc, char* argv[]) {
  if (argc != 3) return 2;
  xmlSetGenericErrorFunc(nullptr, ignore);
  try {
    const std::unique_ptr<xmlTextWriter, decltype(&xmlFreeTextWriter)> writer(
        xmlNewTextWriter(xmlOutputBufferCreateFd(STDOUT_FILENO, nullptr)), xmlFreeTextWriter);
    if (argv[1] == std::string("svg")) {
      writePicture(writer.get(), argv[2]);
    } else {
      writeMessage(writer.get(), argv[2]);
    }
    check(xmlTextWriterFlush(writer.get()));
  } catch (const std::runtime_error& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
  }
  return 0;
}
