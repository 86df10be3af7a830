#include "comparing/AllDifferences.h"

#include <algorithm>
#include <utility>

#include "comparing/Comparison.h"
#include "comparing/Siblings.h"
#include "comparing/TextComparison.h"
#include "printing/Text.h"

namespace tool {

/// A start tag with the declarations in front of it, kept beyond its record.
struct AllDifferences::Tag {
  struct Attribute {
    std::string key;   // By which it is found in the other tag.
    std::string name;  // As it is written.
    std::string value;
  };

  std::string path;
  std::string place;
  std::string line;  // About the whole tag.
  std::vector<Attribute> attributes;

  const Attribute* find(const std::string& key) const {
    const auto found =
        std::find_if(attributes.begin(), attributes.end(),
                     [&](const Attribute& attribute) { return attribute.key == key; });
    return found == attributes.end() ? nullptr : &*found;
  }
};

AllDifferences::AllDifferences(ComparedDocuments& a, ComparedDocuments& b, Form form, Sink sink)
    : a_{a, "- ", {}}, b_{b, "+ ", {}}, form_(form), sink_(std::move(sink)) {}

bool AllDifferences::Side::isAtEnd() const {
  return !isRecord || record.kind == RecordKind::EndElement || record.kind == RecordKind::Border;
}

void AllDifferences::Side::pass() {
  path.pass(record);
  records().advance(record);
}

void AllDifferences::find() {
  while (step()) {
  }
}

bool AllDifferences::hasFailed(Side& side) const {
  if (side.isRecord) return false;
  try {
    side.documents.check();
  } catch (const Failure&) {
    return true;
  }
  return false;
}

/// Goes on by what comes next in both.
bool AllDifferences::step() {
  a_.next();
  b_.next();
  if ((!a_.isRecord && !b_.isRecord) || hasFailed(a_) || hasFailed(b_)) return false;
  if (a_.isAtText() && b_.isAtText()) {
    compareTexts();
  } else if ((a_.isRecord && b_.isRecord && isSame(a_.record, b_.record)) ||
             // Or their start tags differ, and have been shown.
             (a_.isAt(RecordKind::EndElement) && b_.isAt(RecordKind::EndElement))) {
    a_.pass();
    b_.pass();
  } else if (a_.isAtEnd() && b_.isAtEnd()) {
    showEnd(a_.isRecord ? a_ : b_);
  } else {
    compareFirst();
  }
  return true;
}

void AllDifferences::show(const std::string& path, const std::string& inA, const std::string& inB) {
  sink_(escaped(path) + "\n" + (inA.empty() ? "" : a_.mark + inA) +
        (inB.empty() ? "" : b_.mark + inB));
}

void AllDifferences::compareTexts() {
  const std::string path = a_.path.of(a_.record);
  const Location locationA = a_.record.location();
  const Location locationB = b_.record.location();
  a_.path.passText();
  b_.path.passText();
  TextComparison texts(a_.records(), b_.records());
  if (texts.areSame()) return;
  show(path, describeText(a_.documents, locationA, texts.inA(), form_),
       describeText(b_.documents, locationB, texts.inB(), form_));
  texts.skip();
}

/// One file has another document.
void AllDifferences::showEnd(Side& side) {
  const std::string line = describe(side.documents, side.record, nullptr, form_);
  show("/", &side == &a_ ? line : "", &side == &b_ ? line : "");
  const std::uint64_t document = side.record.block->document;
  while (side.next() && side.record.block->document == document) side.pass();
}

/// Two siblings differ: which of both have nothing like them on the other side?
void AllDifferences::compareFirst() {
  const Siblings inA(a_.records());
  const Siblings inB(b_.records());
  a_.next();
  b_.next();
  switch (chooseStep(inA, inB)) {
    case SiblingStep::OnlyA:
      return showOnly(a_);
    case SiblingStep::OnlyB:
      return showOnly(b_);
    case SiblingStep::Neither:
      showOnly(a_);
      return showOnly(b_);
    case SiblingStep::Pair:
      break;
  }
  if (inA.list()[0].kind == RecordKind::StartElement) return compareTags();
  show(a_.path.of(a_.record), describe(a_.documents, a_.record, &b_.record, form_),
       describe(b_.documents, b_.record, &a_.record, form_));
  a_.pass();
  b_.pass();
}

void AllDifferences::showOnly(Side& side) {
  // Declarations stand in front of their element.
  while (side.isAt(RecordKind::StartPrefixMapping)) {
    side.pass();
    side.next();
  }
  const std::string path = side.path.of(side.record);
  std::string line;
  if (side.isAtText()) {
    const Location location = side.record.location();
    side.path.passText();
    TextPieces text(side.records());
    line = describeText(side.documents, location, beginningOf(text), form_);
    text.skip();
  } else {
    line = describe(side.documents, side.record, nullptr, form_);
    skip(side);
  }
  show(path, &side == &a_ ? line : "", &side == &b_ ? line : "");
}

/// Goes past an element with all that it has, or another event.
void AllDifferences::skip(Side& side) {
  const std::size_t depth = side.path.depth();
  do {
    side.pass();
  } while (side.path.depth() > depth && side.next());
}

AllDifferences::Tag AllDifferences::takeTag(Side& side) {
  Tag tag;
  while (side.isAt(RecordKind::StartPrefixMapping)) {
    const auto strings = stringsOf(side.record);
    const std::string name = strings[0].empty() ? "xmlns" : "xmlns:" + std::string(strings[0]);
    tag.attributes.push_back({name, name, std::string(strings[1])});
    side.pass();
    side.next();
  }
  const auto strings = stringsOf(side.record);
  tag.path = side.path.of(side.record);
  tag.place = describe(side.documents, side.record.location());
  tag.line = describe(side.documents, side.record, nullptr, form_);
  for (std::size_t i = kNameStrings; i < strings.size(); i += kAttributeStrings) {
    const std::string name(strings[i + 2]);
    tag.attributes.push_back(
        {std::string(strings[i]) + ' ' + name, name, std::string(strings[i + 3])});
  }
  side.pass();
  return tag;
}

/// Shows what two start tags of the same name have otherwise, and goes on within them.
void AllDifferences::compareTags() {
  const Tag inA = takeTag(a_);
  const Tag inB = takeTag(b_);
  bool isShown = false;
  const auto line = [](const Tag& tag, const Tag::Attribute* attribute, const std::string& other) {
    if (attribute == nullptr) return std::string();
    return tag.place + differenceFrom(attribute->value, other).quoted() + "\n";
  };
  const auto showAttribute = [&](const Tag::Attribute* x, const Tag::Attribute* y) {
    show(inA.path + "/@" + (x ? x : y)->name, line(inA, x, y ? y->value : ""),
         line(inB, y, x ? x->value : ""));
    isShown = true;
  };
  for (const Tag::Attribute& attribute : inA.attributes) {
    const Tag::Attribute* const other = inB.find(attribute.key);
    if (other == nullptr || other->value != attribute.value) showAttribute(&attribute, other);
  }
  for (const Tag::Attribute& attribute : inB.attributes) {
    if (inA.find(attribute.key) == nullptr) showAttribute(nullptr, &attribute);
  }
  // The order of attributes, or what a prefix stands for.
  if (!isShown) show(inA.path, inA.line, inB.line);
}

}  // namespace tool
