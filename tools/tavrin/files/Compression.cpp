#include "files/Compression.h"

#include <algorithm>
#include <array>

namespace tool {

using namespace std::string_view_literals;

namespace {

struct Form {
  Compression compression;
  std::string_view name;
  std::string_view suffix;
};

constexpr Form kForms[] = {
    {Compression::None, "none"sv, ""sv},
    {Compression::Gzip, "gzip"sv, ".gz"sv},
    {Compression::Zstd, "zstd"sv, ".zst"sv},
};

const Form& formFor(std::string_view fileName) {
  const auto found = std::ranges::find_if(kForms, [&](const Form& form) {
    return !form.suffix.empty() && fileName.ends_with(form.suffix);
  });
  return found == std::end(kForms) ? kForms[0] : *found;
}

// RFC 1952, section 2.3.1, with the only method there is; RFC 8878, section 3.1.1. A document may
// follow what zstd skips (section 3.1.2): such a frame begins with an octet from 50 to 5F.
constexpr std::string_view kGzip = "\x1F\x8B\x08"sv;
constexpr std::string_view kZstd = "\x28\xB5\x2F\xFD"sv;
constexpr std::string_view kSkippable = "\x2A\x4D\x18"sv;

bool mayBegin(std::string_view octets, std::string_view sought) {
  const std::size_t size = std::min(octets.size(), sought.size());
  return octets.substr(0, size) == sought.substr(0, size);
}

bool mayBeZstd(std::string_view octets) {
  if (mayBegin(octets, kZstd)) return true;
  return (octets[0] & 0xF0) == 0x50 && mayBegin(octets.substr(1), kSkippable);
}

}  // namespace

std::string_view nameOf(Compression compression) {
  return kForms[static_cast<std::size_t>(compression)].name;
}

std::string_view endingOf(Compression compression) {
  return kForms[static_cast<std::size_t>(compression)].suffix;
}

Compression compressionFor(std::string_view fileName) { return formFor(fileName).compression; }

std::string_view withoutCompression(std::string_view fileName) {
  fileName.remove_suffix(formFor(fileName).suffix.size());
  return fileName;
}

std::optional<Compression> compressionOf(std::string_view firstOctets, bool areAll) {
  const std::size_t size = firstOctets.size();
  if (size == 0) return {};
  const bool isGzip = mayBegin(firstOctets, kGzip);
  if (!isGzip && !mayBeZstd(firstOctets)) return Compression::None;
  const std::size_t needed = areAll ? 2 : isGzip ? kGzip.size() : kZstd.size();
  if (size < needed) return {};
  return isGzip ? Compression::Gzip : Compression::Zstd;
}

}  // namespace tool
