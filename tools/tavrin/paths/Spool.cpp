#include "paths/Spool.h"

#include <algorithm>
#include <cstring>

#include "files/Failure.h"

namespace tool {

namespace {

constexpr std::size_t kBlock = std::size_t{64} * 1024;
constexpr std::size_t kHeader = 1 + sizeof(std::uint64_t);

}  // namespace

void Spool::add(Record record, std::string_view octets) {
  if (record == Record::Piece && piece_.size() + octets.size() < kBlock) {
    piece_ += octets;
    return;
  }
  if (!piece_.empty()) addWhole(Record::Piece, piece_);
  piece_.clear();
  addWhole(record, octets);
}

void Spool::addWhole(Record record, std::string_view octets) {
  char header[kHeader] = {static_cast<char>(record)};
  const std::uint64_t size = octets.size();
  std::memcpy(header + 1, &size, sizeof size);
  written_.append(header, kHeader).append(octets);
  size_ += kHeader + size;
  if (written_.size() < kBlock) return;
  if (!octets_.append(written_)) fail();
  written_.clear();
}

void Spool::flush() {
  if (!piece_.empty()) addWhole(Record::Piece, piece_);
  piece_.clear();
  if (!octets_.append(written_)) fail();
  written_.clear();
}

void Spool::fail() const { throw Failure::system("temporary file", octets_.error()); }

void Spool::read(std::uint64_t position, char* target, std::size_t size) {
  while (size > 0) {
    if (position < windowStart_ || position >= windowStart_ + window_.size()) {
      window_.resize(std::min<std::uint64_t>(kBlock, size_ - position));
      windowStart_ = position;
      octets_.goTo(position);
      const std::size_t count = octets_.read(window_.data(), window_.size());
      if (count == 0) fail();
      window_.resize(count);
    }
    const auto offset = static_cast<std::size_t>(position - windowStart_);
    const std::size_t count = std::min(size, window_.size() - offset);
    std::memcpy(target, window_.data() + offset, count);
    target += count;
    position += count;
    size -= count;
  }
}

bool Spool::next(Record& record, std::string& octets) {
  if (position_ == size_) return false;
  char header[kHeader];
  read(position_, header, kHeader);
  record = static_cast<Record>(header[0]);
  std::uint64_t size = 0;
  std::memcpy(&size, header + 1, sizeof size);
  octets.resize(size);
  read(position_ + kHeader, octets.data(), octets.size());
  position_ += kHeader + size;
  return true;
}

}  // namespace tool
