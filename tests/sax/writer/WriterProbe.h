#pragma once

#include <Tavrin/Attributes.h>
#include <Tavrin/XMLWriter.h>

#include <string>

/// A writer with what it keeps laid open.
template <typename Writer>
class Probe : public Writer {
 public:
  using Writer::elements_;
  using Writer::hasContent_;
  using Writer::out_;
  using Writer::state_;

  /// The open elements by their local names, the innermost last.
  std::string openElements() const {
    std::string names;
    for (const auto& element : elements_) names += element.localName;
    return names;
  }
};

/// Where a document can have come to: the states of a writer, with two depths of elements.
enum class Place {
  Initial,
  Prolog,
  InDTD,
  AfterDTD,
  InRoot,
  InNested,
  InCDATA,
  AfterRoot,
  Ended,
};

inline constexpr struct {
  Place place;
  const char* name;
  int state;
} kPlaces[] = {
    {Place::Initial, "Initial", 0}, {Place::Prolog, "Prolog", 1},
    {Place::InDTD, "InDTD", 2},     {Place::AfterDTD, "AfterDTD", 3},
    {Place::InRoot, "InRoot", 4},   {Place::InNested, "InNested", 4},
    {Place::InCDATA, "InCDATA", 5}, {Place::AfterRoot, "AfterRoot", 6},
    {Place::Ended, "Ended", 7},
};

/// Brings a new writer to a place by the shortest way. The innermost container, if there is one,
/// is still without content. Every element is called `r`.
inline void bringTo(Place place, Tavrin::XMLWriter& writer) {
  if (place == Place::Initial) return;
  writer.startDocument();
  if (place == Place::Prolog) return;
  if (place == Place::InDTD || place == Place::AfterDTD) {
    writer.startDTD("d", "", "d.dtd");
    if (place == Place::AfterDTD) writer.endDTD();
    return;
  }
  writer.startElement("", "r", "r", Tavrin::AttributesImpl());
  if (place == Place::InNested) writer.startElement("", "r", "r", Tavrin::AttributesImpl());
  if (place == Place::InCDATA) writer.startCDATA();
  if (place != Place::AfterRoot && place != Place::Ended) return;
  writer.endElement("", "r", "r");
  if (place == Place::Ended) writer.endDocument();
}

/// The events whose order writers check.
enum class Event {
  startDocument,
  endDocument,
  startDTD,
  endDTD,
  notationDecl,
  unparsedEntityDecl,
  internalEntityDecl,
  externalEntityDecl,
  elementDecl,
  attributeDecl,
  startElement,
  endElement,
  characters,
  ignorableWhitespace,
  comment,
  processingInstruction,
  startCDATA,
  endCDATA,
};

inline constexpr struct {
  Event event;
  const char* name;
} kEvents[] = {
    {Event::startDocument, "startDocument"},
    {Event::endDocument, "endDocument"},
    {Event::startDTD, "startDTD"},
    {Event::endDTD, "endDTD"},
    {Event::notationDecl, "notationDecl"},
    {Event::unparsedEntityDecl, "unparsedEntityDecl"},
    {Event::internalEntityDecl, "internalEntityDecl"},
    {Event::externalEntityDecl, "externalEntityDecl"},
    {Event::elementDecl, "elementDecl"},
    {Event::attributeDecl, "attributeDecl"},
    {Event::startElement, "startElement"},
    {Event::endElement, "endElement"},
    {Event::characters, "characters"},
    {Event::ignorableWhitespace, "ignorableWhitespace"},
    {Event::comment, "comment"},
    {Event::processingInstruction, "processingInstruction"},
    {Event::startCDATA, "startCDATA"},
    {Event::endCDATA, "endCDATA"},
};

/// Sends one event, through the four given receivers. The element started is called `e`, the one
/// ended `r`.
template <typename Content, typename DTD, typename Decl, typename Lexical>
void send(Event event, Content& content, DTD& dtd, Decl& decl, Lexical& lexical) {
  switch (event) {
    case Event::startDocument:
      return content.startDocument();
    case Event::endDocument:
      return content.endDocument();
    case Event::startDTD:
      return lexical.startDTD("d", "", "d.dtd");
    case Event::endDTD:
      return lexical.endDTD();
    case Event::notationDecl:
      return dtd.notationDecl("n", "p", "s");
    case Event::unparsedEntityDecl:
      return dtd.unparsedEntityDecl("u", "p", "s", "n");
    case Event::internalEntityDecl:
      return decl.internalEntityDecl("i", "v");
    case Event::externalEntityDecl:
      return decl.externalEntityDecl("x", "p", "s");
    case Event::elementDecl:
      return decl.elementDecl("e", "ANY");
    case Event::attributeDecl:
      return decl.attributeDecl("e", "a", "CDATA", "#IMPLIED", "v");
    case Event::startElement: {
      Tavrin::AttributesImpl attributes;
      attributes.addAttribute("", "a", "a", "CDATA", "v");
      return content.startElement("urn:u", "e", "p:e", attributes);
    }
    case Event::endElement:
      return content.endElement("", "r", "r");
    case Event::characters:
      return content.characters("a<b");
    case Event::ignorableWhitespace:
      return content.ignorableWhitespace(" \t");
    case Event::comment:
      return lexical.comment("c");
    case Event::processingInstruction:
      return content.processingInstruction("t", "d");
    case Event::startCDATA:
      return lexical.startCDATA();
    case Event::endCDATA:
      return lexical.endCDATA();
  }
}

/// Sends one event by a call of the writer's own operation.
inline void send(Event event, Tavrin::XMLWriter& writer) {
  send(event, writer, writer, writer, writer);
}

/// Sends one event by a call of the interface that declares it.
inline void sendThroughInterface(Event event, Tavrin::XMLWriter& writer) {
  send<Tavrin::ContentHandler, Tavrin::DTDHandler, Tavrin::DeclHandler, Tavrin::LexicalHandler>(
      event, writer, writer, writer, writer);
}
