#include <algorithm>
#include <new>

#include "../../sax/AtLimit.h"
#include "XML10Driver.h"

// Documents that are scanned: the scanner's events, and what follows when it stops.

namespace Tavrin::text {

// --- Positions ---

std::uint64_t OpenEntity::octetsRead() const {
  if (scanner != nullptr) return scanner->octetsBefore();
  const auto octets =
      static_cast<std::uint64_t>(std::max(XML_GetCurrentByteIndex(parser), XML_Index{0}));
  return octets - inParser.octets + inDocument.octets;
}

std::uint64_t OpenEntity::line() const {
  if (scanner != nullptr) return scanner->place().line;
  return XML_GetCurrentLineNumber(parser) - inParser.place.line + inDocument.place.line;
}

std::uint64_t OpenEntity::column() const {
  if (scanner != nullptr) return scanner->place().column;
  const auto column = static_cast<std::uint64_t>(columnOf(parser));
  // The line in which the document goes on may have begun elsewhere.
  const bool isGoingOn = XML_GetCurrentLineNumber(parser) == inParser.place.line;
  return isGoingOn ? column - inParser.place.column + inDocument.place.column : column;
}

Position OpenEntity::position() const {
  return {static_cast<std::int32_t>(line()), static_cast<std::int32_t>(column())};
}

// --- Blocks ---

XML_Status XML10Driver::scanBlock(const char* block, unsigned long size, bool isFinal) {
  WaitingOctets& waiting = document_->waiting;
  if (waiting.isEmpty()) return scan({block, size}, isFinal);
  waiting.append(block, size);
  return scan(waiting.all(), isFinal);
}

XML_Status XML10Driver::scan(std::string_view octets, bool areLast) {
  return afterScan(document_->scanner->scan(octets, areLast), areLast);
}

XML_Status XML10Driver::afterScan(XML10Scanner::Outcome outcome, bool areLast) {
  const XML10Scanner& scanner = *document_->scanner;
  const bool isRefused = outcome == XML10Scanner::Outcome::refused && !scanner.isHaltedHere();
  if (isRefused && scanner.isInProlog()) return passPrologToExpat(scanner.rest(), areLast);
  return afterContent(outcome, areLast);
}

XML_Status XML10Driver::scanContent(std::string_view octets, bool areLast) {
  return afterContent(document_->scanner->scan(octets, areLast), areLast);
}

XML_Status XML10Driver::afterContent(XML10Scanner::Outcome outcome, bool areLast) {
  const XML10Scanner& scanner = *document_->scanner;
  if (scanner.isHaltedHere()) return XML_STATUS_SUSPENDED;
  if (outcome == XML10Scanner::Outcome::refused) return passToExpat(scanner.rest(), areLast);
  const bool isHalted = outcome == XML10Scanner::Outcome::halted;
  if (isHalted || !areLast) document_->waiting.keep(scanner.rest());
  return isHalted ? XML_STATUS_SUSPENDED : XML_STATUS_OK;
}

XML_Status XML10Driver::passPrologToExpat(std::string_view rest, bool areLast) {
  XML_Status status = leadParserHere();
  if (status == XML_STATUS_OK) status = parseProlog(rest, areLast);
  if (!isScanned()) document_->waiting = {};
  return status;
}

XML_Status XML10Driver::passToExpat(std::string_view rest, bool areLast) {
  XML_Status status = leadParserHere();
  if (status == XML_STATUS_OK) status = parseByExpat(rest.data(), rest.size(), areLast);
  document_->waiting = {};
  return status;
}

// --- Events ---

void XML10Driver::scannedDeclaration(std::string_view encoding, std::optional<bool> standalone) {
  document_->standalone = standalone;
  document_->current().encoding = encoding;
  announce();
}

void XML10Driver::scannedPrefix(const std::string& prefix, const std::string& uri) {
  announce();
  if (!handlers.content) return;
  checkPrefix(prefix, uri);
  handlers.content->startPrefixMapping(prefix, uri);
}

void XML10Driver::scannedStart(const std::string& uri, const std::string& localName,
                               const std::string& qName, const Attributes& attributes) {
  announce();
  checkStart();
  if (handlers.content) handlers.content->startElement(uri, localName, qName, attributes);
}

void XML10Driver::failTooDeep() { fail(tooDeep(document_->settings.limits.maximumDepth)); }

void XML10Driver::scannedEnd(const std::string& uri, const std::string& localName,
                             const std::string& qName) {
  if (handlers.content) handlers.content->endElement(uri, localName, qName);
}

void XML10Driver::scannedPrefixEnd(const std::string& prefix) {
  if (handlers.content) handlers.content->endPrefixMapping(prefix);
}

void XML10Driver::scannedText(std::string_view text) {
  if (handlers.content) passOn(*handlers.content, text);
}

void XML10Driver::scannedStartOfCDATA() {
  if (handlers.lexical) handlers.lexical->startCDATA();
}

void XML10Driver::scannedEndOfCDATA() {
  if (handlers.lexical) handlers.lexical->endCDATA();
}

void XML10Driver::scannedInstruction(const std::string& target, const std::string& data) {
  if (!handlers.content) return;
  announce();
  if (handlers.content) handlers.content->processingInstruction(target, data);
}

void XML10Driver::scannedComment(const std::string& text) {
  if (!handlers.lexical) return;
  announce();
  if (handlers.lexical) handlers.lexical->comment(text);
}

}  // namespace Tavrin::text
