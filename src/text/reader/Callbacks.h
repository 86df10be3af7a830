#pragma once

#include <expat.h>

#include "EventTarget.h"

namespace Tavrin::text {

/// Converts to a callback for expat, which calls a member of the EventTarget that is its first
/// argument.
/// @tparam isGuarded whether the member is called within EventTarget::guard
template <auto member, bool isGuarded>
struct Callback {
  template <typename Result, typename First, typename... Rest>
  using Function = Result (*)(First, Rest...);

  template <typename Target, typename Result, typename... Arguments>
  static Target& targetOf(void* data, Result (Target::*)(Arguments...)) {
    return static_cast<Target&>(*static_cast<EventTarget*>(data));
  }

  // The parameters are those of the callback that expat is given.
  template <typename Result, typename First, typename... Rest>
  // NOLINTNEXTLINE(google-explicit-constructor)
  constexpr operator Function<Result, First, Rest...>() const {
    return [](First data, Rest... rest) -> Result {
      auto& target = targetOf(data, member);
      if constexpr (isGuarded) {
        target.guard([&] { (target.*member)(rest...); });
      } else {
        return (target.*member)(rest...);
      }
    };
  }
};

template <auto member>
inline constexpr Callback<member, false> on;
template <auto member>
inline constexpr Callback<member, true> guarded;

/// Configures a parser for a driver, which has a member for each event.
template <typename Driver>
void installCallbacks(XML_Parser parser, Driver& driver) {
  EventTarget* const target = &driver;
  XML_SetUserData(parser, target);
  // The callback for external entities would get the parser.
  XML_SetExternalEntityRefHandlerArg(parser, target);
  XML_SetReturnNSTriplet(parser, 1);
  XML_SetParamEntityParsing(parser, XML_PARAM_ENTITY_PARSING_ALWAYS);

  XML_SetNamespaceDeclHandler(parser, guarded<&Driver::startNamespace>, on<&Driver::endNamespace>);
  XML_SetElementHandler(parser, guarded<&Driver::startElement>, guarded<&Driver::endElement>);
  XML_SetCharacterDataHandler(parser, on<&Driver::characterData>);
  XML_SetProcessingInstructionHandler(parser, on<&Driver::processingInstruction>);
  XML_SetSkippedEntityHandler(parser, guarded<&Driver::skippedEntity>);
  XML_SetNotationDeclHandler(parser, guarded<&Driver::notationDecl>);
  XML_SetElementDeclHandler(parser, on<&Driver::elementDecl>);
  XML_SetAttlistDeclHandler(parser, guarded<&Driver::attlistDecl>);
  XML_SetEntityDeclHandler(parser, guarded<&Driver::entityDecl>);
  XML_SetDoctypeDeclHandler(parser, on<&Driver::startDoctype>, on<&Driver::endDoctype>);
  XML_SetExternalEntityRefHandler(parser, on<&Driver::externalEntityRef>);
  XML_SetCdataSectionHandler(parser, on<&Driver::startCdata>, on<&Driver::endCdata>);
  XML_SetCommentHandler(parser, on<&Driver::comment>);
}

}  // namespace Tavrin::text
