#include "Decoder.h"

#include <cstdlib>

#include "../sax/AtLimit.h"
#include "../sax/ParseScope.h"

// The decoder as an object: parse, failures and limits. The format is decoded in the
// files that Decoder.h names.

namespace Tavrin::fastinfoset {

Decoder::Decoder(const Dialect& dialect, const Handlers& handlers)
    : dialect_(dialect),
      contentHandler_(handlers.content),
      errorHandler_(handlers.error),
      dtdHandler_(handlers.dtd),
      input_(dialect.callsGet) {}

void Decoder::parse(std::istream& stream) {
  const ParseScope scope(parsing_);
  input_.open(stream);
  beginDocument();
  decodeDocument();
}

void Decoder::beginDocument() {
  tableOctets_ = 0;
  fromTables_ = 0;
  openElements_.clear();
  unlistedElements_.clear();
  alphabets_.clear();
  if (!dialect_.keepsVocabulary) setExternalVocabulary(nullptr);
  for (Strings& table : strings_) {
    table.forgetExternalEntries();
    const bool isKept = dialect_.keepsVocabulary && table.table() <= kEncodingAlgorithms;
    if (!isKept) table.own().clear();
  }
  for (Names& table : names_) {
    table.forgetExternalEntries();
    table.shrinkTo(0);
  }
}

void Decoder::fail(const std::string& message) const {
  throwFailure(message);
  std::abort();  // A dialect that does not throw is wrong.
}

void Decoder::failAtLimit(const std::string& message, const char* property) const {
  fail(atLimit(message, property));
}

void Decoder::failAtEnd() const { fail("Unexpected end of document"); }

void Decoder::checkLiteralLength(std::uint64_t length) const {
  if (length <= maximumLiteralOctets_) return;
  failAtLimit("Literal longer than " + std::to_string(maximumLiteralOctets_) + " octets",
              properties::maximumLiteralOctets);
}

/// Counts what is kept of the document.
void Decoder::accountFor(std::uint64_t octets) {
  tableOctets_ += octets;
  if (tableOctets_ > maximumTableOctets_) {
    failAtLimit("Tables larger than " + std::to_string(maximumTableOctets_) + " octets",
                properties::maximumTableOctets);
  }
}

}  // namespace Tavrin::fastinfoset
