#include <Tavrin/Identifiers.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "../../xml/Characters.h"
#include "../../xml/FourthEdition.h"
#include "../../xml/simd/Search.h"
#include "XML10Scanner.h"

// Tags.

namespace Tavrin::text {

namespace {

const std::string kXmlns = namespaces::xmlns;
const std::string kCDATA = "CDATA";

enum class NameOctet : std::uint8_t { none, afterFirst, first };

constexpr std::array<NameOctet, 0x80> kNameOctets = [] {
  std::array<NameOctet, 0x80> octets{};
  for (unsigned c = 'a'; c <= 'z'; ++c) octets[c] = octets[c - 0x20] = NameOctet::first;
  for (unsigned c = '0'; c <= '9'; ++c) octets[c] = NameOctet::afterFirst;
  octets['_'] = NameOctet::first;
  octets['-'] = octets['.'] = NameOctet::afterFirst;
  return octets;
}();

/// Whether an octet certainly ends a name in a tag.
bool endsName(char c) { return c == '=' || c == '>' || c == '/' || isSpace(c); }

}  // namespace

void XML10Scanner::Tag::clear() {
  at = 1;
  nameBegin = 1;
  colon = 0;
  declares = false;
  part = Part::elementName;
  attributes.clear();
}

/// [40] STag ::= '<' Name (S Attribute)* S? '>'
/// [41] Attribute ::= Name Eq AttValue
/// [44] EmptyElemTag ::= '<' Name (S Attribute)* S? '/>'
// NOLINTNEXTLINE(readability-function-cognitive-complexity): a part after the other, each short.
XML10Scanner::Step XML10Scanner::startTag() {
  const char* at = at_ + tag_.at;
  const auto skipSpace = [&] {
    while (at != end_ && isSpace(*at)) ++at;
    return at != end_;
  };
  Step step = Step::done;
  for (;;) {
    switch (tag_.part) {
      case Part::elementName:
        step = name(at);
        if (step != Step::done) return step == Step::cut ? cutTag(at) : step;
        tag_.part = Part::attributeOrEnd;
        [[fallthrough]];
      case Part::attributeOrEnd:
        if (at == end_) return cutTag(at);
        if (*at == '>') return endOfStartTag(at + 1, false);
        if (*at != '/' && !isSpace(*at)) return Step::refused;
        tag_.part = Part::spaceInTag;
        [[fallthrough]];
      case Part::spaceInTag:
        if (!skipSpace()) return cutTag(at);
        if (*at == '>') return endOfStartTag(at + 1, false);
        if (*at == '/') {
          ++at;
          tag_.part = Part::emptyEnd;
          continue;
        }
        tag_.part = Part::attributeName;
        tag_.nameBegin = static_cast<std::size_t>(at - at_);
        [[fallthrough]];
      case Part::attributeName:
        step = name(at);
        if (step != Step::done) return step == Step::cut ? cutTag(at) : step;
        tag_.part = Part::equals;
        [[fallthrough]];
      case Part::equals:  // [25] Eq ::= S? '=' S?
        if (!skipSpace()) return cutTag(at);
        if (*at != '=') return Step::refused;
        ++at;
        tag_.part = Part::quote;
        [[fallthrough]];
      case Part::quote:
        if (!skipSpace()) return cutTag(at);
        if (*at != '"' && *at != '\'') return Step::refused;
        tag_.quote = *at++;
        tag_.attributes.back().begin = static_cast<std::size_t>(at - at_);
        tag_.part = Part::value;
        [[fallthrough]];
      case Part::value:
        step = value(at);
        if (step != Step::done) return step == Step::cut ? cutTag(at) : step;
        tag_.part = Part::attributeOrEnd;
        continue;
      case Part::emptyEnd:
        if (at == end_) return cutTag(at);
        return *at == '>' ? endOfStartTag(at + 1, true) : Step::refused;
    }
  }
}

XML10Scanner::Step XML10Scanner::cutTag(const char* at) {
  tag_.at = static_cast<std::size_t>(at - at_);
  return Step::cut;
}

/// The name of the element or of an attribute.
XML10Scanner::Step XML10Scanner::name(const char*& at) {
  const char* const begin = at_ + tag_.nameBegin;
  ScannedName* found = names_.expected();
  const std::size_t size = found != nullptr ? found->qName.size() : 0;
  if (at == begin && found != nullptr && left(at) > size && endsName(at[size]) &&
      xml::sameText(found->qName, {at, size})) {
    at += size;
    names_.confirm(*found);
  } else {
    const Step step = nameOctets(at, begin, &tag_.colon);
    if (step != Step::done) return step;
    found = &names_.find({begin, static_cast<std::size_t>(at - begin)});
    tag_.colon = 0;
  }
  if (tag_.part == Part::elementName) {
    tag_.element = found;
  } else {
    tag_.declares = tag_.declares || declaresNamespace(*found);
    tag_.attributes.push_back({found});
  }
  return Step::done;
}

/// [5] Name ::= (Letter | '_' | ':') (NameChar)*; where names are split, QName (Namespaces in XML,
/// production 7)
/// @param begin of the name, where some of it has been looked at
/// @param colon where a QName has a colon, from its beginning, or 0; null for an NCName
XML10Scanner::Step XML10Scanner::nameOctets(const char*& at, const char* begin,
                                            std::size_t* colon) const {
  while (at != end_) {
    const bool isFirst =
        at == begin || (colon != nullptr && *colon != 0 && at == begin + *colon + 1);
    if (static_cast<unsigned char>(*at) >= 0x80) {
      const Step step = overNameCharacter(at, isFirst);
      if (step != Step::done) return step;
      continue;
    }
    const NameOctet octet = kNameOctets[static_cast<unsigned char>(*at)];
    if (*at == ':') {
      if (settings_.splitsNames) {
        if (isFirst || colon == nullptr || *colon != 0) return Step::refused;
        *colon = static_cast<std::size_t>(at - begin);
      }
    } else if (isFirst && octet != NameOctet::first) {
      return Step::refused;
    } else if (octet == NameOctet::none) {
      return Step::done;
    }
    ++at;
  }
  return Step::cut;
}

/// Goes over a character beyond ASCII.
XML10Scanner::Step XML10Scanner::overNameCharacter(const char*& at, bool isFirst) const {
  const xml::FirstCharacter character = xml::firstCharacter({at, left(at)});
  if (character.isCut) return Step::cut;
  const xml::NamePlace place = xml::namePlace(character.character);
  const bool fits =
      place == xml::NamePlace::anywhere || (place == xml::NamePlace::afterFirst && !isFirst);
  if (character.octets == 0 || !fits) return Step::refused;
  at += character.octets;
  return Step::done;
}

/// [10] AttValue ::= '"' ([^<&"] | Reference)* '"' | "'" ([^<&'] | Reference)* "'"
XML10Scanner::Step XML10Scanner::value(const char*& at) {
  WrittenAttribute& attribute = tag_.attributes.back();
  for (;;) {
    at = xml::findOctet<false, '"', '\'', '<', '&'>(at, end_);
    if (at == end_) return Step::cut;
    switch (*at) {
      case '"':
      case '\'':
        if (*at == tag_.quote) {
          attribute.end = static_cast<std::size_t>(at - at_);
          ++at;
          return Step::done;
        }
        ++at;
        break;
      case '<':
        return Step::refused;
      case '&': {
        attribute.isPlain = false;
        const Reference found = reference(at);
        if (found.step != Step::done) return found.step;
        at += found.octets;
        break;
      }
      default: {
        attribute.isPlain = attribute.isPlain && !isSpace(*at);
        const Step step = overCharacter(at);
        if (step != Step::done) return step;
      }
    }
  }
}

/// Section 3.3.3: white space becomes a blank, and a line end one. Where the type is not CDATA,
/// there are single blanks within the value alone.
void XML10Scanner::assignValue(std::string& value, const WrittenAttribute& written) const {
  if (written.isDefault) {
    value = *written.declared->value;
    return;
  }
  const char* at = at_ + written.begin;
  const char* const end = at_ + written.end;
  value.clear();
  while (at != end) {
    if (*at == '&') {
      const Reference found = reference(at);
      value += found.text;
      at += found.octets;
    } else if (isSpace(*at)) {
      value += ' ';
      at += *at == '\r' && at[1] == '\n' ? 2 : 1;
    } else {
      value += *at++;
    }
  }
  if (written.declared == nullptr || written.declared->type == kCDATA) return;
  const auto areSpaces = [](char a, char b) { return a == ' ' && b == ' '; };
  value.erase(std::unique(value.begin(), value.end(), areSpaces), value.end());
  if (value.ends_with(' ')) value.pop_back();
  if (value.starts_with(' ')) value.erase(0, 1);
}

/// Checks a start tag as a whole, and then reports it.
XML10Scanner::Step XML10Scanner::endOfStartTag(const char* end, bool isEmpty) {
  const std::size_t outside = bindings_.count();
  attributes_.clear();
  if (tag_.element->declared != 0) applyDeclarations();
  const std::string* uri = nullptr;
  if ((tag_.declares && !declare(outside)) || !listAttributes() ||
      (uri = uriOf(*tag_.element)) == nullptr) {
    bindings_.undo(bindings_.count() - outside);
    return Step::refused;
  }
  const auto declarations = static_cast<std::uint32_t>(bindings_.count() - outside);
  const OpenElement element = {tag_.element, uri, declarations, octetsBefore(), 0};
  tag_.clear();
  for (std::size_t i = outside; i < bindings_.count(); ++i) {
    events_.scannedPrefix(bindings_.prefixAt(i), bindings_.uriAt(i));
  }
  open_.push_back(element);
  events_.scannedStart(*uri, *element.name->localName, element.name->qName, attributes_);
  at_ = end;
  isEmptyTag_ = isEmpty;
  if (isEmpty && !isHaltedHere_) completeTag();
  return Step::done;
}

/// Reports what is left of a tag.
void XML10Scanner::completeTag() {
  if (declarationsToLeave_ > 0) return leaveScope();
  isEmptyTag_ = false;
  event_ = at_;
  reportEnd();
}

/// Finds what is declared for the attributes of a start tag, and adds those that it lacks and that
/// have a default (section 3.3.2).
void XML10Scanner::applyDeclarations() {
  for (const DeclaredAttribute& declared : declared_[tag_.element->declared - 1]) {
    const auto written = std::ranges::find(tag_.attributes, declared.name, &WrittenAttribute::name);
    if (written != tag_.attributes.end()) {
      written->declared = &declared;
    } else if (declared.value) {
      tag_.declares = tag_.declares || declaresNamespace(*declared.name);
      tag_.attributes.push_back({.name = declared.name, .declared = &declared, .isDefault = true});
    }
  }
}

/// Puts the namespace declarations of a start tag into force (Namespaces in XML, section 3).
/// @param outside how many there are outside of it
/// @return false where one may be wrong
bool XML10Scanner::declare(std::size_t outside) {
  std::string value;
  for (const WrittenAttribute& written : tag_.attributes) {
    const ScannedName& name = *written.name;
    if (!declaresNamespace(name)) continue;
    const std::string_view prefix = xml::declaredPrefix(name.qName);
    assignValue(value, written);
    // That of "xml" is allowed, and has no effect.
    if (prefix == "xml" || bindings_.isDeclaredSince(prefix, outside) ||
        !xml::whyNotDeclarable(prefix, value).empty()) {
      return false;
    }
    bindings_.declare(prefix, value);
    if (!settings_.listsDeclarations) continue;
    const bool isNamed = settings_.namesXmlns;
    attributes_.add(isNamed ? kXmlns : kNoName, isNamed ? *name.localName : kNoName, name.qName,
                    typeOf(written)) = value;
  }
  return true;
}

const std::string& XML10Scanner::typeOf(const WrittenAttribute& attribute) {
  return attribute.declared != nullptr ? attribute.declared->type : kCDATA;
}

/// @return false where the attributes may be wrong
bool XML10Scanner::listAttributes() {
  unique_.beginTag();
  ++tags_;
  defaultOctets_ = 0;
  for (const WrittenAttribute& written : tag_.attributes) {
    ScannedName& name = *written.name;
    if (tag_.declares && declaresNamespace(name)) continue;
    const std::string* const uri = name.hasPrefix() ? uriOf(name) : &kNoName;
    if (uri == nullptr || !isFirst(name)) return false;
    std::string& value = attributes_.add(*uri, *name.localName, name.qName, typeOf(written));
    if (written.isPlain && written.declared == nullptr) {
      value.assign(at_ + written.begin, written.end - written.begin);
    } else {
      assignValue(value, written);
      if (written.isDefault) defaultOctets_ += name.qName.size() + value.size();
    }
  }
  return true;
}

/// Whether an attribute is the first of its name in the tag (Namespaces in XML, section 6.3). After
/// very many tags the answer may be no by mistake.
bool XML10Scanner::isFirst(ScannedName& attribute) {
  if (!attribute.hasPrefix()) return std::exchange(attribute.mark, tags_) != tags_;
  if (attribute.mark == 0) {
    const std::size_t number = unique_.number(*attribute.uri, *attribute.localName);
    attribute.mark = static_cast<std::uint32_t>(number);
  }
  return unique_.take(attribute.mark);
}

/// The namespace name of an element, or of an attribute that has a prefix; null where the prefix is
/// not declared.
const std::string* XML10Scanner::uriOf(ScannedName& name) const {
  if (name.version == bindings_.version()) return name.uri;
  const std::string& bound = settings_.splitsNames ? bindings_.find(name.prefix()) : kNoName;
  name.version = bindings_.version();
  name.uri = bound.empty() && name.hasPrefix() ? nullptr : &bound;
  if (name.hasPrefix()) name.mark = 0;
  return name.uri;
}

/// [42] ETag ::= '</' Name S? '>'
XML10Scanner::Step XML10Scanner::endTag() {
  constexpr std::size_t kStart = 2;
  const std::string& qName = open_.back().name->qName;
  const std::size_t size = left(at_);
  const std::size_t nameEnd = kStart + qName.size();
  std::size_t known = std::max(resume_, kStart);
  if (known < nameEnd) {
    const std::size_t end = std::min(size, nameEnd);
    const std::string_view rest = std::string_view(qName).substr(known - kStart, end - known);
    if (!xml::sameText({at_ + known, end - known}, rest)) return Step::refused;
    known = end;
  }
  while (known >= nameEnd && known < size && isSpace(at_[known])) ++known;
  if (known == size) {
    resume_ = known;
    return Step::cut;
  }
  if (at_[known] != '>') return Step::refused;
  resume_ = 0;
  reportEnd();
  at_ += known + 1;
  return Step::done;
}

/// Of the innermost element.
void XML10Scanner::reportEnd() {
  const ScannedName& name = *open_.back().name;
  const std::string& uri = *open_.back().uri;
  declarationsToLeave_ = open_.back().declarations;
  open_.pop_back();
  numbered_ = std::min(numbered_, open_.size());
  if (open_.empty()) phase_ = Phase::epilog;
  events_.scannedEnd(uri, *name.localName, name.qName);
  if (!isHaltedHere_) return leaveScope();
  isHalted_ = isHalted_ || declarationsToLeave_ > 0;
}

/// Leaves the scope of the declarations of an element that has ended.
void XML10Scanner::leaveScope() {
  for (; declarationsToLeave_ > 0; --declarationsToLeave_) {
    events_.scannedPrefixEnd(bindings_.prefixAt(bindings_.count() - 1));
    bindings_.undo(1);
  }
}

}  // namespace Tavrin::text
