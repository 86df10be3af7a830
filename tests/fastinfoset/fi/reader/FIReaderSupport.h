#pragma once

#include <Tavrin/XMLReader_FI.h>

#include <string>

#include "ReaderSupport.h"

namespace reader_test {

using LoggedReader = ReaderWithLog<Tavrin::XMLReader_FI>;

/// What a new reader tells of a document.
inline std::string readNew(const std::string& octets) { return LoggedReader().read(octets); }

/// What is told of a document that fails behind these events.
inline std::string failed(const EventLog::Lines& events, const std::string& message) {
  return "startDocument()\n" + join(events) + "SAXException: " + message + "\n";
}

/// What is told of one that fails in the content of the element `a`.
inline std::string failedContent(const EventLog::Lines& events, const std::string& message) {
  return "startDocument()\nstartElement(, a, a, [])\n" + join(events) + "SAXException: " + message +
         "\n";
}

}  // namespace reader_test
