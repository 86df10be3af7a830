#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <streambuf>
#include <string_view>
#include <utility>
#include <vector>

#include "files/Compressor.h"
#include "files/Listener.h"
#include "files/OctetSource.h"
#include "files/RecentOctets.h"

namespace tool {

/// An open file, closed with the object unless it is one of the three standard ones.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() { close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int number() const { return number_; }
  void reset(int number);
  /// Closes now. Returns the system's error number, or 0.
  int close();

 private:
  int number_ = -1;
};

class KeptOctets;

/// Reads from a descriptor, and decompresses what is compressed. A failed read, or compressed data
/// that is damaged, looks like the end of the input to the reading side, so that it crosses a
/// library of any kind unharmed; afterwards error() and problem() tell them apart.
class InputBuffer : public std::streambuf {
 public:
  explicit InputBuffer(const Descriptor& descriptor);
  ~InputBuffer() override;

  /// The octets that come next, without taking them: at least `size`, unless the input is shorter.
  std::string_view peek(std::size_t size);
  /// How many octets the reading side has taken.
  std::uint64_t taken() const { return received_ - static_cast<std::uint64_t>(egptr() - gptr()); }
  /// Sets what to do before it waits for octets that are still to come; nothing by default.
  void callBeforeWaiting(std::function<void()> call) { source_.callBeforeWaiting(std::move(call)); }
  /// Where to report from now on how much of the descriptor's octets has been taken; null for
  /// nowhere. A report comes whenever the descriptor is read, so an octet that comes out of the
  /// buffer costs nothing.
  void reportTo(Meter* meter) { meter_ = meter; }
  /// Reports now.
  void report();
  /// Whether its octets are those of a file: what has been read can be read again. Ask when
  /// something has been read.
  bool isPlainFile() const;
  /// The error number of the read that failed, or 0.
  int error() const { return source_.error(); }
  /// What is wrong with the compressed data; empty for nothing.
  const std::string& problem() const { return source_.problem(); }
  /// Keeps from now on what was read last.
  void keepRecent() { recent_.emplace(); }
  /// What was read last, or null where it is not kept. It may go further than what was taken.
  const RecentOctets* recent() const { return recent_ ? &*recent_ : nullptr; }

  /// Makes the octet that comes next the one to go back to. Until then, octets are kept that do not
  /// come from a file.
  void mark();
  /// Goes back to the mark.
  void returnToMark();
  /// The error number of what failed about keeping octets, or 0. What could not be kept looks like
  /// the end of the input.
  int keepingError() const;

 protected:
  int_type underflow() override;
  std::streamsize xsgetn(char* target, std::streamsize size) override;

 private:
  std::size_t read(char* target, std::size_t size);
  std::size_t readKept(char* target, std::size_t size);
  std::size_t readSource(char* target, std::size_t size);
  std::uint64_t used() const;

  const Descriptor& descriptor_;
  OctetSource source_;
  std::vector<char> buffer_;
  std::uint64_t received_ = 0;        // What has been taken, and what stands in the buffer.
  std::uint64_t mark_ = 0;            // What had been taken there,
  std::uint64_t usedAtMark_ = 0;      // with so many octets of the descriptor.
  std::uint64_t keptEnd_ = 0;         // What had been received when it went back.
  std::uint64_t usedTwice_ = 0;       // Octets of the descriptor, because it went back.
  std::unique_ptr<KeptOctets> kept_;  // What comes from no file.
  bool isKeeping_ = false;
  bool isStopped_ = false;  // There is no place for what comes from the descriptor.
  Meter* meter_ = nullptr;
  std::optional<RecentOctets> recent_;
};

/// Writes to a descriptor, through a buffer of its own, and compresses where that is asked for.
/// After a failure nothing more is written.
class OutputBuffer : public std::streambuf {
 public:
  explicit OutputBuffer(const Descriptor& descriptor, const CompressionChoice& compression = {});
  ~OutputBuffer() override;

  /// How many octets have left the buffer.
  std::uint64_t written() const { return written_; }
  /// Writes what is in the buffer, and ends what is compressed. Nothing may follow.
  void finish();
  /// The error number of the write that failed, or 0.
  int error() const { return error_; }

 protected:
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* text, std::streamsize size) override;
  int sync() override;

 private:
  bool write(std::string_view octets);
  bool put(std::string_view octets, Compressor::Upto upto);
  bool putBuffered(Compressor::Upto upto);

  const Descriptor& descriptor_;
  std::unique_ptr<Compressor> compressor_;  // Null where nothing is compressed.
  std::vector<char> buffer_;
  std::uint64_t written_ = 0;
  int error_ = 0;
};

}  // namespace tool
