#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <streambuf>
#include <string>
#include <string_view>

namespace Tavrin {

/// A document that is given in blocks, as a stream that is read in steps.
///
/// A step whose octets have not all arrived is undone, and read again when they have. Octets are
/// read where the caller has them. Only the beginning of a step is kept for the next block: the
/// step is completed there, with as few octets of that block as it takes, so that the time for a
/// document does not depend on how it was cut.
class Blocks {
 public:
  /// Thrown where the octets of a step end before the step.
  struct Incomplete {};

  Blocks() : stream_(&buffer_) {}
  Blocks(const Blocks&) = delete;
  Blocks& operator=(const Blocks&) = delete;

  std::istream& stream() { return stream_; }

  /// Forgets everything: another document follows.
  void clear();
  /// Receives a block. It must stay where it is until supply has returned false, or until
  /// keepUnread.
  void append(std::string_view block, bool isFinal);
  /// Copies what has not been read of the block, which may then go. To be called at the end of a
  /// step.
  void keepUnread();
  /// Provides the octets that the next step is read from.
  /// @return false where it certainly takes another block
  bool supply();

  void endStep() {
    stepBegin_ = buffer_.gptr();
    if (keptOfBlock_ > 0 && shown() <= keptOfBlock_) showBlock();
  }
  /// The last step ended before so many octets, which were read since.
  void endStepBefore(std::uint64_t octets) { stepBegin_ = buffer_.gptr() - octets; }
  /// As if nothing had been read since the last step.
  /// @return how many octets precede it in the document
  std::uint64_t undoStep();

  /// Whether so many octets are at hand.
  bool has(std::uint64_t length) const { return length <= shown(); }
  /// Likewise, where they are read from the block itself, so that nothing is gained by the end of a
  /// step.
  bool hasInBlock(std::uint64_t length) const { return keptOfBlock_ == 0 && has(length); }
  /// Whether so many octets have not arrived, but may. The step is incomplete then.
  bool lacks(std::uint64_t length) {
    if (has(length) || (isFinal_ && rest_.empty())) return false;
    wanted_ = static_cast<std::uint64_t>(buffer_.gptr() - stepBegin_) + length;
    return true;
  }
  /// Throws Incomplete likewise.
  void check(std::uint64_t length) {
    if (lacks(length)) throw Incomplete();
  }

  /// How many octets of the block have not been read.
  std::size_t unread() const { return shown() + rest_.size(); }

 private:
  struct Buffer : std::streambuf {
    using std::streambuf::egptr;
    using std::streambuf::gptr;
    using std::streambuf::setg;
  };

  std::size_t shown() const { return static_cast<std::size_t>(buffer_.egptr() - buffer_.gptr()); }
  void show(std::string_view octets);
  void showBlock();

  Buffer buffer_;
  std::istream stream_;
  // What is read is here, unless it is empty: the beginning of a step, then octets of the block.
  std::string kept_;
  std::size_t keptOfBlock_ = 0;
  std::string_view rest_;  // What has not been shown of the block.
  std::string copy_;       // Of the block, where it had to be kept.
  bool isCopied_ = false;
  bool isFinal_ = false;
  const char* stepBegin_ = nullptr;
  // The beginning of what is shown, which was that of a step, and its offset in the document.
  const char* shownBegin_ = nullptr;
  std::uint64_t shownOffset_ = 0;
  std::uint64_t wanted_ = 1;  // How many octets the step has at least.
};

}  // namespace Tavrin
