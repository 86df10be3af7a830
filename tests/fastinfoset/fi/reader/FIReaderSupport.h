#pragma once

#include <EventLog.h>
#include <HexOctets.h>

#include <functional>
#include <iostream>
#include <sstream>
#include <string>

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
class LoggedReader {
 public:
  LoggedReader();

  /// Parses one document and tells everything that came of it: the events, a line each, then
  /// `printed(...)` where something was printed, then `N octets left` behind the document or the
  /// exception.
  std::string read(const std::string& octets);

  EventLog log;
  Tavrin::XMLReader_FI reader;

  // Of the last document: how its parse ended, and what was printed.
  std::string outcome;
  std::string printed;
};

/// What a new reader tells of a document.
std::string readNew(const std::string& octets);

/// What LoggedReader tells of a document that is read to its end.
std::string whole(const EventLog::Lines& events);

/// What it tells of one that is read to its end and in which only the element `a` stands, with this
/// content.
std::string wholeContent(const EventLog::Lines& events);

/// What it tells of one that fails behind these events.
std::string failed(const EventLog::Lines& events, const std::string& message);

/// What it tells of one that fails in the content of the element `a`.
std::string failedContent(const EventLog::Lines& events, const std::string& message);

/// A number as octets, most significant first.
std::string bigEndian(unsigned long number, int octetCount);

}  // namespace reader_test
