#pragma once

#include <algorithm>
#include <cstdint>
#include <ios>
#include <istream>
#include <streambuf>
#include <string>

#include "Blocks.h"
#include "SingleOctets.h"

namespace Tavrin {

/// The octets of a document, read from a stream or given in blocks. Where a block ends before what
/// is read, Blocks::Incomplete is thrown.
///
/// Octets of a stated length are read as they arrive: what a document claims about its lengths
/// never decides how much memory is used.
class OctetInput {
 public:
  static constexpr int kEnd = std::istream::traits_type::eof();

  /// @param callsGet whether each single octet is read by a call of the stream's `get`, with all
  ///                 that programs can observe of it. Otherwise octets come from the stream's
  ///                 buffer; the state of the stream is obeyed and set as `get` would.
  explicit OctetInput(bool callsGet) : callsGet_(callsGet) {}

  /// Begins to read from a stream, which must outlive the use of this object.
  void open(std::istream& stream) {
    blocks_ = nullptr;
    read(stream);
  }
  /// Begins to read blocks, which must outlive the use of this object.
  void open(Blocks& blocks) {
    blocks_ = &blocks;
    read(blocks.stream());
  }
  /// The blocks, or null where a stream is read.
  Blocks* blocks() const { return blocks_; }
  /// What was read since the last step is read again.
  void undoStep() { count_ = blocks_->undoStep(); }

  std::istream& stream() const { return *stream_; }
  std::streambuf& buffer() const { return *state_->rdbuf(); }
  SingleOctets singleOctets() const { return {*stream_, *state_}; }
  bool isGood() const { return state_->good(); }

  /// How many octets were read. Octets that were read by `get` are not counted.
  std::uint64_t count() const { return count_; }
  /// Counts octets that were read from the buffer by somebody else.
  void add(std::uint64_t octets) { count_ += octets; }

  /// The next octet, or kEnd. Inline, because it is called for each octet outside of strings.
  int next() {
    if (callsGet_) return singleOctets().get();
    if (!state_->good()) return setEnd();
    int octet = 0;
    try {
      octet = state_->rdbuf()->sbumpc();
    } catch (...) {
      return setBroken();
    }
    if (octet == kEnd) return setEnd();
    ++count_;
    return octet;
  }

  /// The next octet, or kEnd; it is not consumed.
  int peek() {
    expect(1);
    return state_->good() ? state_->rdbuf()->sgetc() : kEnd;
  }

  /// To be called before something is done that cannot be undone, with the number of octets that
  /// are read for it.
  void expect(std::uint64_t length) const {
    if (blocks_ != nullptr) blocks_->check(length);
  }

  /// Consumes octets that are in the stream's buffer already, as its `sgetn` would.
  /// @return where they are until the next octet is read; or null where not all of them are in the
  ///         buffer: nothing has happened then
  const char* consumeBuffered(std::uint64_t length) {
    if (callsGet_) return nullptr;
    const GetArea area(*state_->rdbuf());
    if (length > area.size()) return nullptr;
    const char* const octets = area.begin();
    area.advance(length);
    count_ += length;
    return octets;
  }

  /// Whether memory for so many octets is no more than a small document may cause, or less than
  /// what the stream's buffer says that it has.
  bool hasArrived(std::uint64_t length) const {
    if (length <= kFirstPiece) return true;
    const std::streamsize there = buffer().in_avail();
    return there > 0 && static_cast<std::uint64_t>(there) >= length;
  }

  /// Replaces a string by the next octets: with one bulk read of the buffer, or piece by piece
  /// where not all of them are known to have arrived.
  /// @return whether all of them came
  bool read(std::uint64_t length, std::string& octets) {
    return readPieces(length, octets, [this](char* piece, std::streamsize wanted) {
      return buffer().sgetn(piece, wanted);
    });
  }

  /// As read.
  /// @param readPiece called as readPiece(char* octets, std::streamsize wanted); returns how many
  ///                  octets it read
  template <typename ReadPiece>
  bool readPieces(std::uint64_t length, std::string& octets, ReadPiece readPiece) {
    expect(length);
    std::uint64_t begin = 0;
    while (begin < length) {
      const std::uint64_t left = length - begin;
      const std::uint64_t piece =
          hasArrived(left) ? left : std::min(left, std::max(begin, kFirstPiece));
      octets.resize(begin + piece);
      const auto wanted = static_cast<std::streamsize>(piece);
      const std::streamsize got = readPiece(octets.data() + begin, wanted);
      count_ += static_cast<std::uint64_t>(got);
      if (got != wanted) return false;
      begin += piece;
    }
    octets.resize(length);
    return true;
  }

 private:
  /// A string grows by at most this, or by as much as has arrived.
  static constexpr std::uint64_t kFirstPiece = std::uint64_t{64} * 1024;

  void read(std::istream& stream) {
    stream_ = &stream;
    state_ = &stream;
    count_ = 0;
  }
  int setEnd();
  int setBroken();

  const bool callsGet_;
  std::istream* stream_ = nullptr;
  std::ios* state_ = nullptr;  // Of the stream: its state, and the buffer it has at the time.
  Blocks* blocks_ = nullptr;
  std::uint64_t count_ = 0;
};

}  // namespace Tavrin
