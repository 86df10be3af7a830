#pragma once

#include <Tavrin/Tavrin.h>

#include <functional>
#include <string>

#include "FIWriterProbe.h"
#include "WhatIsThrown.h"

/// What the tests of the writer "X891" share.
namespace x891_test {

using writer_test::hex;
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

using Writer = WriterWithOutput<Tavrin::XMLWriter_X891>;

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
