#include "paths/PathParser.h"

#include <Tavrin/Attributes.h>
#include <Tavrin/Exceptions.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_XML10.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <utility>

#include "files/Failure.h"

namespace tool {

namespace {

// Every open element takes a bit for each step, and a counter for each predicate with a position.
constexpr std::size_t kMostSteps = 1000;

// Of a long path so many characters are shown on either side of what is wrong.
constexpr std::size_t kShown = 40;

bool isContinuation(char octet) { return (static_cast<unsigned char>(octet) & 0xC0U) == 0x80; }

/// Octets that may be those of a name; which characters may, the library knows.
bool isNameOctet(char octet) {
  const bool isLetter = (octet >= 'a' && octet <= 'z') || (octet >= 'A' && octet <= 'Z');
  const bool isDigit = octet >= '0' && octet <= '9';
  return isLetter || isDigit || octet == '_' || octet == '-' || octet == '.' ||
         static_cast<unsigned char>(octet) >= 0x80;
}

/// Whether it may be the name of an element without a prefix (Namespaces in XML, production 4).
bool isNCName(const std::string& name) {
  if (name.empty() || !std::all_of(name.begin(), name.end(), isNameOctet)) return false;
  try {
    Tavrin::XMLWriter_XML10 writer;
    writer.startDocument();
    writer.startElement("", name, name, Tavrin::AttributesImpl());
    return true;
  } catch (const Tavrin::SAXException&) {
    return false;
  }
}

class PathParser {
 public:
  PathParser(std::string_view text, const PathNamespaces& namespaces)
      : text_(text), namespaces_(namespaces) {}

  Paths parse() {
    do {
      parsePath();
    } while (take("|"));
    if (!isAtEnd()) failAt(place_, "a path ends with a step, a predicate or |");
    return std::move(paths_);
  }

 private:
  using Comparison = Predicate::Comparison;

  // --- Characters ---

  bool isAtEnd() {
    skipSpace();
    return place_ == text_.size();
  }

  void skipSpace() { place_ = std::min(text_.find_first_not_of(" \t\r\n", place_), text_.size()); }

  bool isNext(std::string_view token) {
    skipSpace();
    return text_.substr(place_).starts_with(token);
  }

  bool take(std::string_view token) {
    if (!isNext(token)) return false;
    place_ += token.size();
    return true;
  }

  void expect(std::string_view token, const std::string& message) {
    if (!take(token)) failAt(place_, message);
  }

  [[noreturn]] void failAt(std::size_t place, const std::string& message) const {
    const std::string_view before = text_.substr(0, place);
    const auto column =
        std::count_if(before.begin(), before.end(), std::not_fn(isContinuation)) + 1;
    std::size_t begin = place - std::min(place, kShown);
    while (begin > 0 && isContinuation(text_[begin])) --begin;
    std::size_t end = std::min(place + kShown, text_.size());
    while (end < text_.size() && isContinuation(text_[end])) ++end;
    throw Failure::usage("path, column " + std::to_string(column) + ": " + message + ": " +
                         (begin > 0 ? "..." : "") + std::string(before.substr(begin)) + "^" +
                         std::string(text_.substr(place, end - place)) +
                         (end < text_.size() ? "..." : ""));
  }

  // --- Names ---

  std::string_view nameHere() {
    skipSpace();
    const auto rest = text_.substr(place_);
    const auto end = std::find_if_not(rest.begin(), rest.end(), isNameOctet);
    return rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
  }

  std::string takeNCName(const char* expected) {
    std::string name(nameHere());
    if (name.empty()) failAt(place_, std::string(expected) + " is expected");
    if (!isNCName(name)) failAt(place_, "\"" + name + "\" is not a name");
    place_ += name.size();
    return name;
  }

  /// @param defaultURI the namespace name of names without a prefix
  NameTest takeNameTest(const std::string& defaultURI, const char* expected) {
    NameTest test;
    const std::size_t begin = place_;
    if (take("*")) {
      test.isAnyURI = true;
      test.isAnyName = !take(":");
      if (!test.isAnyName) test.localName = takeNCName("a name");
      return test;
    }
    std::string name = takeNCName(expected);
    if (isNext("::")) failAt(begin, "the axis " + name + ":: is not supported; there are / and //");
    if (isNext("(")) failAt(begin, name + "() is not supported here");
    if (!take(":")) {
      test.uri = defaultURI;
      test.localName = std::move(name);
      return test;
    }
    const std::string* const uri = namespaces_.find(name);
    if (!uri) failAt(begin, "the prefix \"" + name + "\" is not bound (see --ns)");
    test.uri = *uri;
    test.isAnyName = take("*");
    if (!test.isAnyName) test.localName = takeNCName("a name, or *,");
    return test;
  }

  NameTest takeAttributeName() { return takeNameTest({}, "the name of an attribute"); }

  // --- Steps ---

  void parsePath() {
    if (isAtEnd()) failAt(place_, "a path is expected");
    if (!isNext("/")) failAt(place_, "a path begins with / or //");
    while (isNext("/")) {
      if (canGoNoFurther_) failAt(place_, std::string(canGoNoFurther_) + " ends a path");
      parseStep();
    }
    paths_.steps.back().isLast = true;
    canGoNoFurther_ = nullptr;
  }

  void parseStep() {
    Step step;
    step.isDescendant = take("//");
    if (!step.isDescendant) take("/");
    skipSpace();
    const std::size_t begin = place_;
    if (paths_.steps.size() == kMostSteps) {
      failAt(begin, "there are more than " + std::to_string(kMostSteps) + " steps");
    }
    parseNodeTest(step);
    while (isNext("[")) parsePredicate(step);
    paths_.steps.push_back(std::move(step));
  }

  void parseNodeTest(Step& step) {
    const std::size_t begin = place_;
    if (isNext("..")) failAt(begin, "a step to the parent is not supported");
    if (isNext(".")) failAt(begin, "a step to the node itself is not supported");
    if (take("@")) {
      step.kind = NodeKind::Attribute;
      step.name = takeAttributeName();
      canGoNoFurther_ = "an attribute";
    } else if (takeCall("text")) {
      step.kind = NodeKind::Text;
      canGoNoFurther_ = "text()";
    } else if (takeCall("comment")) {
      step.kind = NodeKind::Comment;
      canGoNoFurther_ = "comment()";
    } else if (takeInstruction(step.name)) {
      step.kind = NodeKind::Instruction;
      canGoNoFurther_ = "processing-instruction()";
    } else {
      const std::string* const uri = namespaces_.find("");
      step.name = takeNameTest(uri ? *uri : std::string(), "a name, *, @NAME or text()");
    }
  }

  /// Takes a name and a pair of parentheses.
  bool takeCall(std::string_view name) {
    const std::size_t begin = place_;
    if (takeOpeningOf(name) && take(")")) return true;
    place_ = begin;
    return false;
  }

  bool takeOpeningOf(std::string_view name) {
    if (nameHere() != name) return false;
    const std::size_t begin = place_;
    place_ += name.size();
    if (take("(")) return true;
    place_ = begin;
    return false;
  }

  bool takeInstruction(NameTest& target) {
    if (!takeOpeningOf("processing-instruction")) return false;
    target.isAnyName = isNext(")");
    if (!target.isAnyName) target.localName = takeLiteral("the target in quotes, or )");
    expect(")", ") is expected");
    return true;
  }

  // --- Predicates ---

  std::string takeLiteral(const char* expected) {
    if (!isNext("'") && !isNext("\"")) failAt(place_, std::string(expected) + " is expected");
    const std::size_t end = text_.find(text_[place_], place_ + 1);
    if (end == std::string_view::npos) failAt(place_, "the closing quote is missing");
    const auto value = text_.substr(place_ + 1, end - place_ - 1);
    place_ = end + 1;
    return std::string(value);
  }

  std::uint64_t takeNumber() {
    refuseLast();
    skipSpace();
    const char* const begin = text_.data() + place_;
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(begin, text_.data() + text_.size(), number);
    const std::size_t behind = place_ + static_cast<std::size_t>(end - begin);
    const bool isWhole = error != std::errc::invalid_argument &&
                         (behind == text_.size() || !isNameOctet(text_[behind]));
    if (!isWhole) failAt(place_, "a whole number is expected");
    place_ = behind;
    // No parent has so many children.
    return error == std::errc() ? number : std::numeric_limits<std::uint64_t>::max();
  }

  std::optional<Comparison> takeComparison() {
    static constexpr std::pair<const char*, Comparison> kComparisons[] = {
        {"=", Comparison::Equal},           {"!=", Comparison::Unequal},
        {"<=", Comparison::LessOrEqual},    {"<", Comparison::Less},
        {">=", Comparison::GreaterOrEqual}, {">", Comparison::Greater}};
    for (const auto& [token, comparison] : kComparisons) {
      if (take(token)) return comparison;
    }
    return std::nullopt;
  }

  void parsePredicate(Step& step) {
    const std::size_t begin = place_;
    take("[");
    skipSpace();
    const std::size_t inside = place_;
    Predicate predicate;
    if (take("@")) {
      if (step.kind != NodeKind::Element) failAt(inside, "only elements have attributes");
      parseAttributePredicate(predicate);
    } else if (takeCall("position")) {
      const auto comparison = takeComparison();
      if (!comparison) failAt(place_, "a comparison such as = is expected");
      predicate.comparison = *comparison;
      predicate.position = takeNumber();
    } else if (place_ < text_.size() && text_[place_] >= '0' && text_[place_] <= '9') {
      predicate.position = takeNumber();
    } else {
      refusePredicate();
    }
    if (predicate.kind == Predicate::Kind::Position) {
      if (step.kind == NodeKind::Attribute) failAt(begin, "attributes have no order");
      if (paths_.counters == kMostSteps) failAt(begin, "there are too many predicates");
      predicate.counter = paths_.counters++;
    }
    if (isNext("and ") || isNext("or ")) {
      failAt(place_, "and, or are not supported; [...][...] asks for both");
    }
    expect("]", "] is expected");
    step.predicates.push_back(std::move(predicate));
  }

  void parseAttributePredicate(Predicate& predicate) {
    predicate.kind = Predicate::Kind::HasAttribute;
    predicate.attribute = takeAttributeName();
    const std::size_t operation = place_;
    const auto comparison = takeComparison();
    if (!comparison) return;
    if (*comparison != Comparison::Equal && *comparison != Comparison::Unequal) {
      failAt(operation, "values of attributes are compared by = or != only");
    }
    predicate.kind = Predicate::Kind::HasAttributeValue;
    predicate.comparison = *comparison;
    predicate.value = takeLiteral("a value in quotes");
  }

  void refuseLast() {
    skipSpace();
    const std::size_t begin = place_;
    if (!takeOpeningOf("last")) return;
    failAt(begin, "last() is not supported: what comes later is not known yet");
  }

  [[noreturn]] void refusePredicate() {
    refuseLast();
    failAt(place_, "a predicate is @NAME, @NAME='VALUE', a number or position()=NUMBER");
  }

  std::string_view text_;
  const PathNamespaces& namespaces_;
  std::size_t place_ = 0;
  const char* canGoNoFurther_ = nullptr;  // What the path has come to, if nothing is inside of it.
  Paths paths_;
};

}  // namespace

PathNamespaces::PathNamespaces() { uris_.emplace("xml", Tavrin::namespaces::xml); }

void PathNamespaces::add(const std::string& setting) {
  const auto refuse = [&](const std::string& message) {
    throw Failure::usage("--ns \"" + setting + "\": " + message);
  };
  const std::size_t end = setting.find('=');
  if (end == std::string::npos) refuse("PREFIX=URI is expected");
  const std::string prefix = setting.substr(0, end);
  const std::string uri = setting.substr(end + 1);
  if (!prefix.empty() && !isNCName(prefix)) refuse("\"" + prefix + "\" is not a prefix");
  if (prefix == "xmlns") refuse("this prefix cannot be bound");
  if (uri.empty()) refuse("there is no namespace name");
  const auto [place, isNew] = uris_.emplace(prefix, uri);
  if (!isNew && place->second != uri) {
    refuse((prefix.empty() ? "the default" : "the prefix") + std::string(" is bound to \"") +
           place->second + "\" already");
  }
}

const std::string* PathNamespaces::find(std::string_view prefix) const {
  const auto place = uris_.find(prefix);
  return place == uris_.end() ? nullptr : &place->second;
}

Paths parsePaths(std::string_view text, const PathNamespaces& namespaces) {
  return PathParser(text, namespaces).parse();
}

}  // namespace tool
