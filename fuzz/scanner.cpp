// XML text through the reader "XML10" with its own scanner, and with expat alone, in the same
// blocks: the events, the places of each, the failure and the block in which it is found are the
// same. The first octet chooses features and how the document comes.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "Normal.h"

using namespace Tavrin;

namespace {

/// Keeps a line for each event, with its place.
class PlacedEvents : public ContentHandler,
                     public LexicalHandler,
                     public DTDHandler,
                     public DeclHandler,
                     public ErrorHandler {
 public:
  explicit PlacedEvents(XMLReader_XML10& reader) {
    reader.setContentHandler(this);
    reader.setErrorHandler(this);
    reader.setDTDHandler(this);
    reader.setLexicalHandler(this);
    reader.setDeclHandler(this);
  }

  std::vector<std::string> lines;

  void setDocumentLocator(const Locator* locator) override {
    locator_ = dynamic_cast<const OctetLocator*>(locator);
    add("locator", {});
  }
  void startDocument() override { add("startDocument", {}); }
  void endDocument() override { add("endDocument", {}); }
  void startPrefixMapping(const std::string& prefix, const std::string& uri) override {
    add("startPrefix", {prefix, uri});
  }
  void endPrefixMapping(const std::string& prefix) override { add("endPrefix", {prefix}); }
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Attributes& attributes) override {
    std::vector<std::string> all = {uri, localName, qName};
    for (int i = 0; i < attributes.getLength(); ++i) {
      for (const std::string& text :
           {attributes.getURI(i), attributes.getLocalName(i), attributes.getQName(i),
            attributes.getType(i), attributes.getValue(i)}) {
        all.push_back(text);
      }
    }
    add("start", all);
  }
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override {
    add("end", {uri, localName, qName});
  }
  void characters(const std::string& text) override { add("text", {text}); }
  void processingInstruction(const std::string& target, const std::string& data) override {
    add("instruction", {target, data});
  }
  void skippedEntity(const std::string& name) override { add("skipped", {name}); }
  void comment(const std::string& text) override { add("comment", {text}); }
  void startCDATA() override { add("startCDATA", {}); }
  void endCDATA() override { add("endCDATA", {}); }
  void startDTD(const std::string& name, const std::string& publicId,
                const std::string& systemId) override {
    add("startDTD", {name, publicId, systemId});
  }
  void endDTD() override { add("endDTD", {}); }
  void internalEntityDecl(const std::string& name, const std::string& value) override {
    add("entity", {name, value});
  }
  void attributeDecl(const std::string& element, const std::string& name, const std::string& type,
                     const std::string& mode, const std::string& value) override {
    add("attribute", {element, name, type, mode, value});
  }
  void warning(const SAXParseException& exception) override { addFailure("warning", exception); }
  void fatalError(const SAXParseException& exception) override { addFailure("fatal", exception); }

 private:
  void add(const std::string& event, const std::vector<std::string>& texts) {
    std::string line = std::to_string(locator_->getLineNumber()) + ':' +
                       std::to_string(locator_->getColumnNumber()) + '@' +
                       std::to_string(locator_->getOctetOffset()) + ' ' + event;
    for (const std::string& text : texts) line += '|' + text;
    lines.push_back(line);
  }
  void addFailure(const std::string& event, const SAXParseException& exception) {
    add(event, {exception.getMessage(), std::to_string(exception.getLineNumber()),
                std::to_string(exception.getColumnNumber())});
  }

  const OctetLocator* locator_ = nullptr;
};

/// How a document is read.
struct Way {
  explicit Way(std::uint8_t choice)
      : namespaces((choice & 1) == 0),
        prefixes((choice & 2) != 0),
        coalesces((choice & 4) != 0),
        isStream((choice & 8) != 0),
        endsWithBlock((choice & 16) != 0),
        longest(std::size_t{1} << (choice >> 5U)) {}

  bool namespaces;
  bool prefixes;
  bool coalesces;
  bool isStream;
  bool endsWithBlock;   ///< Otherwise an empty block ends the document.
  std::size_t longest;  ///< Block.
};

std::vector<std::string> told(std::string scanner, const std::string& text, const Way& way) {
  XMLReader_XML10 reader;
  PlacedEvents events(reader);
  // How tokens are cut would depend on what expat waits for.
  reader.setReparseDeferral(false);
  reader.setProperty(properties::textScanner, &scanner);
  reader.setFeature(features::namespaces, way.namespaces);
  reader.setFeature(features::namespacePrefixes, way.prefixes);
  reader.setFeature(features::coalesceCharacters, way.coalesces);
  try {
    if (way.isStream) {
      std::istringstream stream(text);
      reader.parse(stream);
      return events.lines;
    }
    unsigned seed = 0;
    for (const char c : text) seed = seed * 31U + static_cast<unsigned char>(c);
    for (std::size_t begin = 0; begin < text.size();) {
      seed = seed * 1103515245U + 12345U;
      const std::size_t size = std::min(1 + (seed >> 16U) % way.longest, text.size() - begin);
      const std::vector<char> block(text.begin() + static_cast<std::ptrdiff_t>(begin),
                                    text.begin() + static_cast<std::ptrdiff_t>(begin + size));
      begin += size;
      reader.parse(block.data(), size, way.endsWithBlock && begin == text.size());
      events.lines.push_back("block");
    }
    if (!way.endsWithBlock || text.empty()) reader.parse(nullptr, 0, true);
  } catch (const SAXParseException& exception) {
    events.lines.push_back("failed: " + exception.getMessage());
  }
  return events.lines;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const Way way(data[0]);
  const std::string text(data + 1, data + size);
  expectEqual("scanned", told("expat", text, way), told("automatic", text, way));
  return 0;
}
