#pragma once

#include <zlib.h>
#include <zstd.h>

#include <stdexcept>
#include <string>

// Compressed data as others make it.

/// A member of gzip.
inline std::string gzipOf(const std::string& text, int level = 6) {
  z_stream stream{};
  if (deflateInit2(&stream, level, Z_DEFLATED, 16 + 15, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
    throw std::runtime_error("deflateInit2");
  }
  std::string data(deflateBound(&stream, text.size()) + 64, '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
  stream.avail_in = static_cast<uInt>(text.size());
  stream.next_out = reinterpret_cast<Bytef*>(data.data());
  stream.avail_out = static_cast<uInt>(data.size());
  if (deflate(&stream, Z_FINISH) != Z_STREAM_END) throw std::runtime_error("deflate");
  data.resize(stream.total_out);
  deflateEnd(&stream);
  return data;
}

/// A frame of zstd.
/// @param windowLog the power of two that is its window, or 0 for the usual one
inline std::string zstdOf(const std::string& text, int windowLog = 0) {
  ZSTD_CCtx* const context = ZSTD_createCCtx();
  ZSTD_CCtx_setParameter(context, ZSTD_c_checksumFlag, 1);
  if (windowLog != 0) {
    ZSTD_CCtx_setParameter(context, ZSTD_c_windowLog, windowLog);
    ZSTD_CCtx_setParameter(context, ZSTD_c_contentSizeFlag, 0);
  }
  std::string data(ZSTD_compressBound(text.size()), '\0');
  ZSTD_inBuffer in{text.data(), text.size(), 0};
  ZSTD_outBuffer out{data.data(), data.size(), 0};
  // Before the end is known, no frame of one block is made, which needs no window.
  if (windowLog != 0) ZSTD_compressStream2(context, &out, &in, ZSTD_e_continue);
  const std::size_t left = ZSTD_compressStream2(context, &out, &in, ZSTD_e_end);
  ZSTD_freeCCtx(context);
  if (left != 0) throw std::runtime_error("ZSTD_compressStream2");
  data.resize(out.pos);
  return data;
}

inline std::string ungzip(const std::string& data, std::size_t most) {
  z_stream stream{};
  if (inflateInit2(&stream, 16 + 15) != Z_OK) throw std::runtime_error("inflateInit2");
  std::string text(most + 1, '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.data()));
  stream.avail_in = static_cast<uInt>(data.size());
  stream.next_out = reinterpret_cast<Bytef*>(text.data());
  stream.avail_out = static_cast<uInt>(text.size());
  const int result = inflate(&stream, Z_FINISH);
  text.resize(stream.total_out);
  const bool isWhole = result == Z_STREAM_END && stream.avail_in == 0;
  inflateEnd(&stream);
  if (!isWhole) throw std::runtime_error("inflate");
  return text;
}

inline std::string unzstd(const std::string& data, std::size_t most) {
  std::string text(most, '\0');
  const std::size_t size = ZSTD_decompress(text.data(), most, data.data(), data.size());
  if (ZSTD_isError(size) != 0U) throw std::runtime_error(ZSTD_getErrorName(size));
  text.resize(size);
  return text;
}
