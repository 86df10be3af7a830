#pragma once

#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/Handlers.h>
#include <Tavrin/TypedData.h>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tool {

/// Prints every event that it receives, on one line each: as the call it is, or as a JSON object
/// whose members are the call's arguments. Octets are printed as base64. The locator is not
/// printed.
class EventPrinter : public Tavrin::ContentHandler,
                     public Tavrin::DTDHandler,
                     public Tavrin::DeclHandler,
                     public Tavrin::LexicalHandler,
                     public Tavrin::EntityResolver,
                     public Tavrin::PrimitiveTypeContentHandler,
                     public Tavrin::EncodingAlgorithmContentHandler {
 public:
  enum class Format { Text, JSON };

  /// Takes a line, with its end. What it throws leaves the operation that printed the line.
  using Sink = std::function<void(const std::string& line)>;

  /// @param resolver gives the external entities; null leaves them out
  EventPrinter(Sink sink, Format format, Tavrin::EntityResolver* resolver = nullptr)
      : sink_(std::move(sink)), format_(format), resolver_(resolver) {}

  /// Prints a line that stands between two documents.
  /// @param number the number of the second, counted from 1
  /// @param octet  the place of its first octet, counted from 1
  void printBorder(std::uint64_t number, std::uint64_t octet);

  void startDocument() override;
  void endDocument() override;
  void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
  void endPrefixMapping(const std::string& prefix) override;
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Tavrin::Attributes& attributes) override;
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override;
  void characters(const std::string& text) override;
  void ignorableWhitespace(const std::string& text) override;
  void processingInstruction(const std::string& target, const std::string& data) override;
  void skippedEntity(const std::string& name) override;

  void notationDecl(const std::string& name, const std::string& publicId,
                    const std::string& systemId) override;
  void unparsedEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId, const std::string& notationName) override;

  void elementDecl(const std::string& name, const std::string& model) override;
  void attributeDecl(const std::string& eName, const std::string& aName, const std::string& type,
                     const std::string& mode, const std::string& value) override;
  void internalEntityDecl(const std::string& name, const std::string& value) override;
  void externalEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId) override;

  void startDTD(const std::string& name, const std::string& publicId,
                const std::string& systemId) override;
  void endDTD() override;
  void startEntity(const std::string& name) override;
  void endEntity(const std::string& name) override;
  void startCDATA() override;
  void endCDATA() override;
  void comment(const std::string& text) override;

  /// Prints the call and returns what the resolver gives.
  std::unique_ptr<std::istream> resolveEntity(const std::string& publicId,
                                              const std::string& systemId) override;

  void bytes(const std::string& data) override;
  void shorts(const std::vector<short>& data) override;
  void ints(const std::vector<long>& data) override;
  void longs(const std::vector<long>& data) override;
  void booleans(const std::vector<bool>& data) override;
  void floats(const std::vector<float>& data) override;
  void doubles(const std::vector<double>& data) override;

  void octets(const std::string& uri, int index, const std::string& data) override;
  void object(const std::string& uri, int index, const Tavrin::EncodedData& data) override;

 private:
  struct Argument {
    const char* name;
    const std::string& value;
  };

  // A line is made piece by piece: its beginning, its arguments or members, its end.
  void begin(const char* event);
  void end();
  void print(const char* event, std::initializer_list<Argument> arguments);
  template <typename Vector>
  void printValues(const char* event, const Vector& values);
  void printAlgorithm(const char* event, const std::string& uri, int index,
                      const Argument& argument);

  void appendName(const char* name);
  void append(const Argument& argument);
  void appendNumber(const char* name, int number);
  void appendAttributes(const Tavrin::Attributes& attributes);

  bool isJSON() const { return format_ == Format::JSON; }
  const char* separator() const { return isJSON() ? "," : ", "; }

  Sink sink_;
  Format format_;
  Tavrin::EntityResolver* resolver_;
  std::string line_;   // Kept for its storage.
  bool first_ = true;  // The next argument or member needs no separator in front.
};

}  // namespace tool
