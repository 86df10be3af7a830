#pragma once

#include <Allocations.h>
#include <EventLog.h>
#include <HexOctets.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iostream>
#include <random>
#include <sstream>
#include <string>

/// What the tests of the readers of Fast Infoset share.
namespace reader_test {

/// Takes what is printed to standard output while it lives.
class CapturedOutput {
 public:
  CapturedOutput() : original_(std::cout.rdbuf(captured_.rdbuf())) {}
  ~CapturedOutput() { std::cout.rdbuf(original_); }
  CapturedOutput(const CapturedOutput&) = delete;
  CapturedOutput& operator=(const CapturedOutput&) = delete;

  std::string text() const { return captured_.str(); }

 private:
  std::ostringstream captured_;
  std::streambuf* original_;
};

/// How a call ended: "done", or the type that was thrown with its content: "SAXException: ...".
std::string outcomeOf(const std::function<void()>& call);

/// A document from its octet of optional components on; the header is put before it.
std::string fromComponents(const std::string& written);

/// A document without optional components, from its first child on.
std::string document(const std::string& written);

/// A document whose only element, `a` without attributes, has this content.
std::string documentOfContent(const std::string& written);

/// Whether a type of reader can be given a document in blocks.
template <typename Reader>
concept acceptsBlocks = requires(const Reader& reader) {
  reader.unusedOctets();
};

/// A reader and the log of what it tells. Primitive types and encoding algorithms are not handled
/// unless a test attaches the log for them.
template <typename Reader>
class ReaderWithLog {
 public:
  ReaderWithLog() {
    log.mergeCharacters = false;
    log.showAlgorithms = true;
    log.showLocator = false;
    log.attachTo(reader);
    log.attachDeclarationsTo(reader);
  }

  /// Parses one document and tells everything that came of it: the events, a line each, then
  /// `printed(...)` where something was printed, then `N octets left` behind the document or the
  /// exception.
  ///
  /// A reader that accepts blocks reads the document in blocks of many sizes, too: the test fails
  /// where they do not give the same.
  std::string read(const std::string& octets) {
    if constexpr (acceptsBlocks<Reader>) {
      if (alsoInBlocks) checkBlocks(octets, readStream(octets));
    }
    return readStream(octets);
  }

  EventLog log;
  Reader reader;
  /// Off where a document may be read only once, because its handlers count or change something.
  bool alsoInBlocks = true;

  // Of the last document: how its parse ended, and what was printed.
  std::string outcome;
  std::string printed;

 private:
  std::string readStream(const std::string& octets) {
    std::istringstream stream(octets);
    return told([&] {
      reader.parse(stream);
      return octets.size() - static_cast<std::size_t>(stream.tellg());
    });
  }

  /// @param nextSize called for the size of each block
  template <typename NextSize>
  std::string readBlocks(const std::string& octets, NextSize nextSize) {
    return told([&] {
      for (std::size_t begin = 0;;) {
        const std::size_t size = std::min<std::size_t>(nextSize(), octets.size() - begin);
        // In memory of its own, which is gone after the call.
        const std::string block = octets.substr(begin, size);
        begin += size;
        const bool isFinal = begin == octets.size();
        reader.parse(block.data(), block.size(), isFinal);
        const EventLog::Lines& lines = log.lines();
        const bool hasEnded = !lines.empty() && lines.back() == "endDocument()";
        if (isFinal || hasEnded) return reader.unusedOctets() + octets.size() - begin;
      }
    });
  }

  /// @param parse reads a document, and returns how many octets are left
  template <typename Parse>
  std::string told(Parse parse) {
    log.clear();
    std::size_t left = 0;
    {
      const CapturedOutput output;
      outcome = outcomeOf([&] { left = parse(); });
      printed = output.text();
    }
    std::string told = log.text();
    if (!printed.empty()) told += "printed(" + EventLog::show(printed) + ")\n";
    if (outcome != "done") return told + outcome + "\n";
    if (left > 0) told += std::to_string(left) + " octets left\n";
    return told;
  }

  void checkBlocks(const std::string& octets, const std::string& expected) {
    constexpr std::size_t kSmallDocument = 5000;
    const std::size_t most = octets.size() > kSmallDocument ? 2 : 64;
    // Under valgrind all sizes would take an hour.
    const std::size_t step = allocations::areCounted() ? 1 : 31;
    for (std::size_t size = 1; size <= most && size <= octets.size() + 1; size += step) {
      const std::size_t blockSize = octets.size() > kSmallDocument ? 1499 * size : size;
      ASSERT_EQ(expected, readBlocks(octets, [blockSize] { return blockSize; }))
          << "in blocks of " << blockSize << " octets";
    }
    for (unsigned seed = 0; seed < (step == 1 ? 4 : 1); ++seed) {
      std::mt19937 random(seed);
      std::uniform_int_distribution<std::size_t> sizes(0, octets.size() + 1);
      ASSERT_EQ(expected, readBlocks(octets, [&] { return sizes(random); }))
          << "in random blocks, seed " << seed;
    }
  }
};

/// What a ReaderWithLog tells of a document that is read to its end.
std::string whole(const EventLog::Lines& events);

/// What it tells of one that is read to its end and in which only the element `a` stands, with this
/// content.
std::string wholeContent(const EventLog::Lines& events);

/// A number as octets, most significant first.
std::string bigEndian(unsigned long number, int octetCount);

/// Elements, each with a name of its own, and then again by their indices.
/// @param first the first small letter that is a name
std::string manyNames(char first);

/// Chunks with the bit that adds, and then again by their indices.
std::string manyChunks();

}  // namespace reader_test
