#include <strings.h>

#include "XML10Scanner.h"

// What stands around the root element.

namespace Tavrin::text {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kDeclaration = "<?xml";
constexpr std::size_t kLongest = 1024;  // Of a declaration.

/// Takes white space from the beginning of a text.
/// @return whether there was any
bool takeSpace(std::string_view& text) {
  const std::size_t before = text.size();
  while (!text.empty() && isSpace(text[0])) text.remove_prefix(1);
  return text.size() != before;
}

/// Takes `S name Eq "value"`, where the text begins with this.
/// @return whether it did
bool takeAttribute(std::string_view& text, std::string_view name, std::string_view& value) {
  std::string_view rest = text;
  if (!takeSpace(rest) || !rest.starts_with(name)) return false;
  rest.remove_prefix(name.size());
  takeSpace(rest);
  if (!rest.starts_with('=')) return false;
  rest.remove_prefix(1);
  takeSpace(rest);
  if (rest.empty() || (rest[0] != '"' && rest[0] != '\'')) return false;
  const std::size_t end = rest.find(rest[0], 1);
  if (end == std::string_view::npos) return false;
  value = rest.substr(1, end - 1);
  text = rest.substr(end + 1);
  return true;
}

bool isUTF8(std::string_view encoding) {
  constexpr std::string_view kName = "UTF-8";
  return encoding.size() == kName.size() &&
         strncasecmp(encoding.data(), kName.data(), kName.size()) == 0;
}

}  // namespace

/// A byte order mark (appendix F), and the XML declaration.
XML10Scanner::Step XML10Scanner::startOfDocument() {
  const std::string_view octets(at_, left(at_));
  if (start_.empty()) {
    // UTF-16.
    if (octets.substr(0, 2).find('\0') != std::string_view::npos) return Step::refused;
    if (octets.size() < kByteOrderMark.size() && kByteOrderMark.starts_with(octets)) {
      return Step::cut;
    }
    if (octets.starts_with(kByteOrderMark)) {
      start_ = kByteOrderMark;
      at_ += kByteOrderMark.size();
      return Step::done;
    }
  }
  event_ = at_;
  if (octets.size() <= kDeclaration.size() && kDeclaration.starts_with(octets)) return Step::cut;
  const bool declares = octets.starts_with(kDeclaration) && octets.size() > kDeclaration.size() &&
                        isSpace(octets[kDeclaration.size()]);
  if (declares) return declaration();
  phase_ = Phase::prolog;
  return Step::done;
}

/// [23] XMLDecl ::= '<?xml' VersionInfo EncodingDecl? SDDecl? S? '?>'
XML10Scanner::Step XML10Scanner::declaration() {
  const std::string_view octets(at_, left(at_));
  const std::size_t end = octets.substr(0, kLongest).find("?>");
  if (end == std::string_view::npos) return octets.size() < kLongest ? Step::cut : Step::refused;
  std::string_view inside = octets.substr(kDeclaration.size(), end - kDeclaration.size());
  std::string_view version;
  std::string_view encoding;
  std::string_view standalone;
  if (!takeAttribute(inside, "version", version) || version != "1.0") return Step::refused;
  if (takeAttribute(inside, "encoding", encoding) && !isUTF8(encoding)) return Step::refused;
  const bool isStated = takeAttribute(inside, "standalone", standalone);
  if (isStated && standalone != "yes" && standalone != "no") return Step::refused;
  takeSpace(inside);
  if (!inside.empty()) return Step::refused;
  start_.append(at_, end + 2);
  events_.scannedDeclaration(encoding,
                             isStated ? std::optional(standalone == "yes") : std::nullopt);
  at_ += end + 2;
  phase_ = Phase::prolog;
  return Step::done;
}

/// [22] prolog ::= XMLDecl? Misc* (doctypedecl Misc*)?
/// [27] Misc ::= Comment | PI | S
XML10Scanner::Step XML10Scanner::misc() {
  event_ = at_;
  if (at_ == end_) return Step::cut;
  if (isSpace(*at_)) return whiteSpace();
  if (*at_ != '<') return Step::refused;
  if (left(at_) < 2) return Step::cut;
  Step step = Step::refused;
  if (at_[1] == '?') {
    step = instruction();
  } else if (at_[1] == '!') {
    step = comment();
  } else if (phase_ == Phase::prolog && at_[1] != '/') {
    phase_ = Phase::content;
    return Step::done;
  }
  if (step == Step::done) hasMisc_ = true;
  return step;
}

bool XML10Scanner::declareAttribute(std::string_view element, std::string_view attribute,
                                    const std::string& type, const char* value) {
  constexpr std::size_t kMost = 64;
  ScannedName& owner = names_.find(element);
  if (owner.declared == 0) {
    declared_.emplace_back();
    owner.declared = static_cast<std::uint32_t>(declared_.size());
  }
  std::vector<DeclaredAttribute>& declared = declared_[owner.declared - 1];
  declared.push_back({&names_.find(attribute), type, {}});
  if (value != nullptr) declared.back().value = value;
  return declared.size() <= kMost;
}

void XML10Scanner::skipProlog(std::string_view octets) {
  if (hasMisc_) start_ += ' ';
  hasMisc_ = false;
  start_ += octets;
  octets_ += octets.size();
  place_.advance(octets.data(), octets.data() + octets.size());
  phase_ = Phase::content;
}

/// [3] S. As expat counts lines, one that ends with a carriage return waits for the line feed in
/// front of the root element, but not behind it.
XML10Scanner::Step XML10Scanner::whiteSpace() {
  const bool isReturn = *at_ == '\r' && left(at_) == 1;
  if (isReturn && phase_ == Phase::prolog) return Step::cut;
  hasMisc_ = true;
  do {
    ++at_;
  } while (at_ != end_ && isSpace(*at_) && (*at_ != '\r' || left(at_) > 1));
  // The place of the end of the document.
  if (isReturn) return Step::cut;
  return Step::done;
}

}  // namespace Tavrin::text
