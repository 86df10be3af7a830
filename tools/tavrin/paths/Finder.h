#pragma once

#include <Tavrin/Handlers.h>
#include <Tavrin/TypedData.h>
#include <Tavrin/XMLReader.h>

#include <cstdint>
#include <exception>
#include <limits>
#include <memory>
#include <string>

#include "files/Input.h"
#include "paths/NamespaceScope.h"
#include "paths/PathMatcher.h"
#include "paths/Results.h"

namespace tool {

/// Finds what paths lead to in the documents of a file, and hands it to its results.
///
/// As in XPath 1.0, section 5, text is one node from one tag, comment or instruction to the next,
/// whatever CDATA sections, entities or typed values it comes from, and the document type has none.
///
/// Readers may keep the exceptions of handlers to themselves, so the first failure is kept here.
class Finder : private Tavrin::ContentHandler,
               private Tavrin::LexicalHandler,
               private Tavrin::EntityResolver,
               private Tavrin::EncodingAlgorithmContentHandler {
 public:
  static constexpr std::uint64_t kAll = std::numeric_limits<std::uint64_t>::max();

  /// @param results  null where they are only counted
  /// @param most     so many of them are looked for, one or more
  /// @param resolver gives the external entities; null leaves them out
  Finder(const Paths& paths, Results* results, std::uint64_t most, const Input& input,
         Tavrin::EntityResolver* resolver)
      : paths_(paths),
        matcher_(paths),
        results_(results),
        needsText_((results && paths.leadTo(NodeKind::Element)) || paths.leadTo(NodeKind::Text)),
        most_(most),
        input_(input),
        resolver_(resolver) {}

  /// Lets the reader of the next document report to this object.
  void attachTo(Tavrin::XMLReader& reader);

  std::uint64_t found() const { return found_; }
  /// Whether so many have been found that the reader was stopped.
  bool hasEnough() const { return hasEnough_; }
  /// Throws the first failure, if there is one.
  void check() const {
    if (failure_) std::rethrow_exception(failure_);
  }

 private:
  void setDocumentLocator(const Tavrin::Locator* locator) override;
  void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
  void endPrefixMapping(const std::string& prefix) override;
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Tavrin::Attributes& attributes) override;
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override;
  void characters(const std::string& text) override;
  void ignorableWhitespace(const std::string& text) override { characters(text); }
  void processingInstruction(const std::string& target, const std::string& data) override;
  void skippedEntity(const std::string& name) override;
  void startDTD(const std::string& name, const std::string& publicId,
                const std::string& systemId) override;
  void endDTD() override { inDTD_ = false; }
  void startCDATA() override;
  void endCDATA() override;
  void comment(const std::string& text) override;
  std::unique_ptr<std::istream> resolveEntity(const std::string& publicId,
                                              const std::string& systemId) override;
  void octets(const std::string& uri, int index, const std::string& data) override;
  void object(const std::string& uri, int index, const Tavrin::EncodedData& data) override;

  template <typename Work>
  void guard(Work work);
  [[noreturn]] void fail(const std::string& message);
  bool isPrinting() const { return results_ && results_->isInElement(); }
  bool take(bool isResult);
  void takeValue(bool isResult, const std::string& value);
  void takeAttributes(const Tavrin::Attributes& attributes);
  bool beginText();
  void endText();
  void missEntity(const std::string& description);
  void stopIfComplete();

  const Paths& paths_;
  PathMatcher matcher_;
  Results* results_;
  bool needsText_;
  std::uint64_t most_;
  const Input& input_;
  Tavrin::EntityResolver* resolver_;
  Tavrin::XMLReader* reader_ = nullptr;
  const Tavrin::Locator* locator_ = nullptr;
  NamespaceScope scope_;
  std::uint64_t found_ = 0;
  bool readerFollowsStandard_ = false;
  bool inDTD_ = false;
  bool inText_ = false;        // Between two other nodes,
  bool isTextResult_ = false;  // which is a result.
  bool missesEntity_ = false;  // Of this document, which has been told.
  bool hasEnough_ = false;
  std::exception_ptr failure_;
};

}  // namespace tool
