#pragma once

#include <Tavrin/TypedContentFilter.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Tavrin {

/// The type `auto`; others are the numbers of algorithms.
inline constexpr int kAutomaticType = -1;
/// What stays text.
inline constexpr int kNoType = -2;

/// The type that rules call so.
/// @throws SAXException for an unknown name, with those that are known and the one that is meant
int typeNamed(const std::string& name);

/// What a name in a path matches.
struct NamePattern {
  enum Kind { anyNamespace, oneNamespace, asWritten };

  Kind kind = anyNamespace;
  std::string uri;
  std::string name;  ///< Local name, or name with prefix; "*" for any local name.

  bool isAny() const { return name == "*"; }
  /// The local name that a matching name has.
  std::string_view localName() const;
  /// Whether a name with this local name, if any is told, matches.
  bool matches(const std::string& nameURI, std::string_view localName,
               const std::string& qName) const;
};

/// A rule taken apart.
struct TypingPath {
  bool isAbsolute = false;
  std::vector<NamePattern> elements;  ///< Empty for attributes of any element.
  bool isAttribute = false;
  NamePattern attribute;
  int type = kNoType;

  /// @throws SAXException as TypingRules::add
  explicit TypingPath(const TypingRules::Rule& rule);
};

/// Finds the rules that apply to the elements of a document, one by one. What matched up to an
/// element is kept while it is open, so that an element costs a look into a table by its local
/// name, and those steps that have it.
class TypingPaths {
 public:
  explicit TypingPaths(const TypingRules& rules);

  /// Begins a document.
  void clear();
  /// Opens an element.
  void push(const std::string& uri, const std::string& localName, const std::string& qName);
  /// Closes the last one.
  void pop();

  /// The type of the text of the element that was opened last.
  int contentType() const { return contentType_; }
  /// Whether rules may apply to its attributes.
  bool hasAttributeRules() const { return !attributeRules_.empty(); }
  /// The type of one of its attributes.
  int attributeType(const std::string& uri, const std::string& localName,
                    const std::string& qName) const;

 private:
  using Number = std::uint32_t;

  /// An element in a path. Its number, less one, is that of the element before it.
  struct Step {
    NamePattern pattern;
    bool isFirst = false;
    bool isLast = false;
    bool isAbsolute = false;
    Number rule = 0;
  };

  struct Hash : std::hash<std::string_view> {
    using is_transparent = void;
  };

  void addRule(const TypingPath& path);
  bool isOpenBefore(Number step) const;
  void apply(Number rule);

  std::vector<TypingPath> rules_;
  std::vector<Step> steps_;
  std::unordered_map<std::string, std::vector<Number>, Hash, std::equal_to<>> stepsByName_;
  std::vector<Number> stepsOfAnyName_;
  std::vector<Number> rulesOfAnyElement_;  // For attributes.

  // --- The open elements ---

  std::vector<Number> matched_;      // Steps that others follow, of all open elements in order.
  std::vector<std::size_t> begins_;  // Of those of each element.
  Number contentRule_ = 0;
  int contentType_ = kNoType;
  std::vector<Number> attributeRules_;  // Of the last element.
};

}  // namespace Tavrin
