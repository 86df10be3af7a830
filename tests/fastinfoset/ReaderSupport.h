#pragma once

#include <EventLog.h>
#include <HexOctets.h>

#include <functional>
#include <iostream>
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
  std::string read(const std::string& octets) {
    log.clear();
    std::istringstream stream(octets);
    {
      const CapturedOutput output;
      outcome = outcomeOf([&] { reader.parse(stream); });
      printed = output.text();
    }
    std::string told = log.text();
    if (!printed.empty()) told += "printed(" + EventLog::show(printed) + ")\n";
    if (outcome != "done") return told + outcome + "\n";
    const std::size_t left = octets.size() - static_cast<std::size_t>(stream.tellg());
    if (left > 0) told += std::to_string(left) + " octets left\n";
    return told;
  }

  EventLog log;
  Reader reader;

  // Of the last document: how its parse ended, and what was printed.
  std::string outcome;
  std::string printed;
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
