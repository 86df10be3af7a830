#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "comparing/ComparedDocuments.h"
#include "comparing/ComparedPath.h"
#include "comparing/Description.h"

namespace tool {

/// Finds all differences of two files of documents. Behind a difference it goes on where both are
/// the same again, by looking ahead in the element that has it.
class AllDifferences {
 public:
  /// Takes the lines about a difference.
  using Sink = std::function<void(const std::string& lines)>;

  AllDifferences(ComparedDocuments& a, ComparedDocuments& b, Form form, Sink sink);

  /// Goes through both up to their ends, or to where one cannot be read on.
  void find();

 private:
  /// One of the files, and where it is.
  struct Side {
    ComparedDocuments& documents;
    const char* mark;  // In front of its lines.
    ComparedPath path;
    Record record{};
    bool isRecord = false;  // There is one.

    RecordReader& records() { return documents.records(); }
    bool next() { return isRecord = records().find(record); }
    bool isAt(RecordKind kind) const { return isRecord && record.kind == kind; }
    bool isAtText() const { return isRecord && isPartOfText(record.kind); }
    bool isAtEnd() const;
    /// Goes past the current record, which is no part of a text.
    void pass();
  };
  struct Tag;

  bool step();
  void compareTexts();
  void compareFirst();
  void compareTags();
  Tag takeTag(Side& side);
  void showOnly(Side& side);
  void skip(Side& side);
  void showEnd(Side& side);
  void show(const std::string& path, const std::string& inA, const std::string& inB);
  bool hasFailed(Side& side) const;

  Side a_;
  Side b_;
  Form form_;
  Sink sink_;
};

}  // namespace tool
