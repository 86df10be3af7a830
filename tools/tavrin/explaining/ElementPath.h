#pragma once

#include <Tavrin/Handlers.h>
#include <Tavrin/XMLReader.h>

#include <cstdint>
#include <string>
#include <vector>

namespace tool {

/// Knows which elements are open while a document is read: it stands between a reader and its
/// content handler while it lives. Memory is bounded: of very deep documents the inner elements are
/// only counted, and of long names the beginning is kept.
class ElementPath : public Tavrin::ContentHandler {
 public:
  /// @param reader outlives the object
  explicit ElementPath(Tavrin::XMLReader& reader);
  ~ElementPath() override;
  ElementPath(const ElementPath&) = delete;
  ElementPath& operator=(const ElementPath&) = delete;

  /// "/a/b"; empty where no element is open.
  std::string text() const;

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

 private:
  Tavrin::XMLReader& reader_;
  Tavrin::ContentHandler* before_;  // What the reader reported to; null for nobody.
  Tavrin::ContentHandler& next_;    // The same, or one that does nothing.
  std::string path_;
  std::vector<std::size_t> ends_;  // Of the path around each open element.
  std::uint64_t deeper_ = 0;       // Open elements that are not in the path.
};

}  // namespace tool
