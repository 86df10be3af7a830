#include "comparing/Description.h"

#include <string_view>
#include <vector>

#include "files/Failure.h"
#include "printing/EventPrinter.h"
#include "printing/Text.h"

namespace tool {

namespace {

using Strings = std::vector<std::string>;

Strings argumentsOf(const Record& record) {
  const auto strings = stringsOf(record);
  return {strings.begin(), strings.end()};
}

Tavrin::AttributesImpl attributesOf(const Record& record, const Strings& arguments) {
  Tavrin::AttributesImpl attributes;
  std::uint32_t number = 0;
  for (std::size_t i = kNameStrings; i < arguments.size(); i += kAttributeStrings) {
    attributes.addAttribute(arguments[i], arguments[i + 1], arguments[i + 2],
                            record.remark(number++), arguments[i + 3]);
  }
  return attributes;
}

void print(const Record& record, EventPrinter& printer) {
  const Strings arguments = argumentsOf(record);
  switch (record.kind) {
    case RecordKind::StartPrefixMapping:
      return printer.startPrefixMapping(arguments[0], arguments[1]);
    case RecordKind::StartElement:
      return printer.startElement(arguments[0], arguments[1], arguments[2],
                                  attributesOf(record, arguments));
    case RecordKind::EndElement:
      return printer.endElement(arguments[0], arguments[1], arguments[2]);
    case RecordKind::Octets:
      return printer.octets(arguments[0], std::stoi(record.remark(0)), arguments[2]);
    case RecordKind::ProcessingInstruction:
      return printer.processingInstruction(arguments[0], arguments[1]);
    case RecordKind::SkippedEntity:
      return printer.skippedEntity(arguments[0]);
    case RecordKind::ResolveEntity:
      printer.resolveEntity(arguments[0], arguments[1]);
      return;
    case RecordKind::StartDTD:
      return printer.startDTD(arguments[0], arguments[1], arguments[2]);
    case RecordKind::EndDTD:
      return printer.endDTD();
    case RecordKind::StartCDATA:
      return printer.startCDATA();
    case RecordKind::EndCDATA:
      return printer.endCDATA();
    case RecordKind::Comment:
    case RecordKind::Text:
    case RecordKind::Numbers:
    case RecordKind::Border:
      return;  // These have lines of another form.
  }
}

std::string printed(const Record& record) {
  std::string line;
  EventPrinter printer([&line](const std::string& text) { line += text; },
                       EventPrinter::Format::Text);
  print(record, printer);
  return line;
}

void appendAttribute(std::string& markup, std::string_view name, std::string_view value) {
  markup.append(" ").append(name).append("=\"").append(value).append("\"");
}

std::string startTag(const std::vector<std::string_view>& strings) {
  std::string markup = "<" + std::string(strings[2]);
  for (std::size_t i = kNameStrings; i < strings.size(); i += kAttributeStrings) {
    appendAttribute(markup, strings[i + 2], strings[i + 3]);
  }
  return markup + ">";
}

std::string declaration(std::string_view prefix, std::string_view uri) {
  std::string markup = prefix.empty() ? "xmlns" : "xmlns:";
  markup.append(prefix).append("=\"").append(uri).append("\"");
  return markup;
}

}  // namespace

std::string markupOf(const Record& record) {
  const auto strings = stringsOf(record);
  const auto text = [&](std::size_t index) { return std::string(strings[index]); };
  switch (record.kind) {
    case RecordKind::StartPrefixMapping:
      return declaration(strings[0], strings[1]);
    case RecordKind::StartElement:
      return startTag(strings);
    case RecordKind::EndElement:
      return "</" + text(2) + ">";
    case RecordKind::ProcessingInstruction:
      return "<?" + text(0) + (strings[1].empty() ? "" : " ") + text(1) + "?>";
    case RecordKind::Comment:
      return "<!--" + text(0) + "-->";
    case RecordKind::SkippedEntity:
      return "&" + text(0) + ";";
    case RecordKind::StartCDATA:
      return "<![CDATA[";
    case RecordKind::EndCDATA:
      return "]]>";
    default:
      return {};
  }
}

std::string describe(ComparedDocuments& documents, const Location& location) {
  const Place place = documents.placeOf(location);
  const std::string& name = documents.name();
  const std::string at =
      place.hasLine() ? placeIn(name, place.line(), place.column()) : placeIn(name, place.octet());
  const std::string number = " (document " + std::to_string(location.document) + ")";
  return escaped(at + location.entity + (location.document > 1 ? number : "")) + ": ";
}

std::string describeEnd(const ComparedDocuments& documents) {
  const std::string number = std::to_string(documents.number());
  return escaped(documents.name()) + ": end of " +
         (documents.number() > 1 ? "document " + number + ", the last" : "the document") + "\n";
}

std::string describeText(ComparedDocuments& documents, const Location& location,
                         const Excerpt& excerpt, Form form) {
  const bool isEvent = form == Form::Events;
  return describe(documents, location) + (isEvent ? "characters(" : "") + excerpt.quoted() +
         (isEvent ? ")\n" : "\n");
}

std::string describe(ComparedDocuments& documents, const Record& record, const Record* other,
                     Form form) {
  if (record.kind == RecordKind::Border) {
    return escaped(placeIn(documents.name(), record.place().octet())) + ": document " +
           std::to_string(record.block->document) + " begins\n";
  }
  const std::string place = describe(documents, record.location());
  const std::string markup = form == Form::Markup ? markupOf(record) : std::string();
  if (!markup.empty()) {
    return place + differenceFrom(markup, other ? markupOf(*other) : "").plain() + "\n";
  }
  if (record.kind == RecordKind::Comment) {
    const bool isLike = other && other->kind == RecordKind::Comment;
    const Excerpt excerpt =
        differenceFrom(stringsOf(record)[0], isLike ? stringsOf(*other)[0] : std::string_view());
    return place + "comment(" + excerpt.quoted() + ")\n";
  }
  return place + printed(record);
}

}  // namespace tool
