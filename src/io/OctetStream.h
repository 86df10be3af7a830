#pragma once

#include <istream>
#include <streambuf>
#include <string>

namespace Tavrin {

/// A stream over octets in memory, for algorithms to decode from: so that none reads beyond its
/// data.
class OctetStream {
 public:
  OctetStream() : stream_(&buffer_) {}

  /// The stream, at the beginning of these octets, which must outlive its use.
  std::istream& over(std::string& octets) {
    buffer_.set(octets);
    stream_.clear();
    return stream_;
  }
  bool isAtEnd() const { return buffer_.isAtEnd(); }

 private:
  class Buffer : public std::streambuf {
   public:
    void set(std::string& octets) {
      setg(octets.data(), octets.data(), octets.data() + octets.size());
    }
    bool isAtEnd() const { return gptr() == egptr(); }
  };

  Buffer buffer_;
  std::istream stream_;
};

}  // namespace Tavrin
