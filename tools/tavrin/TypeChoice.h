#pragma once

#include <string>
#include <string_view>

namespace tool {

/// The type of reader for a document that begins with these octets.
std::string readerTypeFor(std::string_view firstOctets);

/// Whether that is the type for Fast Infoset.
bool isFastInfoset(std::string_view readerType);

/// The type of writer for a file of this name; "-" is standard output.
std::string writerTypeFor(std::string_view fileName);

}  // namespace tool
