#pragma once

#include <Tavrin/Attributes.h>

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <mutex>
#include <string>
#include <vector>

namespace tool {

/// One event of a document, kept beyond the call.
struct Event {
  enum class Kind {
    StartPrefixMapping,
    StartElement,
    EndElement,
    Characters,
    Octets,
    ProcessingInstruction,
    Comment,
    SkippedEntity,
    ResolveEntity,
    StartDTD,
    EndDTD,
    StartCDATA,
    EndCDATA,
    Border,  ///< Another document begins.
  };
  /// Where the event began: a line and a column, or in documents without lines an octet.
  struct Position {
    int line = 0;
    int column = 0;
    std::uint64_t octet = 0;
    std::uint64_t document = 1;  ///< The number of the document.
    std::string entity;  ///< Names the external entity it was in; empty in the document itself.
  };

  Kind kind;
  Position position;
  std::vector<std::string> arguments;
  std::vector<Tavrin::AttributesImpl::Attribute> attributes;
  bool isCutOff = false;  ///< The document could not be read on in the middle of this text.
};

using EventBatch = std::vector<Event>;

/// Hands batches of events from the thread that reads a document to the one that looks at them. It
/// holds a few batches at most: the reading thread waits.
class EventQueue {
 public:
  /// What push throws once nobody wants events any more.
  struct Stopped {};

  /// @name For the reading thread
  /// @{
  void push(EventBatch batch);
  /// There will be no more events.
  /// @param failure why the document could not be read to its end, or null
  void close(std::exception_ptr failure);
  /// @}

  /// @name For the other thread
  /// @{

  /// Waits for the next batch. Returns false when there is none left.
  bool pop(EventBatch& batch);
  /// Why there are no more events; null at the end of the document. Call it after pop said so.
  std::exception_ptr failure() const { return failure_; }
  /// Lets the reading thread end early.
  void stop();
  /// @}

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<EventBatch> batches_;
  bool closed_ = false;
  bool stopped_ = false;
  std::exception_ptr failure_;
};

}  // namespace tool
