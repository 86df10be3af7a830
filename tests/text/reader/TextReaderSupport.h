#pragma once

#include <EventLog.h>
#include <expat.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

/// expat's own words for an error.
std::string messageOf(XML_Error code);

/// A failure of the reader: expat's code, and the place.
struct Failure {
  XML_Error code = XML_ERROR_NONE;
  int line = 0;
  int column = 0;

  std::string arguments() const;
  /// What the error handler logs.
  std::string logged() const { return "fatalError" + arguments(); }
  /// What outcomeOf tells.
  std::string thrown() const { return "SAXParseException" + arguments(); }
};

/// Exceptions of an application, derived from the library's.
struct ApplicationException : Tavrin::SAXException {
  using SAXException::SAXException;
};
struct ApplicationParseException : Tavrin::SAXParseException {
  using SAXParseException::SAXParseException;
};

/// How a call ended: "done", or the type that was thrown (its own, not a base) with its content.
std::string outcomeOf(const std::function<void()>& call);

/// Parses the text as a stream and tells how that ended.
std::string parseText(Tavrin::XMLReader& reader, const std::string& text);

/// Parses blocks, the last one final. Each block is gone when its call returns.
std::string parseBlocks(Tavrin::XMLReader& reader, const std::vector<std::string>& blocks);

/// Cuts a text into blocks of equal size; the last may be shorter.
std::vector<std::string> cutEvenly(const std::string& text, std::size_t size);

/// Cuts a text into blocks of 0 to `longest` octets, the same ones for the same seed.
std::vector<std::string> cutRandomly(const std::string& text, unsigned seed, std::size_t longest);

/// The log of a whole document: what lies between startDocument and endDocument.
std::string wholeLog(const EventLog::Lines& events);
