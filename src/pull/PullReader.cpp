#include <Tavrin/Attributes.h>
#include <Tavrin/PullReader.h>

#include "../fastinfoset/x891/DocumentStart.h"
#include "PullSource.h"

namespace Tavrin {

PullState::~PullState() = default;
bool PullState::next() { return false; }

// --- Sources ---

bool ReadingSource::acceptBlock(std::string_view block, bool isFinal) {
  if (stream_) throw SAXException("supply called of a pull reader that reads a stream");
  const bool isOver = phase_ == Phase::failed ? !failure_ : hasEnded;
  if (!needsBlock && !isOver)
    throw SAXException("supply called while the last block is being read");
  if (hasEnded && block.empty() && isFinal) return false;
  if (phase_ != Phase::reading) {
    queue_.clear();
    event = PullEvent::none;
    value = nullptr;
    hasEnded = false;
    open = 0;
    target = 0;
    beginDocument();
    phase_ = Phase::reading;
  }
  needsBlock = false;
  return true;
}

namespace {

/// Stands for a source while there are too few octets to tell which it is.
class UnknownSource final : public PullSource {
 public:
  UnknownSource() { needsBlock = true; }

  void supply(std::string_view block, bool) override { beginning += block; }
  XMLReader& reader() override {
    throw SAXException("The encoding of the document is not known yet");
  }
};

PullSource& sourceOf(PullState& state) { return static_cast<PullSource&>(state); }

std::unique_ptr<PullState> sourceOf(std::istream& stream) {
  return fastinfoset::beginsFastInfoset(stream) ? makeBinarySource(&stream)
                                                : makeTextSource(&stream);
}

std::unique_ptr<PullState> sourceOf(const std::string& type) {
  if (type == "X891") return makeBinarySource(nullptr);
  if (type == "XML10") return makeTextSource(nullptr);
  throw SAXException("No pull reader of type \"" + type + "\"");
}

}  // namespace

// --- The reader ---

PullReader::PullReader(std::istream& stream) : state_(sourceOf(stream)) {}

PullReader::PullReader() : state_(std::make_unique<UnknownSource>()) {}

PullReader::PullReader(const std::string& type) : state_(sourceOf(type)) {}

PullReader::~PullReader() = default;

XMLReader& PullReader::reader() { return sourceOf(*state_).reader(); }

bool PullReader::nextElement() {
  while (next()) {
    if (event() == PullEvent::startElement) return true;
  }
  return false;
}

namespace {

/// Begins an operation that goes on to the end of an element, or takes it up again.
void begin(PullSource& source, const char* operation) {
  if (source.event == PullEvent::startElement) {
    source.target = source.open;
  } else if (source.target == 0 || source.event != PullEvent::none) {
    throw SAXException(std::string(operation) + " called where there is no start tag");
  }
}

/// Whether the source has come to the end of the element.
bool isAtTarget(PullSource& source) {
  if (source.event != PullEvent::endElement || source.open + 1 != source.target) return false;
  source.target = 0;
  return true;
}

}  // namespace

bool PullReader::skipElement() {
  PullSource& source = sourceOf(*state_);
  begin(source, "skipElement");
  while (source.next()) {
    if (isAtTarget(source)) return true;
  }
  return false;
}

bool PullReader::readText(std::string& text) {
  PullSource& source = sourceOf(*state_);
  begin(source, "readText");
  while (source.next()) {
    if (isAtTarget(source)) return true;
    if (event() == PullEvent::characters || event() == PullEvent::ignorableWhitespace) {
      text += this->text();
    } else if (event() == PullEvent::octets) {
      source.target = 0;
      throw SAXException("readText called for octets of the unknown algorithm " +
                         std::string(algorithmURI()));
    }
  }
  return false;
}

std::string PullReader::readText() {
  std::string text;
  if (!readText(text)) throw SAXException("readText called where another block is needed");
  return text;
}

void PullReader::supply(const void* data, unsigned long size, bool isFinal) {
  std::string_view block(static_cast<const char*>(data), data == nullptr ? 0 : size);
  if (const auto* const unknown = dynamic_cast<UnknownSource*>(state_.get())) {
    std::string start = unknown->beginning;
    start += block.substr(0, fastinfoset::kLongestStart);
    if (!isFinal && fastinfoset::mayBeFastInfoset(start)) {
      return sourceOf(*state_).supply(block, isFinal);
    }
    auto source =
        fastinfoset::isFastInfoset(start) ? makeBinarySource(nullptr) : makeTextSource(nullptr);
    if (!unknown->beginning.empty()) {
      source->beginning = unknown->beginning;
      block = source->beginning.append(block);
    }
    state_ = std::move(source);
  } else if (needsBlock()) {
    sourceOf(*state_).beginning = {};
  }
  sourceOf(*state_).supply(block, isFinal);
}

unsigned long PullReader::unusedOctets() const { return sourceOf(*state_).unusedOctets(); }

std::optional<std::string_view> PullReader::attribute(const std::string& qName) const {
  const Attributes& list = attributes();
  const int index = list.getIndex(qName);
  return index < 0 ? std::nullopt : std::optional<std::string_view>(list.getValue(index));
}

std::optional<std::string_view> PullReader::attribute(const std::string& uri,
                                                      const std::string& localName) const {
  const Attributes& list = attributes();
  const int index = list.getIndex(uri, localName);
  return index < 0 ? std::nullopt : std::optional<std::string_view>(list.getValue(index));
}

void PullReader::trackPositions() { sourceOf(*state_).trackPositions(); }

std::int32_t PullReader::line() const { return sourceOf(*state_).position().line; }

std::int32_t PullReader::column() const { return sourceOf(*state_).position().column; }

std::uint64_t PullReader::octetOffset() const { return sourceOf(*state_).position().octets; }

std::string_view PullReader::textOfValue() const { return sourceOf(*state_).textOfValue(); }

const Attributes& PullReader::noAttributes() {
  static const AttributesImpl none;
  return none;
}

}  // namespace Tavrin
