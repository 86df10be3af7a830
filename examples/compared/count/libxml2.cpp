// Counts the elements of a document, with its progress on standard error: count < document.xml
#include <libxml/xmlreader.h>
#include <unistd.h>

#include <iostream>
#include <memory>

int main() {
  const std::unique_ptr<xmlTextReader, decltype(&xmlFreeTextReader)> reader(
      xmlReaderForFd(STDIN_FILENO, nullptr, nullptr, XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
      xmlFreeTextReader);
  unsigned long elements = 0;
  int status = 0;
  while ((status = xmlTextReaderRead(reader.get())) == 1) {
    if (xmlTextReaderNodeType(reader.get()) != XML_READER_TYPE_ELEMENT) continue;
    if (++elements % 1000 == 0) std::cerr << elements << " elements\n";
  }
  if (status < 0) {
    const auto* failure = xmlGetLastError();
    std::cerr << failure->line << ':' << failure->int2 << ": " << failure->message;
    return 1;
  }
  std::cout << elements << " elements\n";
  if (std::cout.flush()) return 0;
  std::cerr << "The output cannot be written\n";
  return 1;
}
