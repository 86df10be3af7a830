#include "writing/IndentingWriter.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace tool {

namespace {

/// How far text may be from the first child of its element, and how long white space may be.
constexpr std::uint64_t kLookAhead = std::uint64_t{64} << 10U;
/// What is held is looked at when there is so much of it: most can go then.
constexpr std::size_t kMuch = 4 * kLookAhead;

const std::string kSpace = "xml:space";

bool isWhiteSpace(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

}  // namespace

IndentingWriter::IndentingWriter(std::unique_ptr<Tavrin::XMLWriter> writer, const std::string& unit)
    : writer_(std::move(writer)), octets_(unit), stream_(&octets_) {
  writer_->setOutputStream(&stream_);
}

// --- What is laid out ---

/// Passes what has a line of its own.
template <typename Event>
void IndentingWriter::passItem(Event event) {
  const std::uint64_t begin = octets_.position();
  event();
  if (state_.inDTD) {
    placeDeclaration(begin);
  } else {
    placeItem(begin);
  }
  releaseDecided();
}

/// Gives a line of its own to what has been written since.
void IndentingWriter::placeItem(std::uint64_t begin) {
  if (state_.open.empty()) {
    if (begin > 0) octets_.breakLine(begin, 0, 0);
    return;
  }
  if (isLaidOut()) {
    Element& parent = state_.open.back();
    if (parent.firstBreak == kNone) parent.firstBreak = octets_.nextBreak();
    const bool endsTag = state_.hasOpenTag && octets_.from(begin).starts_with('>');
    breakLine(begin + (endsTag ? 1 : 0), state_.open.size());
  }
  state_.hasOpenTag = false;
  state_.whiteSpace = kNone;
}

/// Likewise in the document type, of which only the internal subset is written. Writers have blanks
/// of their own in front of declarations.
void IndentingWriter::placeDeclaration(std::uint64_t begin) {
  std::string_view written = octets_.from(begin);
  if (written.empty()) return;
  if (!state_.hasInternalSubset && written.starts_with(" [")) {
    begin += 2;
    written.remove_prefix(2);
  }
  state_.hasInternalSubset = true;
  octets_.breakLine(begin, std::min(written.find_first_not_of(' '), written.size()), 1);
}

/// Breaks the line in place of the white space that ends there.
void IndentingWriter::breakLine(std::uint64_t begin, std::size_t depth) {
  const std::uint64_t from = std::min(begin, state_.whiteSpace);
  octets_.breakLine(from, begin - from, depth);
}

/// Whether lines break in the innermost element, as far as is known.
bool IndentingWriter::isLaidOut() const {
  const Content content = state_.open.back().content;
  return content == Content::Open || content == Content::Elements;
}

/// What the content of an element is at its beginning.
IndentingWriter::Content IndentingWriter::contentOf(const Tavrin::Attributes& attributes) const {
  const Content around = state_.open.empty() ? Content::Open : state_.open.back().content;
  if (around == Content::Text) return around;
  const int space = attributes.getLength() > 0 ? attributes.getIndex(kSpace) : -1;
  if (space >= 0) {
    const std::string& value = attributes.getValue(space);
    if (value == "preserve") return Content::Preserved;
    if (value == "default") return Content::Open;
  }
  return around == Content::Preserved ? around : Content::Open;
}

// --- Text ---

/// Passes a text that belongs to content.
template <typename Event>
void IndentingWriter::passText(bool isWhiteSpace, Event event) {
  std::uint64_t begin = octets_.position();
  event();
  if (state_.open.empty()) return;
  if (isLaidOut()) {
    if (state_.hasOpenTag && octets_.from(begin).starts_with('>')) ++begin;
    state_.whiteSpace = std::min(state_.whiteSpace, begin);
    const bool isLong = octets_.position() - state_.whiteSpace > kLookAhead;
    if (!isWhiteSpace || isLong) foundText();
  }
  state_.hasOpenTag = false;
  releaseDecided();
}

/// The innermost element has text, with the white space in front of it.
void IndentingWriter::foundText() {
  Element& element = state_.open.back();
  if (element.content == Content::Open && element.firstBreak != kNone &&
      state_.whiteSpace - octets_.placeOf(element.firstBreak) <= kLookAhead) {
    octets_.dropBreaksFrom(element.firstBreak);
  }
  element.content = Content::Text;
  state_.whiteSpace = kNone;
  noteClosed();
}

/// The content of the innermost element is no longer open.
void IndentingWriter::noteClosed() {
  if (state_.outermost == state_.open.size() - 1) state_.outermost = kNone;
}

// --- What is decided ---

/// Writes what can no longer change, once there is much of it. An element in which no text has come
/// for long is laid out. That is not late: text that comes then would come too late.
void IndentingWriter::releaseDecided() {
  if (octets_.size() < kMuch) return;
  const std::uint64_t end = std::min(octets_.position(), state_.whiteSpace);
  for (; state_.outermost != kNone;) {
    Element& element = state_.open[state_.outermost];
    if (element.firstBreak == kNone) break;
    const std::uint64_t place = octets_.placeOf(element.firstBreak);
    if (end - place <= kLookAhead) return octets_.release(place, out_);
    element.content = Content::Elements;
    const auto next = std::find_if(
        state_.open.begin() + static_cast<std::ptrdiff_t>(state_.outermost), state_.open.end(),
        [](const Element& inner) { return inner.content == Content::Open; });
    state_.outermost =
        next == state_.open.end() ? kNone : static_cast<std::uint64_t>(next - state_.open.begin());
  }
  octets_.release(end, out_);
}

// --- Events of the document ---

void IndentingWriter::startDocument() { writer_->startDocument(); }

void IndentingWriter::endDocument() {
  writer_->endDocument();
  octets_.breakLine(octets_.position(), 0, 0);
  octets_.release(octets_.position(), out_);
}

void IndentingWriter::startElement(const std::string& uri, const std::string& localName,
                                   const std::string& qName, const Tavrin::Attributes& attributes) {
  passItem([&] { writer_->startElement(uri, localName, qName, attributes); });
  const Content content = contentOf(attributes);
  if (content == Content::Open && state_.outermost == kNone) {
    state_.outermost = state_.open.size();
  }
  state_.open.push_back({content});
  state_.hasOpenTag = true;
}

void IndentingWriter::endElement(const std::string& uri, const std::string& localName,
                                 const std::string& qName) {
  const std::uint64_t begin = octets_.position();
  writer_->endElement(uri, localName, qName);
  const bool hasChildren = state_.open.back().firstBreak != kNone;
  if (hasChildren && isLaidOut()) breakLine(begin, state_.open.size() - 1);
  noteClosed();
  state_.open.pop_back();
  state_.hasOpenTag = false;
  state_.whiteSpace = kNone;
  releaseDecided();
}

// Empty text, and a section without text, would be no more than the end of a start tag.

void IndentingWriter::characters(const std::string& text) {
  if (text.empty()) return;
  const bool isInSection = std::exchange(state_.hasUnwrittenSection, false);
  passText(!isInSection && isWhiteSpace(text), [&] {
    if (isInSection) writer_->startCDATA();
    writer_->characters(text);
  });
}

void IndentingWriter::ignorableWhitespace(const std::string& text) {
  if (!state_.open.empty()) return characters(text);
  writer_->ignorableWhitespace(text);
}

void IndentingWriter::startCDATA() { state_.hasUnwrittenSection = true; }

void IndentingWriter::endCDATA() {
  if (!std::exchange(state_.hasUnwrittenSection, false)) writer_->endCDATA();
}

void IndentingWriter::skippedEntity(const std::string& name) {
  const auto pass = [&] { writer_->skippedEntity(name); };
  if (state_.inDTD) {
    passItem(pass);
  } else {
    passText(false, pass);
  }
}

void IndentingWriter::processingInstruction(const std::string& target, const std::string& data) {
  passItem([&] { writer_->processingInstruction(target, data); });
}

void IndentingWriter::comment(const std::string& text) {
  passItem([&] { writer_->comment(text); });
}

// --- Document type ---

void IndentingWriter::startDTD(const std::string& name, const std::string& publicId,
                               const std::string& systemId) {
  passItem([&] { writer_->startDTD(name, publicId, systemId); });
  state_.inDTD = true;
}

void IndentingWriter::endDTD() {
  const std::uint64_t begin = octets_.position();
  writer_->endDTD();
  if (state_.hasInternalSubset) octets_.breakLine(begin, 0, 0);
  state_.inDTD = false;
}

void IndentingWriter::startEntity(const std::string& name) {
  const auto pass = [&] { writer_->startEntity(name); };
  if (state_.inDTD) {
    passItem(pass);
  } else {
    pass();
  }
}

void IndentingWriter::endEntity(const std::string& name) { writer_->endEntity(name); }

void IndentingWriter::notationDecl(const std::string& name, const std::string& publicId,
                                   const std::string& systemId) {
  passItem([&] { writer_->notationDecl(name, publicId, systemId); });
}

void IndentingWriter::unparsedEntityDecl(const std::string& name, const std::string& publicId,
                                         const std::string& systemId,
                                         const std::string& notationName) {
  passItem([&] { writer_->unparsedEntityDecl(name, publicId, systemId, notationName); });
}

void IndentingWriter::elementDecl(const std::string& name, const std::string& model) {
  passItem([&] { writer_->elementDecl(name, model); });
}

void IndentingWriter::attributeDecl(const std::string& eName, const std::string& aName,
                                    const std::string& type, const std::string& mode,
                                    const std::string& value) {
  passItem([&] { writer_->attributeDecl(eName, aName, type, mode, value); });
}

void IndentingWriter::internalEntityDecl(const std::string& name, const std::string& value) {
  passItem([&] { writer_->internalEntityDecl(name, value); });
}

void IndentingWriter::externalEntityDecl(const std::string& name, const std::string& publicId,
                                         const std::string& systemId) {
  passItem([&] { writer_->externalEntityDecl(name, publicId, systemId); });
}

// --- What just passes ---

void IndentingWriter::setFeature(const std::string& name, bool value) {
  writer_->setFeature(name, value);
}

bool IndentingWriter::getFeature(const std::string& name) { return writer_->getFeature(name); }

void IndentingWriter::setProperty(const std::string& name, void* value) {
  writer_->setProperty(name, value);
}

void* IndentingWriter::getProperty(const std::string& name) { return writer_->getProperty(name); }

void IndentingWriter::flush() { writer_->flush(); }

void IndentingWriter::reset() {
  writer_->reset();
  octets_.clear();
  state_ = {};
}

void IndentingWriter::setDocumentLocator(const Tavrin::Locator* locator) {
  writer_->setDocumentLocator(locator);
}

void IndentingWriter::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  writer_->startPrefixMapping(prefix, uri);
}

void IndentingWriter::endPrefixMapping(const std::string& prefix) {
  writer_->endPrefixMapping(prefix);
}

}  // namespace tool
