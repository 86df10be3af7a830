#include "comparing/Siblings.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "comparing/NumberText.h"

namespace tool {

namespace {

constexpr std::size_t kMaximumSiblings = 32;
constexpr std::uint64_t kMaximumOctets = std::uint64_t{256} * 1024;

bool isBlank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

void mix(std::size_t& hash, std::string_view octets) {
  constexpr std::size_t kFactor = 0x9E3779B97F4A7C15U;
  hash = (hash ^ std::hash<std::string_view>()(octets)) * kFactor;
}

bool isEnd(const Record& record) {
  return record.kind == RecordKind::EndElement || record.kind == RecordKind::Border;
}

/// Collects what one sibling is.
class Summary {
 public:
  void add(const Record& record) {
    if (record.kind == RecordKind::Numbers) return Numbers::appendText(text_, record.body);
    if (record.kind == RecordKind::Text) {
      text_ += record.body;
      return;
    }
    endText();
    const char kind = static_cast<char>(record.kind);
    mix(sibling_.hash, {&kind, 1});
    mix(sibling_.hash, record.body);
    sibling_.size += record.body.size() + 1;
  }
  void begin(const Record& record) {
    sibling_.kind = isPartOfText(record.kind) ? RecordKind::Text : record.kind;
    if (record.kind == RecordKind::StartElement) {
      const auto strings = stringsOf(record);
      sibling_.name = strings[2];
      if (strings.size() > kNameStrings) mix(sibling_.tag, record.body);
    }
    if (record.kind == RecordKind::ProcessingInstruction) sibling_.name = stringsOf(record)[0];
  }
  Siblings::Sibling finish() {
    sibling_.isKnown = sibling_.kind != RecordKind::Text || !isBlank(text_);
    endText();
    return std::move(sibling_);
  }
  /// What is known of a sibling that is too long to be seen whole.
  /// @param record the last one of it that was seen
  Siblings::Sibling finishEarly(const Record& record) {
    if (sibling_.size == 0 && text_.empty()) begin(record);
    sibling_.isWhole = false;
    return std::move(sibling_);
  }

 private:
  /// A text is the same in whatever pieces.
  void endText() {
    if (text_.empty()) return;
    mix(sibling_.hash, text_);
    sibling_.size += text_.size();
    text_.clear();
  }

  Siblings::Sibling sibling_{};
  std::string text_;
};

}  // namespace

bool Siblings::Sibling::equals(const Sibling& other) const {
  if (isEnd || other.isEnd) return isEnd && other.isEnd;
  return kind == other.kind && size == other.size && hash == other.hash && isKnown && other.isKnown;
}

bool Siblings::Sibling::isLike(const Sibling& other) const {
  return !isEnd && !other.isEnd && kind == other.kind && name == other.name;
}

Siblings::Siblings(RecordReader& records) {
  RecordReader::Position position = records.position();
  while (list_.size() < kMaximumSiblings && octets_ < kMaximumOctets) {
    if (!add(records, position)) break;
  }
}

/// Adds the sibling at a position, and moves that behind it.
/// @return whether another one may follow
bool Siblings::add(RecordReader& records, RecordReader::Position& position) {
  Record record{};
  Summary summary;
  std::size_t depth = 0;
  bool isFirst = true;
  bool isText = false;
  for (;;) {
    RecordReader::Position next = position;
    const bool isRecord = records.findNext(next, record);
    if (isFirst && (!isRecord || isEnd(record))) {
      Sibling end{};
      end.isEnd = true;
      list_.push_back(std::move(end));
      return false;
    }
    const bool isPart = depth > 0 || (isText && isRecord && isPartOfText(record.kind));
    if (!isRecord || !(isFirst || isPart)) break;
    position = next;
    octets_ += Block::kHeaderSize + record.body.size();
    if (octets_ > kMaximumOctets) {
      if (list_.empty()) list_.push_back(summary.finishEarly(record));
      return false;
    }
    // Declarations belong to the element behind them.
    if (record.kind == RecordKind::StartPrefixMapping && isFirst) continue;
    if (isFirst) summary.begin(record);
    isFirst = false;
    isText = depth == 0 && isPartOfText(record.kind);
    summary.add(record);
    if (record.kind == RecordKind::StartElement) ++depth;
    if (record.kind == RecordKind::EndElement) --depth;
  }
  list_.push_back(summary.finish());
  return true;
}

namespace {

using List = std::vector<Siblings::Sibling>;

/// The index of the first that is like another, in front of a limit; the limit where none is.
std::size_t findLike(const List& list, const Siblings::Sibling& other, std::size_t limit) {
  const auto end = list.begin() + static_cast<std::ptrdiff_t>(std::min(limit, list.size()));
  const auto found =
      std::find_if(list.begin(), end, [&](const auto& sibling) { return sibling.isLike(other); });
  return found == end ? limit : static_cast<std::size_t>(found - list.begin());
}

/// Finds what both lists have, in front of limits, and so nearest that as few as can be stand in
/// front of it in both. Moves the limits there.
template <typename Relation>
void findNearest(const List& a, const List& b, std::size_t& untilA, std::size_t& untilB,
                 Relation relation) {
  const std::size_t endA = untilA;
  const std::size_t endB = untilB;
  for (std::size_t i = 0; i < endA && i < untilA + untilB; ++i) {
    for (std::size_t j = 0; j < endB && i + j < untilA + untilB; ++j) {
      if (i + j == 0 || !(a[i].*relation)(b[j])) continue;
      untilA = i;
      untilB = j;
    }
  }
}

}  // namespace

SiblingStep chooseStep(const Siblings& a, const Siblings& b) {
  const List& inA = a.list();
  const List& inB = b.list();
  if (inA[0].isEnd) return SiblingStep::OnlyB;
  if (inB[0].isEnd) return SiblingStep::OnlyA;
  std::size_t untilA = inA.size();
  std::size_t untilB = inB.size();
  findNearest(inA, inB, untilA, untilB, &Siblings::Sibling::equals);
  findNearest(inA, inB, untilA, untilB, &Siblings::Sibling::hasTagOf);
  if (untilA == 0) return SiblingStep::OnlyB;
  if (untilB == 0) return SiblingStep::OnlyA;
  if (inA[0].isLike(inB[0])) return SiblingStep::Pair;
  if (findLike(inB, inA[0], untilB) < untilB) return SiblingStep::OnlyB;
  if (findLike(inA, inB[0], untilA) < untilA) return SiblingStep::OnlyA;
  // Nobody knows what is behind a long one.
  if (inA[0].isWhole != inB[0].isWhole)
    return inA[0].isWhole ? SiblingStep::OnlyB : SiblingStep::OnlyA;
  return SiblingStep::Neither;
}

}  // namespace tool
