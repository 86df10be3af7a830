#include "files/Compressor.h"

#define ZLIB_CONST
#include <zlib.h>
#include <zstd.h>

#include <algorithm>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

namespace tool {

namespace {

constexpr std::size_t kBlockSize = 65536;

class GzipCompressor : public Compressor {
 public:
  explicit GzipCompressor(int level) : block_(kBlockSize) {
    constexpr int kGzipFormat = 16;  // The manual of deflateInit2.
    constexpr int kMemoryLevel = 8;  // Its usual one.
    const int result =
        deflateInit2(&stream_, level == 0 ? Z_DEFAULT_COMPRESSION : level, Z_DEFLATED,
                     kGzipFormat + MAX_WBITS, kMemoryLevel, Z_DEFAULT_STRATEGY);
    if (result == Z_MEM_ERROR) throw std::bad_alloc();
    if (result != Z_OK) throw std::runtime_error("zlib cannot be used");
  }
  ~GzipCompressor() override { deflateEnd(&stream_); }
  GzipCompressor(const GzipCompressor&) = delete;
  GzipCompressor& operator=(const GzipCompressor&) = delete;

  void compress(std::string_view piece, Upto upto, const Sink& sink) override {
    constexpr std::size_t kMost = std::numeric_limits<uInt>::max();
    do {
      const std::string_view part = piece.substr(0, kMost);
      piece.remove_prefix(part.size());
      stream_.next_in = reinterpret_cast<const Bytef*>(part.data());
      stream_.avail_in = static_cast<uInt>(part.size());
      if (!compressPart(piece.empty() ? flushOf(upto) : Z_NO_FLUSH, sink)) return;
    } while (!piece.empty());
  }

 private:
  static int flushOf(Upto upto) {
    if (upto == Upto::End) return Z_FINISH;
    return upto == Upto::Here ? Z_SYNC_FLUSH : Z_NO_FLUSH;
  }

  bool compressPart(int flush, const Sink& sink) {
    do {
      stream_.next_out = reinterpret_cast<Bytef*>(block_.data());
      stream_.avail_out = static_cast<uInt>(block_.size());
      deflate(&stream_, flush);  // It cannot fail: the state is valid, and there is room.
      if (!sink({block_.data(), block_.size() - stream_.avail_out})) return false;
    } while (stream_.avail_out == 0);
    return true;
  }

  z_stream stream_{};
  std::vector<char> block_;
};

class ZstdCompressor : public Compressor {
 public:
  explicit ZstdCompressor(int level) : stream_(ZSTD_createCStream()), block_(kBlockSize) {
    if (!stream_) throw std::bad_alloc();
    ZSTD_CCtx_setParameter(stream_.get(), ZSTD_c_compressionLevel, level);  // 0 is the usual one.
    ZSTD_CCtx_setParameter(stream_.get(), ZSTD_c_checksumFlag, 1);
  }

  void compress(std::string_view piece, Upto upto, const Sink& sink) override {
    ZSTD_inBuffer in{piece.data(), piece.size(), 0};
    for (;;) {
      ZSTD_outBuffer out{block_.data(), block_.size(), 0};
      const std::size_t left = ZSTD_compressStream2(stream_.get(), &out, &in, directiveOf(upto));
      // Nothing else can fail. With a small block, memory is asked for at the first one.
      if (ZSTD_isError(left) != 0U) throw std::bad_alloc();
      if (!sink({block_.data(), out.pos})) return;
      if (upto == Upto::Full ? in.pos == in.size : left == 0) return;
    }
  }

 private:
  struct Free {
    void operator()(ZSTD_CStream* stream) const { ZSTD_freeCStream(stream); }
  };

  static ZSTD_EndDirective directiveOf(Upto upto) {
    if (upto == Upto::End) return ZSTD_e_end;
    return upto == Upto::Here ? ZSTD_e_flush : ZSTD_e_continue;
  }

  std::unique_ptr<ZSTD_CStream, Free> stream_;
  std::vector<char> block_;
};

}  // namespace

int highestLevelOf(Compression compression) {
  if (compression == Compression::None) return 0;
  return compression == Compression::Gzip ? Z_BEST_COMPRESSION : ZSTD_maxCLevel();
}

std::unique_ptr<Compressor> Compressor::create(const CompressionChoice& choice) {
  switch (choice.compression) {
    case Compression::Gzip:
      return std::make_unique<GzipCompressor>(choice.level);
    case Compression::Zstd:
      return std::make_unique<ZstdCompressor>(choice.level);
    case Compression::None:
      break;
  }
  return nullptr;
}

}  // namespace tool
