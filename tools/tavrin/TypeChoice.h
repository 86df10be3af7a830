#pragma once

#include <string>
#include <string_view>

namespace tool {

/// The type of writer for a file of this name; "-" is standard output.
std::string writerTypeFor(std::string_view fileName);

}  // namespace tool
