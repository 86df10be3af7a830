// Tells whether Xerces-C++, which knows nothing of this library, makes the same of a document and
// of its copy: xerces_compare [--declarations] DOCUMENT COPY
//
// Elements, namespaces, attributes in any order, text, comments and instructions count; with
// --declarations, those of the internal subset count, too. Everything external is taken for empty,
// in both. The exit status is 0 where they are the same, 1 with the first difference on standard
// output where not, and 2 where Xerces-C++ does not read the document.
#include <algorithm>
#include <cstring>
#include <iostream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>
#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax2/Attributes.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace {

std::string utf8(const XMLCh* text) {
  if (text == nullptr) return {};
  const xercesc::TranscodeToStr octets(text, "UTF-8");
  return {reinterpret_cast<const char*>(octets.str()), octets.length()};
}

/// White space in a public identifier counts as one blank, and does not at its ends
/// (XML 1.0, 4.2.2).
std::string publicIdentifier(const XMLCh* text) {
  std::istringstream words(utf8(text));
  std::string identifier, word;
  while (words >> word) identifier += (identifier.empty() ? "" : " ") + word;
  return identifier;
}

/// The events of a document, one an item; text that comes in pieces is one.
class Log : public xercesc::DefaultHandler {
 public:
  explicit Log(bool declarations) : declarations_(declarations) {}

  std::vector<std::string> events;

  void startElement(const XMLCh* uri, const XMLCh* localName, const XMLCh* qName,
                    const xercesc::Attributes& attributes) override {
    std::vector<std::string> values;
    for (XMLSize_t i = 0; i < attributes.getLength(); ++i) {
      values.push_back("{" + utf8(attributes.getURI(i)) + "}" + utf8(attributes.getQName(i)) +
                       "=\"" + utf8(attributes.getValue(i)) + '"');
    }
    std::sort(values.begin(), values.end());
    add("start", {utf8(uri), utf8(localName), utf8(qName)});
    for (const std::string& value : values) add("attribute", {value});
  }
  void endElement(const XMLCh* /*uri*/, const XMLCh* /*localName*/, const XMLCh* qName) override {
    add("end", {utf8(qName)});
  }
  void startPrefixMapping(const XMLCh* prefix, const XMLCh* uri) override {
    add("mapping", {utf8(prefix), utf8(uri)});
  }
  void characters(const XMLCh* text, const XMLSize_t /*length*/) override { addText(utf8(text)); }
  void ignorableWhitespace(const XMLCh* text, const XMLSize_t /*length*/) override {
    addText(utf8(text));
  }
  void processingInstruction(const XMLCh* target, const XMLCh* data) override {
    if (!inDTD_ || declarations_) add("instruction", {utf8(target), utf8(data)});
  }
  void comment(const XMLCh* text, const XMLSize_t /*length*/) override {
    if (!inDTD_ || declarations_) add("comment", {utf8(text)});
  }

  void startDTD(const XMLCh* name, const XMLCh* publicId, const XMLCh* systemId) override {
    inDTD_ = true;
    // It does not come at all for a name alone, without so much as brackets.
    if (publicId == nullptr && systemId == nullptr) return;
    declare("document type", {utf8(name), publicIdentifier(publicId), utf8(systemId)});
  }
  void endDTD() override { inDTD_ = false; }
  void elementDecl(const XMLCh* name, const XMLCh* model) override {
    declare("element", {utf8(name), utf8(model)});
  }
  void attributeDecl(const XMLCh* element, const XMLCh* name, const XMLCh* type, const XMLCh* mode,
                     const XMLCh* value) override {
    declare("attribute declaration",
            {utf8(element), utf8(name), utf8(type), utf8(mode), utf8(value)});
  }
  void internalEntityDecl(const XMLCh* name, const XMLCh* value) override {
    declare("entity", {utf8(name), utf8(value)});
  }
  void externalEntityDecl(const XMLCh* name, const XMLCh* publicId,
                          const XMLCh* systemId) override {
    declare("external entity", {utf8(name), publicIdentifier(publicId), utf8(systemId)});
  }
  void notationDecl(const XMLCh* name, const XMLCh* publicId, const XMLCh* systemId) override {
    declare("notation", {utf8(name), publicIdentifier(publicId), utf8(systemId)});
  }
  void unparsedEntityDecl(const XMLCh* name, const XMLCh* publicId, const XMLCh* systemId,
                          const XMLCh* notation) override {
    declare("unparsed entity",
            {utf8(name), publicIdentifier(publicId), utf8(systemId), utf8(notation)});
  }

  xercesc::InputSource* resolveEntity(const XMLCh* /*publicId*/,
                                      const XMLCh* /*systemId*/) override {
    return new xercesc::MemBufInputSource(reinterpret_cast<const XMLByte*>(""), 0, "empty");
  }
  void fatalError(const xercesc::SAXParseException& failure) override {
    throw std::runtime_error(std::to_string(failure.getLineNumber()) + ':' +
                             std::to_string(failure.getColumnNumber()) + ": " +
                             utf8(failure.getMessage()));
  }

 private:
  void add(const std::string& what, const std::vector<std::string>& arguments) {
    std::string event = what;
    for (const std::string& argument : arguments) event += " [" + argument + ']';
    events.push_back(event);
    inText_ = false;
  }
  void declare(const std::string& what, const std::vector<std::string>& arguments) {
    if (declarations_) add(what, arguments);
  }
  void addText(const std::string& text) {
    if (text.empty()) return;  // An empty CDATA section.
    if (inText_) {
      events.back() += text;
    } else {
      add("text " + text, {});
    }
    inText_ = true;
  }

  bool declarations_;
  bool inDTD_ = false;
  bool inText_ = false;
};

std::vector<std::string> eventsOf(const char* file, bool declarations) {
  const std::unique_ptr<xercesc::SAX2XMLReader> reader(
      xercesc::XMLReaderFactory::createXMLReader());
  Log log(declarations);
  reader->setContentHandler(&log);
  reader->setErrorHandler(&log);
  reader->setEntityResolver(&log);
  reader->setLexicalHandler(&log);
  reader->setDTDHandler(&log);
  reader->setDeclarationHandler(&log);
  reader->setFeature(xercesc::XMLUni::fgSAX2CoreValidation, false);
  reader->setFeature(xercesc::XMLUni::fgXercesSchema, false);
  const xercesc::LocalFileInputSource source(
      xercesc::TranscodeFromStr(reinterpret_cast<const XMLByte*>(file), std::strlen(file), "UTF-8")
          .str());
  try {
    reader->parse(source);
  } catch (const xercesc::XMLException& failure) {
    throw std::runtime_error(utf8(failure.getMessage()));
  }
  return log.events;
}

int compare(const char* document, const char* copy, bool declarations) {
  std::vector<std::string> expected;
  try {
    expected = eventsOf(document, declarations);
  } catch (const std::runtime_error& failure) {
    std::cout << document << ": " << failure.what() << '\n';
    return 2;
  }
  try {
    std::vector<std::string> got = eventsOf(copy, declarations);
    if (got == expected) return 0;
    expected.emplace_back("the end");
    got.emplace_back("the end");
    const auto [wanted, other] =
        std::mismatch(expected.begin(), expected.end(), got.begin(), got.end());
    std::cout << document << ": " << *wanted << '\n' << copy << ": " << *other << '\n';
  } catch (const std::runtime_error& failure) {
    std::cout << copy << ": " << failure.what() << '\n';
  }
  return 1;
}

}  // namespace

// Xerces-C++ does not free all that it reads a prolog with, which a build with sanitizers would
// tell.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options() {
  return "detect_leaks=0";
}

int main(int argc, char* argv[]) {
  const bool declarations = argc > 1 && std::strcmp(argv[1], "--declarations") == 0;
  if (argc != (declarations ? 4 : 3)) {
    std::cerr << "usage: xerces_compare [--declarations] DOCUMENT COPY\n";
    return 3;
  }
  xercesc::XMLPlatformUtils::Initialize();
  const int status = compare(argv[argc - 2], argv[argc - 1], declarations);
  xercesc::XMLPlatformUtils::Terminate();
  return status;
}
