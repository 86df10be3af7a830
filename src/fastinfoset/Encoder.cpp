#include "Encoder.h"

namespace Tavrin::fastinfoset {

Encoder::Encoder(const Dialect& dialect, const Shared& shared)
    : out_(shared.out),
      pendingTerminator_(shared.pendingTerminator),
      characters_(shared.characters),
      builtIn_(shared.builtIn),
      dialect_(dialect) {}

void Encoder::clearTables() {
  for (StringIndexMap& table : strings_) table.clear();
  for (NameIndexMap& table : names_) table.clear();
  limits_.tableOctets = 0;
  known_.elements.clear();
  known_.attributes.clear();
  parts_.isKnown = false;
}

void Encoder::flushTerminator(bool final) {
  if (pendingTerminator_) {
    pendingTerminator_ = false;
    if (out_) put(final ? kDoubleTerminator : kTerminator);
  } else if (final && out_) {
    put(kTerminator);
  }
}

void Encoder::flushCharacters() {
  if (characters_.empty()) return;
  flushTerminator(false);
  if (out_) encodeCharacters(characters_);
  characters_.clear();
}

}  // namespace Tavrin::fastinfoset
