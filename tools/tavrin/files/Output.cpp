#include "files/Output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <random>

#include "files/Failure.h"
#include "files/Process.h"

namespace tool {

namespace {

constexpr mode_t kPermissions = 0777;
constexpr int kMaximumLinks = 40;  // As many as the kernel follows.
constexpr int kMaximumAttempts = 100;

/// The path that a chain of symbolic links ends at, whether or not anything stands there.
std::string behindLinks(const std::string& name) {
  std::filesystem::path path = name;
  std::error_code error;
  for (int i = 0; i < kMaximumLinks && std::filesystem::is_symlink(path, error); ++i) {
    const std::filesystem::path target = std::filesystem::read_symlink(path, error);
    if (error) break;  // Opening the path will say why.
    path = path.parent_path() / target;
  }
  return path.string();
}

/// A name in the same directory that no other process uses.
std::string temporaryBeside(const std::string& target) {
  thread_local std::random_device random;
  char name[64];
  std::snprintf(name, sizeof name, ".tavrin-%ld-%08x.tmp", static_cast<long>(getpid()), random());
  const std::size_t slash = target.rfind('/');
  return slash == std::string::npos ? name : target.substr(0, slash + 1) + name;
}

/// Renames unless the new name is taken. Returns the error number, or 0.
int renameToFreeName(const char* from, const char* to) {
  if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return 0;
  if (errno != ENOSYS && errno != EINVAL) return errno;
  // The file system cannot rename so. A hard link never replaces anything either.
  if (link(from, to) != 0) return errno;
  unlink(from);
  return 0;
}

}  // namespace

Output::Output(const std::string& name, bool force, const CompressionChoice& compression)
    : name_(name), force_(force), buffer_(descriptor_, compression), stream_(&buffer_) {
  if (name_ != "-") examine();
}

Output::~Output() {
  if (temporary_.empty()) return;
  const SignalsHeld held;
  unlink(temporary_.c_str());
  forgetUnfinishedFile(temporary_.c_str());
}

void Output::refuse() const {
  throw Failure::usage(name_ + ": already exists; --force replaces it");
}

void Output::fail(int errorNumber) const {
  if (errorNumber == EPIPE && name_ == "-") throw Failure::nobodyReads();
  throw Failure::system(name_ == "-" ? "standard output" : name_, errorNumber);
}

void Output::examine() {
  struct stat status {};
  const bool exists = stat(name_.c_str(), &status) == 0;
  if (!exists && errno != ENOENT) fail(errno);
  isFile_ = !exists || S_ISREG(status.st_mode);

  // A link that leads nowhere stands in the way like a file, and a disk holds data like one.
  struct stat link {};
  const bool taken = exists ? isFile_ || S_ISBLK(status.st_mode) : lstat(name_.c_str(), &link) == 0;
  if (taken && !force_) refuse();

  if (!isFile_) return;
  target_ = behindLinks(name_);
  replaces_ = exists;
  if (exists) mode_ = status.st_mode & kPermissions;
}

void Output::open() {
  if (name_ == "-") {
    descriptor_.reset(STDOUT_FILENO);
  } else if (isFile_) {
    openTemporary();
  } else {
    descriptor_.reset(::open(name_.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
    if (descriptor_.number() == -1) fail(errno);
  }
}

void Output::openTemporary() {
  const SignalsHeld held;
  for (int i = 0; i < kMaximumAttempts && descriptor_.number() == -1; ++i) {
    const std::string path = temporaryBeside(target_);
    descriptor_.reset(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode_));
    if (descriptor_.number() != -1) {
      temporary_ = path;
    } else if (errno != EEXIST) {
      break;
    }
  }
  if (descriptor_.number() == -1) fail(errno);
  if (!noteUnfinishedFile(temporary_.c_str())) fail(EMFILE);
  // The file mode creation mask has no say in the mode of a file that is replaced.
  if (replaces_ && fchmod(descriptor_.number(), mode_) != 0) fail(errno);
}

bool Output::isTerminal() const { return name_ == "-" && isatty(STDOUT_FILENO) == 1; }

void Output::checkWritten() const {
  if (buffer_.error() != 0) fail(buffer_.error());
}

void Output::flush() {
  stream_.flush();
  checkWritten();
}

void Output::commit() {
  buffer_.finish();
  checkWritten();
  // Not every kind of file can be synchronised; those that cannot say EINVAL.
  if (isFile_ && fsync(descriptor_.number()) != 0 && errno != EINVAL) fail(errno);
  if (const int error = descriptor_.close()) fail(error);
  if (isFile_) putInPlace();
}

void Output::putInPlace() {
  const SignalsHeld held;
  if (force_) {
    if (rename(temporary_.c_str(), target_.c_str()) != 0) fail(errno);
  } else if (const int error = renameToFreeName(temporary_.c_str(), target_.c_str())) {
    if (error == EEXIST) refuse();
    fail(error);
  }
  forgetUnfinishedFile(temporary_.c_str());
  temporary_.clear();
}

}  // namespace tool
