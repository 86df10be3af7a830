// expat, fed from a stream in blocks: once with callbacks that build the strings that a handler is
// given, and once with callbacks that only count.

#include <expat.h>

#include <cstring>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "peers.h"

namespace peers {

namespace {

constexpr int kBlock = 1 << 20;
constexpr char kSeparator = '\n';

struct ParserDeleter {
  void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using Parser = std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserDeleter>;

struct Callbacks {
  XML_StartElementHandler start;
  XML_EndElementHandler end;
  XML_CharacterDataHandler text;
};

Parser createParser(Totals& totals, const Callbacks& callbacks) {
  Parser parser(XML_ParserCreateNS(nullptr, kSeparator));
  XML_SetUserData(parser.get(), &totals);
  XML_SetReturnNSTriplet(parser.get(), 1);
  XML_SetElementHandler(parser.get(), callbacks.start, callbacks.end);
  XML_SetCharacterDataHandler(parser.get(), callbacks.text);
  return parser;
}

void require(const Parser& parser, XML_Status status) {
  if (status == XML_STATUS_OK) return;
  throw std::runtime_error(XML_ErrorString(XML_GetErrorCode(parser.get())));
}

Totals read(std::istream& stream, const Callbacks& callbacks) {
  Totals totals;
  const Parser parser = createParser(totals, callbacks);
  for (bool isFinal = false; !isFinal;) {
    void* const block = XML_GetBuffer(parser.get(), kBlock);
    if (!block) throw std::runtime_error("expat has no memory");
    stream.read(static_cast<char*>(block), kBlock);
    isFinal = stream.gcount() < kBlock;
    require(parser, XML_ParseBuffer(parser.get(), static_cast<int>(stream.gcount()), isFinal));
  }
  return totals;
}

// --- Strings ---

Name split(const char* text) {
  const std::string_view name = text;
  const std::size_t first = name.find(kSeparator);
  if (first == std::string_view::npos) return {"", std::string(name), std::string(name)};
  const std::string_view rest = name.substr(first + 1);
  const std::size_t second = rest.find(kSeparator);
  if (second == std::string_view::npos) {
    return {std::string(name.substr(0, first)), std::string(rest), std::string(rest)};
  }
  Name result{std::string(name.substr(0, first)), std::string(rest.substr(0, second)), ""};
  result.qName.append(rest.substr(second + 1)).append(1, ':').append(result.localName);
  return result;
}

void XMLCALL buildStart(void* data, const char* name, const char** attributes) {
  std::vector<Attribute> list;
  for (; *attributes; attributes += 2) list.push_back({split(attributes[0]), attributes[1]});
  countStart(*static_cast<Totals*>(data), split(name), list);
}

void XMLCALL buildEnd(void* data, const char* name) {
  countEnd(*static_cast<Totals*>(data), split(name));
}

void XMLCALL buildText(void* data, const char* text, int length) {
  countText(*static_cast<Totals*>(data), std::string(text, static_cast<std::size_t>(length)));
}

// --- Counts ---

void XMLCALL countRawStart(void* data, const char*, const char** attributes) {
  Totals& totals = *static_cast<Totals*>(data);
  ++totals.elements;
  for (; *attributes; attributes += 2) {
    ++totals.attributes;
    totals.valueOctets += std::strlen(attributes[1]);
  }
}

void XMLCALL countRawEnd(void*, const char*) {}

void XMLCALL countRawText(void* data, const char*, int length) {
  static_cast<Totals*>(data)->textOctets += static_cast<std::size_t>(length);
}

}  // namespace

Totals readExpatStream(std::istream& stream) {
  return read(stream, {buildStart, buildEnd, buildText});
}

Totals pushExpat(std::string_view text, std::size_t blockSize) {
  Totals totals;
  const Parser parser = createParser(totals, {buildStart, buildEnd, buildText});
  forEachBlock(text, blockSize, [&](std::string_view block, bool isFinal) {
    require(parser, XML_Parse(parser.get(), block.data(), static_cast<int>(block.size()), isFinal));
  });
  return totals;
}

Totals readRawExpat(std::istream& stream) {
  return read(stream, {countRawStart, countRawEnd, countRawText});
}

}  // namespace peers
