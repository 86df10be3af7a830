#include "TextReaderSupport.h"

#include <random>
#include <sstream>
#include <stdexcept>

std::string messageOf(XML_Error code) { return XML_ErrorString(code); }

std::string Failure::arguments() const {
  return "(" + messageOf(code) + ", " + std::to_string(line) + ", " + std::to_string(column) + ")";
}

namespace {

std::string told(const char* type, const Tavrin::SAXParseException& exception) {
  return type + ("(" + exception.getMessage()) + ", " + std::to_string(exception.getLineNumber()) +
         ", " + std::to_string(exception.getColumnNumber()) + ")";
}

std::string told(const char* type, const std::string& message) {
  return type + ("(" + message) + ")";
}

}  // namespace

std::string outcomeOf(const std::function<void()>& call) {
  try {
    call();
    return "done";
  } catch (const ApplicationParseException& e) {
    return told("ApplicationParseException", e);
  } catch (const ApplicationException& e) {
    return told("ApplicationException", e.getMessage());
  } catch (const Tavrin::SAXParseException& e) {
    return told("SAXParseException", e);
  } catch (const Tavrin::SAXNotRecognizedException& e) {
    return told("SAXNotRecognizedException", e.getMessage());
  } catch (const Tavrin::SAXException& e) {
    return told("SAXException", e.getMessage());
  } catch (const Tavrin::EncodingAlgorithmException& e) {
    return told("EncodingAlgorithmException", e.getMessage());
  } catch (const Tavrin::FastInfosetException& e) {
    return told("FastInfosetException", e.getMessage());
  } catch (const std::runtime_error& e) {
    return told("std::runtime_error", e.what());
  } catch (const std::exception& e) {
    return told("std::exception", e.what());
  } catch (int number) {
    return told("int", std::to_string(number));
  } catch (const char* text) {
    return told("const char*", text);
  }
}

std::string parseText(Tavrin::XMLReader& reader, const std::string& text) {
  std::istringstream stream(text);
  return outcomeOf([&] { reader.parse(stream); });
}

std::string parseBlocks(Tavrin::XMLReader& reader, const std::vector<std::string>& blocks) {
  return outcomeOf([&] {
    for (std::size_t i = 0; i < blocks.size(); ++i) {
      // A vector of just this size: reading past its end, or after the call, is an access that the
      // sanitizer sees.
      const std::vector<char> block(blocks[i].begin(), blocks[i].end());
      static const char none = 0;  // An empty vector may have a null pointer, which means more.
      reader.parse(block.empty() ? &none : block.data(), block.size(), i + 1 == blocks.size());
    }
  });
}

std::vector<std::string> cutEvenly(const std::string& text, std::size_t size) {
  std::vector<std::string> blocks;
  for (std::size_t i = 0; i < text.size(); i += size) blocks.push_back(text.substr(i, size));
  return blocks;
}

std::vector<std::string> cutRandomly(const std::string& text, unsigned seed, std::size_t longest) {
  std::mt19937 numbers(seed);
  std::vector<std::string> blocks;
  std::size_t i = 0;
  while (i < text.size()) {
    const std::size_t size = numbers() % (longest + 1);
    blocks.push_back(text.substr(i, size));
    i += size;
  }
  return blocks;
}

std::string wholeLog(const EventLog::Lines& events) {
  return "setDocumentLocator()\nstartDocument()\n" + join(events) + "endDocument()\n";
}
