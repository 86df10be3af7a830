#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "files/Compression.h"

namespace tool {

/// How to compress what is written.
struct CompressionChoice {
  Compression compression = Compression::None;
  int level = 0;  ///< The higher, the smaller and slower; 0 for the usual one.
};

/// The highest level of a form of compression.
int highestLevelOf(Compression compression);

/// Compresses data that comes in pieces. The same pieces always give the same octets.
class Compressor {
 public:
  /// How much has to come out of what went in.
  enum class Upto {
    Full,  ///< What fills a block.
    Here,  ///< All of it: it can be decompressed up to here.
    End    ///< All of it, and the end of the data.
  };
  /// Takes octets that have been made. Returns false to end the work.
  using Sink = std::function<bool(std::string_view)>;

  /// @return null for no compression
  /// @throws std::bad_alloc
  static std::unique_ptr<Compressor> create(const CompressionChoice& choice);
  virtual ~Compressor() = default;

  virtual void compress(std::string_view piece, Upto upto, const Sink& sink) = 0;
};

}  // namespace tool
