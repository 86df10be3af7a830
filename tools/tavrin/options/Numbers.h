#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

/// Reads a decimal number that is not negative, maybe with K, M or G behind it, or "none", which is
/// infinite. Returns nothing for any other text.
std::optional<double> numberFrom(std::string_view text);
/// Such a number as a count: the whole part, and the largest count for all that is larger.
std::uint64_t countFrom(double number);

/// Why a text is not a number that numberFrom reads; empty where it is one.
std::string whyNotNumber(const std::string& text);
/// Why a text is not a number of at least 1; empty where it is one.
std::string whyNotCount(const std::string& text);

}  // namespace tool
