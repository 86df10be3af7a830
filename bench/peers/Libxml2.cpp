// libxml2's SAX2 interface, which pulls from the stream.

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <stdexcept>

#include "peers.h"

namespace peers {

namespace {

const char* chars(const xmlChar* text) { return reinterpret_cast<const char*>(text); }

std::string copy(const xmlChar* text) { return text ? chars(text) : std::string(); }

Name nameOf(const xmlChar* localName, const xmlChar* prefix, const xmlChar* uri) {
  Name name{copy(uri), copy(localName), copy(prefix)};
  if (prefix) name.qName.append(1, ':');
  name.qName.append(name.localName);
  return name;
}

// The parser is its own user data: its default handlers of declarations expect it there.
Totals& totalsOf(void* parser) {
  return *static_cast<Totals*>(static_cast<xmlParserCtxtPtr>(parser)->_private);
}

void start(void* parser, const xmlChar* localName, const xmlChar* prefix, const xmlChar* uri, int,
           const xmlChar**, int count, int, const xmlChar** attributes) {
  std::vector<Attribute> list;
  for (int i = 0; i < count; ++i, attributes += 5) {
    list.push_back({nameOf(attributes[0], attributes[1], attributes[2]),
                    std::string(chars(attributes[3]), chars(attributes[4]))});
  }
  countStart(totalsOf(parser), nameOf(localName, prefix, uri), list);
}

void end(void* parser, const xmlChar* localName, const xmlChar* prefix, const xmlChar* uri) {
  countEnd(totalsOf(parser), nameOf(localName, prefix, uri));
}

void text(void* parser, const xmlChar* octets, int length) {
  countText(totalsOf(parser), std::string(chars(octets), static_cast<std::size_t>(length)));
}

int readBlock(void* stream, char* block, int size) {
  std::istream& source = *static_cast<std::istream*>(stream);
  source.read(block, size);
  return static_cast<int>(source.gcount());
}

struct ParserDeleter {
  void operator()(xmlParserCtxtPtr parser) const {
    xmlFreeDoc(parser->myDoc);
    xmlFreeParserCtxt(parser);
  }
};

using Parser = std::unique_ptr<xmlParserCtxt, ParserDeleter>;

xmlSAXHandler createHandler() {
  xmlSAXHandler handler{};
  xmlSAXVersion(&handler, 2);
  handler.startElementNs = start;
  handler.endElementNs = end;
  handler.characters = text;
  handler.ignorableWhitespace = text;
  handler.cdataBlock = text;
  handler.comment = nullptr;
  handler.processingInstruction = nullptr;
  handler.reference = nullptr;
  handler.warning = nullptr;
  handler.error = nullptr;
  handler.fatalError = nullptr;
  return handler;
}

void prepare(const Parser& parser, Totals& totals) {
  if (!parser) throw std::runtime_error("libxml2 has no memory");
  parser->_private = &totals;
  xmlCtxtUseOptions(parser.get(), XML_PARSE_NOENT | XML_PARSE_HUGE | XML_PARSE_NONET);
}

void require(const Parser& parser, int error) {
  if (error == 0 && parser->wellFormed) return;
  const xmlError* const last = xmlCtxtGetLastError(parser.get());
  std::string message = last && last->message ? last->message : "libxml2 failed";
  if (message.ends_with('\n')) message.pop_back();
  throw std::runtime_error(message);
}

}  // namespace

Totals readLibxml2(std::istream& stream) {
  xmlSAXHandler handler = createHandler();
  const Parser parser(xmlCreateIOParserCtxt(&handler, nullptr, readBlock, nullptr, &stream,
                                            XML_CHAR_ENCODING_NONE));
  Totals totals;
  prepare(parser, totals);
  require(parser, xmlParseDocument(parser.get()));
  return totals;
}

Totals pushLibxml2(std::string_view text, std::size_t blockSize) {
  xmlSAXHandler handler = createHandler();
  const Parser parser(xmlCreatePushParserCtxt(&handler, nullptr, nullptr, 0, nullptr));
  Totals totals;
  prepare(parser, totals);
  forEachBlock(text, blockSize, [&](std::string_view block, bool isFinal) {
    require(parser,
            xmlParseChunk(parser.get(), block.data(), static_cast<int>(block.size()), isFinal));
  });
  return totals;
}

}  // namespace peers
