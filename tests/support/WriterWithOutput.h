#pragma once

#include <initializer_list>
#include <ostream>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

#include "AttributeLists.h"
#include "EventLog.h"

/// A stream without a buffer of its own: what is written into it is seen at once, in the pieces in
/// which it came.
class Output : public std::ostream {
 public:
  Output() : std::ostream(nullptr) { rdbuf(&buffer_); }

  const std::string& text() const { return buffer_.text; }
  /// What came since this was asked last.
  std::string news() {
    const std::size_t seen = std::exchange(seen_, buffer_.text.size());
    return buffer_.text.substr(seen);
  }
  /// From now on every piece is kept.
  void keepPieces() { buffer_.keepsPieces = true; }
  const std::vector<std::string>& pieces() const { return buffer_.pieces; }
  /// How often the stream was flushed.
  int flushes() const { return buffer_.flushes; }
  /// Full from now on: it takes no more octets.
  void fill() { buffer_.full = true; }
  /// Takes octets again, after a failure too.
  void empty() {
    buffer_.full = false;
    clear();
  }

 private:
  class Buffer : public std::streambuf {
   public:
    std::string text;
    std::vector<std::string> pieces;
    bool keepsPieces = false;
    bool full = false;
    int flushes = 0;

   protected:
    std::streamsize xsputn(const char* octets, std::streamsize count) override {
      if (full) return 0;
      const std::string piece(octets, static_cast<std::size_t>(count));
      text += piece;
      if (keepsPieces) pieces.push_back(piece);
      return count;
    }
    int_type overflow(int_type octet) override {
      const char c = traits_type::to_char_type(octet);
      return xsputn(&c, 1) == 1 ? octet : traits_type::eof();
    }
    int sync() override {
      ++flushes;
      return 0;
    }
  };

  Buffer buffer_;
  std::size_t seen_ = 0;
};

/// A writer with a stream that shows octets at once, and with short forms of the commonest events.
template <typename Writer>
class WriterWithOutput : public Writer {
 public:
  WriterWithOutput() { this->setOutputStream(&output); }

  /// Everything written so far.
  const std::string& text() const { return output.text(); }
  /// Everything written so far, as hexadecimal pairs.
  std::string written() const { return EventLog::showOctets(output.text()); }
  /// What was written since this was asked last, as hexadecimal pairs.
  std::string news() { return EventLog::showOctets(output.news()); }

  /// Starts an element without prefix and namespace.
  void start(const std::string& name, std::initializer_list<Plain> list = {}) {
    this->startElement("", name, name, attributes(list));
  }
  void end(const std::string& name) { this->endElement("", name, name); }
  /// Starts an element without prefix and namespace, and ends it again.
  void leaf(const std::string& name, std::initializer_list<Plain> list = {}) {
    start(name, list);
    end(name);
  }
  /// Sets a property to a value.
  template <typename Value>
  void set(const char* property, Value value) {
    this->setProperty(property, &value);
  }

  Output output;
};
