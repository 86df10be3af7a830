#include "files/OctetSource.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

#include "files/DescriptorBuffers.h"

namespace tool {

namespace {

constexpr std::size_t kReadSize = 65536;

bool hasOctets(const Descriptor& descriptor) {
  pollfd asked{.fd = descriptor.number(), .events = POLLIN, .revents = 0};
  return poll(&asked, 1, 0) != 0;
}

}  // namespace

std::size_t OctetSource::read(char* target, std::size_t size) {
  if (!hasBegun_) return readFirst(target, size);
  return decompressor_ ? decompress(target, size) : readDescriptor(target, size);
}

std::size_t OctetSource::readDescriptor(char* target, std::size_t size) {
  if (isEnded_) return 0;
  if (beforeWaiting_ && !hasOctets(descriptor_)) beforeWaiting_();
  ssize_t count = 0;
  do {
    count = ::read(descriptor_.number(), target, size);
  } while (count < 0 && errno == EINTR);
  if (count < 0) error_ = errno;
  isEnded_ = count <= 0;  // A terminal would begin anew.
  if (isEnded_) return 0;
  received_ += static_cast<std::uint64_t>(count);
  return static_cast<std::size_t>(count);
}

std::size_t OctetSource::readFirst(char* target, std::size_t size) {
  hasBegun_ = true;
  std::size_t count = 0;
  std::optional<Compression> compression;
  // Few octets may come at a time, and one is enough for most documents.
  while (!compression) {
    const std::size_t more = readDescriptor(target + count, size - count);
    count += more;
    compression = compressionOf({target, count}, more == 0);
    if (more == 0) break;
  }
  if (compression.value_or(Compression::None) == Compression::None) return count;
  compression_ = *compression;
  decompressor_ = Decompressor::create(compression_);
  compressed_.assign(target, count);
  return decompress(target, size);
}

std::size_t OctetSource::decompress(char* target, std::size_t size) {
  while (problem_.empty()) {
    if (!comingProblem_.empty()) return fail(comingProblem_);
    if (isBetween_ && !beginNext()) return 0;
    const auto step =
        decompressor_->decompress(std::string_view(compressed_).substr(position_), target, size);
    position_ += step.taken;
    isBetween_ = step.isComplete;
    if (!step.problem.empty()) {
      comingProblem_ = "the " + std::string(nameOf(compression_)) +
                       " data is damaged behind octet " + std::to_string(used()) + ": " +
                       step.problem;
    }
    if (step.made > 0) return step.made;
    const bool isStuck = step.taken == 0 && !isBetween_ && comingProblem_.empty();
    if (!isStuck || fill()) continue;
    if (error_ != 0) return 0;
    return fail("the " + std::string(nameOf(compression_)) + " data ends too early, behind octet " +
                std::to_string(used()));
  }
  return 0;
}

/// Begins the member or frame that comes next. Returns false where there is none.
bool OctetSource::beginNext() {
  fillAtLeast(kMostToTell);
  const std::string_view next = std::string_view(compressed_).substr(position_);
  if (next.empty() || error_ != 0) return false;
  if (compressionOf(next, true) != compression_) {
    fail("what follows the " + std::string(nameOf(compression_)) + " data from octet " +
         std::to_string(used() + 1) + " on is something else");
    return false;
  }
  decompressor_->beginNext();
  isBetween_ = false;
  return true;
}

bool OctetSource::fillAtLeast(std::size_t size) {
  while (compressed_.size() - position_ < size) {
    if (!fill()) return false;
  }
  return true;
}

/// Reads more of what is compressed.
bool OctetSource::fill() {
  compressed_.erase(0, position_);
  position_ = 0;
  const std::size_t rest = compressed_.size();
  compressed_.resize(rest + kReadSize);
  const std::size_t count = readDescriptor(compressed_.data() + rest, kReadSize);
  compressed_.resize(rest + count);
  return count > 0;
}

std::size_t OctetSource::fail(const std::string& problem) {
  problem_ = problem;
  return 0;
}

void OctetSource::goBack(std::uint64_t octets) {
  lseek(descriptor_.number(), -static_cast<off_t>(octets), SEEK_CUR);
  received_ -= octets;
  isEnded_ = false;
  error_ = 0;
}

}  // namespace tool
