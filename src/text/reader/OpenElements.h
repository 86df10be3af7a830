#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Tavrin::text {

/// The elements that are open, for the messages of failures. Most end in the block in which they
/// begin, so only the others are looked at: measured, reading takes a twentieth longer where each
/// name and line is kept.
class OpenElements {
 public:
  /// @param octet where the start tag begins in its entity
  void push(std::uint64_t octet) { octets_.push_back(octet); }
  void pop() {
    if (!octets_.empty()) return octets_.pop_back();
    names_.resize(names_.size() - named_.back().length);
    named_.pop_back();
  }

  std::size_t depth() const { return named_.size() + octets_.size(); }

  /// Where the elements begin that have no name. They are inside of the others.
  const std::vector<std::uint64_t>& unnamed() const { return octets_; }
  /// Names the outermost of them. When all are named, `endNaming` follows.
  /// @param name the octets of the start tag from "<" to the end of its name, in the encoding of
  /// the
  ///             entity: a failure decodes one of them; empty where they are not known
  void name(std::string_view name, std::uint64_t line) {
    named_.push_back({static_cast<std::uint32_t>(line), static_cast<std::uint32_t>(name.size())});
    names_.append(name);
  }
  void endNaming() { octets_.clear(); }

  /// Of the innermost element, when all are named.
  std::string_view innermostName() const {
    return std::string_view(names_).substr(names_.size() - named_.back().length);
  }
  std::uint32_t innermostLine() const { return named_.back().line; }

 private:
  struct Named {
    std::uint32_t line;
    std::uint32_t length;  // Of its name, in names_.
  };

  std::vector<Named> named_;
  std::string names_;
  std::vector<std::uint64_t> octets_;
};

/// The namespace declarations that are in force, likewise.
class OpenDeclarations {
 public:
  void push(std::string_view prefix, std::string_view uri) {
    text_.reserve(text_.size() + prefix.size() + uri.size() + 2);  // All of it, or nothing.
    text_.append(prefix).append(1, kEnd).append(uri).append(1, kEnd);
  }
  void pop() {
    if (text_.empty()) return;  // After a failure, some were not recorded.
    popPart();
    popPart();
  }

  /// Calls a function with the prefix and the namespace name of each, the innermost last.
  template <typename Visit>
  void forEach(Visit visit) const {
    for (std::size_t i = 0; i < text_.size();) {
      const std::size_t middle = text_.find(kEnd, i);
      const std::size_t end = text_.find(kEnd, middle + 1);
      visit(text_.substr(i, middle - i), text_.substr(middle + 1, end - middle - 1));
      i = end + 1;
    }
  }

 private:
  static constexpr char kEnd = '\xFF';  // UTF-8 does not have it.

  void popPart() {
    text_.pop_back();
    text_.resize(text_.rfind(kEnd) + 1);  // npos + 1 is 0.
  }

  std::string text_;
};

}  // namespace Tavrin::text
