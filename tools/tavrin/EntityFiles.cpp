#include "EntityFiles.h"

#include <cctype>
#include <cerrno>
#include <fstream>
#include <string_view>

#include "Failure.h"

namespace tool {

namespace {

constexpr std::string_view kFileScheme = "file:";

/// Whether an identifier begins with the scheme of a URI (RFC 3986, section 3.1).
bool hasScheme(std::string_view identifier) {
  const std::size_t colon = identifier.find_first_of(":/?#");
  return colon != std::string_view::npos && colon > 0 && identifier[colon] == ':';
}

int digitOf(char c) {
  const auto lower = static_cast<char>(c | 0x20);
  if (c >= '0' && c <= '9') return c - '0';
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// A path of a URI as the file system has it: "%20" is a space.
std::string decoded(std::string_view path) {
  std::string result;
  for (std::size_t i = 0; i < path.size(); ++i) {
    const int high = path[i] == '%' && i + 2 < path.size() ? digitOf(path[i + 1]) : -1;
    const int low = high >= 0 ? digitOf(path[i + 2]) : -1;
    if (low < 0) {
      result += path[i];
    } else {
      result += static_cast<char>(16 * high + low);
      i += 2;
    }
  }
  return result;
}

}  // namespace

EntityFiles::EntityFiles(const std::string& document)
    : folder_(document.substr(0, document.rfind('/') + 1)) {}

std::unique_ptr<std::istream> EntityFiles::resolveEntity(const std::string&,
                                                         const std::string& systemId) {
  std::string_view path = systemId;
  if (path.starts_with(kFileScheme)) {
    path.remove_prefix(kFileScheme.size());
    if (path.starts_with("///")) path.remove_prefix(2);
  } else if (hasScheme(path)) {
    throw Failure::usage("external entity \"" + systemId + "\" is not a file");
  }
  const std::string name = (path.starts_with('/') ? "" : folder_) + decoded(path);
  auto file = std::make_unique<std::ifstream>(name, std::ios::binary);
  if (!*file) throw Failure::system(name, errno);
  return file;
}

}  // namespace tool
