#pragma once

#include <Tavrin/Tavrin.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "AgreementLog.h"
#include "RandomDocuments.h"

/// Random documents for types that take well-formed documents only.
namespace x891 {

/// Passes a random document on (RandomDocuments.h) and mends what is not well-formed in it:
/// octets that are no text, hyphens, prefixes that are not bound, names that stand twice,
/// references in sections, numbers that are too large, and algorithms that nobody knows.
class Mended : public Tavrin::ContentHandler,
               public Tavrin::DTDHandler,
               public Tavrin::DeclHandler,
               public Tavrin::LexicalHandler,
               public Tavrin::PrimitiveTypeContentHandler,
               public Tavrin::EncodingAlgorithmContentHandler {
 public:
  explicit Mended(const agreement::Receiver& to) : to_(to) {}

  void startDocument() override { to_.content.startDocument(); }
  void endDocument() override { to_.content.endDocument(); }
  void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Tavrin::Attributes& attributes) override;
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override;
  void characters(const std::string& text) override;
  void ignorableWhitespace(const std::string& text) override;
  void processingInstruction(const std::string& target, const std::string& data) override;
  void skippedEntity(const std::string& name) override {
    if (!inSection_) to_.content.skippedEntity(name);
  }

  void notationDecl(const std::string& name, const std::string& publicId,
                    const std::string& systemId) override;
  void elementDecl(const std::string& name, const std::string& model) override;
  void startDTD(const std::string& name, const std::string& publicId,
                const std::string& systemId) override;
  void endDTD() override { to_.lexical.endDTD(); }
  void startEntity(const std::string& name) override { to_.lexical.startEntity(name); }
  void endEntity(const std::string& name) override { to_.lexical.endEntity(name); }
  void startCDATA() override;
  void endCDATA() override;
  void comment(const std::string& text) override;

  void bytes(const std::string& data) override { to_.primitives.bytes(data); }
  void shorts(const std::vector<short>& data) override { to_.primitives.shorts(data); }
  void ints(const std::vector<long>& data) override;
  void longs(const std::vector<long>& data) override { to_.primitives.longs(data); }
  void booleans(const std::vector<bool>& data) override { to_.primitives.booleans(data); }
  void floats(const std::vector<float>& data) override { to_.primitives.floats(data); }
  void doubles(const std::vector<double>& data) override { to_.primitives.doubles(data); }

  void octets(const std::string& uri, int index, const std::string& data) override;
  void object(const std::string& uri, int index, const Tavrin::EncodedData& data) override;

 private:
  using Bindings = std::map<std::string, std::string>;

  struct Open {
    std::string uri;
    std::string localName;
    std::string qName;
    Bindings outer;
    std::vector<std::string> mappings;
  };

  void declare(const std::string& prefix, const std::string& uri);
  std::string prefixFor(const std::string& prefix, const std::string& uri, bool needsPrefix);

  agreement::Receiver to_;
  Bindings bindings_ = {{"", ""}, {"xml", Tavrin::namespaces::xml}};
  Bindings outer_;              // Without what is declared for the next element.
  Bindings declared_;           // For the next element.
  std::set<std::string> used_;  // By it, whoever declares them.
  std::vector<std::string> mappings_;
  std::vector<Open> open_;
  bool inSection_ = false;
};

/// Knows what comes back of a mended document that the writer "X891" wrote: what the format keeps,
/// stated as a third opinion. Typed content comes as objects; texts in a row are merged.
class Expected : public Tavrin::ContentHandler,
                 public Tavrin::DTDHandler,
                 public Tavrin::DeclHandler,
                 public Tavrin::LexicalHandler,
                 public Tavrin::PrimitiveTypeContentHandler,
                 public Tavrin::EncodingAlgorithmContentHandler {
 public:
  Expected() { log_.mergeCharacters = true; }

  /// The events so far, a line each.
  std::string text() const { return front_.text() + log_.text(); }

  void startDocument() override { front_.startDocument(); }
  void endDocument() override { log_.endDocument(); }
  void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
  void endPrefixMapping(const std::string& prefix) override { log_.endPrefixMapping(prefix); }
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
  void startDTD(const std::string& name, const std::string& publicId,
                const std::string& systemId) override;
  void endDTD() override;
  void startCDATA() override { inSection_ = true; }
  void endCDATA() override;
  void comment(const std::string& text) override;

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
  agreement::ExactLog front_;  // The document's beginning and notations.
  agreement::ExactLog log_;
  int depth_ = 0;
  bool inType_ = false;
  bool inSection_ = false;
  std::string section_;
};

}  // namespace x891
