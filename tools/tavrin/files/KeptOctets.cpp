#include "files/KeptOctets.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "files/Process.h"

namespace tool {

namespace {

constexpr std::size_t kMostInMemory = std::size_t{1} << 20;

}  // namespace

bool KeptOctets::openFile() {
  const char* folder = std::getenv("TMPDIR");
  std::string name = (folder && *folder ? folder : "/tmp") + std::string("/tavrin-XXXXXX");
  const SignalsHeld held;  // It shall have lost its name before one ends the process.
  const int number = mkostemp(name.data(), O_CLOEXEC);
  if (number == -1) {
    error_ = errno;
    return false;
  }
  unlink(name.c_str());
  file_.reset(number);
  return true;
}

bool KeptOctets::write(std::string_view octets) {
  while (!octets.empty()) {
    const ssize_t count =
        pwrite(file_.number(), octets.data(), octets.size(), static_cast<off_t>(size_));
    if (count >= 0) {
      size_ += static_cast<std::uint64_t>(count);
      octets.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      error_ = errno;
      return false;
    }
  }
  return true;
}

bool KeptOctets::append(std::string_view octets) {
  if (error_ != 0) return false;
  if (file_.number() != -1) return write(octets);
  if (memory_.size() + octets.size() <= kMostInMemory) {
    memory_ += octets;
    size_ = memory_.size();
    return true;
  }
  size_ = 0;
  if (!openFile() || !write(memory_)) return false;
  memory_ = {};
  return write(octets);
}

std::size_t KeptOctets::read(char* target, std::size_t size) {
  if (error_ != 0) return 0;
  size = static_cast<std::size_t>(std::min<std::uint64_t>(size, size_ - position_));
  if (size == 0) return 0;
  if (file_.number() == -1) {
    std::memcpy(target, memory_.data() + position_, size);
  } else {
    ssize_t count = 0;
    do {
      count = pread(file_.number(), target, size, static_cast<off_t>(position_));
    } while (count < 0 && errno == EINTR);
    if (count < 0) error_ = errno;
    size = count < 0 ? 0 : static_cast<std::size_t>(count);
  }
  position_ += size;
  return size;
}

}  // namespace tool
