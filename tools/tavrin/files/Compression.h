#pragma once

#include <optional>
#include <string_view>

namespace tool {

/// How a file is compressed.
enum class Compression { None, Gzip, Zstd };

/// The name of a form of compression, as options and messages have it.
std::string_view nameOf(Compression compression);

/// What a file of this name is compressed with: .gz and .zst tell it.
Compression compressionFor(std::string_view fileName);
/// How names of such files end; empty for none.
std::string_view endingOf(Compression compression);
/// The name that the file has once it is decompressed.
std::string_view withoutCompression(std::string_view fileName);

/// What data is compressed with, by its first octets.
/// @param areAll the data ends with them; the first two are enough then
/// @return nothing while more octets may tell
std::optional<Compression> compressionOf(std::string_view firstOctets, bool areAll = false);

}  // namespace tool
