#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// Asks whether a word was meant for one of those that there are: `did you mean "NAME"? `, with the
/// space, or nothing where none is near enough. Letters count as the same in either case.
std::string suggestion(std::string_view word, const std::vector<std::string>& names);

/// Asks of a text why it is none of some words: empty where it is one.
std::function<std::string(const std::string&)> oneOf(const std::vector<std::string>& words);

}  // namespace tool
