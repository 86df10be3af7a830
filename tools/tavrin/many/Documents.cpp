#include "many/Documents.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <utility>

#include "many/CopyNames.h"

namespace tool {

namespace {

namespace fs = std::filesystem;

/// A name with a slash at its end.
std::string withSlash(const std::string& folder) {
  return folder.ends_with('/') ? folder : folder + "/";
}

bool isSameFolder(const std::string& a, const std::string& b) {
  std::error_code error;
  return !b.empty() && fs::equivalent(a, b, error);
}

}  // namespace

void Documents::add(const std::string& name) {
  std::error_code error;
  if (name != "-" && fs::is_directory(name, error)) {
    addFolder(name);
  } else {
    all_.push_back({name, name.rfind('/') + 1});  // What cannot be opened shows when it is read.
  }
}

void Documents::addFolder(const std::string& name) {
  if (isSameFolder(name, except_)) {
    throw Failure::usage(name + ": is the folder of the copies, too");
  }
  const std::size_t before = all_.size();
  const ExitStatus statusBefore = std::exchange(status_, Done);
  const std::size_t kept = withSlash(name).size();
  std::vector<std::string> folders = {name};
  while (!folders.empty()) {
    const std::string folder = std::move(folders.back());
    folders.pop_back();
    std::vector<std::string> below = lookInto(folder, kept);
    std::move(below.begin(), below.end(), std::back_inserter(folders));
  }
  if (all_.size() == before && status_ == Done) {
    warn(name, "there are no documents in this folder");
  }
  status_ = std::max(status_, statusBefore);
  std::sort(all_.begin() + static_cast<std::ptrdiff_t>(before), all_.end(),
            [](const Document& a, const Document& b) { return a.name < b.name; });
}

/// Adds the documents of a folder, without those in the folders below it.
/// @return the names of these
std::vector<std::string> Documents::lookInto(const std::string& folder, std::size_t kept) {
  std::vector<std::string> folders;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    std::string name = entry->path().filename().string();
    if (name.starts_with('.')) continue;
    std::error_code unknown;  // What it is shows when it is read.
    const bool isDocument = isDocumentName(name);
    name.insert(0, withSlash(folder));
    const fs::file_type type = entry->symlink_status(unknown).type();
    if (type == fs::file_type::directory) {
      if (!isSameFolder(name, except_)) folders.push_back(std::move(name));
    } else if (isDocument) {
      const bool isLink = type == fs::file_type::symlink;
      const fs::file_type target = isLink ? entry->status(unknown).type() : type;
      const bool isFile = target == fs::file_type::regular;
      // A link that leads nowhere is a document that cannot be opened.
      const bool isLost =
          isLink && (target == fs::file_type::not_found || target == fs::file_type::none);
      if (isFile || isLost) all_.push_back({std::move(name), kept});
    }
  }
  if (error) report(Failure::system(folder, error.value()));
  return folders;
}

void Documents::report(const Failure& failure) {
  failure.report();
  status_ = std::max(status_, failure.status());
}

}  // namespace tool
