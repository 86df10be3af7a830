#include "EntityFiles.h"

#include <algorithm>
#include <string_view>

#include "Failure.h"
#include "Input.h"

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

}  // namespace

/// An open entity, which tells its owner of a failed read.
class EntityFiles::File : public std::istream {
 public:
  File(EntityFiles& owner, const std::string& name)
      : std::istream(nullptr), owner_(owner), input_(name, true) {
    rdbuf(input_.stream().rdbuf());
  }
  ~File() override {
    try {
      input_.checkRead();
    } catch (...) {
      owner_.keepFailure();
    }
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

 private:
  EntityFiles& owner_;
  Input input_;
};

EntityFiles::EntityFiles(const std::string& document)
    : folder_(document.substr(0, document.rfind('/') + 1)) {}

std::string EntityFiles::pathOf(const std::string& systemId) const {
  std::string_view path = systemId;
  const std::string scheme = schemeOf(path);
  bool isFile = scheme.empty() || scheme == "file";
  if (scheme == "file") {
    path.remove_prefix(scheme.size() + 1);
    // The files of this machine have an empty authority, or that of RFC 8089, section 2.
    if (removePrefix(path, "//")) removePrefix(path, "localhost");
    isFile = systemId.substr(scheme.size() + 1, 2) != "//" || path.starts_with('/');
  }
  const std::string name = (path.starts_with('/') ? "" : folder_) + decoded(path);
  isFile = isFile && name.find('\0') == std::string::npos;
  if (!isFile) throw Failure::usage("external entity \"" + systemId + "\" is not a file");
  return name == "-" ? "./-" : name;  // Only in place of a document it is standard input.
}

std::unique_ptr<std::istream> EntityFiles::resolveEntity(const std::string&,
                                                         const std::string& systemId) {
  try {
    return std::make_unique<File>(*this, pathOf(systemId));
  } catch (...) {
    keepFailure();
    throw;
  }
}

void EntityFiles::keepFailure() {
  if (!failure_) failure_ = std::current_exception();
}

void EntityFiles::check() const {
  if (failure_) std::rethrow_exception(failure_);
}

}  // namespace tool
