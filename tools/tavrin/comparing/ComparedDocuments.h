#pragma once

#include <Tavrin/XMLReader.h>

#include <cstdint>
#include <memory>
#include <string>
#include <thread>

#include "comparing/BlockQueue.h"
#include "comparing/LineFinder.h"
#include "comparing/RecordReader.h"
#include "files/EntityFiles.h"
#include "files/Input.h"
#include "options/ReadingOptions.h"

namespace tool {

/// A file of documents that a thread of its own reads; its events come as records.
class ComparedDocuments {
 public:
  /// @param lexical whether document types and the borders of CDATA sections count
  /// @param quiet   no progress bar
  ComparedDocuments(const std::string& name, const ReadingOptions& options, bool lexical,
                    bool quiet);
  ~ComparedDocuments();
  ComparedDocuments(const ComparedDocuments&) = delete;
  ComparedDocuments& operator=(const ComparedDocuments&) = delete;

  const std::string& name() const { return input_.name(); }
  bool hasProgress() const { return input_.hasProgress(); }
  /// How many documents there are. Call it behind the last record.
  std::uint64_t number() const { return input_.documentNumber(); }

  void start();
  RecordReader& records() { return records_; }
  /// The line and column of a place, if the document has lines.
  Place placeOf(const Location& location) {
    return lines_.placeOf(location.place, location.anchor);
  }

  /// @throws what ended the reading before the last document did. Call it behind the last record
  void check() const;

 private:
  void run();
  void read();

  Input input_;
  LineFinder lines_;
  ReadingOptions options_;
  bool lexical_;
  EntityFiles entities_;
  std::unique_ptr<Tavrin::XMLReader> reader_;
  BlockQueue queue_;
  RecordReader records_;
  std::thread thread_;
};

}  // namespace tool
