#pragma once

#include <cstdint>
#include <streambuf>

namespace tool {

/// Takes everything and keeps only the number of octets.
class OctetCounter : public std::streambuf {
 public:
  std::uint64_t count() const { return count_; }

 protected:
  int_type overflow(int_type c) override {
    if (!traits_type::eq_int_type(c, traits_type::eof())) ++count_;
    return traits_type::not_eof(c);
  }
  std::streamsize xsputn(const char*, std::streamsize size) override {
    count_ += static_cast<std::uint64_t>(size);
    return size;
  }

 private:
  std::uint64_t count_ = 0;
};

}  // namespace tool
