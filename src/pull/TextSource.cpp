#include <Tavrin/XMLReader_XML10.h>

#include <algorithm>
#include <optional>
#include <streambuf>
#include <vector>

#include "../sax/DrivenReader.h"
#include "../text/reader/XML10Driver.h"
#include "EventRecorder.h"
#include "PullSource.h"

// XML text. While the document is scanned, the scanner is asked for a few events at a time, up to a
// start tag, and leaves what it reports where it is. Expat cannot be asked so, and some events are
// rare: they are kept as copies.

namespace Tavrin {

namespace {

class PulledReader_XML10 final : public DrivenReader<XMLReader_XML10> {
 public:
  PulledReader_XML10() : driver_(*static_cast<text::XML10Driver*>(getProperty(kDriver))) {}

  text::XML10Driver& driver() { return driver_; }

  void feed(std::string_view octets, bool isFinal) {
    checkRuns();  // Somebody may have called between two events.
    XMLReader_XML10::parse(octets.data(), octets.size(), isFinal);
    checkRuns();
  }
  bool pull() {
    checkRuns();
    return driver_.pull();
  }

 private:
  static constexpr auto& kDriver = text::kDriverProperty;

  void checkRuns() const {
    if (driver_.isStopped() || driver_.isPaused()) refuse("stop or pause called");
  }

  text::XML10Driver& driver_;
};

class TextSource final : public ReadingSource, private text::ScannedEvents {
 public:
  explicit TextSource(std::istream* stream) : ReadingSource(stream), driver_(reader_.driver()) {
    if (stream_) phase_ = Phase::reading;
    driver_.pulledEvents = this;
    recorder_.attachTo(reader_);
  }

  bool next() override;
  void supply(std::string_view block, bool isFinal) override;
  XMLReader& reader() override { return reader_; }
  void trackPositions() override {
    tracks_ = true;
    recorder_.trackPositions();
  }
  EventPosition position() const override {
    if (!isInPlace_) return queue_.position();
    return tracks_ ? recorder_.positionHere() : EventPosition();
  }

 private:
  static constexpr std::size_t kPiece = std::size_t{8} * 1024;

  /// An event of the scanner.
  struct Held {
    PullEvent event{};
    std::uint8_t partCount = 0;
    std::int8_t opened = 0;  // How many elements it opens.
    std::array<std::string_view, 3> parts;
  };

  void beginDocument() override {
    recorder_.attachTo(reader_);
    withoutEvent_ = 0;
    heldCount_ = nextHeld_ = 0;
  }
  bool showHeld();
  [[gnu::noinline]] bool nextRarer();
  void pullNext();
  void readOn();
  void feedFromStream();
  void feedFromBlock();
  void feed(std::string_view octets, bool isLastAtHand, bool isFinal);

  void scannedDeclaration(std::string_view encoding, std::optional<bool> standalone) override {
    events().scannedDeclaration(encoding, standalone);
  }
  void scannedPrefix(const std::string& prefix, const std::string& uri) override {
    if (!mayStay()) return events().scannedPrefix(prefix, uri);
    driver_.checkPrefix(prefix, uri);
    mappings_.push_back({prefix, uri});
  }
  void scannedStart(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Attributes& list) override {
    if (!mayStay()) return events().scannedStart(uri, localName, qName, list);
    driver_.checkStart();
    hold(PullEvent::startElement, 1, uri, localName, qName);
    driver_.haltHere();  // The next one has its attributes in the same place.
    attributes = &list;
    mappings = mappings_.data();
    mappingCount = mappings_.size();
  }
  void scannedEnd(const std::string& uri, const std::string& localName,
                  const std::string& qName) override {
    if (!mayStay()) return events().scannedEnd(uri, localName, qName);
    hold(PullEvent::endElement, -1, uri, localName, qName);
  }
  void scannedPrefixEnd(const std::string&) override {}
  void scannedText(std::string_view text) override {
    if (!mayStay()) return events().scannedText(text);
    hold(PullEvent::characters, 0, text);
  }
  void scannedStartOfCDATA() override { events().scannedStartOfCDATA(); }
  void scannedEndOfCDATA() override { events().scannedEndOfCDATA(); }
  void scannedInstruction(const std::string& name, const std::string& data) override {
    events().scannedInstruction(name, data);
  }
  void scannedComment(const std::string& text) override { events().scannedComment(text); }

  /// Whether the current event may stay where it is, as no other one has to come first.
  bool mayStay() const { return queue_.isEmpty() && driver_.isReady(); }
  /// The driver, which reports an event to the recorder. What was recorded is asked for first.
  text::ScannedEvents& events() {
    driver_.haltHere();
    return driver_;
  }
  template <typename... Strings>
  void hold(PullEvent kind, std::int8_t opened, const Strings&... strings) {
    driver_.hold();
    Held& held = held_[heldCount_++];
    held.event = kind;
    held.partCount = sizeof...(strings);
    held.opened = opened;
    held.parts = {strings...};
    if (heldCount_ == held_.size() || tracks_) driver_.haltHere();
  }

  std::unique_ptr<char[]> piece_;  // Of a stream.
  std::string_view rest_;          // What has not been parsed of the block.
  bool isFinal_ = false;
  bool isHalted_ = false;  // The scanner is, within the piece.
  bool tracks_ = false;
  bool isInPlace_ = false;  // The current event was not recorded.
  std::array<Held, 32> held_;
  std::size_t heldCount_ = 0;
  std::size_t nextHeld_ = 0;
  std::size_t withoutEvent_ = 0;  // Octets since the last event.
  PulledReader_XML10 reader_;
  text::XML10Driver& driver_;
  EventRecorder recorder_{queue_};
  std::vector<PullMapping> mappings_;  // Of the current event.
};

bool TextSource::next() {
  if (nextHeld_ == heldCount_ && isHalted_ && queue_.isEmpty()) pullNext();
  return showHeld() || nextRarer();
}

/// Makes the next event that is held the current one, if there is one.
inline bool TextSource::showHeld() {
  if (nextHeld_ == heldCount_) return false;
  const Held& held = held_[nextHeld_++];
  event = held.event;
  partCount = held.partCount;
  std::copy(held.parts.begin(), held.parts.end(), parts.begin());
  open += static_cast<std::size_t>(held.opened);
  isInPlace_ = true;
  return true;
}

bool TextSource::nextRarer() {
  isInPlace_ = false;
  while (queue_.isEmpty() || !handOut()) {
    event = PullEvent::none;
    if (isHalted_) {
      pullNext();
    } else {
      throwFailure();
      if (phase_ != Phase::reading || needsBlock) return false;
      readOn();
    }
    if (showHeld()) return true;
  }
  return true;
}

/// Lets the scanner go on.
inline void TextSource::pullNext() {
  if (!queue_.isEmpty()) queue_.clear();
  if (!mappings_.empty()) mappings_.clear();
  heldCount_ = nextHeld_ = 0;
  try {
    isHalted_ = reader_.pull();
  } catch (...) {
    isHalted_ = false;
    fail();
  }
}

/// Reads another piece of the document.
void TextSource::readOn() {
  queue_.clear();
  mappings_.clear();
  heldCount_ = nextHeld_ = 0;
  try {
    stream_ ? feedFromStream() : feedFromBlock();
  } catch (...) {
    fail();
  }
  isHalted_ = driver_.isHaltedHere();
  withoutEvent_ = queue_.isEmpty() ? withoutEvent_ : 0;
}

void TextSource::feedFromStream() {
  std::streambuf* const source = stream_->rdbuf();
  std::streamsize arrived = 0;
  if (source && source->sgetc() != std::streambuf::traits_type::eof()) {
    arrived = std::clamp<std::streamsize>(source->in_avail(), 1, kPiece);
  }
  if (!piece_) piece_.reset(new char[kPiece]);
  if (arrived > 0) arrived = source->sgetn(piece_.get(), arrived);
  const bool isFinal = arrived == 0;
  feed({piece_.get(), static_cast<std::size_t>(arrived)}, isFinal || source->in_avail() <= 0,
       isFinal);
}

void TextSource::feedFromBlock() {
  const std::string_view piece = rest_.substr(0, kPiece);
  rest_.remove_prefix(piece.size());
  if (piece.empty() && !isFinal_) {
    needsBlock = true;
    return;
  }
  feed(piece, rest_.empty(), rest_.empty() && isFinal_);
}

void TextSource::feed(std::string_view octets, bool isLastAtHand, bool isFinal) {
  // Expat would keep the end of a tag that was cut until there are more octets. Nobody must wait
  // for these; but for very long tokens it saves the time to look at them again and again.
  constexpr std::size_t kLongToken = std::size_t{64} * 1024;
  reader_.setReparseDeferral(!isLastAtHand || withoutEvent_ >= kLongToken);
  withoutEvent_ += octets.size();
  if (isFinal) phase_ = Phase::ended;
  reader_.feed(octets, isFinal);
}

void TextSource::supply(std::string_view block, bool isFinal) {
  if (!acceptBlock(block, isFinal)) return;
  rest_ = block;
  isFinal_ = isFinal;
}

}  // namespace

std::unique_ptr<PullSource> makeTextSource(std::istream* stream) {
  return std::make_unique<TextSource>(stream);
}

}  // namespace Tavrin
