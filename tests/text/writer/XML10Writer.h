#pragma once

#include <Tavrin/Attributes.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_XML10.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <utility>

#include "TextWriter.h"
#include "WhatIsThrown.h"
#include "WriterProbe.h"

using XML10Writer = WriterWithSettings<Tavrin::XMLWriter_XML10>;

/// What a document holds between `<r>` and `</r>`.
inline std::string inRoot(const std::function<void(XML10Writer&)>& events) {
  XML10Writer writer;
  writer.startDocument();
  writer.start("r");
  events(writer);
  writer.end("r");
  writer.endDocument();
  const std::string& text = writer.text();
  EXPECT_TRUE(text.starts_with("<r>") && text.ends_with("</r>")) << text;
  return text.substr(3, text.size() - 7);
}

/// What an event throws inside a root element. Nothing may have been written by it, not even the
/// end of the start tag, and the document goes on as if it had not come.
inline std::string refusedInRoot(const std::function<void(XML10Writer&)>& event) {
  XML10Writer writer;
  writer.startDocument();
  writer.start("r");
  const std::string refusal = thrown([&] { event(writer); });
  writer.end("r");
  writer.endDocument();
  EXPECT_EQ(writer.text(), "<r/>");
  return refusal;
}

/// The same in the internal subset.
inline std::string refusedInDTD(const std::function<void(XML10Writer&)>& event) {
  XML10Writer writer;
  writer.startDocument();
  writer.startDTD("r", "", "");
  const std::string refusal = thrown([&] { event(writer); });
  writer.endDTD();
  writer.leaf("r");
  writer.endDocument();
  EXPECT_EQ(writer.text(), "<!DOCTYPE r><r/>");
  return refusal;
}

/// What events write into the internal subset of `<!DOCTYPE r SYSTEM "s">`, with its blank, its
/// brackets and without the end.
inline std::string inDTD(const std::function<void(XML10Writer&)>& events) {
  XML10Writer writer;
  writer.startDocument();
  writer.startDTD("r", "", "s");
  events(writer);
  writer.endDTD();
  writer.leaf("r");
  writer.endDocument();
  const std::string begin = "<!DOCTYPE r SYSTEM \"s\"";
  const std::string end = "><r/>";
  const std::string& text = writer.text();
  EXPECT_TRUE(text.starts_with(begin) && text.ends_with(end)) << text;
  return text.substr(begin.size(), text.size() - begin.size() - end.size());
}
