#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "files/DescriptorBuffers.h"

namespace tool {

/// Octets that cannot be had twice from where they come, to be read again. Few stay in memory, more
/// of them go to a file that has no name.
class KeptOctets {
 public:
  /// Puts octets behind the others. Returns false if there is no place for them.
  bool append(std::string_view octets);
  /// Takes the octets that come next, from the first on; 0 of them where none is left, and after a
  /// failure.
  std::size_t read(char* target, std::size_t size);
  /// Takes so many of them without looking.
  void skip(std::size_t size) { position_ += size; }
  /// The first comes next again.
  void returnToStart() { goTo(0); }
  /// That behind so many others comes next.
  void goTo(std::uint64_t position) { position_ = position; }
  /// The error number of what failed, or 0.
  int error() const { return error_; }

 private:
  bool openFile();
  bool write(std::string_view octets);

  std::string memory_;  // All of them, while there is no file.
  Descriptor file_;
  std::uint64_t size_ = 0;
  std::uint64_t position_ = 0;  // Of what is read next.
  int error_ = 0;
};

}  // namespace tool
