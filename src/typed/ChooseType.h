#pragma once

#include <Tavrin/TypedData.h>

#include <cstddef>
#include <memory>
#include <string_view>

namespace Tavrin {

/// A value and the number of its algorithm; no value where text stays text.
struct TypedText {
  int algorithm = -1;
  std::unique_ptr<EncodedData> data;
};

/// The longest text that a writer of Fast Infoset keeps in a table, so that it takes one or two
/// octets when it occurs again: none of it is typed unasked.
inline constexpr std::size_t kLongestIndexedText = 32;

/// Whether text that begins like this may have a value that prints exactly so.
bool mayHaveValue(char first);

/// The value that prints exactly as the text and takes fewer octets; of several, that of the
/// smallest.
TypedText chooseType(std::string_view text);

}  // namespace Tavrin
