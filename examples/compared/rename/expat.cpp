// Copies a document with meals in place of dishes: rename < document.xml
#include <expat.h>

#include <iostream>
#include <memory>
#include <string>
#include <string_view>

std::string escapedValue(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (std::string_view("&<\"\t\n\r").find(c) == std::string_view::npos) {
      result += c;
    } else {
      result += "&#" + std::to_string(static_cast<int>(c)) + ';';
    }
  }
  return result;
}

// What is not renamed is copied as it stands.
void XMLCALL copy(void* /*parser*/, const char* text, int length) { std::cout.write(text, length); }

// What is copied is UTF-8, whatever the document was.
void XMLCALL declare(void* /*parser*/, const char* version, const char* /*encoding*/,
                     int standalone) {
  if (!version) return;
  std::cout << "<?xml version=\"" << version << "\" encoding=\"UTF-8\"";
  if (standalone >= 0) std::cout << " standalone=\"" << (standalone ? "yes" : "no") << '"';
  std::cout << "?>";
}

void XMLCALL startElement(void* parser, const char* name, const char** attributes) {
  if (std::string_view(name) != "dish") {
    XML_DefaultCurrent(static_cast<XML_Parser>(parser));
    return;
  }
  std::cout << "<meal";
  for (; *attributes; attributes += 2) {
    std::cout << ' ' << attributes[0] << "=\"" << escapedValue(attributes[1]) << '"';
  }
  std::cout << '>';
}

void XMLCALL endElement(void* parser, const char* name) {
  if (std::string_view(name) == "dish") {
    std::cout << "</meal>";
  } else {
    XML_DefaultCurrent(static_cast<XML_Parser>(parser));
  }
}

int main() {
  std::ios::sync_with_stdio(false);
  const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(
      XML_ParserCreate(nullptr), XML_ParserFree);
  XML_UseParserAsHandlerArg(parser.get());
  XML_SetDefaultHandler(parser.get(), copy);
  XML_SetXmlDeclHandler(parser.get(), declare);
  XML_SetElementHandler(parser.get(), startElement, endElement);
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
  if (std::cout.flush()) return 0;
  std::cerr << "The output cannot be written\n";
  return 1;
}
