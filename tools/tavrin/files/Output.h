#pragma once

#include <sys/types.h>

#include <ostream>
#include <string>

#include "files/DescriptorBuffers.h"

namespace tool {

/// Where a document goes: a file, or standard output by the name "-".
///
/// A file appears whole or not at all. It is written beside its place under a name of its own, and
/// commit gives it the right one; an object that goes without commit leaves nothing behind. What
/// exists and is not a regular file, such as a device or a pipe, is written to directly.
class Output {
 public:
  /// Looks at what stands at the place, and opens nothing yet.
  /// @param force whether a file that exists may be replaced
  /// @throws Failure when there is one and it may not
  Output(const std::string& name, bool force, const CompressionChoice& compression = {});
  ~Output();
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  /// @throws Failure when it cannot be opened
  void open();
  std::ostream& stream() { return stream_; }
  /// How many octets have been written: all of them once it is flushed or committed.
  std::uint64_t octetsWritten() const { return buffer_.written(); }
  /// Whether this is standard output and that a terminal.
  bool isTerminal() const;
  /// @throws Failure when something could not be written
  void checkWritten() const;
  /// Writes what is still in the buffer, so that it can be read now. @throws Failure when that
  /// cannot be written
  void flush();
  /// Ends the document: flushes it and puts the file in its place.
  /// @throws Failure when that fails, or when another file has come to stand there meanwhile
  void commit();

 private:
  void examine();
  void openTemporary();
  void putInPlace();
  [[noreturn]] void refuse() const;
  [[noreturn]] void fail(int errorNumber) const;

  std::string name_;
  bool force_;
  bool isFile_ = false;    // Neither standard output nor something to write to directly.
  bool replaces_ = false;  // There is a file already, of mode mode_.
  mode_t mode_ = 0666;
  std::string target_;     // The place, behind symbolic links.
  std::string temporary_;  // The unfinished file; empty when there is none.
  Descriptor descriptor_;
  OutputBuffer buffer_;
  std::ostream stream_;
};

}  // namespace tool
