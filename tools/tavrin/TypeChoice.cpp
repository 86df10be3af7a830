#include "TypeChoice.h"

#include <algorithm>

namespace tool {

using namespace std::string_view_literals;

namespace {

/// Names of files that end otherwise are those of text.
constexpr std::string_view kEndingsOfFastInfoset[] = {".fi"sv, ".finf"sv, ".x3db"sv};

}  // namespace

std::string writerTypeFor(std::string_view fileName) {
  const bool isFastInfoset = std::ranges::any_of(
      kEndingsOfFastInfoset, [&](std::string_view ending) { return fileName.ends_with(ending); });
  return isFastInfoset ? "X891" : "XML10";
}

}  // namespace tool
