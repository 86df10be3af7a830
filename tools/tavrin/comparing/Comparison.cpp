#include "comparing/Comparison.h"

#include "comparing/TextComparison.h"

namespace tool {

namespace {

void collectFailure(ComparedDocuments& documents, std::vector<Failure>& failures) {
  Record record{};
  if (documents.records().find(record)) return;
  try {
    documents.check();
  } catch (const Failure& failure) {
    failures.push_back(failure);
  }
}

/// The line about what comes next.
std::string describeNext(ComparedDocuments& documents, const Record* record, const Record* other,
                         Form form) {
  if (record == nullptr) return describeEnd(documents);
  if (!isPartOfText(record->kind)) return describe(documents, *record, other, form);
  const Location location = record->location();
  TextPieces pieces(documents.records());
  return describeText(documents, location, beginningOf(pieces), form);
}

}  // namespace

std::vector<Failure> failuresOf(ComparedDocuments& a, ComparedDocuments& b) {
  std::vector<Failure> failures;
  collectFailure(a, failures);
  collectFailure(b, failures);
  return failures;
}

std::string findDifference(ComparedDocuments& a, ComparedDocuments& b, Form form) {
  for (;;) {
    while (RecordReader::passEqualBlocks(a.records(), b.records())) {
    }
    Record inA{};
    Record inB{};
    const bool isInA = a.records().find(inA);
    const bool isInB = b.records().find(inB);
    if (isInA && isInB && isPartOfText(inA.kind) && isPartOfText(inB.kind)) {
      const Location locationA = inA.location();
      const Location locationB = inB.location();
      TextComparison texts(a.records(), b.records());
      if (texts.areSame()) continue;
      return describeText(a, locationA, texts.inA(), form) +
             describeText(b, locationB, texts.inB(), form);
    }
    if (isInA && isInB && isSame(inA, inB)) {
      a.records().advance(inA);
      b.records().advance(inB);
      continue;
    }
    if ((!isInA && !isInB) || !failuresOf(a, b).empty()) return {};
    // A text is taken when it is described, so that the other side comes first.
    const Record* const nextA = isInA ? &inA : nullptr;
    const Record* const nextB = isInB ? &inB : nullptr;
    const bool isTextInA = isInA && isPartOfText(inA.kind);
    if (isTextInA) {
      const std::string lineB = describeNext(b, nextB, nextA, form);
      return describeNext(a, nextA, nextB, form) + lineB;
    }
    const std::string lineA = describeNext(a, nextA, nextB, form);
    return lineA + describeNext(b, nextB, nextA, form);
  }
}

}  // namespace tool
