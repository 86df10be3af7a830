#pragma once

#include <Tavrin/Tavrin.h>

#include <map>
#include <string>

/// Writes what it hears in the canonical form of the suite: James Clark's, and the notations that
/// Sun's second form adds.
class CanonicalForm : public Tavrin::ContentHandler,
                      public Tavrin::DTDHandler,
                      public Tavrin::LexicalHandler {
 public:
  std::string text() const;

  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Tavrin::Attributes& attributes) override;
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override;
  void characters(const std::string& text) override;
  void processingInstruction(const std::string& target, const std::string& data) override;
  void notationDecl(const std::string& name, const std::string& publicId,
                    const std::string& systemId) override;
  void startDTD(const std::string& name, const std::string& publicId,
                const std::string& systemId) override;

 private:
  std::string documentType_;
  std::map<std::string, std::string> notations_;  // Declarations by name.
  std::string content_;
};
