// Counts the elements of a document, with its progress on standard error: count < document.xml
#include <libxml/xmlreader.h>
#include <unistd.h>

#include <iostream>
#include <memory>
#include <string>

// Failures follow each other, and the first one tells what is wrong.
template <typename Error>
void keepFirst(void* first, Error* failure) {
  std::string& text = *static_cast<std::string*>(first);
  if (!text.empty() || failure->level < XML_ERR_ERROR) return;
  text =
      std::to_string(failure->line) + ':' + std::to_string(failure->int2) + ": " + failure->message;
}

int main() {
  const std::unique_ptr<xmlTextReader, decltype(&xmlFreeTextReader)> reader(
      xmlReaderForFd(STDIN_FILENO, nullptr, nullptr, 0), xmlFreeTextReader);
  std::string failure;
  xmlTextReaderSetStructuredErrorHandler(reader.get(), keepFirst, &failure);
  unsigned long elements = 0;
  int status = 0;
  while ((status = xmlTextReaderRead(reader.get())) == 1) {
    if (xmlTextReaderNodeType(reader.get()) != XML_READER_TYPE_ELEMENT) continue;
    if (++elements % 1000 == 0) std::cerr << elements << " elements\n";
  }
  if (status < 0) {
    std::cerr << failure;
    return 1;
  }
  std::cout << elements << " elements\n";
  if (std::cout.flush()) return 0;
  std::cerr << "The output cannot be written\n";
  return 1;
}
