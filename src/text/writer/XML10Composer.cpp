#include "XML10Composer.h"

#include <algorithm>

#include "../../io/WriteOctets.h"

// What events share: what they compose, or take back, and when it is written.

namespace Tavrin {

namespace {

constexpr std::size_t kDeepestIndentation = 100;

// What one large event took is not kept for all the small ones.
constexpr std::size_t kKeptOctets = 1U << 20U;

}  // namespace

// --- Composing and writing out ---

void XMLWriter_XML10::Composer::restore(const Mark& mark) {
  writer_.state_ = mark.state;
  writer_.hasContent_ = mark.hasContent;
  // An element that is gone does not come back: its end was composed in vain.
  if (writer_.elements_.size() < mark.elements) return breakOff();
  while (writer_.elements_.size() > mark.elements) writer_.elements_.pop_back();
  while (document_.open.size() > mark.open) document_.open.pop_back();
  composed_.resize(mark.octets);
  document_.breaks.resize(mark.breaks);
  document_.bindings.undo(document_.bindings.count() - mark.declarations);
  document_.brackets = mark.brackets;
}

void XMLWriter_XML10::Composer::refuseToGoOn() {
  throw SAXException("The document cannot go on after a failure: the writer must be reset");
}

/// What is composed is not written any more.
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

/// Writes out what is composed.
void XMLWriter_XML10::Composer::send() {
  if (composed_.empty()) return;
  // Gone even when the stream throws.
  struct Clear {
    std::string& octets;
    ~Clear() {
      octets.clear();
      if (octets.capacity() > kKeptOctets) octets.shrink_to_fit();
    }
  } const clear{composed_};
  if (writer_.out_) writeOctets(*writer_.out_, composed_);
}

void XMLWriter_XML10::Composer::writeOut() {
  // Without auto-indent there are no breaks, and each event comes here.
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

/// There is text in the innermost element: no line break that stands in it, or comes, may be
/// written. Comes last in an event: it cannot be undone.
void XMLWriter_XML10::Composer::forbidIndentation() {
  if (document_.open.empty()) return;
  Document::Open& element = document_.open.back();
  if (element.isMixed) return;
  element.isMixed = true;
  if (document_.breaks.size() > element.firstBreak) document_.breaks.resize(element.firstBreak);
}

}  // namespace Tavrin
