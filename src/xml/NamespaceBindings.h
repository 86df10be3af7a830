#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Tavrin::xml {

/// Whether an attribute of this name declares a namespace (Namespaces in XML, section 3): it is
/// `xmlns`, or has the prefix `xmlns`.
inline bool isDeclarationName(std::string_view qName) {
  const bool mayBe = qName.size() >= 5 && qName[0] == 'x';  // Few names pass this quick check.
  return mayBe && qName.starts_with("xmlns") && (qName.size() == 5 || qName[5] == ':');
}

/// The prefix that an attribute of such a name declares; empty for the default namespace.
inline std::string_view declaredPrefix(std::string_view qName) {
  return qName.size() > 6 ? qName.substr(6) : std::string_view();
}

/// Why Namespaces in XML 1.0 forbids a declaration (section 3, constraints "Reserved Prefixes and
/// Namespace Names" and "No Prefix Undeclaring"), or an empty string.
/// @param prefix empty for the default namespace
/// @param uri    empty for `xmlns=""`
/// @param undeclaresPrefixes whether a prefix may be undeclared, as in Namespaces in XML 1.1
std::string whyNotDeclarable(std::string_view prefix, std::string_view uri,
                             bool undeclaresPrefixes = false);

/// Adds a namespace declaration to those of the next start tag, as a whole or not at all.
/// @param declarations prefix, namespace name, prefix, ...
/// @param prefix, uri  may be strings of `declarations`
void addDeclaration(std::vector<std::string>& declarations, const std::string& prefix,
                    const std::string& uri);

/// The namespace declarations that are in scope at a place in a document. Finding one takes time in
/// proportion to the logarithm of their number, however a document chooses them. The strings of a
/// declaration that is repeated inside itself are kept once.
class NamespaceBindings {
 public:
  NamespaceBindings();
  NamespaceBindings(NamespaceBindings&&) = default;
  NamespaceBindings& operator=(NamespaceBindings&&) = default;

  /// Forgets all declarations.
  void clear();
  /// Enters the scope of a declaration.
  /// @param prefix empty for the default namespace
  /// @param uri    empty undeclares
  void declare(std::string_view prefix, std::string_view uri);
  /// Leaves the scope of the last declarations.
  void undo(std::size_t count) {
    for (; count > 0; --count) undoLast();
  }

  /// How many declarations there are.
  std::size_t count() const { return declarations_.size(); }
  /// An upper estimate of the memory that they need, in octets.
  std::size_t octets() const { return octets_; }

  /// A declaration by its position, the outermost first. Valid until it is undone.
  const std::string& prefixAt(std::size_t position) const {
    return declarations_[position].prefix->first;
  }
  const std::string& uriAt(std::size_t position) const {
    return declarations_[position].uri->first;
  }
  /// Whether one of the declarations from a position on is of this prefix.
  bool isDeclaredSince(std::string_view prefix, std::size_t position) const {
    const auto found = prefixes_.find(prefix);
    return found != prefixes_.end() && found->second > position;
  }

  /// What a prefix is bound to, the empty string where it is not. `xml` is always bound. Valid
  /// until the next change.
  const std::string& find(std::string_view prefix) const;

  /// A number for the current bindings: where it is the same, they are the same.
  std::uint64_t version() const { return version_; }

 private:
  void undoLast();

  // Both hold what is declared now, and nothing else.
  using Counts = std::map<std::string, std::size_t, std::less<>>;
  using Prefixes = Counts;  // How many declarations there are up to the innermost of the prefix.
  using URIs = Counts;      // How many declarations use it.

  struct Declaration {
    Prefixes::iterator prefix;
    URIs::iterator uri;
    std::size_t outer = 0;      // What Prefixes has for the same prefix outside, or 0.
    std::uint64_t version = 0;  // Of the bindings outside.
  };

  Prefixes prefixes_;
  URIs uris_;
  std::deque<Declaration> declarations_;
  std::size_t octets_ = 0;
  std::uint64_t version_ = 0;
  std::uint64_t lastVersion_ = 0;

  // What was found last. Most names have the prefix of the name before.
  struct Found {
    const std::string* prefix = nullptr;
    const std::string* uri = nullptr;
    std::uint64_t version = 0;
  };
  mutable Found last_;
};

}  // namespace Tavrin::xml
