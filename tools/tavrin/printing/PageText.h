#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "measuring/EventOctets.h"

namespace tool {

/// Any text for HTML, in content and in attribute values: it shows as it is and never is markup. A
/// long one has no middle.
std::string forPage(std::string_view text);

/// A number with commas: "12,345,678".
std::string grouped(std::uint64_t number);
/// A part in percent with one digit: "12.3 %".
std::string percent(std::uint64_t part, std::uint64_t whole);

/// What a kind of octets is called on a page, and the class that gives its colour.
const char* nameOf(OctetKind kind);
std::string classOf(OctetKind kind);

}  // namespace tool
