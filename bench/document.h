#pragma once

#include <Tavrin/Tavrin.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "recorder.h"
#include "totals.h"

/// A document to measure with, in all the forms that benchmarks need. Each form is made when it is
/// first asked for and kept, so that only what a run selects is made, and only once.
class Document {
 public:
  Document(std::string name, std::function<std::string()> makeXml);

  /// A document whose text is numbers, which typed forms hold as numbers.
  Document(std::string name, std::function<std::vector<float>()> makeNumbers);

  const std::string& name() const { return name_; }

  /// Of one that comes from outside, it is not known who can carry it.
  bool isForeign() const { return isForeign_; }
  void setForeign() { isForeign_ = true; }

  const std::string& xml();

  /// The numbers of typed content; empty where there is none.
  const std::vector<float>& numbers();

  /// What reading it must give.
  const Totals& totals();

  /// The events as the reader "XML10" reports them.
  const Recorder& events();

  /// Start tags, end tags, attributes and runs of text.
  double eventCount();

  /// Plays the events to a writer; typed content to a writer that takes it.
  void play(Tavrin::XMLWriter& writer);

  /// Has a new writer of this type write the document.
  void write(const std::string& type, std::ostream& out);

  /// What a writer of this type writes.
  const std::string& writtenBy(const std::string& type);

 private:
  void playNumbers(Tavrin::XMLWriter& writer, Tavrin::PrimitiveTypeContentHandler& typed);

  std::string name_;
  std::function<std::string()> makeXml_;
  std::function<std::vector<float>()> makeNumbers_;
  bool isForeign_ = false;
  std::optional<std::string> xml_;
  std::optional<std::vector<float>> numbers_;
  std::optional<Totals> totals_;
  std::unique_ptr<Recorder> events_;
  std::map<std::string, std::string> written_;  // By type of writer.
};

using DocumentPointer = std::shared_ptr<Document>;
