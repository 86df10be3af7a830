#include <new>

#include "SingleByteEncoding.h"
#include "XML10Driver.h"

// References in attribute values that expat leaves out without a word: it cannot tell of them
// between the events of a start tag.

namespace Tavrin {

namespace {

/// The octets from the current event on; none where expat was built without keeping them.
std::string_view octetsFromHere(XML_Parser parser) {
  int offset = 0;
  int size = 0;
  const char* const buffer = XML_GetInputContext(parser, &offset, &size);
  if (buffer == nullptr || offset < 0 || offset > size) return {};
  return {buffer + offset, static_cast<std::size_t>(size - offset)};
}

/// Whether octets begin with a reference, in any encoding: the event is in an internal entity.
bool isReference(std::string_view octets) {
  const bool isWide = octets.size() > 1 && octets[0] == '\0';
  const char first = octets.empty() ? '\0' : octets[isWide ? 1 : 0];
  return first == '&' || first == '%';
}

/// The literal that octets begin with, in UTF-8 and without quotes.
/// @param encoding as it was declared, or empty
std::string literalAtStart(std::string_view octets, const std::string& encoding) {
  const bool isBigEndian = octets.size() > 1 && octets[0] == '\0';
  const bool isLittleEndian = octets.size() > 1 && octets[1] == '\0';
  const std::size_t width = isBigEndian || isLittleEndian ? 2 : 1;
  const std::string_view quote = octets.substr(0, width);
  std::size_t end = width;
  while (end < octets.size() && octets.substr(end, width) != quote) end += width;
  if (end >= octets.size()) return {};
  const std::string_view literal = octets.substr(width, end - width);
  if (isBigEndian) return toUTF8("UTF-16BE", literal);
  if (isLittleEndian) return toUTF8("UTF-16LE", literal);
  return encoding.empty() ? std::string(literal) : toUTF8(encoding.c_str(), literal);
}

}  // namespace

void XML10Position::moveOver(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isPair = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
    if (isPair) continue;
    if (text[i] == '\n' || text[i] == '\r') {
      ++line;
      column = 1;
    } else if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) {
      ++column;
    }
  }
}

std::string XMLReader_XML10::Driver::lostReference(std::string_view entity, const char* place) {
  return "The entity \"" + std::string(entity) + "\" was not read: a reference to it in " + place +
         " is lost";
}

XML10Position XMLReader_XML10::Driver::positionHere() const {
  XML_Parser parser = document_->current().parser;
  return {lineOf(parser), columnOf(parser)};
}

void XMLReader_XML10::Driver::warnOfLoss(const std::string& message,
                                         const XML10Position& position) {
  ++settings_.losses;
  if (handlers.error) handlers.error->warning(exceptionAt(message, position));
}

bool XMLReader_XML10::Driver::isInInternalEntity() const {
  return isReference(octetsFromHere(document_->current().parser));
}

void XMLReader_XML10::Driver::warnOfLostReferences(std::string_view source, const char* place,
                                                   XML10Position position, bool isWritten) {
  GeneralEntities& entities = document_->generalEntities;
  std::size_t passed = 0;
  for (auto found = nextReference(source, 0); found;
       found = nextReference(source, found->position + 1)) {
    const std::string name(found->name);
    if (isWritten) position.moveOver(source.substr(passed, found->position - passed));
    passed = found->position;
    requireName(name, position);
    const std::string* const missing = entities.findMissing(name);
    if (missing) warnOfLoss(lostReference(*missing, place), position);
  }
}

void XMLReader_XML10::Driver::warnOfLossesInTag() {
  XML_Parser parser = document_->current().parser;
  const std::string_view octets = octetsFromHere(parser);
  const auto length = static_cast<std::size_t>(XML_GetCurrentByteCount(parser));
  // In any encoding, a reference has this octet.
  if (!octets.empty() && octets.substr(0, length).find('&') == std::string_view::npos) return;
  const XML10Position start = positionHere();  // What follows moves expat's own.
  const bool isWritten = !octets.empty() && !isReference(octets);
  document_->markup.clear();
  XML_SetDefaultHandlerExpand(parser, Callbacks::markupHandler);
  XML_DefaultCurrent(parser);
  XML_SetDefaultHandlerExpand(parser, nullptr);
  if (document_->failure) return;
  const std::string tag = std::move(document_->markup);
  document_->markup.clear();
  warnOfLostReferences(tag, "an attribute value", start, isWritten);
}

void XMLReader_XML10::Driver::Callbacks::markupHandler(void* userData, const XML_Char* text,
                                                       int length) {
  Driver& driver = from(userData);
  driver.guard([&] { driver.document_->markup.append(text, static_cast<std::size_t>(length)); });
}

void XMLReader_XML10::Driver::warnOfLossesInDefault() {
  constexpr char kPlace[] = "the default of an attribute";
  const XML10Document::OpenEntity& current = document_->current();
  const std::string_view octets = octetsFromHere(current.parser);
  if (!isReference(octets)) {
    const std::string literal = literalAtStart(octets, current.encoding);
    XML10Position position = positionHere();
    ++position.column;  // The quote.
    return warnOfLostReferences(literal, kPlace, position, true);
  }
  // Where in an internal entity this stands, expat does not tell. It may be any that has a
  // reference of that kind; each is told of once.
  const std::vector<std::string> texts = std::move(document_->parameterTexts);
  document_->parameterTexts.clear();
  for (const std::string& source : texts) {
    warnOfLostReferences(source, kPlace, positionHere(), false);
  }
}

}  // namespace Tavrin
