#pragma once

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "octets/Assembler.h"
#include "octets/Cursor.h"
#include "octets/Inspection.h"
#include "octets/Scanner.h"
#include "octets/TextForm.h"

/// What inspect shows of octets, and what is found wrong with them.
struct Inspected {
  std::string text;
  std::optional<tool::octets::Finding> finding;
};

/// A source that gives octets, a few at a time.
inline auto sourceOf(std::string_view octets, std::size_t most = 65536) {
  return [octets, most](char* target, std::size_t size) mutable {
    const std::size_t count = std::min({size, most, octets.size()});
    if (count > 0) std::memcpy(target, octets.data(), count);
    octets.remove_prefix(count);
    return count;
  };
}

inline Inspected inspected(std::string_view octets,
                           const tool::octets::InspectionOptions& options = {},
                           std::size_t block = 65536) {
  Inspected result;
  tool::octets::Inspection inspection(options, sourceOf(octets, block),
                                      [&](std::string_view text) { result.text += text; });
  result.finding = inspection.run();
  return result;
}

/// Where the scanner alone, without the reader, cannot go on.
inline std::optional<tool::octets::Break> breakOf(std::string_view octets) {
  tool::octets::TextForm form([](std::string_view) {}, false);
  tool::octets::Cursor cursor(sourceOf(octets));
  return tool::octets::Scanner(cursor, form, false, tool::Vocabularies(), [] {}).scan();
}

/// What assemble makes of a text, in blocks of a size.
inline std::string assembled(std::string_view text, std::size_t block = 65536) {
  std::string result;
  tool::octets::Assembler assembler("text", [&](std::string_view octets) { result += octets; });
  for (; !text.empty(); text.remove_prefix(std::min(block, text.size()))) {
    assembler.read(text.substr(0, block));
  }
  assembler.end();
  return result;
}
