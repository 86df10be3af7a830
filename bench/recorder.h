#pragma once

#include <Tavrin/Tavrin.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

/// Keeps the events of a document. Playing them allocates nothing, so that what is measured is the
/// writer that they are played to.
class Recorder : public Tavrin::ContentHandler {
 public:
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

  void play(Tavrin::ContentHandler& handler) const;

  /// Start tags, end tags, attributes and runs of text.
  std::size_t count() const;

 private:
  enum class Kind : std::uint8_t {
    StartDocument,
    EndDocument,
    StartPrefixMapping,
    EndPrefixMapping,
    StartElement,
    EndElement,
    Characters,
    IgnorableWhitespace,
    ProcessingInstruction
  };

  struct Event {
    Kind kind;
    std::uint32_t length;  // Of the attributes of a start tag.
    std::size_t index;     // Of the first name or text.
    std::size_t first;     // Of the attributes of a start tag.
  };

  struct Name {
    std::string uri, localName, qName;
  };

  struct Attribute {
    std::size_t name;
    std::string type, value;
  };

  class PlayedAttributes;

  std::size_t intern(const std::string& uri, const std::string& localName,
                     const std::string& qName);
  void addTexts(Kind kind, const std::string& first, const std::string& second);

  std::vector<Event> events_;
  std::vector<Name> names_;
  std::unordered_map<std::string, std::size_t> indices_;  // Of names.
  std::vector<std::string> texts_;  // A mapping and an instruction have two in a row.
  std::vector<Attribute> attributes_;
};
