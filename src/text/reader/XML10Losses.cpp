#include "Callbacks.h"
#include "MarkupOctets.h"
#include "XML10Driver.h"

// References in attribute values that expat drops: a start tag is one event, so it cannot report
// them.

namespace Tavrin::text {

namespace {

/// Whether octets begin with a reference, in any encoding. Then the event is in an internal entity.
bool isReference(std::string_view octets) {
  const char first = Characters(octets).at(0);
  return first == '&' || first == '%';
}

/// The literal that octets begin with, in UTF-8 and without quotes.
/// @param encoding as it was declared, or empty
std::string literalAtStart(std::string_view octets, const std::string& encoding) {
  const std::size_t width = Characters(octets).width();
  const std::string_view quote = octets.substr(0, width);
  std::size_t end = width;
  while (end < octets.size() && octets.substr(end, width) != quote) end += width;
  if (end >= octets.size()) return {};
  return decoded(octets.substr(width, end - width), octets, encoding);
}

/// Moves a position to the end of a text in UTF-8.
void advance(Position& position, std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isPair = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
    if (isPair) continue;
    if (text[i] == '\n' || text[i] == '\r') {
      ++position.line;
      position.column = 1;
    } else if (!isContinuation(text[i])) {
      ++position.column;
    }
  }
}

}  // namespace

void XML10Driver::warnOfLoss(const std::string& message, const Position& position) {
  ++facts.losses;
  if (handlers.error) handlers.error->warning(exceptionAt(message, position));
}

void XML10Driver::warnOfLostReference(std::string_view entity, const char* place,
                                      const Position& position) {
  warnOfLoss("The entity \"" + std::string(entity) + "\" was not read: a reference to it in " +
                 place + " is lost",
             position);
}

bool XML10Driver::isInInternalEntity() const {
  return isReference(octetsFromHere(document_->current().parser));
}

void XML10Driver::warnOfLostReferences(std::string_view source, const char* place,
                                       Position position, bool isWritten) {
  std::size_t visited = 0;
  forEachReference(source, [&](std::string_view referred, std::size_t start) {
    const std::string name(referred);
    if (isWritten) advance(position, source.substr(visited, start - visited));
    visited = start;
    requireName(name, position);
    const std::string* const missing = document_->generalEntities.findMissing(name);
    if (missing) warnOfLostReference(*missing, place, position);
  });
}

void XML10Driver::warnOfLossesInTag() {
  XML_Parser parser = document_->current().parser;
  const std::string_view octets = octetsFromHere(parser);
  const auto length = static_cast<std::size_t>(XML_GetCurrentByteCount(parser));
  // A reference begins with this octet in every encoding.
  if (!octets.empty() && octets.substr(0, length).find('&') == std::string_view::npos) return;
  const Position start = positionHere();  // XML_DefaultCurrent changes expat's position.
  const bool isWritten = !octets.empty() && !isReference(octets);
  document_->markup.clear();
  XML_SetDefaultHandlerExpand(parser, guarded<&XML10Driver::markup>);
  XML_DefaultCurrent(parser);
  XML_SetDefaultHandlerExpand(parser, nullptr);
  if (document_->failure) return;
  const std::string tag = std::move(document_->markup);
  document_->markup.clear();
  warnOfLostReferences(tag, "an attribute value", start, isWritten);
}

void XML10Driver::markup(const XML_Char* text, int length) {
  document_->markup.append(text, static_cast<std::size_t>(length));
}

void XML10Driver::warnOfLossesInDefault() {
  const OpenEntity& current = document_->current();
  const std::string_view octets = octetsFromHere(current.parser);
  if (!isReference(octets)) {
    const std::string literal = literalAtStart(octets, current.encoding);
    Position position = positionHere();
    ++position.column;  // The quote.
    return warnOfLostReferences(literal, kInDefault, position, true);
  }
  // expat does not report which internal entity has this default. It may be any that refers to
  // general entities, so the references of each are reported once.
  const std::vector<std::string> texts = std::move(document_->parameterTexts);
  document_->parameterTexts.clear();
  for (const std::string& source : texts) {
    warnOfLostReferences(source, kInDefault, positionHere(), false);
  }
}

}  // namespace Tavrin::text
