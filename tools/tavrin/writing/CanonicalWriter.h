#pragma once

#include <Tavrin/XMLWriter.h>
#include <Tavrin/XMLWriter_XML10.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "writing/PrefixScopes.h"

namespace tool {

/// Writes a whole document as Canonical XML 1.0 and 1.1, which differ for parts of documents only,
/// or as Exclusive XML Canonicalization 1.0.
///
/// What it is told has to be complete: a reference to an entity that was not read has no canonical
/// form. The document type is left out, with what stands in it. Nothing is kept but namespaces in
/// scope, and a part of the text that is still to be written.
///
/// A carriage return in a comment or an instruction, which only Fast Infoset can hold,
/// is written as "&#xD;": the recommendations are silent about it, and other implementations do so.
class CanonicalWriter : public Tavrin::XMLWriter {
 public:
  struct Form {
    bool hasComments = false;
    bool isExclusive = false;
    /// Of the exclusive form: prefixes whose declarations stay as in the inclusive one. Empty is
    /// the default namespace.
    std::vector<std::string> inclusivePrefixes;
  };

  explicit CanonicalWriter(Form form) : form_(std::move(form)) {}

  /// Whether a part of the document type was not read, which may declare defaults of attributes.
  bool lacksDeclarations() const { return lacksDeclarations_; }

  void startDocument() override;
  void endDocument() override;
  /// @throws Tavrin::SAXException also for a relative namespace name, as both recommendations ask
  void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Tavrin::Attributes& attributes) override;
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override;
  void characters(const std::string& text) override;
  void ignorableWhitespace(const std::string& text) override;
  void processingInstruction(const std::string& target, const std::string& data) override;
  /// @throws Tavrin::SAXException in content
  void skippedEntity(const std::string& name) override;
  void startDTD(const std::string& name, const std::string& publicId,
                const std::string& systemId) override;
  void endDTD() override;
  void startCDATA() override {}
  void endCDATA() override {}
  void comment(const std::string& text) override;

 private:
  using Declaration = std::pair<std::string, std::string>;  // Prefix and namespace name.

  void declare(const std::string& prefix, const std::string& uri);
  void use(const std::string& qName);
  void showDeclaration(const std::string& prefix, const std::string& uri);
  void findDeclarations(const std::string& qName, const Tavrin::Attributes& attributes);
  void writeDeclarations();
  void writeAttributes(const Tavrin::Attributes& attributes);
  template <typename Write>
  void writeItem(Write write);
  void send(std::size_t enough);

  const Form form_;
  Tavrin::XMLWriter_XML10 check_;  // Without a stream: it refuses what is not well-formed.
  PrefixScopes inScope_;
  PrefixScopes shown_;                  // Of the exclusive form: by the start tags so far.
  std::vector<Declaration> declared_;   // By the start tag that comes.
  std::vector<Declaration> shownHere_;  // By the start tag that is being written.
  std::vector<int> order_;              // Of its attributes.
  std::size_t depth_ = 0;
  bool hadRoot_ = false;
  bool inDTD_ = false;
  bool lacksDeclarations_ = false;
  std::string composed_;
};

}  // namespace tool
