#include "paths/Results.h"

#include <algorithm>

#include "printing/Text.h"

namespace tool {

namespace {

std::unique_ptr<ElementForm> makeForm(std::ostream& out, const ResultFormat& format) {
  if (format.isText) return makeTextForm(out, format.isJSON);
  return format.isJSON ? makeJSONForm(out) : makeXMLForm(out);
}

/// Writes octets that begin with a tag, and declarations behind its name.
void writeTag(std::ostream& out, std::string_view octets, std::string_view declarations) {
  const std::size_t behindName = std::min(octets.find_first_of(" />"), octets.size());
  out << octets.substr(0, behindName) << declarations << octets.substr(behindName);
}

}  // namespace

Results::Split::int_type Results::Split::overflow(int_type c) {
  const char octet = traits_type::to_char_type(c);
  return xsputn(&octet, 1) == 1 ? c : traits_type::eof();
}

std::streamsize Results::Split::xsputn(const char* text, std::streamsize size) {
  const std::string_view piece(text, static_cast<std::size_t>(size));
  if (spool) spool->add(Spool::Record::Piece, piece);
  if (declarations.empty()) return out_.write(text, size) ? size : 0;
  writeTag(out_, piece, declarations);
  declarations.clear();
  return out_ ? size : 0;
}

Results::Results(std::ostream& out, const ResultFormat& format)
    : out_(out),
      isJSON_(format.isJSON),
      elementsAreStrings_(format.isJSON && format.isText),
      behind_(1, format.end),
      split_(out),
      stream_(&split_),
      // The analyser loses sight of it. NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks)
      form_(makeForm(stream_, format)) {
  stream_.exceptions(std::ios::badbit);  // What the spool throws comes through.
  if (!isJSON_ || format.file.empty()) return;
  before_ = "{\"file\":";
  appendQuoted(before_, format.file);
  before_ += ",\"value\":";
  behind_.insert(0, "}");
}

void Results::open(bool isString) {
  out_ << before_;
  if (isString) out_ << "\"";
}

void Results::close(bool isString) {
  if (isString) out_ << "\"";
  out_ << behind_;
}

/// Where results wait. It is there from the first one on that has to.
Spool& Results::spool() {
  if (!split_.spool) split_.spool.emplace();
  return *split_.spool;
}

// --- Values ---

void Results::beginValue() {
  if (!isInElement()) open(isJSON_);
}

void Results::addToValue(const std::string& text) {
  if (isInElement()) {
    spool().add(Spool::Record::Value, text);
  } else {
    writeText(out_, text, isJSON_);
  }
}

void Results::endValue() {
  if (isInElement()) {
    spool().add(Spool::Record::ValueEnd);
  } else {
    close(isJSON_);
  }
}

// --- Elements ---

void Results::startElement(const ElementForm::Tag& tag, bool isResult) {
  ++depth_;
  if (depth_ == 1) {
    open(elementsAreStrings_);
    split_.declarations = form_->begin(tag.scope);
  } else if (isResult) {
    const std::string declarations = form_->beginInner(tag.scope);
    spool().add(Spool::Record::Start, declarations);
    inner_.push_back(depth_);
  }
  form_->startElement(tag);
}

void Results::endElement(const std::string& uri, const std::string& localName,
                         const std::string& qName) {
  form_->endElement(uri, localName, qName);
  if (!inner_.empty() && inner_.back() == depth_) {
    spool().add(Spool::Record::End);
    inner_.pop_back();
  }
  if (--depth_ > 0) return;
  close(elementsAreStrings_);
  if (split_.spool) printWaiting();
}

// --- What has waited ---

void Results::printWaiting() {
  Spool& waiting = spool();
  waiting.finish();
  Spool::Record record{};
  bool isInValue = false;
  while (out_ && waiting.next(record, octets_)) {
    const bool isOfValue = record == Spool::Record::Value || record == Spool::Record::ValueEnd;
    if (isOfValue && !isInValue) open(isJSON_);
    if (record == Spool::Record::Value) writeText(out_, octets_, isJSON_);
    if (record == Spool::Record::ValueEnd) close(isJSON_);
    if (isOfValue) isInValue = record == Spool::Record::Value;
    if (record != Spool::Record::Start) continue;
    const std::uint64_t inside = waiting.position();
    printInner(std::string(octets_));
    waiting.goTo(inside);
  }
  split_.spool.reset();
}

/// Prints the element whose start has just been taken.
void Results::printInner(const std::string& declarations) {
  open(elementsAreStrings_);
  Spool::Record record{};
  bool isFirst = true;
  for (std::uint64_t depth = 1; depth > 0 && out_ && spool().next(record, octets_);) {
    if (record == Spool::Record::Start) ++depth;
    if (record == Spool::Record::End) --depth;
    if (record != Spool::Record::Piece) continue;
    if (isFirst) {
      writeTag(out_, octets_, declarations);
    } else {
      out_ << octets_;
    }
    isFirst = false;
  }
  close(elementsAreStrings_);
}

}  // namespace tool
