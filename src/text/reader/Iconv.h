#pragma once

#include <iconv.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <new>

namespace Tavrin::text {

/// An open conversion of iconv.
class Iconv {
 public:
  Iconv(const char* from, const char* to) : handle_(iconv_open(to, from)) {
    // The encoding may be known.
    if (!isKnown() && errno == ENOMEM) throw std::bad_alloc();
  }
  ~Iconv() {
    if (isKnown()) iconv_close(handle_);
  }
  Iconv(const Iconv&) = delete;
  Iconv& operator=(const Iconv&) = delete;

  // iconv_open fails with the pointer that is all ones.
  bool isKnown() const { return reinterpret_cast<std::ptrdiff_t>(handle_) != -1; }

  /// As iconv. Returns 0, or the error number: E2BIG, EILSEQ or EINVAL.
  int convert(char*& from, std::size_t& fromLeft, char*& to, std::size_t& toLeft) {
    return resultOf(iconv(handle_, &from, &fromLeft, &to, &toLeft));
  }
  /// Gives what some converters keep: a character that a combining one may follow.
  int finish(char*& to, std::size_t& toLeft) {
    return resultOf(iconv(handle_, nullptr, nullptr, &to, &toLeft));
  }
  void reset() { iconv(handle_, nullptr, nullptr, nullptr, nullptr); }

 private:
  static int resultOf(std::size_t result) {
    return result == static_cast<std::size_t>(-1) ? errno : 0;
  }

  iconv_t handle_;
};

}  // namespace Tavrin::text
