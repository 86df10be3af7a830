#include "files/EntityFiles.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "files/DescriptorBuffers.h"
#include "files/Failure.h"

namespace tool {

namespace {

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; }

bool isLetter(char c) { return lower(c) >= 'a' && lower(c) <= 'z'; }

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// The scheme of a URI in lower case, or nothing for a relative reference (RFC 3986, section 3.1).
std::string schemeOf(std::string_view identifier) {
  const std::size_t colon = identifier.find(':');
  if (colon == std::string_view::npos || !isLetter(identifier[0])) return {};
  std::string scheme(identifier.substr(0, colon));
  std::transform(scheme.begin(), scheme.end(), scheme.begin(), lower);
  const bool valid = std::all_of(scheme.begin(), scheme.end(), [](char c) {
    return isLetter(c) || isDigit(c) || c == '+' || c == '-' || c == '.';
  });
  return valid ? scheme : std::string();
}

int digitOf(char c) {
  if (isDigit(c)) return c - '0';
  return lower(c) >= 'a' && lower(c) <= 'f' ? lower(c) - 'a' + 10 : -1;
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

/// Takes a prefix off where it is there. Returns whether it was.
bool removePrefix(std::string_view& text, std::string_view prefix) {
  if (!text.starts_with(prefix)) return false;
  text.remove_prefix(prefix.size());
  return true;
}

/// The path of the file that an identifier names, or nothing where it names no file of this
/// machine.
/// @param folder what relative paths count from
std::optional<std::string> pathOf(const std::string& systemId, const std::string& folder) {
  std::string_view path = systemId;
  const std::string scheme = schemeOf(path);
  bool isFile = scheme.empty() || scheme == "file";
  if (isFile) {
    if (!scheme.empty()) path.remove_prefix(scheme.size() + 1);
    // The files of this machine have an empty authority, or that of RFC 8089, section 2.
    const bool hasAuthority = removePrefix(path, "//");
    if (hasAuthority) removePrefix(path, "localhost");
    isFile = !hasAuthority || path.starts_with('/');
  }
  std::string name = (path.starts_with('/') ? "" : folder) + decoded(path);
  if (!isFile || name.find('\0') != std::string::npos) return std::nullopt;
  return name.empty() ? "." : name;
}

/// Whether a path leads into a folder; both are free of links and of "..".
bool isBelow(const std::filesystem::path& path, const std::filesystem::path& folder) {
  return std::mismatch(folder.begin(), folder.end(), path.begin(), path.end()).first ==
         folder.end();
}

bool isRegular(int descriptor) {
  struct stat status {};
  return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

std::string reasonOf(int errorNumber) { return std::generic_category().message(errorNumber); }

}  // namespace

/// An open entity, which tells its owner of a failed read.
class EntityFiles::File : public std::istream {
 public:
  File(EntityFiles& owner, std::string name, int descriptor)
      : std::istream(nullptr),
        owner_(owner),
        name_(std::move(name)),
        descriptor_(descriptor),
        buffer_(descriptor_) {
    rdbuf(&buffer_);
  }
  ~File() override {
    if (owner_.failure_) return;
    if (buffer_.error() != 0) {
      owner_.failure_ = std::make_exception_ptr(Failure::system(name_, buffer_.error()));
    } else if (!buffer_.problem().empty()) {
      owner_.failure_ = std::make_exception_ptr(Failure::document(name_, buffer_.problem()));
    }
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

 private:
  EntityFiles& owner_;
  std::string name_;
  Descriptor descriptor_;
  InputBuffer buffer_;
};

EntityFiles::EntityFiles(const std::string& document, EntityAccess access)
    : document_(document), access_(access), folder_(document.substr(0, document.rfind('/') + 1)) {}

std::unique_ptr<std::istream> EntityFiles::resolveEntity(const std::string&,
                                                         const std::string& systemId) {
  const std::optional<std::string> name = pathOf(systemId, folder_);
  return name ? open(systemId, *name) : nullptr;
}

std::unique_ptr<std::istream> EntityFiles::open(const std::string& systemId,
                                                const std::string& name) {
  std::error_code error;
  const std::filesystem::path path = std::filesystem::canonical(name, error);
  if (error) return passOver(systemId, error.message());
  if (access_ == EntityAccess::Folder) {
    const auto folder = std::filesystem::canonical(folder_.empty() ? "." : folder_, error);
    if (error) return passOver(systemId, error.message());
    if (!isBelow(path, folder)) {
      return passOver(systemId, "it is outside of the folder of the document (see --entities=any)");
    }
  }
  // Opening a pipe or a device may wait, or do something; only what has become one since is opened.
  if (!std::filesystem::is_regular_file(path, error)) {
    return passOver(systemId, "it is not a regular file");
  }
  const int descriptor =
      ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (descriptor == -1) return passOver(systemId, reasonOf(errno));
  auto file = std::make_unique<File>(*this, name, descriptor);
  if (!isRegular(descriptor)) return passOver(systemId, "it is not a regular file");
  return file;
}

std::unique_ptr<std::istream> EntityFiles::passOver(const std::string& systemId,
                                                    const std::string& reason) {
  if (passedOver_.insert(systemId).second) {
    warn(document_, "external entity \"" + systemId + "\" is not read: " + reason);
  }
  return nullptr;
}

void EntityFiles::check() const {
  if (failure_) std::rethrow_exception(failure_);
}

}  // namespace tool
