#include <utility>

#include "../fastinfoset/DecodePulled.h"
#include "../fastinfoset/x891/PulledReader.h"
#include "EventRecorder.h"
#include "PullSource.h"

// Fast Infoset. An event takes less time than a copy of it would, so the decoder is asked for one
// item after another, and leaves what it reports where it is. Few events are rare enough for
// copies: those that an item can have several of.

namespace Tavrin {

namespace {

using fastinfoset::X891Decoder;

class BinarySource final : public ReadingSource,
                           private EventRecorder,
                           private EncodingAlgorithmContentHandler {
 public:
  explicit BinarySource(std::istream* stream)
      : ReadingSource(stream), EventRecorder(queue_), decoder_(reader_.decoder()) {
    beginDocument();
  }

  bool next() override;
  void supply(std::string_view block, bool isFinal) override;
  XMLReader& reader() override { return reader_; }
  unsigned long unusedOctets() const override { return decoder_.unusedOctets(); }
  std::string_view textOfValue() override;
  EventPosition position() const override { return positionHere(); }

 private:
  void beginDocument() override;
  void forgetEvent();
  void forgetValue();
  void pull();
  bool beginStream();
  bool endOrThrow();
  bool handOutFirst();
  bool handOutInOrder();

  void startPrefixMapping(const std::string& prefix, const std::string& uri) override {
    mappings_.push_back({prefix, uri});
  }
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Attributes& list) override {
    setNames(PullEvent::startElement, uri, localName, qName);
    attributes = &list;
    mappings = mappings_.data();
    mappingCount = mappings_.size();
    ++open;
  }
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override {
    setNames(PullEvent::endElement, uri, localName, qName);
    --open;
  }
  void characters(const std::string& text) override {
    set(PullEvent::characters, 1);
    parts[0] = text;
  }
  void object(const std::string& uri, int index, const EncodedData& data) override {
    set(PullEvent::characters, 0);
    value = &data;
    uri_ = uri;
    algorithmURI = uri_;
    algorithmIndex = index;
  }
  void octets(const std::string& uri, int index, const std::string& data) override {
    queue_.addOctets(uri, index, data);
  }

  static constexpr std::size_t kLongText = std::size_t{16} * 1024;

  void set(PullEvent kind, std::size_t count) {
    event = kind;
    partCount = count;
    queuedBefore_ = queue_.size();
  }
  void setNames(PullEvent kind, const std::string& uri, const std::string& localName,
                const std::string& qName) {
    set(kind, 3);
    parts[0] = uri;
    parts[1] = localName;
    parts[2] = qName;
  }

  PulledReader_X891 reader_;
  X891Decoder& decoder_;
  std::vector<PullMapping> mappings_;
  std::string uri_;
  std::string text_;
  std::size_t queuedBefore_ = 0;  // How many events of the queue precede the other one.
  PullState other_;               // An event that is not in the queue, while there is one.
};

void BinarySource::beginDocument() {
  attachTo(reader_);
  reader_.setPrimitiveTypeContentHandler(nullptr);
  reader_.setEncodingAlgorithmContentHandler(this);
  mappings_.clear();
}

bool BinarySource::next() {
  if (!queue_.isEmpty() && handOutInOrder()) return true;
  forgetEvent();
  if (phase_ != Phase::reading && !beginStream()) return endOrThrow();
  try {
    pull();
  } catch (...) {
    fail();
  }
  if (!queue_.isEmpty()) return handOutFirst();
  return event != PullEvent::none || endOrThrow();
}

bool BinarySource::endOrThrow() {
  throwFailure();
  return false;
}

bool BinarySource::handOutFirst() {
  other_ = static_cast<const PullState&>(*this);
  if (event == PullEvent::startElement) --open;
  return handOutInOrder();
}

/// What the last event referred to may change.
inline void BinarySource::forgetEvent() {
  if (event == PullEvent::startElement) {
    decoder_.forgetStartTag();
    mappings_.clear();
  } else if (event == PullEvent::characters) {
    if (value != nullptr) forgetValue();
    if (parts[0].size() > kLongText) decoder_.forgetText();
  }
  event = PullEvent::none;
}

void BinarySource::forgetValue() {
  value = nullptr;
  algorithmURI = {};
  algorithmIndex = -1;
  text_ = {};
}

bool BinarySource::beginStream() {
  if (phase_ != Phase::none || stream_ == nullptr) return false;
  decoder_.beginPulling(*stream_);
  phase_ = Phase::reading;
  return true;
}

/// Lets the decoder go on until something is reported.
inline void BinarySource::pull() {
  using Pulled = X891Decoder::Pulled;
  do {
    const Pulled pulled = decoder_.pull();
    if (pulled == Pulled::item) continue;
    if (pulled == Pulled::text) {
      set(PullEvent::characters, 1);
      parts[0] = decoder_.pulledText();
      return;
    }
    if (pulled == Pulled::end) phase_ = Phase::ended;
    needsBlock = pulled == Pulled::needsBlock;
    return;
  } while (event == PullEvent::none && queue_.isEmpty());
}

bool BinarySource::handOutInOrder() {
  if (other_.event != PullEvent::none && queue_.next() == queuedBefore_) {
    static_cast<PullState&>(*this) = other_;
    other_.event = PullEvent::none;
    return true;
  }
  if (handOut()) return true;
  queue_.clear();
  algorithmURI = {};
  algorithmIndex = -1;
  return false;
}

void BinarySource::supply(std::string_view block, bool isFinal) {
  if (acceptBlock(block, isFinal)) decoder_.supply(block, isFinal);
}

std::string_view BinarySource::textOfValue() {
  text_ = decoder_.textOfReported(static_cast<unsigned>(algorithmIndex), *value);
  return text_;
}

}  // namespace

std::unique_ptr<PullSource> makeBinarySource(std::istream* stream) {
  return std::make_unique<BinarySource>(stream);
}

}  // namespace Tavrin
