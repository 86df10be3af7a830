// libxml2's xmlTextWriter, played to like any other handler.

#include <libxml/xmlwriter.h>

#include <stdexcept>
#include <utility>

#include "peers.h"

namespace peers {

namespace {

const xmlChar* chars(const std::string& text) {
  return reinterpret_cast<const xmlChar*>(text.c_str());
}

int writeBlock(void* stream, const char* block, int size) {
  static_cast<std::ostream*>(stream)->write(block, size);
  return size;
}

void check(int result) {
  if (result < 0) throw std::runtime_error("xmlTextWriter failed");
}

class TextWriter : public Tavrin::ContentHandler {
 public:
  explicit TextWriter(std::ostream& out)
      : writer_(xmlNewTextWriter(xmlOutputBufferCreateIO(writeBlock, nullptr, &out, nullptr))) {
    if (!writer_) throw std::runtime_error("xmlTextWriter has no memory");
  }

  void startDocument() override {
    check(xmlTextWriterStartDocument(writer_.get(), nullptr, "UTF-8", nullptr));
  }

  void endDocument() override { check(xmlTextWriterEndDocument(writer_.get())); }

  void startPrefixMapping(const std::string& prefix, const std::string& uri) override {
    mappings_.emplace_back(prefix.empty() ? "xmlns" : "xmlns:" + prefix, uri);
  }

  void startElement(const std::string&, const std::string&, const std::string& qName,
                    const Tavrin::Attributes& attributes) override {
    check(xmlTextWriterStartElement(writer_.get(), chars(qName)));
    for (const auto& [name, uri] : mappings_) writeAttribute(name, uri);
    mappings_.clear();
    const int length = attributes.getLength();
    for (int i = 0; i < length; ++i) writeAttribute(attributes.getQName(i), attributes.getValue(i));
  }

  void endElement(const std::string&, const std::string&, const std::string&) override {
    check(xmlTextWriterEndElement(writer_.get()));
  }

  void characters(const std::string& text) override {
    check(xmlTextWriterWriteString(writer_.get(), chars(text)));
  }

  void ignorableWhitespace(const std::string& text) override {
    check(xmlTextWriterWriteString(writer_.get(), chars(text)));
  }

  void processingInstruction(const std::string& target, const std::string& data) override {
    check(xmlTextWriterWritePI(writer_.get(), chars(target), chars(data)));
  }

 private:
  struct Deleter {
    void operator()(xmlTextWriterPtr writer) const { xmlFreeTextWriter(writer); }
  };

  void writeAttribute(const std::string& name, const std::string& value) {
    check(xmlTextWriterWriteAttribute(writer_.get(), chars(name), chars(value)));
  }

  std::unique_ptr<xmlTextWriter, Deleter> writer_;
  std::vector<std::pair<std::string, std::string>> mappings_;  // Of the next start tag.
};

}  // namespace

std::unique_ptr<Tavrin::ContentHandler> createTextWriter(std::ostream& out) {
  return std::make_unique<TextWriter>(out);
}

}  // namespace peers
