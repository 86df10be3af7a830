#pragma once

#include <Tavrin/Handlers.h>

#include <cstddef>
#include <string>
#include <utility>

namespace Tavrin {

/// The handlers of a reader: its own pointers, because a handler may take itself, or another, off
/// between two events.
struct HandlerPointers {
  ContentHandler* const& content;
  ErrorHandler* const& error;
  EntityResolver* const& resolver;
  DTDHandler* const& dtd;
  DeclHandler* const& decl;
  LexicalHandler* const& lexical;
};

/// The memory of a text or name that is longer is not kept for all the short ones.
inline constexpr std::size_t kMostKept = std::size_t{64} * 1024;

/// What expat's callbacks work for: the handlers of a reader, and what becomes of what they throw.
/// It is the user data of every parser, also that of an external entity.
class EventTarget {
 public:
  explicit EventTarget(const HandlerPointers& pointers) : handlers(pointers) {}
  virtual ~EventTarget() = default;
  EventTarget(const EventTarget&) = delete;
  EventTarget& operator=(const EventTarget&) = delete;

  const HandlerPointers handlers;

  /// The text of the current event. That of the next takes its place, so that its memory is used
  /// again: made anew, it takes as long as what expat does for a small event.
  std::string text;

  /// Frees the memory of the text. An empty string that is assigned would leave it as it is.
  void releaseText() { const std::string gone(std::move(text)); }

  /// Runs a callback's work. An exception must not unwind through expat, which is C: it is taken
  /// here, and the parse stops.
  template <typename Work>
  void guard(Work work) {
    try {
      if (ready_ || makeReady()) work();
    } catch (...) {
      handlerThrew();
    }
  }

  /// Runs the work that calls a handler, where it is set.
  /// @param handler one of `handlers`
  template <typename Handler, typename Work>
  void deliver(Handler* const& handler, Work work) {
    if (!handler) return;
    guard([&] {
      if (handler) work(*handler);
    });
  }

 protected:
  /// Whether events are delivered. Where it is off, makeReady is asked before an event.
  bool ready_ = true;

 private:
  /// Before an event that finds ready_ off.
  /// @return whether the event is to be delivered
  virtual bool makeReady() { return true; }
  /// Called while what a handler threw inside of expat is being caught. It throws nothing.
  virtual void handlerThrew() = 0;
};

}  // namespace Tavrin
