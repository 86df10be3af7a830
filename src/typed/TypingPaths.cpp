#include "TypingPaths.h"

#include <algorithm>
#include <limits>
#include <numeric>

#include "TextForms.h"

namespace Tavrin {

namespace {

constexpr std::string_view kAutomaticName = "auto";

std::string_view afterColon(std::string_view qName) {
  const std::size_t colon = qName.find(':');
  return colon == std::string_view::npos ? qName : qName.substr(colon + 1);
}

/// Without namespaces, readers report qualified names alone.
std::string_view localNameOf(const std::string& localName, const std::string& qName) {
  return localName.empty() ? afterColon(qName) : std::string_view(localName);
}

[[noreturn]] void refusePath(const std::string& path, const char* reason) {
  throw SAXException("The path \"" + path + "\" " + reason);
}

char toLower(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// How many letters have to be added, left out or replaced to make one name of another; capitals
/// do not count.
std::size_t distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (const char letter : a) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (toLower(letter) == toLower(b[j]) ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

/// The type whose name somebody may have mistyped so; empty where none is near.
std::string nearestTypeTo(std::string_view name) {
  constexpr std::size_t kLongestName = 16;  // Nobody mistypes that much.
  if (name.size() > kLongestName) return {};
  std::string nearest;
  std::size_t least = std::min<std::size_t>(2, name.size() / 2) + 1;
  std::string known = algorithmNames() + ", " + std::string(kAutomaticName);
  std::string_view rest = known;
  while (!rest.empty()) {
    const std::string_view candidate = rest.substr(0, rest.find(','));
    rest.remove_prefix(std::min(rest.size(), candidate.size() + 2));
    const std::size_t away = distance(name, candidate);
    if (away >= least) continue;
    least = away;
    nearest = candidate;
  }
  return nearest;
}

/// Takes the next step off a path. A slash in braces belongs to a URI.
std::string takeStep(std::string_view& rest) {
  const std::size_t brace = rest.find_first_of("{/");
  std::size_t end = brace;
  if (brace != std::string_view::npos && rest[brace] == '{') {
    const std::size_t closing = rest.find('}', brace);
    end = closing == std::string_view::npos ? closing : rest.find('/', closing);
  }
  std::string step(rest.substr(0, end));
  rest = end == std::string_view::npos ? std::string_view() : rest.substr(end);
  return step;
}

NamePattern parseName(const std::string& path, const std::string& step) {
  NamePattern pattern;
  pattern.name = step;
  if (!step.empty() && step[0] == '{') {
    const std::size_t closing = step.find('}');
    if (closing == std::string::npos) refusePath(path, "has a brace that is not closed");
    pattern.kind = NamePattern::oneNamespace;
    pattern.uri = step.substr(1, closing - 1);
    pattern.name = step.substr(closing + 1);
  } else if (step.find(':') != std::string::npos) {
    pattern.kind = NamePattern::asWritten;
  }
  const std::string_view local = pattern.localName();
  if (local.empty()) refusePath(path, "lacks a name");
  const bool isPlain = local.find_first_of(" \t\r\n{}@*/[]()<>&'\"=:") == std::string_view::npos;
  const bool isWildcard = pattern.isAny();
  if (!isPlain && !isWildcard) refusePath(path, "has a name that no element or attribute has");
  return pattern;
}

}  // namespace

int typeNamed(const std::string& name) {
  if (name == kAutomaticName) return kAutomaticType;
  const int algorithm = algorithmNamed(name);
  if (algorithm >= 0) return algorithm;
  const std::string meant = nearestTypeTo(name);
  throw SAXException("Unknown type \"" + name + "\"" +
                     (meant.empty() ? "; known" : ", did you mean \"" + meant + "\"? Known") +
                     " are " + algorithmNames() + ", auto");
}

std::string_view NamePattern::localName() const {
  return kind == asWritten ? afterColon(name) : std::string_view(name);
}

bool NamePattern::matches(const std::string& nameURI, std::string_view localName,
                          const std::string& qName) const {
  if (kind == asWritten) return name == qName;
  return (kind == anyNamespace || uri == nameURI) && (isAny() || name == localName);
}

TypingPath::TypingPath(const TypingRules::Rule& rule) : type(typeNamed(rule.type)) {
  std::string_view rest = rule.path;
  isAbsolute = !rest.empty() && rest[0] == '/';
  if (isAbsolute) rest.remove_prefix(1);
  bool isMore = true;
  while (isMore) {
    const std::string step = takeStep(rest);
    isMore = !rest.empty();
    if (isMore) rest.remove_prefix(1);
    isAttribute = !step.empty() && step[0] == '@';
    if (!isAttribute) {
      elements.push_back(parseName(rule.path, step));
      continue;
    }
    if (isMore) refusePath(rule.path, "goes on behind an attribute");
    attribute = parseName(rule.path, step.substr(1));
  }
  if (isAbsolute && elements.empty()) refusePath(rule.path, "has an attribute without an element");
  if (isAttribute && type == algorithmNamed("cdata")) {
    refusePath(rule.path, "is that of an attribute, which cannot be a CDATA section");
  }
}

TypingPaths::TypingPaths(const TypingRules& rules) {
  for (const TypingRules::Rule& rule : rules.rules()) addRule(TypingPath(rule));
}

void TypingPaths::addRule(const TypingPath& path) {
  const auto rule = static_cast<Number>(rules_.size());
  rules_.push_back(path);
  if (path.elements.empty()) rulesOfAnyElement_.push_back(rule);
  for (std::size_t i = 0; i < path.elements.size(); ++i) {
    const NamePattern& pattern = path.elements[i];
    const auto number = static_cast<Number>(steps_.size());
    steps_.push_back({pattern, i == 0, i + 1 == path.elements.size(), path.isAbsolute, rule});
    auto& steps =
        pattern.isAny() ? stepsOfAnyName_ : stepsByName_[std::string(pattern.localName())];
    steps.push_back(number);
  }
}

void TypingPaths::clear() {
  matched_.clear();
  begins_.clear();
  attributeRules_.clear();
  contentType_ = kNoType;
}

/// Whether the element before the last one matches the step before this one.
bool TypingPaths::isOpenBefore(Number step) const {
  if (begins_.size() < 2) return false;
  const auto begin = matched_.begin() + static_cast<std::ptrdiff_t>(begins_[begins_.size() - 2]);
  const auto end = matched_.begin() + static_cast<std::ptrdiff_t>(begins_.back());
  return std::find(begin, end, step - 1) != end;
}

/// Of the rules for content the first one counts; those for attributes are kept in order.
void TypingPaths::apply(Number rule) {
  if (rules_[rule].isAttribute) {
    attributeRules_.push_back(rule);
  } else if (rule < contentRule_) {
    contentRule_ = rule;
    contentType_ = rules_[rule].type;
  }
}

void TypingPaths::push(const std::string& uri, const std::string& localName,
                       const std::string& qName) {
  const std::string_view name = localNameOf(localName, qName);
  begins_.push_back(matched_.size());
  contentRule_ = std::numeric_limits<Number>::max();
  contentType_ = kNoType;
  attributeRules_ = rulesOfAnyElement_;
  const auto take = [&](const std::vector<Number>& steps) {
    for (const Number number : steps) {
      const Step& step = steps_[number];
      const bool isHere =
          step.isFirst ? !step.isAbsolute || begins_.size() == 1 : isOpenBefore(number);
      if (!isHere || !step.pattern.matches(uri, name, qName)) continue;
      step.isLast ? apply(step.rule) : matched_.push_back(number);
    }
  };
  const auto found = stepsByName_.find(name);
  if (found != stepsByName_.end()) take(found->second);
  take(stepsOfAnyName_);
  std::sort(attributeRules_.begin(), attributeRules_.end());
}

void TypingPaths::pop() {
  if (begins_.empty()) return;
  matched_.resize(begins_.back());
  begins_.pop_back();
}

int TypingPaths::attributeType(const std::string& uri, const std::string& localName,
                               const std::string& qName) const {
  const std::string_view name = localNameOf(localName, qName);
  for (const Number rule : attributeRules_) {
    if (rules_[rule].attribute.matches(uri, name, qName)) return rules_[rule].type;
  }
  return kNoType;
}

}  // namespace Tavrin
