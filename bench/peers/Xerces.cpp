// Xerces-C++, its SAX2 reader without validation. Its strings are UTF-16; making them UTF-8 is part
// of the work.

#include <stdexcept>
#include <xercesc/sax/InputSource.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/sax2/Attributes.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/BinInputStream.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "peers.h"

namespace peers {

namespace {

namespace xerces = xercesc;

void append(std::string& out, char32_t character) {
  const auto add = [&out](char32_t octet) { out += static_cast<char>(octet); };
  const auto addTail = [&](unsigned shift) { add(0x80 | (character >> shift & 0x3F)); };
  if (character < 0x800) {
    add(0xC0 | character >> 6);
  } else if (character < 0x10000) {
    add(0xE0 | character >> 12);
    addTail(6);
  } else {
    add(0xF0 | character >> 18);
    addTail(12);
    addTail(6);
  }
  addTail(0);
}

// The text has been checked: surrogates come in pairs.
std::string transcode(const XMLCh* text, std::size_t length) {
  std::string out;
  out.reserve(length);
  for (std::size_t i = 0; i < length; ++i) {
    const char32_t unit = text[i];
    if (unit < 0x80) {
      out += static_cast<char>(unit);
    } else if (unit < 0xD800 || unit > 0xDBFF) {
      append(out, unit);
    } else {
      append(out, 0x10000 + ((unit - 0xD800) << 10) + (text[++i] - 0xDC00U));
    }
  }
  return out;
}

std::string transcode(const XMLCh* text) {
  return transcode(text, std::char_traits<XMLCh>::length(text));
}

class Source : public xerces::InputSource {
 public:
  explicit Source(std::istream& stream) : stream_(stream) {}

  xerces::BinInputStream* makeStream() const override { return new Stream(stream_); }

 private:
  class Stream : public xerces::BinInputStream {
   public:
    explicit Stream(std::istream& stream) : stream_(stream) {}

    XMLFilePos curPos() const override { return position_; }
    XMLSize_t readBytes(XMLByte* const block, const XMLSize_t size) override {
      stream_.read(reinterpret_cast<char*>(block), static_cast<std::streamsize>(size));
      const auto count = static_cast<XMLSize_t>(stream_.gcount());
      position_ += count;
      return count;
    }
    const XMLCh* getContentType() const override { return nullptr; }

   private:
    std::istream& stream_;
    XMLFilePos position_ = 0;
  };

  std::istream& stream_;
};

class Handler : public xerces::DefaultHandler {
 public:
  Totals totals;

  void startElement(const XMLCh* const uri, const XMLCh* const localName, const XMLCh* const qName,
                    const xerces::Attributes& attributes) override {
    std::vector<Attribute> list;
    for (XMLSize_t i = 0; i < attributes.getLength(); ++i) {
      list.push_back({{transcode(attributes.getURI(i)), transcode(attributes.getLocalName(i)),
                       transcode(attributes.getQName(i))},
                      transcode(attributes.getValue(i))});
    }
    countStart(totals, {transcode(uri), transcode(localName), transcode(qName)}, list);
  }

  void endElement(const XMLCh* const uri, const XMLCh* const localName,
                  const XMLCh* const qName) override {
    countEnd(totals, {transcode(uri), transcode(localName), transcode(qName)});
  }

  void characters(const XMLCh* const text, const XMLSize_t length) override {
    countText(totals, transcode(text, length));
  }

  void ignorableWhitespace(const XMLCh* const text, const XMLSize_t length) override {
    characters(text, length);
  }

  void fatalError(const xerces::SAXParseException& exception) override {
    throw std::runtime_error(transcode(exception.getMessage()));
  }
};

struct Platform {
  Platform() { xerces::XMLPlatformUtils::Initialize(); }
  ~Platform() { xerces::XMLPlatformUtils::Terminate(); }
  Platform(const Platform&) = delete;
  Platform& operator=(const Platform&) = delete;
};

}  // namespace

Totals readXerces(std::istream& stream) {
  static const Platform platform;
  const std::unique_ptr<xerces::SAX2XMLReader> reader(xerces::XMLReaderFactory::createXMLReader());
  reader->setFeature(xerces::XMLUni::fgSAX2CoreNameSpaces, true);
  reader->setFeature(xerces::XMLUni::fgSAX2CoreNameSpacePrefixes, false);
  reader->setFeature(xerces::XMLUni::fgSAX2CoreValidation, false);
  reader->setFeature(xerces::XMLUni::fgXercesSchema, false);
  reader->setFeature(xerces::XMLUni::fgXercesLoadExternalDTD, false);
  Handler handler;
  reader->setContentHandler(&handler);
  reader->setErrorHandler(&handler);
  try {
    reader->parse(Source(stream));
  } catch (const xerces::XMLException& exception) {
    throw std::runtime_error(transcode(exception.getMessage()));
  }
  return handler.totals;
}

}  // namespace peers
