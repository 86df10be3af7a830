#include "XML10Driver.h"

// Documents with a document type: expat reads it. Where it declares nothing that changes what the
// elements are, the scanner goes on at the root element, several times as fast.

namespace Tavrin::text {

namespace {

/// So much is given to expat at a time, so that it does not read far into the root element.
constexpr std::size_t kPiece = std::size_t{2} * 1024;

/// The octets are kept while the document is read, so a longer document type is all expat's.
constexpr std::size_t kLongestProlog = std::size_t{64} * 1024;

/// Has a parser go through octets without a call, and without reading an external entity.
void silence(XML_Parser parser) {
  XML_SetXmlDeclHandler(parser, nullptr);
  XML_SetNamespaceDeclHandler(parser, nullptr, nullptr);
  XML_SetElementHandler(parser, nullptr, nullptr);
  XML_SetCharacterDataHandler(parser, nullptr);
  XML_SetProcessingInstructionHandler(parser, nullptr);
  XML_SetSkippedEntityHandler(parser, nullptr);
  XML_SetNotationDeclHandler(parser, nullptr);
  XML_SetElementDeclHandler(parser, nullptr);
  XML_SetAttlistDeclHandler(parser, nullptr);
  XML_SetEntityDeclHandler(parser, nullptr);
  XML_SetDoctypeDeclHandler(parser, nullptr, nullptr);
  XML_SetCdataSectionHandler(parser, nullptr, nullptr);
  XML_SetCommentHandler(parser, nullptr);
  XML_SetExternalEntityRefHandler(parser,
                                  [](XML_Parser, const XML_Char*, const XML_Char*, const XML_Char*,
                                     const XML_Char*) -> int { return XML_STATUS_OK; });
}

}  // namespace

XML_Status XML10Driver::parseProlog(std::string_view octets, bool areLast) {
  XML10Document& document = *document_;
  while (document.prolog) {
    const std::string_view piece = octets.substr(0, kPiece);
    const std::size_t kept = document.prolog->octets.size();
    document.prolog->octets += piece;
    const bool isLast = areLast && piece.size() == octets.size();
    const XML_Status status =
        XML_Parse(parser_.get(), piece.data(), static_cast<int>(piece.size()), isLast);
    if (document.prolog && document.prolog->root) return scanFromRoot(octets, kept, areLast);
    octets.remove_prefix(piece.size());
    if (status == XML_STATUS_SUSPENDED) document.rest = octets;
    if (status != XML_STATUS_OK) document.prolog.reset();
    if (status != XML_STATUS_OK || isLast) return status;
    if (kept + piece.size() > kLongestProlog) document.prolog.reset();
    if (octets.empty()) return status;
  }
  return parseByExpat(octets.data(), octets.size(), areLast);
}

bool XML10Driver::comesToRoot() {
  XML10Document& document = *document_;
  if (!document.prolog) return false;
  const OpenEntity& entity = document.current();
  document.prolog->root = entity.octetsRead() - entity.inDocument.octets;
  silence(entity.parser);
  XML_StopParser(entity.parser, XML_FALSE);
  return true;
}

/// Replaces the parser by the scanner.
/// @param kept how many octets were kept before these
XML_Status XML10Driver::scanFromRoot(std::string_view octets, std::size_t kept, bool areLast) {
  XML10Document& document = *document_;
  XML10Document::Prolog prolog = std::move(*document.prolog);
  document.prolog.reset();
  const std::string_view all = prolog.octets;
  document.scanner = std::move(prolog.scanner);
  document.scanner->skipProlog(all.substr(0, *prolog.root));
  parser_.reset();
  document.current().parser = nullptr;
  document.current().scanner = document.scanner.get();
  if (*prolog.root >= kept) return scanContent(octets.substr(*prolog.root - kept), areLast);
  // The start tag was cut.
  WaitingOctets joined;
  joined.append(all.data() + *prolog.root, kept - *prolog.root);
  joined.append(octets.data(), octets.size());
  document.waiting = std::move(joined);
  return scanContent(document.waiting.all(), areLast);
}

/// Replaces the scanner by a parser in the same state.
XML_Status XML10Driver::leadParserHere() {
  XML10Document& document = *document_;
  std::unique_ptr<XML10Scanner> scanner = std::move(document.scanner);
  OpenEntity& entity = document.current();
  entity.inDocument = {scanner->octetsBefore(), scanner->place()};
  entity.inParser = {};
  createParser();
  setReparseDeferral();
  XML_Parser parser = parser_.get();
  silence(parser);  // What has been reported already is not reported again.
  XML_Status status = XML_STATUS_OK;
  scanner->describeContext([&](std::string_view piece) {
    if (piece.empty() || status != XML_STATUS_OK) return;
    status = XML_Parse(parser, piece.data(), static_cast<int>(piece.size()), XML_FALSE);
    entity.inParser.octets += piece.size();
    entity.inParser.place.advance(piece.data(), piece.data() + piece.size());
  });
  installDocumentCallbacks();
  scanner->forEachElement(
      [&](std::string_view start, std::uint64_t line) { document.elements.name(start, line); });
  const xml::NamespaceBindings& bindings = scanner->bindings();
  for (std::size_t i = 0; i < bindings.count(); ++i) {
    document.bindings.push(bindings.prefixAt(i), bindings.uriAt(i));
  }
  if (scanner->isInProlog()) document.prolog = {.scanner = std::move(scanner)};
  return status;
}

}  // namespace Tavrin::text
