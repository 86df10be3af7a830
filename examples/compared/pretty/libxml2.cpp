// Indents a document by two spaces for each level: pretty < document.xml
#include <libxml/parser.h>
#include <libxml/xmlsave.h>
#include <unistd.h>

#include <iostream>
#include <memory>

// Failures are told by this program alone.
void ignore(void* /*context*/, const char* /*format*/, ...) {}

int main() {
  xmlSetGenericErrorFunc(nullptr, ignore);
  const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(
      xmlReadFd(STDIN_FILENO, nullptr, nullptr, XML_PARSE_NOBLANKS), xmlFreeDoc);
  if (!document) {
    const auto* failure = xmlGetLastError();
    std::cerr << failure->line << ':' << failure->int2 << ": " << failure->message;
    return 1;
  }
  const auto output = xmlSaveToFd(STDOUT_FILENO, "UTF-8", XML_SAVE_FORMAT);
  const bool isSaved = xmlSaveDoc(output, document.get()) >= 0;
  if (xmlSaveClose(output) >= 0 && isSaved) return 0;
  std::cerr << "The output cannot be written\n";
  return 1;
}
