#pragma once

#include <EventLog.h>
#include <Tavrin/Tavrin.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Turns the events of a pull reader into calls of handlers, so that they can be compared.
class PullLog {
 public:
  explicit PullLog(Tavrin::PullReader& reader) : reader_(reader) {
    log.showLocator = false;
    log.showAlgorithms = true;
  }

  /// Logs all events that there are.
  void pull() {
    while (reader_.next()) deliver();
  }
  /// Logs the current event.
  void deliver();

  EventLog log;
  /// Typed values go to EncodingAlgorithmContentHandler::object; otherwise they are characters.
  bool isTyped = true;

 private:
  void deliverElement();
  void deliverDeclaration();
  std::string part(std::size_t index) const { return std::string(reader_.part(index)); }

  Tavrin::PullReader& reader_;
  std::vector<std::vector<std::string>> prefixes_;  // By open element.
};

/// What was told of a document, and how it ended.
struct PullOutcome {
  std::string told;
  std::string failure = "done";
  std::size_t unused = 0;

  bool operator==(const PullOutcome&) const = default;
};

inline void PrintTo(const PullOutcome& outcome, std::ostream* stream) {
  *stream << outcome.told << outcome.failure << ", " << outcome.unused << " octets unused";
}

/// A stream buffer that gives one octet at a time.
class OctetByOctet : public std::streambuf {
 public:
  explicit OctetByOctet(std::string octets) : octets_(std::move(octets)) {}

  std::size_t given() const { return next_; }

 protected:
  int_type underflow() override {
    if (next_ == octets_.size()) return traits_type::eof();
    octet_ = octets_[next_++];
    setg(&octet_, &octet_, &octet_ + 1);
    return traits_type::to_int_type(octet_);
  }

 private:
  std::string octets_;
  std::size_t next_ = 0;
  char octet_ = 0;
};
