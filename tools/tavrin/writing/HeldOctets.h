#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// Octets of a text that are held back while it is open where its lines break. Places in it are
/// counted from the first octet that was ever written, and breaks from the first ever made.
class HeldOctets : public std::streambuf {
 public:
  /// @param unit what a line begins with for each level
  explicit HeldOctets(std::string unit);

  /// How many octets have been written.
  std::uint64_t position() const { return released_ + size(); }
  /// How many of them are held back.
  std::size_t size() const { return static_cast<std::size_t>(pptr() - pbase()); }
  /// What is held from a place on.
  std::string_view from(std::uint64_t position) const {
    const auto begin = static_cast<std::size_t>(position - released_);
    return std::string_view(pbase(), size()).substr(begin);
  }

  /// Breaks the line behind all breaks so far.
  /// @param position where the octets stand that the break replaces
  /// @param length   how many they are
  /// @param depth    levels of the new line; from the hundredth on all are alike
  void breakLine(std::uint64_t position, std::uint64_t length, std::size_t depth);
  /// The number that the next break will have.
  std::uint64_t nextBreak() const { return firstBreak_ + breaks_.size(); }
  /// The place of a break that is held.
  std::uint64_t placeOf(std::uint64_t number) const { return at(number).position; }
  /// Takes this break back, and those behind it: the octets stay as they were written.
  void dropBreaksFrom(std::uint64_t number);

  /// Writes what stands in front of a place, with the breaks in it.
  /// @param target null where nothing is written
  void release(std::uint64_t end, std::ostream* target);
  /// Forgets everything.
  void clear();

 protected:
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* text, std::streamsize size) override;

 private:
  struct Break {
    std::uint64_t position;
    std::uint64_t length;
    std::size_t depth;
  };

  const Break& at(std::uint64_t number) const {
    return breaks_[static_cast<std::size_t>(number - firstBreak_)];
  }
  void reserve(std::size_t more);
  void setSize(std::size_t size);

  const std::string unit_;
  std::string line_;        // A line break and the beginning of the deepest line.
  std::vector<char> area_;  // What is held, and room for more.
  std::uint64_t released_ = 0;
  std::vector<Break> breaks_;
  std::uint64_t firstBreak_ = 0;
  std::string composed_;
};

}  // namespace tool
