#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

/// The octets of a document of ITU-T X.891 and the integers in them, for the naive decoder.
namespace x891 {

constexpr std::size_t kMeg = 1 << 20;  // The most entries a table has.

class Cursor {
 protected:
  explicit Cursor(const std::string& octets) : octets_(octets) {}

  [[noreturn]] void fail(const std::string& what) const {
    throw std::runtime_error(what + " at octet " + std::to_string(position_));
  }

  unsigned next() {
    if (position_ == octets_.size()) fail("the end");
    return static_cast<unsigned char>(octets_[position_++]);
  }

  /// The number in the next octets.
  std::size_t number(int octets) {
    std::size_t result = 0;
    for (int i = 0; i < octets; ++i) result = result * 256 + next();
    return result;
  }

  std::string take(std::size_t length) {
    if (length > (std::size_t{1} << 32)) fail("a length above four-gig");
    if (length > octets_.size() - position_) fail("the end within a text");
    const std::string text = octets_.substr(position_, length);
    position_ += length;
    return text;
  }

  // Integers. Each begins within an octet; each gives the standard's value, from 1.

  /// C.21
  std::size_t itemCount() {
    const unsigned octet = next();
    if (octet < 0x80) return octet + 1;
    if (octet > 0x8F) fail("no number of items");
    const std::size_t count = (octet & 0x0F) * 0x10000 + number(2) + 129;
    if (count > kMeg) fail("a number of items above one-meg");
    return count;
  }

  /// C.22
  std::size_t lengthOnSecondBit(unsigned octet) {
    const unsigned bits = octet & 0x7F;
    if (bits < 0x40) return bits + 1;
    if (bits == 0x40) return number(1) + 65;
    if (bits == 0x60) return number(4) + 321;
    fail("no length of an identifier");
  }

  /// C.23
  std::size_t lengthOnFifthBit(unsigned octet) {
    const unsigned bits = octet & 0x0F;
    if (bits < 0x08) return bits + 1;
    if (bits == 0x08) return number(1) + 9;
    if (bits == 0x0C) return number(4) + 265;
    fail("no length of a string");
  }

  /// C.24
  std::size_t lengthOnSeventhBit(unsigned octet) {
    const unsigned bits = octet & 0x03;
    if (bits < 2) return bits + 1;
    if (bits == 2) return number(1) + 3;
    return number(4) + 259;
  }

  std::size_t checkedIndex(std::size_t index) const {
    if (index > kMeg) fail("an index above one-meg");
    return index;
  }

  /// C.25
  std::size_t indexOnSecondBit(unsigned octet) {
    const unsigned bits = octet & 0x7F;
    if (bits < 0x40) return bits + 1;
    if (bits < 0x60) return (bits & 0x1F) * 0x100 + number(1) + 65;
    if (bits < 0x70) return checkedIndex((bits & 0x0F) * 0x10000 + number(2) + 8257);
    fail("no index");
  }

  /// C.27
  std::size_t indexOnThirdBit(unsigned octet) {
    const unsigned bits = octet & 0x3F;
    if (bits < 0x20) return bits + 1;
    if (bits < 0x28) return (bits & 0x07) * 0x100 + number(1) + 33;
    if (bits < 0x30) return (bits & 0x07) * 0x10000 + number(2) + 2081;
    if (bits != 0x30) fail("no index of an element name");
    const std::size_t field = number(3);
    if (field >= kMeg) fail("padding that is not zero");
    return checkedIndex(field + 526369);
  }

  /// C.28
  std::size_t indexOnFourthBit(unsigned octet) {
    const unsigned bits = octet & 0x1F;
    if (bits < 0x10) return bits + 1;
    if (bits < 0x14) return (bits & 0x03) * 0x100 + number(1) + 17;
    if (bits < 0x18) return (bits & 0x03) * 0x10000 + number(2) + 1041;
    if (bits != 0x18) fail("no index of a chunk");
    const std::size_t field = number(3);
    if (field >= kMeg) fail("padding that is not zero");
    return checkedIndex(field + 263185);
  }

  const std::string& octets_;
  std::size_t position_ = 0;
};

}  // namespace x891
