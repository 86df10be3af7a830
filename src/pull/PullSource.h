#pragma once

#include <Tavrin/PullReader.h>

#include <cstddef>
#include <cstdint>
#include <exception>
#include <istream>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "EventQueue.h"

namespace Tavrin {

/// Where the events of a PullReader come from. It is the reader's current event, too, so that going
/// on takes one call.
class PullSource : public PullState {
 public:
  PullSource() = default;
  PullSource(const PullSource&) = delete;
  PullSource& operator=(const PullSource&) = delete;

  /// Provides a block, which stays where it is until the source needs another one.
  virtual void supply(std::string_view block, bool isFinal) = 0;
  virtual XMLReader& reader() = 0;
  virtual unsigned long unusedOctets() const { return 0; }
  virtual std::string_view textOfValue() { return {}; }
  virtual void trackPositions() {}
  virtual EventPosition position() const { return {}; }

  /// As next. What follows it makes it leave an operation half-way, to be called again.
  std::size_t target = 0;  ///< The depth of the element that is skipped or read; 0 for none.
  std::string beginning;   ///< Octets of the first blocks, while they are being read.
};

/// What is common to the sources that read.
class ReadingSource : public PullSource {
 protected:
  /// @param stream null for blocks
  explicit ReadingSource(std::istream* stream) : stream_(stream) { needsBlock = stream == nullptr; }

  enum class Phase : std::uint8_t { none, reading, ended, failed };

  /// To be called from a handler of exceptions. The events before come first.
  void fail() {
    failure_ = std::current_exception();
    phase_ = Phase::failed;
  }
  /// Throws what ended the document, once.
  void throwFailure() {
    if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
  }
  /// Hands out the next event of the queue, if there is one.
  bool handOut() {
    if (!queue_.handOut(*this)) return false;
    if (event == PullEvent::startElement) ++open;
    if (event == PullEvent::endElement) --open;
    if (event == PullEvent::endDocument) hasEnded = true;
    return true;
  }
  /// Begins to read a block, and a document where none is being read.
  /// @return false where there is nothing to do
  bool acceptBlock(std::string_view block, bool isFinal);
  virtual void beginDocument() = 0;

  std::istream* const stream_;
  EventQueue queue_;
  Phase phase_ = Phase::none;

 private:
  std::exception_ptr failure_;
};

/// @param stream null for blocks
std::unique_ptr<PullSource> makeTextSource(std::istream* stream);
std::unique_ptr<PullSource> makeBinarySource(std::istream* stream);

}  // namespace Tavrin
