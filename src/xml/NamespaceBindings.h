#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Tavrin::xml {

/// Why Namespaces in XML 1.0 forbids a declaration (section 3, constraints "Reserved Prefixes and
/// Namespace Names" and "No Prefix Undeclaring"), or an empty string.
/// @param prefix empty for the default namespace
/// @param uri    empty for `xmlns=""`
/// @param undeclaresPrefixes whether a prefix may be undeclared, as in Namespaces in XML 1.1
std::string whyNotDeclarable(std::string_view prefix, std::string_view uri,
                             bool undeclaresPrefixes = false);

/// The prefixes that are bound at a place in a document, and to what. Looking one up takes time in
/// proportion to the logarithm of their number, however a document chooses them.
class NamespaceBindings {
 public:
  NamespaceBindings();

  /// Forgets all declarations.
  void clear();
  /// Takes a declaration into account.
  /// @param prefix empty for the default namespace
  /// @param uri    empty undeclares
  void declare(const std::string& prefix, const std::string& uri);
  /// Leaves the scope of the last declarations.
  void undo(std::size_t count);

  /// How many declarations there are.
  std::size_t count() const { return declarations_.size(); }

  /// What a prefix is bound to, the empty string where it is not. `xml` is always bound. Valid
  /// until the next change.
  const std::string& find(std::string_view prefix) const;

  /// A number for the bindings as they are: where it is the same, they are the same.
  std::uint64_t version() const { return version_; }

 private:
  struct Declaration {
    std::string* binding;   // What the prefix is bound to.
    std::string outer;      // What it was bound to outside.
    std::uint64_t version;  // What was in force outside.
  };

  std::map<std::string, std::string, std::less<>> bindings_;
  std::vector<Declaration> declarations_;
  std::uint64_t version_ = 0;
  std::uint64_t lastVersion_ = 0;
};

}  // namespace Tavrin::xml
