#pragma once

#include <cstdint>
#include <string_view>

namespace Tavrin {

/// A place in an entity, counted as expat counts it.
struct XML10Position {
  /// Goes on by a text in UTF-8.
  void moveOver(std::string_view text);

  std::int32_t line;
  std::int32_t column;
};

}  // namespace Tavrin
