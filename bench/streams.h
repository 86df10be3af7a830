#pragma once

#include <istream>
#include <ostream>
#include <streambuf>
#include <string>

/// Streams that cost next to nothing, so that what is measured is the reader or the writer.
namespace streams {

/// Reads octets that stay where they are.
class MemoryBuffer : public std::streambuf {
 public:
  explicit MemoryBuffer(const std::string& octets) : octets_(octets) { rewind(); }

  void rewind() {
    char* const begin = const_cast<char*>(octets_.data());  // Nothing is put back through it.
    setg(begin, begin, begin + octets_.size());
  }

 protected:
  std::streamsize showmanyc() override { return -1; }  // There is nothing more.

 private:
  const std::string& octets_;
};

/// A stream over octets that outlive it, to be read again and again.
class MemoryStream : public std::istream {
 public:
  explicit MemoryStream(const std::string& octets) : std::istream(nullptr), buffer_(octets) {
    rdbuf(&buffer_);
  }

  void rewind() {
    buffer_.rewind();
    clear();
  }

 private:
  MemoryBuffer buffer_;
};

/// /dev/null through a file stream, opened once. Never closed before the program ends.
std::ostream& null();

}  // namespace streams
