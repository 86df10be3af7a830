#pragma once

#include <Tavrin/Tavrin.h>

#include <functional>
#include <string>

#include "FIWriterProbe.h"
#include "WhatIsThrown.h"

/// What the tests of the writer "X891" share.
namespace x891_test {

using writer_test::attributes;
using writer_test::hex;
using writer_test::namedAttributes;
using writer_test::Plain;
using writer_test::shortText;
using writer_test::textOf;

/// What is thrown for an encoding algorithm that nobody named.
inline std::string unknownAlgorithm(const std::string& what) {
  return "EncodingAlgorithmException: Unknown encoding algorithm - " + what +
         ": it must be registered with the property "
         "\"http://jvnet.org/fastinfoset/parser/properties/registered-encoding-algorithms\" "
         "before the root element";
}

/// A document without optional components, from the notation of what follows them (HexOctets.h).
inline std::string document(const std::string& body) { return hex("E0 00 00 01 00" + body); }

/// A writer with a stream that shows octets at once, and short forms of the commonest events.
class Writer : public Tavrin::XMLWriter_X891 {
 public:
  Writer() { setOutputStream(&output); }

  /// Everything written so far, as hexadecimal pairs.
  std::string written() const { return EventLog::showOctets(output.text()); }
  /// What was written since this was asked last, as hexadecimal pairs.
  std::string news() { return EventLog::showOctets(output.news()); }

  /// Starts an element without a namespace.
  void start(const std::string& name, std::initializer_list<Plain> list = {}) {
    startElement("", name, name, attributes(list));
  }
  void end(const std::string& name) { endElement("", name, name); }
  void leaf(const std::string& name, std::initializer_list<Plain> list = {}) {
    start(name, list);
    end(name);
  }
  /// Sets a property to a value.
  template <typename Value>
  void set(const char* property, Value value) {
    setProperty(property, &value);
  }

  Output output;
};

/// What a writer writes.
inline std::string written(const std::function<void(Writer&)>& events) {
  Writer writer;
  events(writer);
  return writer.written();
}

/// What it writes of a document with some content of its root `a`.
inline std::string content(const std::function<void(Writer&)>& events) {
  return written([&](Writer& writer) {
    writer.startDocument();
    writer.start("a");
    events(writer);
    writer.end("a");
    writer.endDocument();
  });
}

/// What refuses an event in the root `a`. Nothing may have been written for it, and the document
/// must go on as if it had not been there.
inline std::string refusal(const std::function<void(Writer&)>& event) {
  Writer writer;
  writer.startDocument();
  writer.start("a");
  writer.news();
  const std::string outcome = thrown([&] { event(writer); });
  if (!writer.news().empty()) return "something was written";
  writer.start("b", {{"c", "d"}});
  writer.end("b");
  writer.end("a");
  writer.endDocument();
  if (writer.written() != document("3C 00 'a' 7C 00 'b' 78 00 'c' 40 'd' FF FF")) {
    return "something stayed: " + writer.written();
  }
  return outcome;
}

}  // namespace x891_test
