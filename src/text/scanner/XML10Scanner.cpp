#include "XML10Scanner.h"

#include "../../xml/Escapes.h"
#include "../../xml/Rules.h"

namespace Tavrin::text {

XML10Scanner::Outcome XML10Scanner::scan(std::string_view octets, bool areLast) {
  begin_ = counted_ = event_ = at_ = octets.data();
  end_ = begin_ + octets.size();
  blockPlace_ = place_;
  isHalted_ = isHaltedHere_ = false;
  isLast_ = areLast;
  step_ = Step::done;
  return goOn();
}

XML10Scanner::Outcome XML10Scanner::goOn() {
  // Afterwards the octets may be gone, also where a handler throws.
  struct Scope {
    const XML10Scanner& scanner;
    ~Scope() {
      if (!scanner.isHaltedHere_) scanner.place();
    }
  } const scope = {*this};
  while (step_ == Step::done && !isHalted_) step_ = scanPhase();
  rest_ = {at_, left(at_)};
  if (isHaltedHere_) return Outcome::halted;
  if (step_ == Step::cut && isLast_) {
    if (phase_ == Phase::epilog && at_ == end_) return Outcome::read;
    step_ = Step::refused;
  }
  endBlock();
  if (step_ == Step::refused) return Outcome::refused;
  return step_ == Step::cut ? Outcome::read : Outcome::halted;
}

/// [1] document ::= prolog element Misc*
XML10Scanner::Step XML10Scanner::scanPhase() {
  switch (phase_) {
    case Phase::start:
      return startOfDocument();
    case Phase::content:
      return content();
    case Phase::section:
      return section();
    default:
      return misc();
  }
}

/// Counts the lines up to the current token, and up to the elements that stay open.
void XML10Scanner::endBlock() {
  xml::Place place = blockPlace_;
  const char* counted = begin_;
  const auto advance = [&](const char* to) {
    place.advance(counted, to);
    counted = to;
  };
  for (; numbered_ < open_.size(); ++numbered_) {
    OpenElement& element = open_[numbered_];
    advance(begin_ + (element.octet - octets_));
    element.line = place.line;
  }
  advance(at_);
  place_ = place;
  octets_ += static_cast<std::uint64_t>(at_ - begin_);
  begin_ = counted_ = event_ = at_;
}

const xml::Place& XML10Scanner::place() const {
  if (event_ != counted_) place_.advance(counted_, event_);
  counted_ = event_;
  return place_;
}

void XML10Scanner::describeContext(
    const std::function<void(std::string_view piece)>& append) const {
  append(start_);
  if (phase_ == Phase::start) return;
  if (phase_ == Phase::epilog) return append("<e/>");
  if (hasMisc_) append(" ");
  std::string tag;
  std::size_t declaration = 0;
  for (const OpenElement& element : open_) {
    tag = '<' + element.name->qName;
    for (std::uint32_t i = 0; i < element.declarations; ++i, ++declaration) {
      const std::string& prefix = bindings_.prefixAt(declaration);
      tag.append(prefix.empty() ? " xmlns" : " xmlns:").append(prefix).append("=\"");
      xml::appendText(tag, bindings_.uriAt(declaration), xml::kQuotationMarkEscapes, "a name");
      tag += '"';
    }
    append(tag += '>');
  }
  if (phase_ == Phase::section) append("<![CDATA[");
}

void XML10Scanner::forEachElement(
    const std::function<void(std::string_view start, std::uint64_t line)>& visit) const {
  for (const OpenElement& element : open_) visit('<' + element.name->qName, element.line);
}

}  // namespace Tavrin::text
