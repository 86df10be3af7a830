#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "files/Compression.h"

namespace tool {

/// Decompresses data that comes in pieces. How much memory it takes does not depend on the data: 32
/// KiB for gzip; for zstd as much as the data asks for, but at most 128 MiB.
class Decompressor {
 public:
  /// What became of a piece.
  struct Step {
    std::size_t taken = 0;     ///< Octets of the piece.
    std::size_t made = 0;      ///< Octets that were written.
    bool isComplete = false;   ///< The data may end here: another member or frame may follow.
    std::string problem = {};  ///< What is wrong with what comes next; empty for nothing.
  };

  /// @throws std::bad_alloc
  static std::unique_ptr<Decompressor> create(Compression compression);
  virtual ~Decompressor() = default;

  /// Decompresses what there is of a piece, and writes what there is room for. A step that neither
  /// takes nor makes anything needs more octets.
  virtual Step decompress(std::string_view piece, char* target, std::size_t size) = 0;
  /// Begins the next member or frame.
  virtual void beginNext() = 0;
};

}  // namespace tool
