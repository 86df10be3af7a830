#pragma once

#include <Tavrin/Handlers.h>
#include <expat.h>

#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "../../sax/HandlerPlaces.h"
#include "ExpatNames.h"

namespace Tavrin::text {

/// The handlers of a reader. Those of its base class are references to its pointers, because a
/// handler may change them between two events.
struct HandlerPointers {
  ContentHandler* const& content;
  ErrorHandler* const& error;
  EntityResolver* const& resolver;
  DTDHandler* const& dtd;
  DeclHandler* decl = nullptr;
  LexicalHandler* lexical = nullptr;
};

/// Text that expat may leave out; absent text is empty.
inline const XML_Char* textOrEmpty(const XML_Char* text) { return text ? text : ""; }

/// The mode of an attribute's declaration (XML 1.0, production 60); empty for a plain default.
inline const char* defaultMode(const XML_Char* defaultValue, int isRequired) {
  if (defaultValue) return isRequired ? "#FIXED" : "";
  return isRequired ? "#REQUIRED" : "#IMPLIED";
}

/// Reports expat's events to the handlers of a reader, and decides what becomes of the exceptions
/// that they throw. It is the user data of every parser, also that of an external entity.
class EventTarget {
 public:
  explicit EventTarget(const HandlerPointers& application) : pointers(application) {}
  virtual ~EventTarget() = default;
  EventTarget(const EventTarget&) = delete;
  EventTarget& operator=(const EventTarget&) = delete;

  HandlerPointers pointers;
  /// Where events are reported.
  HandlerPlaces handlers = {pointers.content, pointers.error, pointers.dtd, pointers.decl,
                            pointers.lexical};

  /// Runs the work of a callback. An exception must not pass through expat, which is C: it is
  /// caught here, and the parse stops.
  template <typename Work>
  void guard(Work work) {
    try {
      if (ready_ || makeReady()) work();
    } catch (...) {
      handlerThrew();
    }
  }

  /// Calls an operation of a handler, where the handler is set.
  /// @param handler one of `handlers`
  template <typename Handler, typename Operation, typename... Arguments>
  void deliver(const HandlerPlace<Handler>& handler, Operation operation, Arguments... arguments) {
    if (!handler) return;
    guard([&] {
      if (handler) std::invoke(operation, *handler, arguments...);
    });
  }

  // The events that all readers report alike.

  void characterData(const XML_Char* data, int length) {
    deliver(handlers.content, [&](ContentHandler& handler) {
      passOn(handler, {data, static_cast<std::size_t>(length)});
    });
  }
  void endNamespace(const XML_Char* prefix) {
    deliver(handlers.content, &ContentHandler::endPrefixMapping, textOrEmpty(prefix));
  }
  void processingInstruction(const XML_Char* target, const XML_Char* data) {
    deliver(handlers.content, &ContentHandler::processingInstruction, target, data);
  }
  void comment(const XML_Char* text) { deliver(handlers.lexical, &LexicalHandler::comment, text); }
  void startCdata() { deliver(handlers.lexical, &LexicalHandler::startCDATA); }
  void endCdata() { deliver(handlers.lexical, &LexicalHandler::endCDATA); }
  void startDoctype(const XML_Char* name, const XML_Char* systemId, const XML_Char* publicId, int) {
    deliver(handlers.lexical, &LexicalHandler::startDTD, name, textOrEmpty(publicId),
            textOrEmpty(systemId));
  }
  void endDoctype() { deliver(handlers.lexical, &LexicalHandler::endDTD); }
  void elementDecl(const XML_Char* name, XML_Content* model);

 protected:
  /// Frees the memory that events reuse.
  void releaseMemory() {
    const std::string released(std::move(text_));  // Assigning an empty string frees nothing.
    element_.release();
  }

  /// Delivers text.
  void passOn(ContentHandler& handler, std::string_view text) {
    if (text.size() > kMostKept) return handler.characters(std::string(text));
    text_ = text;
    handler.characters(text_);
  }

  /// Whether events are delivered. While it is false, makeReady is called before each event.
  bool ready_ = true;
  ElementName element_;

 private:
  /// Called before an event while ready_ is false.
  /// @return whether the event is to be delivered
  virtual bool makeReady() { return true; }
  /// Called while an exception of a handler is being caught. It throws nothing.
  virtual void handlerThrew() = 0;

  std::string text_;  // Of the current event; the next one reuses its memory.
};

}  // namespace Tavrin::text
