#pragma once

#include <iconv.h>

#include <stdexcept>
#include <string>

/// A text of UTF-8 in another encoding, as iconv makes it.
inline std::string encoded(const std::string& text, const std::string& encoding) {
  const iconv_t handle = iconv_open(encoding.c_str(), "UTF-8");
  // It fails with the pointer that is all ones.
  if (reinterpret_cast<std::ptrdiff_t>(handle) == -1) throw std::runtime_error(encoding);
  std::string in = text;
  std::string out(8 * text.size() + 16, '\0');
  char* from = in.data();
  char* to = out.data();
  std::size_t inLeft = in.size();
  std::size_t outLeft = out.size();
  const bool isDone = iconv(handle, &from, &inLeft, &to, &outLeft) == 0 &&
                      iconv(handle, nullptr, nullptr, &to, &outLeft) == 0;
  iconv_close(handle);
  if (!isDone) throw std::runtime_error(encoding + " lacks a character");
  out.resize(out.size() - outLeft);
  return out;
}
