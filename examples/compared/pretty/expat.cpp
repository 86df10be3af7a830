// Indents a document by two spaces for each level: pretty < document.xml
#include <expat.h>

#include <iostream>
#include <memory>
#include <string>
#include <string_view>

// References stand for the characters that are special in their place.
std::string escaped(std::string_view text, std::string_view special) {
  std::string result;
  for (const char c : text) {
    if (special.find(c) == std::string_view::npos) {
      result += c;
    } else {
      result += "&#" + std::to_string(static_cast<int>(c)) + ';';
    }
  }
  return result;
}
std::string escapedText(std::string_view text) { return escaped(text, "&<>\r"); }
std::string escapedValue(std::string_view text) { return escaped(text, "&<\"\t\n\r"); }

class Printer {
 public:
  void startElement(const char* name, const char** attributes) {
    beginLine();
    std::cout << '<' << name;
    for (; *attributes; attributes += 2) {
      std::cout << ' ' << attributes[0] << "=\"" << escapedValue(attributes[1]) << '"';
    }
    isTagOpen_ = true;
    ++depth_;
  }

  void endElement(const char* name) {
    --depth_;
    if (isTagOpen_ && text_.empty()) {
      std::cout << "/>";
    } else {
      if (!writeText()) std::cout << '\n' << std::string(2 * depth_, ' ');
      std::cout << "</" << name << '>';
    }
    isTagOpen_ = false;
  }

  void characters(const char* text, int length) {
    text_.append(text, static_cast<std::size_t>(length));
  }

  void comment(const char* text) {
    beginLine();
    std::cout << "<!--" << text << "-->";
  }

  void processingInstruction(const char* target, const char* data) {
    beginLine();
    std::cout << "<?" << target << ' ' << data << "?>";
  }

 private:
  void beginLine() {
    writeText();
    if (isTagOpen_) std::cout << '>';
    isTagOpen_ = false;
    std::cout << '\n' << std::string(2 * depth_, ' ');
  }

  // Whether there was text beside blanks.
  bool writeText() {
    const bool isText = text_.find_first_not_of(" \t\r\n") != std::string::npos;
    if (isText) {
      if (isTagOpen_) std::cout << '>';
      isTagOpen_ = false;
      std::cout << escapedText(text_);
    }
    text_.clear();
    return isText;
  }

  std::string text_;
  std::size_t depth_ = 0;
  bool isTagOpen_ = false;
};

Printer& printerOf(void* data) { return *static_cast<Printer*>(data); }

void XMLCALL startElement(void* data, const char* name, const char** attributes) {
  printerOf(data).startElement(name, attributes);
}
void XMLCALL endElement(void* data, const char* name) { printerOf(data).endElement(name); }
void XMLCALL characters(void* data, const char* text, int length) {
  printerOf(data).characters(text, length);
}
void XMLCALL comment(void* data, const char* text) { printerOf(data).comment(text); }
void XMLCALL processingInstruction(void* data, const char* target, const char* text) {
  printerOf(data).processingInstruction(target, text);
}

int main() {
  std::ios::sync_with_stdio(false);
  const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(
      XML_ParserCreate(nullptr), XML_ParserFree);
  Printer printer;
  XML_SetUserData(parser.get(), &printer);
  XML_SetElementHandler(parser.get(), startElement, endElement);
  XML_SetCharacterDataHandler(parser.get(), characters);
  XML_SetCommentHandler(parser.get(), comment);
  XML_SetProcessingInstructionHandler(parser.get(), processingInstruction);
  std::cout << R"(<?xml version="1.0" encoding="UTF-8"?>)";
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
  std::cout << '\n';
  if (std::cout.flush()) return 0;
  std::cerr << "The output cannot be written\n";
  return 1;
}
