// Counts the elements of a document, with its progress on standard error: count < document.xml
#include <expat.h>

#include <iostream>
#include <memory>

void XMLCALL startElement(void* data, const char* /*name*/, const char** /*attributes*/) {
  unsigned long& elements = *static_cast<unsigned long*>(data);
  if (++elements % 1000 == 0) std::cerr << elements << " elements\n";
}

int main() {
  std::ios::sync_with_stdio(false);
  const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(
      XML_ParserCreate(nullptr), XML_ParserFree);
  unsigned long elements = 0;
  XML_SetUserData(parser.get(), &elements);
  XML_SetStartElementHandler(parser.get(), startElement);
  char block[16384];
  while (std::cin) {
    std::cin.read(block, sizeof block);
    const int size = static_cast<int>(std::cin.gcount());
    if (XML_Parse(parser.get(), block, size, !std::cin) == XML_STATUS_ERROR) {
      std::cerr << XML_GetCurrentLineNumber(parser.get()) << ':'
                << XML_GetCurrentColumnNumber(parser.get()) + 1 << ": "
                << XML_ErrorString(XML_GetErrorCode(parser.get())) << '\n';
      return 1;
    }
  }
  std::cout << elements << " elements\n";
  if (std::cout.flush()) return 0;
  std::cerr << "The output cannot be written\n";
  return 1;
}
