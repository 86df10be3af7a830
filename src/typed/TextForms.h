#pragma once

#include <Tavrin/TypedData.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace Tavrin {

/// White space of XML (XML 1.0, production 3).
inline bool isWhiteSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
inline bool isBlank(std::string_view text) {
  return std::all_of(text.begin(), text.end(), isWhiteSpace);
}

/// How text may look that is parsed as a value.
enum class TextForm {
  any,       ///< All that means a value.
  canonical  ///< As the value prints itself.
};

/// Why text has no value of a type.
struct TextFault {
  std::size_t offset = 0;  ///< Of what is wrong.
  std::size_t length = 0;
  const char* reason = nullptr;  ///< Continues a sentence about it; null where nothing is wrong.
};

/// Parses the text of a value of a built-in algorithm.
/// @param algorithm one that is built in
/// @return a value that prints exactly; null, and the fault, where there is none
std::unique_ptr<EncodedData> parseValue(int algorithm, std::string_view text, TextForm form,
                                        TextFault& fault);

/// A sentence about a fault, with what is wrong in quotes, and cut where it is long.
std::string describe(int algorithm, std::string_view text, const TextFault& fault);

/// The number of a built-in algorithm, or -1 for another name.
int algorithmNamed(std::string_view name);

/// The names of the built-in algorithms, with commas between.
std::string algorithmNames();

}  // namespace Tavrin
