#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>

#include "comparing/Records.h"

namespace tool {

/// Hands blocks of records from the thread that reads a document to the one that looks at them, and
/// back when they are done with. Either way several go at once, as waking a thread takes as long as
/// reading a block. It holds a few at most: the reading thread waits.
class BlockQueue {
 public:
  /// What push throws once nobody wants blocks any more.
  struct Stopped {};

  /// @name For the reading thread
  /// @{

  /// An empty block, which may have storage already.
  std::unique_ptr<Block> take();
  void push(std::unique_ptr<Block> block);
  /// There will be no more blocks.
  /// @param failure why the document could not be read to its end, or null
  void close(std::exception_ptr failure);
  /// @}

  /// @name For the other thread
  /// @{

  /// Waits for the next block. Returns null when there is none left.
  std::unique_ptr<Block> pop();
  /// Gives a block back.
  void giveBack(std::unique_ptr<Block> block);
  /// Why there are no more blocks; null at the end of the document. Call it after pop said so.
  std::exception_ptr failure() const { return failure_; }
  /// Lets the reading thread end early.
  void stop();
  /// @}

 private:
  using Blocks = std::deque<std::unique_ptr<Block>>;

  bool hasRoomFor(const Block& block) const;

  std::mutex mutex_;
  std::condition_variable changed_;
  Blocks blocks_;
  std::size_t octets_ = 0;  // Of all of them.
  Blocks free_;
  bool isFull_ = false;  // The reading thread waits, and nobody has made room yet.
  bool closed_ = false;
  bool stopped_ = false;
  std::exception_ptr failure_;

  Blocks toFill_;    // Of the reading thread: free ones.
  Blocks toLookAt_;  // Of the other thread: those that come next,
  Blocks done_;      // and those that it is done with.
};

}  // namespace tool
