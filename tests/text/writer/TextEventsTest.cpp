#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "EventLog.h"
#include "TextWriter.h"
#include "WhatIsThrown.h"

// What every event writes in every place, behind a container without content.

namespace {

using Lines = std::vector<std::string>;

/// One line for each event and place, with what the event writes there between bars. A pair at
/// which the event is refused and nothing is written is left out.
Lines textTable(Settings settings) {
  Lines lines;
  for (const auto& event : kEvents) {
    for (const auto& place : kPlaces) {
      TextWriter writer(settings);
      bringTo(place.place, writer);
      writer.output.news();
      const bool accepted = thrown([&] { send(event.event, writer); }) == "nothing";
      const std::string news = writer.output.news();
      if (!accepted && news.empty()) continue;
      lines.push_back(std::string(event.name) + " " + place.name + (accepted ? "" : " refused") +
                      " |" + EventLog::show(news) + "|");
    }
  }
  return lines;
}

TEST(TextEvents, WithoutIndentation) {
  EXPECT_EQ(join(textTable({.declaration = true})),
            join({
                // clang-format off
      "startDocument Initial |<?xml version=\"1.0\" encoding=\"UTF-8\"?>|",
      "endDocument Prolog ||",
      "endDocument AfterDTD ||",
      "endDocument AfterRoot ||",
      "startDTD Prolog |<!DOCTYPE d SYSTEM \"d.dtd\"|",
      "endDTD InDTD |>|",
      "notationDecl InDTD | [  <!NOTATION n PUBLIC \"p\" \"s\"n>|",
      "notationDecl InRoot refused |>|",
      "notationDecl InNested refused |>|",
      "notationDecl InCDATA refused |<![CDATA[|",
      "unparsedEntityDecl InDTD | [  <!ENTITY u PUBLIC \"p\" \"s\"u NDATA n>|",
      "unparsedEntityDecl InRoot refused |>|",
      "unparsedEntityDecl InNested refused |>|",
      "unparsedEntityDecl InCDATA refused |<![CDATA[|",
      "internalEntityDecl InDTD | [  <!ENTITY i \"v\">|",
      "internalEntityDecl InRoot refused |>|",
      "internalEntityDecl InNested refused |>|",
      "internalEntityDecl InCDATA refused |<![CDATA[|",
      "externalEntityDecl InDTD | [  <!ENTITY x PUBLIC \"p\" \"s\">|",
      "externalEntityDecl InRoot refused |>|",
      "externalEntityDecl InNested refused |>|",
      "externalEntityDecl InCDATA refused |<![CDATA[|",
      "elementDecl InDTD | [  <!ELEMENT e ANY>|",
      "elementDecl InRoot refused |>|",
      "elementDecl InNested refused |>|",
      "elementDecl InCDATA refused |<![CDATA[|",
      "attributeDecl InDTD | [  <!ATTLIST e a CDATA #IMPLIED \"v\">|",
      "attributeDecl InRoot refused |>|",
      "attributeDecl InNested refused |>|",
      "attributeDecl InCDATA refused |<![CDATA[|",
      "startElement Prolog |<p:e a='v'|",
      "startElement InDTD refused | [|",
      "startElement AfterDTD |<p:e a='v'|",
      "startElement InRoot |><p:e a='v'|",
      "startElement InNested |><p:e a='v'|",
      "startElement InCDATA refused |<![CDATA[|",
      "endElement InRoot |/>|",
      "endElement InNested |/>|",
      "characters InDTD refused | [|",
      "characters InRoot |>a&lt;b|",
      "characters InNested |>a&lt;b|",
      "characters InCDATA |<![CDATA[a<b|",
      "ignorableWhitespace Prolog | \\t|",
      "ignorableWhitespace InDTD | [ \\t|",
      "ignorableWhitespace AfterDTD | \\t|",
      "ignorableWhitespace InRoot |> \\t|",
      "ignorableWhitespace InNested |> \\t|",
      "ignorableWhitespace InCDATA |<![CDATA[ \\t|",
      "ignorableWhitespace AfterRoot | \\t|",
      "comment Prolog |<!--c-->|",
      "comment InDTD | [<!--c-->|",
      "comment AfterDTD |<!--c-->|",
      "comment InRoot |><!--c-->|",
      "comment InNested |><!--c-->|",
      "comment InCDATA refused |<![CDATA[|",
      "comment AfterRoot |<!--c-->|",
      "processingInstruction Prolog |<?t d?>|",
      "processingInstruction InDTD | [<?t d?>|",
      "processingInstruction AfterDTD |<?t d?>|",
      "processingInstruction InRoot |><?t d?>|",
      "processingInstruction InNested |><?t d?>|",
      "processingInstruction InCDATA refused |<![CDATA[|",
      "processingInstruction AfterRoot |<?t d?>|",
      "startCDATA InDTD refused | [|",
      "startCDATA InRoot |>|",
      "startCDATA InNested |>|",
      "startCDATA InCDATA refused |<![CDATA[|",
      "endCDATA InCDATA ||",
                // clang-format on
            }));
}

// A root with one element inside stands for any depth: two spaces for each open element.
TEST(TextEvents, WithIndentation) {
  EXPECT_EQ(join(textTable({.indent = true, .declaration = true})),
            join({
                // clang-format off
      "startDocument Initial |<?xml version=\"1.0\" encoding=\"UTF-8\"?>|",
      "endDocument Prolog ||",
      "endDocument AfterDTD ||",
      "endDocument AfterRoot ||",
      "startDTD Prolog |\\n<!DOCTYPE d SYSTEM \"d.dtd\"|",
      "startDTD InDTD refused | [\\n  |",
      "startDTD AfterDTD refused |\\n|",
      "startDTD InRoot refused |>\\n  |",
      "startDTD InNested refused |>\\n    |",
      "startDTD AfterRoot refused |\\n|",
      "endDTD InDTD |>|",
      "notationDecl Prolog refused |\\n|",
      "notationDecl InDTD | [\\n    <!NOTATION n PUBLIC \"p\" \"s\"n>|",
      "notationDecl AfterDTD refused |\\n|",
      "notationDecl InRoot refused |>\\n  |",
      "notationDecl InNested refused |>\\n    |",
      "notationDecl InCDATA refused |<![CDATA[|",
      "notationDecl AfterRoot refused |\\n|",
      "unparsedEntityDecl Prolog refused |\\n|",
      "unparsedEntityDecl InDTD | [\\n    <!ENTITY u PUBLIC \"p\" \"s\"u NDATA n>|",
      "unparsedEntityDecl AfterDTD refused |\\n|",
      "unparsedEntityDecl InRoot refused |>\\n  |",
      "unparsedEntityDecl InNested refused |>\\n    |",
      "unparsedEntityDecl InCDATA refused |<![CDATA[|",
      "unparsedEntityDecl AfterRoot refused |\\n|",
      "internalEntityDecl Prolog refused |\\n|",
      "internalEntityDecl InDTD | [\\n    <!ENTITY i \"v\">|",
      "internalEntityDecl AfterDTD refused |\\n|",
      "internalEntityDecl InRoot refused |>\\n  |",
      "internalEntityDecl InNested refused |>\\n    |",
      "internalEntityDecl InCDATA refused |<![CDATA[|",
      "internalEntityDecl AfterRoot refused |\\n|",
      "externalEntityDecl Prolog refused |\\n|",
      "externalEntityDecl InDTD | [\\n    <!ENTITY x PUBLIC \"p\" \"s\">|",
      "externalEntityDecl AfterDTD refused |\\n|",
      "externalEntityDecl InRoot refused |>\\n  |",
      "externalEntityDecl InNested refused |>\\n    |",
      "externalEntityDecl InCDATA refused |<![CDATA[|",
      "externalEntityDecl AfterRoot refused |\\n|",
      "elementDecl Prolog refused |\\n|",
      "elementDecl InDTD | [\\n    <!ELEMENT e ANY>|",
      "elementDecl AfterDTD refused |\\n|",
      "elementDecl InRoot refused |>\\n  |",
      "elementDecl InNested refused |>\\n    |",
      "elementDecl InCDATA refused |<![CDATA[|",
      "elementDecl AfterRoot refused |\\n|",
      "attributeDecl Prolog refused |\\n|",
      "attributeDecl InDTD | [\\n    <!ATTLIST e a CDATA #IMPLIED \"v\">|",
      "attributeDecl AfterDTD refused |\\n|",
      "attributeDecl InRoot refused |>\\n  |",
      "attributeDecl InNested refused |>\\n    |",
      "attributeDecl InCDATA refused |<![CDATA[|",
      "attributeDecl AfterRoot refused |\\n|",
      "startElement Prolog |\\n<p:e a='v'|",
      "startElement InDTD refused | [\\n  |",
      "startElement AfterDTD |\\n<p:e a='v'|",
      "startElement InRoot |>\\n  <p:e a='v'|",
      "startElement InNested |>\\n    <p:e a='v'|",
      "startElement InCDATA refused |<![CDATA[|",
      "startElement AfterRoot refused |\\n|",
      "endElement InRoot |/>|",
      "endElement InNested |/>|",
      "characters InDTD refused | [|",
      "characters InRoot |>a&lt;b|",
      "characters InNested |>a&lt;b|",
      "characters InCDATA |<![CDATA[a<b|",
      "ignorableWhitespace Prolog | \\t|",
      "ignorableWhitespace InDTD | [ \\t|",
      "ignorableWhitespace AfterDTD | \\t|",
      "ignorableWhitespace InRoot |> \\t|",
      "ignorableWhitespace InNested |> \\t|",
      "ignorableWhitespace InCDATA |<![CDATA[ \\t|",
      "ignorableWhitespace AfterRoot | \\t|",
      "comment Prolog |\\n<!--c-->|",
      "comment InDTD | [\\n  <!--c-->|",
      "comment AfterDTD |\\n<!--c-->|",
      "comment InRoot |>\\n  <!--c-->|",
      "comment InNested |>\\n    <!--c-->|",
      "comment InCDATA refused |<![CDATA[|",
      "comment AfterRoot |\\n<!--c-->|",
      "processingInstruction Prolog |\\n<?t d?>|",
      "processingInstruction InDTD | [\\n  <?t d?>|",
      "processingInstruction AfterDTD |\\n<?t d?>|",
      "processingInstruction InRoot |>\\n  <?t d?>|",
      "processingInstruction InNested |>\\n    <?t d?>|",
      "processingInstruction InCDATA refused |<![CDATA[|",
      "processingInstruction AfterRoot |\\n<?t d?>|",
      "startCDATA InDTD refused | [|",
      "startCDATA InRoot |>|",
      "startCDATA InNested |>|",
      "startCDATA InCDATA refused |<![CDATA[|",
      "endCDATA InCDATA ||",
                // clang-format on
            }));
}

// Without a declaration the prolog begins with its first line, so nothing there breaks the line.
TEST(TextEvents, WithIndentationButNoDeclarationBreakNoLineInTheProlog) {
  const struct {
    Event event;
    const char* text;
  } cases[] = {
      {Event::startDTD, "<!DOCTYPE d SYSTEM \"d.dtd\""},
      {Event::startElement, "<p:e a='v'"},
      {Event::comment, "<!--c-->"},
      {Event::processingInstruction, "<?t d?>"},
      {Event::elementDecl, ""},
  };
  for (const auto& c : cases) {
    TextWriter writer({.indent = true, .declaration = false});
    bringTo(Place::Prolog, writer);
    thrown([&] { send(c.event, writer); });
    EXPECT_EQ(writer.text(), c.text);
  }
}

}  // namespace
