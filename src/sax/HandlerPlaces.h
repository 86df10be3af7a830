#pragma once

#include <Tavrin/Handlers.h>
#include <Tavrin/TypedData.h>

namespace Tavrin {

/// Where a reader reports its events of one kind: to the handler that the application has set at
/// the time, or to a gate in front of it.
template <typename Handler>
class HandlerPlace {
 public:
  /// A place where an application cannot set a handler.
  HandlerPlace() = default;
  /// @param application the reader's pointer, because a handler may remove itself, or another,
  ///                    during any event
  // NOLINTNEXTLINE(google-explicit-constructor)
  HandlerPlace(Handler* const& application) : application_(&application) {}

  /// Whether the application receives these events.
  explicit operator bool() const { return *application_ != nullptr; }
  Handler* operator->() const { return gate_ != nullptr ? gate_ : *application_; }
  Handler& operator*() const { return *operator->(); }

  Handler* application() const { return *application_; }
  /// @param gate null to report to the application's handler
  void setGate(Handler* gate) { gate_ = gate; }

 private:
  static constexpr Handler* kNone = nullptr;

  Handler* const* application_ = &kNone;
  Handler* gate_ = nullptr;
};

/// The places of all events that a reader has.
struct HandlerPlaces {
  HandlerPlace<ContentHandler> content;
  HandlerPlace<ErrorHandler> error;
  HandlerPlace<DTDHandler> dtd;
  HandlerPlace<DeclHandler> decl;
  HandlerPlace<LexicalHandler> lexical;
  HandlerPlace<PrimitiveTypeContentHandler> primitiveTypes = {};
  HandlerPlace<EncodingAlgorithmContentHandler> encodingAlgorithms = {};
};

}  // namespace Tavrin
