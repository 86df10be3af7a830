#pragma once

#include <Tavrin/Tavrin.h>

#include <array>
#include <istream>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

#include "Trap.h"

/// What came of a run, in memory that is there from the beginning: events as text, or octets.
class Trace {
 public:
  void clear() { size_ = 0, inText_ = false; }
  std::string_view text() const { return {octets_.data(), size_}; }

  void add(std::string_view octets);
  /// Begins an event. Characters that follow characters are the same event.
  void begin(std::string_view event);
  void argument(std::string_view text);

 private:
  std::array<char, 1U << 17U> octets_{};
  std::size_t size_ = 0;
  bool inText_ = false;
};

/// All handlers, as a trace. Any event may throw (trap::Place::handler), before it leaves a trace.
class TracingHandler : public Tavrin::ContentHandler,
                       public Tavrin::DTDHandler,
                       public Tavrin::DeclHandler,
                       public Tavrin::LexicalHandler,
                       public Tavrin::PrimitiveTypeContentHandler,
                       public Tavrin::EncodingAlgorithmContentHandler {
 public:
  /// @param mayGoOn  whether events may follow one that threw; they leave no trace
  explicit TracingHandler(Trace& trace, bool mayGoOn = false) : trace_(trace), mayGoOn_(mayGoOn) {}

  void setDocumentLocator(const Tavrin::Locator*) override { add("locator"); }
  void startDocument() override { add("startDocument"); }
  void endDocument() override { add("endDocument"); }
  void startPrefixMapping(const std::string& prefix, const std::string& uri) override {
    add("startPrefixMapping", prefix, uri);
  }
  void endPrefixMapping(const std::string& prefix) override { add("endPrefixMapping", prefix); }
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Tavrin::Attributes& attributes) override;
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override {
    add("endElement", uri, localName, qName);
  }
  void characters(const std::string& text) override { add("characters", text); }
  void ignorableWhitespace(const std::string& text) override { add("whitespace", text); }
  void processingInstruction(const std::string& target, const std::string& data) override {
    add("instruction", target, data);
  }
  void skippedEntity(const std::string& name) override { add("skippedEntity", name); }
  void notationDecl(const std::string& name, const std::string& publicId,
                    const std::string& systemId) override {
    add("notationDecl", name, publicId, systemId);
  }
  void unparsedEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId, const std::string& notation) override {
    add("unparsedEntityDecl", name, publicId, systemId, notation);
  }
  void elementDecl(const std::string& name, const std::string& model) override {
    add("elementDecl", name, model);
  }
  void attributeDecl(const std::string& eName, const std::string& aName, const std::string& type,
                     const std::string& mode, const std::string& value) override {
    add("attributeDecl", eName, aName, type, mode, value);
  }
  void internalEntityDecl(const std::string& name, const std::string& value) override {
    add("internalEntityDecl", name);
    // Without memory for the text, expat tells of an entity before it tells of the failure.
    if (!trap::hasSprung()) argument(value);
  }
  void externalEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId) override {
    add("externalEntityDecl", name, publicId, systemId);
  }
  void startDTD(const std::string& name, const std::string& publicId,
                const std::string& systemId) override {
    add("startDTD", name, publicId, systemId);
  }
  void endDTD() override { add("endDTD"); }
  void startEntity(const std::string& name) override { add("startEntity", name); }
  void endEntity(const std::string& name) override { add("endEntity", name); }
  void startCDATA() override { add("startCDATA"); }
  void endCDATA() override { add("endCDATA"); }
  void comment(const std::string& text) override { add("comment", text); }

  void bytes(const std::string& data) override { add("bytes", data); }
  void shorts(const std::vector<short>& data) override { add("shorts", octetsOf(data)); }
  void ints(const std::vector<long>& data) override { add("ints", octetsOf(data)); }
  void longs(const std::vector<long>& data) override { add("longs", octetsOf(data)); }
  void booleans(const std::vector<bool>& data) override;
  void floats(const std::vector<float>& data) override { add("floats", octetsOf(data)); }
  void doubles(const std::vector<double>& data) override { add("doubles", octetsOf(data)); }
  void octets(const std::string& uri, int, const std::string& data) override {
    add("octets", uri, data);
  }
  /// The text of a value is the library's work, and may lack memory.
  void object(const std::string& uri, int, const Tavrin::EncodedData& data) override {
    add("object", uri, data.toString());
  }

 private:
  void begin(std::string_view event);
  void argument(std::string_view text);

  template <typename... Arguments>
  void add(std::string_view event, const Arguments&... arguments) {
    begin(event);
    (argument(arguments), ...);
  }

  template <typename Item>
  static std::string_view octetsOf(const std::vector<Item>& data) {
    return {reinterpret_cast<const char*>(data.data()), data.size() * sizeof(Item)};
  }

  Trace& trace_;
  bool mayGoOn_;
  bool isSilent_ = false;
};

/// Gives the octets of a document, any of which may be missing (trap::Place::input).
class TrappedInput : public std::streambuf {
 public:
  explicit TrappedInput(std::string_view octets) : octets_(octets) {}

 protected:
  int_type underflow() override;
  int_type uflow() override;
  std::streamsize xsgetn(char* target, std::streamsize count) override;

 private:
  std::string_view octets_;
  std::size_t position_ = 0;
  bool isAsked_ = false;  // The next octet was asked for, and came.
};

/// Takes octets into a trace, any of which may find no room (trap::Place::output).
class TrappedOutput : public std::streambuf {
 public:
  explicit TrappedOutput(Trace& trace) : trace_(trace) {}

 protected:
  int_type overflow(int_type octet) override;
  std::streamsize xsputn(const char* octets, std::streamsize count) override;

 private:
  Trace& trace_;
};
