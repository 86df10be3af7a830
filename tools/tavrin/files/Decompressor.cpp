#include "files/Decompressor.h"

#define ZLIB_CONST
#include <zlib.h>
#include <zstd.h>
#include <zstd_errors.h>

#include <algorithm>
#include <limits>
#include <new>
#include <stdexcept>

namespace tool {

namespace {

constexpr int kLargestWindow = 27;  // As a power of two: 128 MiB, as zstd itself has it.

class GzipDecompressor : public Decompressor {
 public:
  GzipDecompressor() {
    constexpr int kGzipAlone = 16;  // No zlib or raw data (the manual of inflateInit2).
    const int result = inflateInit2(&stream_, kGzipAlone + MAX_WBITS);
    if (result == Z_MEM_ERROR) throw std::bad_alloc();
    if (result != Z_OK) throw std::runtime_error("zlib cannot be used");
  }
  ~GzipDecompressor() override { inflateEnd(&stream_); }
  GzipDecompressor(const GzipDecompressor&) = delete;
  GzipDecompressor& operator=(const GzipDecompressor&) = delete;

  Step decompress(std::string_view piece, char* target, std::size_t size) override {
    constexpr std::size_t kMost = std::numeric_limits<uInt>::max();
    stream_.next_in = reinterpret_cast<const Bytef*>(piece.data());
    stream_.avail_in = static_cast<uInt>(std::min(piece.size(), kMost));
    stream_.next_out = reinterpret_cast<Bytef*>(target);
    stream_.avail_out = static_cast<uInt>(std::min(size, kMost));
    const uInt before = stream_.avail_in;
    const uInt room = stream_.avail_out;
    const int result = inflate(&stream_, Z_NO_FLUSH);
    if (result == Z_MEM_ERROR) throw std::bad_alloc();
    Step step{.taken = before - stream_.avail_in, .made = room - stream_.avail_out};
    step.isComplete = result == Z_STREAM_END;
    if (result == Z_DATA_ERROR || result == Z_NEED_DICT || result == Z_STREAM_ERROR) {
      step.problem = stream_.msg ? stream_.msg : "it needs a dictionary";
    }
    return step;
  }

  void beginNext() override { inflateReset(&stream_); }

 private:
  z_stream stream_{};
};

class ZstdDecompressor : public Decompressor {
 public:
  ZstdDecompressor() : stream_(ZSTD_createDStream()) {
    if (!stream_) throw std::bad_alloc();
    ZSTD_DCtx_setParameter(stream_.get(), ZSTD_d_windowLogMax, kLargestWindow);
  }

  Step decompress(std::string_view piece, char* target, std::size_t size) override {
    // Of a block that is damaged, zstd does not tell how much it has taken: it gets one at a time.
    ZSTD_inBuffer in{piece.data(), std::min(piece.size(), nextSize_), 0};
    ZSTD_outBuffer out{target, size, 0};
    const std::size_t result = ZSTD_decompressStream(stream_.get(), &out, &in);
    Step step{.taken = in.pos, .made = out.pos};
    if (ZSTD_isError(result) != 0U) {
      step.problem = problemOf(result);
    } else {
      step.isComplete = result == 0;
      nextSize_ = std::max<std::size_t>(result, 1);
    }
    return step;
  }

  void beginNext() override {
    ZSTD_DCtx_reset(stream_.get(), ZSTD_reset_session_only);
    nextSize_ = kFirstSize;
  }

 private:
  struct Free {
    void operator()(ZSTD_DStream* stream) const { ZSTD_freeDStream(stream); }
  };

  static std::string problemOf(std::size_t result) {
    switch (ZSTD_getErrorCode(result)) {
      case ZSTD_error_memory_allocation:
        throw std::bad_alloc();
      case ZSTD_error_frameParameter_windowTooLarge:
        return "it needs more than 128 MiB of memory";
      case ZSTD_error_dictionary_wrong:
        return "it needs a dictionary";
      default:
        return ZSTD_getErrorName(result);
    }
  }

  static constexpr std::size_t kFirstSize = 5;  // Of a frame's header, to know its length.

  std::unique_ptr<ZSTD_DStream, Free> stream_;
  std::size_t nextSize_ = kFirstSize;
};

}  // namespace

std::unique_ptr<Decompressor> Decompressor::create(Compression compression) {
  if (compression == Compression::Gzip) return std::make_unique<GzipDecompressor>();
  return std::make_unique<ZstdDecompressor>();
}

}  // namespace tool
