#pragma once

#include <Tavrin/XMLWriter.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "writing/HeldOctets.h"

namespace tool {

/// Lets another writer write a document of XML text with every tag, comment, instruction and
/// declaration on a line of its own. White space between them goes; text stays as it is:
///
/// - An element that has text, references and CDATA sections included, is left as it is, with all
///   that is within it. White space alone is text in an element that has nothing else.
/// - So is an element whose xml:space is "preserve", but for those within it that say "default".
/// - Text that begins later than 64 KiB behind the first child of its element comes too late for
///   what stands in front of it. White space longer than that is text.
///
/// Done twice, it changes nothing any more: an element that was left as it is has its text as early
/// as before, and where white space was put in, it is taken out again, or stays where the whole
/// element stays.
///
/// The writer runs ahead: lines break in what it has written, which is held back that long. So no
/// event is kept, and the memory needed is that of 256 KiB, one event and the open elements.
class IndentingWriter : public Tavrin::XMLWriter {
 public:
  /// @param writer of XML text, which has to write at the event what that is, but for the end of a
  ///               start tag, and gets its stream from here
  /// @param unit   what a line begins with for each level
  IndentingWriter(std::unique_ptr<Tavrin::XMLWriter> writer, const std::string& unit);

  void setFeature(const std::string& name, bool value) override;
  bool getFeature(const std::string& name) override;
  void setProperty(const std::string& name, void* value) override;
  void* getProperty(const std::string& name) override;
  void flush() override;
  void reset() override;

  void setDocumentLocator(const Tavrin::Locator* locator) override;
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

 private:
  static constexpr std::uint64_t kNone = UINT64_MAX;

  enum class Content {
    Open,       ///< It may still turn out to have text.
    Elements,   ///< It is laid out, as far as it comes without text.
    Text,       ///< It has text, or an element around it has.
    Preserved,  ///< By xml:space.
  };

  struct Element {
    Content content = Content::Elements;
    std::uint64_t firstBreak = kNone;  // In front of its first child.
  };

  /// How far the document has come.
  struct State {
    std::vector<Element> open;         // The innermost is the last.
    std::uint64_t outermost = kNone;   // The outermost element whose content is Open.
    std::uint64_t whiteSpace = kNone;  // Where the white space begins with which content ends.
    bool hasOpenTag = false;           // The start tag has no end yet.
    bool hasUnwrittenSection = false;  // A CDATA section has begun, and has no text yet.
    bool inDTD = false;
    bool hasInternalSubset = false;
  };

  template <typename Event>
  void passItem(Event event);
  template <typename Event>
  void passText(bool isWhiteSpace, Event event);
  void placeItem(std::uint64_t begin);
  void placeDeclaration(std::uint64_t begin);
  void breakLine(std::uint64_t begin, std::size_t depth);
  bool isLaidOut() const;
  Content contentOf(const Tavrin::Attributes& attributes) const;
  void foundText();
  void noteClosed();
  void releaseDecided();

  std::unique_ptr<Tavrin::XMLWriter> writer_;
  HeldOctets octets_;
  std::ostream stream_;
  State state_;
};

}  // namespace tool
