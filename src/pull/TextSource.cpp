#include <Tavrin/XMLReader_XML10.h>

#include <algorithm>
#include <streambuf>

#include "../sax/DrivenReader.h"
#include "EventRecorder.h"
#include "PullSource.h"

// XML text. Expat cannot be asked for one event, so those of a piece of the document are kept.
// Measured: that takes a sixth of the time that handlers take.

namespace Tavrin {

namespace {

class PulledReader_XML10 final : public DrivenReader<XMLReader_XML10> {
 public:
  void feed(std::string_view octets, bool isFinal) {
    checkRuns();  // Somebody may have called between two events.
    XMLReader_XML10::parse(octets.data(), octets.size(), isFinal);
    checkRuns();
  }

 private:
  void checkRuns() const {
    if (isStopped() || isPaused()) refuse("stop or pause called");
  }
};

class TextSource final : public ReadingSource {
 public:
  explicit TextSource(std::istream* stream) : ReadingSource(stream) {
    if (stream_) phase_ = Phase::reading;
    recorder_.attachTo(reader_);
  }

  bool next() override;
  void supply(std::string_view block, bool isFinal) override;
  XMLReader& reader() override { return reader_; }
  void trackPositions() override { recorder_.trackPositions(); }
  EventPosition position() const override { return queue_.position(); }

 private:
  static constexpr std::size_t kPiece = std::size_t{8} * 1024;

  void beginDocument() override {
    recorder_.attachTo(reader_);
    withoutEvent_ = 0;
  }
  void feedFromStream();
  void feedFromBlock();
  void feed(std::string_view octets, bool isLastAtHand, bool isFinal);

  std::string_view rest_;  // What has not been parsed of the block.
  bool isFinal_ = false;
  std::size_t withoutEvent_ = 0;  // Octets since the last event.
  PulledReader_XML10 reader_;
  EventRecorder recorder_{queue_};
};

bool TextSource::next() {
  while (!handOut()) {
    event = PullEvent::none;
    throwFailure();
    if (phase_ != Phase::reading || needsBlock) return false;
    queue_.clear();
    try {
      stream_ ? feedFromStream() : feedFromBlock();
    } catch (...) {
      fail();
    }
    withoutEvent_ = queue_.isEmpty() ? withoutEvent_ : 0;
  }
  return true;
}

void TextSource::feedFromStream() {
  std::streambuf* const source = stream_->rdbuf();
  std::streamsize arrived = 0;
  if (source && source->sgetc() != std::streambuf::traits_type::eof()) {
    arrived = std::clamp<std::streamsize>(source->in_avail(), 1, kPiece);
  }
  char octets[kPiece];
  if (arrived > 0) arrived = source->sgetn(octets, arrived);
  const bool isFinal = arrived == 0;
  feed({octets, static_cast<std::size_t>(arrived)}, isFinal || source->in_avail() <= 0, isFinal);
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
