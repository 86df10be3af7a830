// Writes a picture and a message: write svg "Fish & chips", write soap FISH
// Expat reads only: what writes stands here.
#include <iostream>
#include <string>
#include <string_view>

std::string escapedText(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (std::string_view("&<>\r").find(c) == std::string_view::npos) {
      result += c;
    } else {
      result += "&#" + std::to_string(static_cast<int>(c)) + ';';
    }
  }
  return result;
}

void writePicture(std::ostream& out, std::string_view title) {
  out << R"(<?xml version="1.0" encoding="UTF-8"?>)"
      << R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 100 40"><title>)"
      << escapedText(title) << "</title><!-- Three plates -->";
  for (const int x : {20, 50, 80}) {
    out << R"(<circle cx=")" << x << R"(" cy=")" << 20 << R"(" r=")" << 7.5 << R"("/>)";
  }
  out << "</svg>";
}

void writeMessage(std::ostream& out, std::string_view symbol) {
  out << R"(<?xml version="1.0" encoding="UTF-8"?>)"
      << R"(<e:Envelope xmlns:e="http://schemas.xmlsoap.org/soap/envelope/")"
      << R"( xmlns:q="urn:example:quotes"><e:Header><q:token e:mustUnderstand="1">)"
      << escapedText("a<b") << "</q:token></e:Header><e:Body><q:GetPrice><q:symbol>"
      << escapedText(symbol) << "</q:symbol></q:GetPrice></e:Body></e:Envelope>";
}

int main(int argc, char* argv[]) {
  if (argc != 3) return 2;
  if (argv[1] == std::string("svg")) {
    writePicture(std::cout, argv[2]);
  } else {
    writeMessage(std::cout, argv[2]);
  }
  if (std::cout.flush()) return 0;
  std::cerr << "The output cannot be written\n";
  return 1;
}
