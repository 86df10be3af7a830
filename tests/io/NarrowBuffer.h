#pragma once

#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <streambuf>
#include <string>

/// A buffer with a little room of its own, which takes a number of octets and then fails in one of
/// two ways.
class NarrowBuffer : public std::streambuf {
 public:
  explicit NarrowBuffer(std::size_t most = std::string::npos, bool throws = false,
                        std::size_t room = 7)
      : most_(most), throws_(throws), room_(room, '#') {
    makeRoom();
  }

  std::string octets() {
    takeAll();
    makeRoom();
    return taken_;
  }
  int flushes = 0;

 protected:
  int_type overflow(int_type octet) override {
    takeAll();
    if (taken_.size() >= most_) {
      setp(nullptr, nullptr);
      if (throws_) throw std::runtime_error("full");
      return traits_type::eof();
    }
    makeRoom();
    return traits_type::eq_int_type(octet, traits_type::eof())
               ? traits_type::not_eof(octet)
               : sputc(traits_type::to_char_type(octet));
  }
  int sync() override {
    ++flushes;
    return 0;
  }

 private:
  void takeAll() { taken_.append(pbase(), pptr()); }
  void makeRoom() {
    const std::size_t left = most_ - std::min(most_, taken_.size());
    setp(room_.data(), room_.data() + std::min(left, room_.size()));
  }

  const std::size_t most_;
  const bool throws_;
  std::string room_;
  std::string taken_;
};
