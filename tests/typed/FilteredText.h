#pragma once

#include <Tavrin/Tavrin.h>

#include <functional>
#include <sstream>
#include <string>

#include "EventLog.h"
#include "WhatIsThrown.h"

/// What the tests of TypedContentFilter share.
namespace filtered {

/// Rules in their text form.
inline Tavrin::TypingRules rulesOf(const std::string& text) {
  std::istringstream stream(text);
  return Tavrin::TypingRules::read(stream);
}

/// The octets of a document after its header (X891), or why there are none.
inline std::string written(const std::string& rules, const std::string& document,
                           const Tavrin::TypedContentFilter::Options& options = {}) {
  Tavrin::TypedContentFilter filter(rulesOf(rules), options);
  Tavrin::XMLReader_XML10 reader;
  filter.setParent(&reader);
  Tavrin::XMLWriter_X891 writer;
  std::ostringstream out;
  writer.setOutputStream(&out);
  connect(filter, writer);
  std::istringstream stream(document);
  const std::string outcome = thrown([&] { filter.parse(stream); });
  return outcome == "nothing" ? out.str() : outcome;
}

/// The events behind the filter, between startDocument and endDocument, and what was thrown.
inline std::string told(const std::string& rules, const std::string& document,
                        const std::function<void(Tavrin::XMLReader&, EventLog&)>& connectTo,
                        const Tavrin::TypedContentFilter::Options& options = {}) {
  Tavrin::TypedContentFilter filter(rulesOf(rules), options);
  Tavrin::XMLReader_XML10 reader;
  filter.setParent(&reader);
  EventLog log;
  log.showLocator = false;
  log.showAlgorithms = true;
  connectTo(filter, log);
  std::istringstream stream(document);
  const std::string outcome = thrown([&] { filter.parse(stream); });
  const std::string begin = "startDocument()\n";
  const std::string end = "endDocument()\n";
  std::string text = log.text();
  if (text.starts_with(begin)) text.erase(0, begin.size());
  if (text.ends_with(end)) text.erase(text.size() - end.size());
  return outcome == "nothing" ? text : text + outcome;
}

/// With a handler of encoding algorithms, which tells of all types.
inline std::string told(const std::string& rules, const std::string& document,
                        const Tavrin::TypedContentFilter::Options& options = {}) {
  return told(
      rules, document,
      [](Tavrin::XMLReader& reader, EventLog& log) {
        log.attachTo(reader);
        log.attachAlgorithmsTo(reader);
      },
      options);
}

}  // namespace filtered
