#include "copying/Recoding.h"

#include <cerrno>
#include <new>

namespace tool {

namespace {

/// A count above zero is that of characters for which others were written.
Recoding::Outcome outcomeOf(std::size_t result) {
  if (result == 0) return Recoding::Outcome::Done;
  const bool hasFailed = result == static_cast<std::size_t>(-1);
  return hasFailed && errno == E2BIG ? Recoding::Outcome::NoRoom : Recoding::Outcome::Inexact;
}

}  // namespace

Recoding::Recoding(const std::string& from, const std::string& to)
    : handle_(iconv_open(to.c_str(), from.c_str())) {
  // The encoding may be known.
  if (!isKnown() && errno == ENOMEM) throw std::bad_alloc();
}

Recoding::~Recoding() {
  if (isKnown()) iconv_close(handle_);
}

// iconv_open fails with the pointer that is all ones.
bool Recoding::isKnown() const { return reinterpret_cast<std::ptrdiff_t>(handle_) != -1; }

void Recoding::reset() { iconv(handle_, nullptr, nullptr, nullptr, nullptr); }

Recoding::Outcome Recoding::convert(std::string_view& octets, char*& to, std::size_t& room) {
  // iconv does not change it, whatever the type says.
  char* from = const_cast<char*>(octets.data());  // NOLINT(cppcoreguidelines-pro-type-const-cast)
  std::size_t left = octets.size();
  const Outcome outcome = outcomeOf(iconv(handle_, &from, &left, &to, &room));
  octets.remove_prefix(octets.size() - left);
  return outcome;
}

Recoding::Outcome Recoding::finish(char*& to, std::size_t& room) {
  return outcomeOf(iconv(handle_, nullptr, nullptr, &to, &room));
}

}  // namespace tool
