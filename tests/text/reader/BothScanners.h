#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "XML10ReaderSupport.h"

// The reader with its own scanner, and with expat alone: nobody sees which of the two reads.

namespace bothways {

using namespace Tavrin;

/// What a reader tells, with the place of each event.
class PlacedLog : public EventLog {
 public:
  PlacedLog() {
    mergeCharacters = false;
    beforeEvent = [this](std::size_t) {
      places_.push_back(std::to_string(locator_->getLineNumber()) + ":" +
                        std::to_string(locator_->getColumnNumber()) + "@" +
                        std::to_string(locator_->getOctetOffset()));
    };
  }

  void setDocumentLocator(const Locator* locator) override {
    locator_ = dynamic_cast<const OctetLocator*>(locator);
    EventLog::setDocumentLocator(locator);
  }

  std::string placed() const {
    std::string text;
    for (std::size_t i = 0; i < lines().size(); ++i) text += places_[i] + " " + lines()[i] + "\n";
    return text;
  }

 private:
  const OctetLocator* locator_ = nullptr;
  Lines places_;
};

struct Ways {
  bool namespaces = true;
  bool prefixes = false;
  bool xmlnsURIs = false;
  bool coalesces = false;
};

/// All that a reader tells of a document: the events by calls, and how each call ended.
/// @param blocks how the document comes; as a stream where there are none
inline std::string toldBy(const char* scanner, const std::string& text,
                          const std::vector<std::string>& blocks, const Ways& ways) {
  PlacedLog log;
  log.entities = {{"subset", "<!ATTLIST a b CDATA 'c'>\n<!--in it-->"}, {"empty", ""}, {"p", " "}};
  XMLReader_XML10 reader;
  log.attachTo(reader);
  log.attachDeclarationsTo(reader);
  reader.setReparseDeferral(false);
  std::string name = scanner;
  reader.setProperty(properties::textScanner, &name);
  reader.setFeature(features::namespaces, ways.namespaces);
  reader.setFeature(features::namespacePrefixes, ways.prefixes);
  reader.setFeature(features::xmlnsURIs, ways.xmlnsURIs);
  reader.setFeature(features::coalesceCharacters, ways.coalesces);
  std::string outcome;
  if (blocks.empty()) {
    outcome = parseText(reader, text);
  } else {
    for (std::size_t i = 0; i < blocks.size(); ++i) {
      // Its memory is gone afterwards.
      const std::vector<char> block(blocks[i].begin(), blocks[i].end());
      const std::string end =
          outcomeOf([&] { reader.parse(block.data(), block.size(), i + 1 == blocks.size()); });
      outcome += std::to_string(log.eventCount()) + " " + end + "\n";
      if (end != "done") break;
    }
  }
  const std::string standalone = reader.getFeature(features::isStandalone) ? "standalone " : "";
  return log.placed() + standalone + outcome;
}

inline constexpr const char* kOwn = "automatic";
inline constexpr const char* kExpat = "expat";

/// Expects the same of both.
/// @param endsWithBlock whether the last block is the document's, and not an empty one
inline void expectSame(const std::string& text, std::vector<std::string> blocks, bool endsWithBlock,
                       const Ways& ways = {}) {
  if (!blocks.empty() && !endsWithBlock) blocks.emplace_back();
  ASSERT_EQ(toldBy(kExpat, text, blocks, ways), toldBy(kOwn, text, blocks, ways))
      << blocks.size() << " blocks of " << EventLog::show(text.substr(0, 2000));
}

inline void expectSameInBlocks(const std::string& text, std::size_t step = 1,
                               const Ways& ways = {}) {
  expectSame(text, {}, true, ways);
  const std::size_t most = std::min<std::size_t>(64, text.size());
  for (std::size_t size = 1; size <= most; size += step) {
    expectSame(text, cutEvenly(text, size), size % 2 == 0, ways);
    if (testing::Test::HasFatalFailure()) return;
  }
  if (!text.empty()) expectSame(text, {text}, true, ways);
}

inline const std::vector<Ways> kWays = {{},
                                        {.namespaces = false},
                                        {.prefixes = true},
                                        {.prefixes = true, .xmlnsURIs = true},
                                        {.namespaces = false, .prefixes = true},
                                        {.coalesces = true}};

/// Changes, cuts out or doubles a few octets.
inline std::string mutated(std::string text, std::mt19937& numbers) {
  constexpr char kMarks[] = "<>&;%'\"=/!?-[]:# \n\r\t\x80\xC3\xE4\xFF\0axl1";
  static const std::string marks(kMarks, sizeof kMarks - 1);
  for (unsigned i = 0; i <= numbers() % 3 && !text.empty(); ++i) {
    const std::size_t at = numbers() % text.size();
    const std::size_t length = 1 + numbers() % 8;
    switch (numbers() % 4) {
      case 0:
        text[at] = marks[numbers() % marks.size()];
        break;
      case 1:
        text.erase(at, length);
        break;
      case 2:
        text.insert(at, text.substr(numbers() % text.size(), length));
        break;
      default:
        text.resize(at);
    }
  }
  return text;
}

}  // namespace bothways
