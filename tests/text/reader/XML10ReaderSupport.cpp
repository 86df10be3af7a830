#include "XML10ReaderSupport.h"

#include <Allocations.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

/// Under valgrind all of them would take an hour.
std::size_t stepOfCases() { return allocations::areCounted() ? 1 : 31; }

using Parse = std::function<std::string(Tavrin::XMLReader&, const std::string&)>;

std::string parseCut(Tavrin::XMLReader& reader, std::vector<std::string> blocks) {
  blocks.emplace_back();
  return parseBlocks(reader, blocks);
}

std::string parsePieces(Tavrin::XMLReader& reader, const std::string& text, std::size_t size) {
  return parseCut(reader, cutEvenly(text, size));
}

/// A document and a reader that is prepared for it, again and again.
class Check {
 public:
  explicit Check(const XML10Document& document) : document_(document), base_(document.baseURI) {
    log_.entities = document.entities;
    log_.attachTo(reader_);
    log_.attachDeclarationsTo(reader_);
    if (!document.resolves) reader_.setEntityResolver(nullptr);
    for (const auto& [feature, value] : document.features) reader_.setFeature(feature, value);
    if (!base_.empty()) reader_.setProperty(Tavrin::properties::baseURI, &base_);

    const std::string& failure = document.failure;
    outcome_ = failure.empty() ? "done" : "SAXParseException(" + failure + ")";
    events_ = "setDocumentLocator()\nstartDocument()\n" + join(document.events) +
              (failure.empty() ? "endDocument()\n" : "fatalError(" + failure + ")\n");
  }

  void expectAll(const Parse& parse) {
    log_.clear();
    EXPECT_EQ(outcome_, parse(reader_, document_.text));
    EXPECT_EQ(events_, log_.text());
  }

  /// The document ends at each octet, one after the other: blocks give what a stream gives.
  void cutEverywhere() {
    for (std::size_t length = 0; length < document_.text.size(); length += stepOfCases()) {
      SCOPED_TRACE("cut after " + std::to_string(length) + " octets");
      const std::string text = document_.text.substr(0, length);
      log_.clear();
      const std::string outcome = parseText(reader_, text);
      const std::string events = log_.text();
      for (const std::size_t size : {std::size_t{1}, length % 64 + 1}) {
        log_.clear();
        EXPECT_EQ(outcome, parsePieces(reader_, text, size)) << "in blocks of " << size;
        EXPECT_EQ(events, log_.text()) << "in blocks of " << size;
      }
    }
  }

  /// A handler throws at each event, one after the other; each time the reader is as good as new.
  void throwEverywhere() {
    for (std::size_t at = 0;; at += stepOfCases()) {
      const Parse parse = [at](Tavrin::XMLReader& reader, const std::string& text) {
        return parsePieces(reader, text, at % 64 + 1);
      };
      SCOPED_TRACE("an exception at event " + std::to_string(at));
      log_.beforeEvent = [at](std::size_t count) {
        if (count == at) throw ApplicationException("enough");
      };
      log_.clear();
      const std::string outcome = parse(reader_, document_.text);
      log_.beforeEvent = nullptr;
      if (log_.eventCount() < at || outcome == outcome_) return;
      EXPECT_EQ("ApplicationException(enough)", outcome);
      EXPECT_EQ(at, log_.eventCount());
      // The last line may be the beginning of a text.
      const std::string told = log_.text();
      const std::size_t known = told.ends_with(")\n") ? told.size() - 2 : told.size();
      EXPECT_EQ(events_.substr(0, known), told.substr(0, known));
      expectAll(parse);
    }
  }

 private:
  const XML10Document& document_;
  std::string base_;
  EventLog log_;
  Tavrin::XMLReader_XML10 reader_;
  std::string events_;
  std::string outcome_;
};

}  // namespace

void checkXML10(const std::vector<XML10Document>& documents) {
  for (const XML10Document& document : documents) {
    SCOPED_TRACE(document.name);
    Check check(document);
    // A reader is as good as new after a document, whether that was read or failed.
    for (int round = 0; round < 2; ++round) {
      SCOPED_TRACE("as a stream");
      check.expectAll(parseText);
    }
    {
      SCOPED_TRACE("as one block");
      check.expectAll([](Tavrin::XMLReader& reader, const std::string& text) {
        return parseBlocks(reader, {text});
      });
    }
    const std::size_t most = std::min<std::size_t>(64, document.text.size());
    for (std::size_t size = 1; size <= most; size += stepOfCases()) {
      SCOPED_TRACE("in blocks of " + std::to_string(size));
      check.expectAll([size](Tavrin::XMLReader& reader, const std::string& text) {
        return parsePieces(reader, text, size);
      });
    }
    for (unsigned seed = 1; seed <= 5; ++seed) {
      SCOPED_TRACE("in random blocks, seed " + std::to_string(seed));
      check.expectAll([seed](Tavrin::XMLReader& reader, const std::string& text) {
        return parseCut(reader, cutRandomly(text, seed, 1 + seed));
      });
    }
    check.cutEverywhere();
    check.throwEverywhere();
  }
}
