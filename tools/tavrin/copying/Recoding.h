#pragma once

#include <iconv.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace tool {

/// A conversion of iconv between two encodings, which it knows or not.
class Recoding {
 public:
  enum class Outcome {
    Done,
    NoRoom,   ///< A part of it is done.
    Inexact,  ///< All was converted, or a part of it, and not all of that as it was.
  };

  /// @throws std::bad_alloc
  Recoding(const std::string& from, const std::string& to);
  ~Recoding();
  Recoding(const Recoding&) = delete;
  Recoding& operator=(const Recoding&) = delete;

  bool isKnown() const;
  /// Begins anew.
  void reset();
  /// Converts octets, and takes away from both what it has used.
  Outcome convert(std::string_view& octets, char*& to, std::size_t& room);
  /// Adds what the end of the text needs.
  Outcome finish(char*& to, std::size_t& room);

 private:
  iconv_t handle_;
};

}  // namespace tool
