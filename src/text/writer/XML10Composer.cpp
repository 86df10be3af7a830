#include "XML10Composer.h"

#include <algorithm>

#include "../../io/WriteOctets.h"

// What events share: how they are composed, undone and written.

namespace Tavrin {

namespace {

constexpr std::size_t kDeepestIndentation = 100;

// The memory of a larger event is not kept for the next one.
constexpr std::size_t kKeptOctets = 1U << 20U;

}  // namespace

// --- Composing and writing out ---

void XMLWriter_XML10::Composer::restore(const Mark& mark) {
  writer_.state_ = mark.state;
  writer_.hasContent_ = mark.hasContent;
  // An element that has been removed cannot be restored.
  if (writer_.elements_.size() < mark.elements) return breakOff();
  while (writer_.elements_.size() > mark.elements) writer_.elements_.pop_back();
  while (document_.open.size() > mark.open) document_.open.pop_back();
  composed_.resize(mark.octets);
  document_.breaks.resize(mark.breaks);
  document_.bindings.undo(document_.bindings.count() - mark.declarations);
  document_.brackets = mark.brackets;
}

void XMLWriter_XML10::Composer::refuseAfterFailure() {
  throw SAXException("The document cannot go on after a failure: the writer must be reset");
}

/// Discards what is composed, and lets nothing be written until the writer is reset.
void XMLWriter_XML10::Composer::breakOff() noexcept {
  document_.isBroken = true;
  writer_.state_ = Ended;
  composed_.clear();
  document_.breaks.clear();
}

void XMLWriter_XML10::Composer::commitOctets() {
  document_.hasBegun = true;
  if (document_.breaks.empty() || writer_.elements_.empty()) {
    writeOrBreakOff([this] { writeOut(); });
  }
}

/// Writes what is composed, as it is.
void XMLWriter_XML10::Composer::send() {
  if (composed_.empty()) return;
  // Also where the stream throws.
  struct Clear {
    std::string& octets;
    ~Clear() {
      octets.clear();
      if (octets.capacity() > kKeptOctets) octets.shrink_to_fit();
    }
  } const clear{composed_};
  if (writer_.out_) writeOctets(*writer_.out_, composed_);
}

/// Writes what is composed, with its line breaks.
void XMLWriter_XML10::Composer::writeOut() {
  // Without auto-indent there are no line breaks.
  if (document_.breaks.empty()) return send();
  const std::string text = std::exchange(composed_, {});
  const std::vector<Document::Break> breaks = std::exchange(document_.breaks, {});
  if (writer_.out_ == nullptr) return;
  const std::string_view octets = text;
  std::size_t begin = 0;
  std::string line = "\n";
  for (const auto& [position, depth] : breaks) {
    writeOctets(*writer_.out_, octets.substr(begin, position - begin));
    line.resize(1 + indentWidth_ * std::min(depth, kDeepestIndentation), ' ');
    writeOctets(*writer_.out_, line);
    begin = position;
  }
  writeOctets(*writer_.out_, octets.substr(begin));
}

// --- Layout ---

void XMLWriter_XML10::Composer::startChild() {
  const std::string_view opening = openingOf(writer_.state_);
  if (writer_.hasContent_ || opening.empty()) return;
  write(opening);
  writer_.hasContent_ = true;
}

bool XMLWriter_XML10::Composer::startItem() {
  if (isOutsideInternalSubset()) return false;
  startChild();
  indent();
  return true;
}

void XMLWriter_XML10::Composer::indent(std::size_t depth) {
  if (!autoIndent_) return;
  if (!document_.open.empty()) {
    const Document::Open& element = document_.open.back();
    if (element.isMixed || element.preservesSpace) return;
    document_.breaks.push_back({composed_.size(), depth});
  } else if (writer_.state_ == InDTD) {
    write("\n");
    composed_.append(indentWidth_, ' ');
  } else if (document_.hasBegun) {
    write("\n");
  }
}

/// Records that the innermost element has text: no line break may be written inside of it, neither
/// a pending one nor a later one. This cannot be undone, so an event does it last.
void XMLWriter_XML10::Composer::makeMixed() {
  Document::Open& element = document_.open.back();
  element.isMixed = true;
  if (document_.breaks.size() > element.firstBreak) document_.breaks.resize(element.firstBreak);
}

}  // namespace Tavrin
