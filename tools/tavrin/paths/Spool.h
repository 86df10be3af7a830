#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "files/KeptOctets.h"

namespace tool {

/// Results that wait until the element around them, a result itself, is complete. The octets of
/// that element stand here once, with marks between them where results inside of it begin and end,
/// however deep these are in each other. More than a few go to a file that has no name, so that
/// memory does not grow.
class Spool {
 public:
  enum class Record : std::uint8_t {
    Start,     ///< An element that is a result begins: what its first tag needs behind its name.
    End,       ///< It ended.
    Piece,     ///< Octets of all elements that are open.
    Value,     ///< A part of a result that is no element.
    ValueEnd,  ///< It ended.
  };

  /// @throws Failure when there is no place for it
  void add(Record record, std::string_view octets = {});

  /// Writes what is still in memory only, before the first record is taken.
  void finish() { flush(); }
  /// Takes the next record.
  /// @return false behind the last one
  bool next(Record& record, std::string& octets);
  /// Where the next record begins.
  std::uint64_t position() const { return position_; }
  void goTo(std::uint64_t position) { position_ = position; }

 private:
  void addWhole(Record record, std::string_view octets);
  void flush();
  void read(std::uint64_t position, char* target, std::size_t size);
  [[noreturn]] void fail() const;

  KeptOctets octets_;
  std::uint64_t size_ = 0;      // Of all, with those in written_.
  std::string piece_;           // Pieces that follow each other are put together.
  std::string written_;         // What goes to octets_ next.
  std::uint64_t position_ = 0;  // Of what is read next.
  std::string window_;          // A part of octets_.
  std::uint64_t windowStart_ = 0;
};

}  // namespace tool
