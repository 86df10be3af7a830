#include "files/DescriptorBuffers.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "files/KeptOctets.h"

namespace tool {

namespace {

constexpr std::size_t kBufferSize = 65536;

/// Other things may let themselves be positioned, too, and give something else then.
bool isFile(const Descriptor& descriptor) {
  struct stat status {};
  return fstat(descriptor.number(), &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace

// --- Descriptor ---

void Descriptor::reset(int number) {
  close();
  number_ = number;
}

int Descriptor::close() {
  const int number = number_;
  number_ = -1;
  return number > STDERR_FILENO && ::close(number) != 0 ? errno : 0;
}

// --- InputBuffer ---

InputBuffer::InputBuffer(const Descriptor& descriptor)
    : descriptor_(descriptor), source_(descriptor), buffer_(kBufferSize) {}

InputBuffer::~InputBuffer() = default;

/// Reads once; 0 octets at the end of the input and on failure.
std::size_t InputBuffer::read(char* target, std::size_t size) {
  const std::size_t count = readKept(target, size);
  if (recent_) recent_->append({target, count});
  return count;
}

std::size_t InputBuffer::readKept(char* target, std::size_t size) {
  if (!kept_) return readSource(target, size);
  std::size_t count = kept_->read(target, size);
  received_ += count;
  if (count > 0 || kept_->error() != 0) return count;
  if (!isKeeping_) kept_.reset();
  count = readSource(target, size);
  if (!kept_) return count;
  isStopped_ = !kept_->append({target, count});
  if (kept_->error() != 0) return 0;
  kept_->skip(count);
  return count;
}

std::size_t InputBuffer::readSource(char* target, std::size_t size) {
  if (isStopped_) return 0;
  const std::size_t count = source_.read(target, size);
  received_ += count;
  return count;
}

/// How many octets of the descriptor make what has been taken.
std::uint64_t InputBuffer::used() const {
  if (!source_.isCompressed()) return taken();
  // What has been kept is not decompressed again: it counts in proportion.
  if (!kept_ || isKeeping_ || keptEnd_ <= mark_) return source_.used();
  const double part = static_cast<double>(taken() - mark_) / static_cast<double>(keptEnd_ - mark_);
  return usedAtMark_ +
         static_cast<std::uint64_t>(part * static_cast<double>(source_.used() - usedAtMark_));
}

void InputBuffer::report() {
  if (meter_) meter_->show(usedTwice_ + used());
}

bool InputBuffer::isPlainFile() const { return isFile(descriptor_) && !source_.isCompressed(); }

void InputBuffer::mark() {
  mark_ = taken();
  usedAtMark_ = used();
  if (isPlainFile()) return;
  // The last document may have been kept, and with it what was read of this one.
  const auto rest = std::exchange(kept_, std::make_unique<KeptOctets>());
  const auto buffered = static_cast<std::size_t>(egptr() - gptr());
  kept_->append({gptr(), buffered});
  std::vector<char> block(rest ? kBufferSize : 0);
  while (const std::size_t count = rest ? rest->read(block.data(), block.size()) : 0) {
    kept_->append({block.data(), count});
  }
  kept_->skip(buffered);
  isKeeping_ = true;
}

void InputBuffer::returnToMark() {
  usedTwice_ += used() - usedAtMark_;
  isKeeping_ = false;
  keptEnd_ = received_;
  if (kept_) {
    kept_->returnToStart();
  } else {
    source_.goBack(received_ - mark_);
  }
  received_ = mark_;
  if (recent_) recent_->restartAt(mark_);
  setg(buffer_.data(), buffer_.data(), buffer_.data());
}

int InputBuffer::keepingError() const { return kept_ ? kept_->error() : 0; }

std::string_view InputBuffer::peek(std::size_t size) {
  auto held = static_cast<std::size_t>(egptr() - gptr());
  if (held >= size) return {gptr(), held};
  if (held > 0) std::memmove(buffer_.data(), gptr(), held);
  while (held < std::min(size, buffer_.size())) {
    const std::size_t count = read(buffer_.data() + held, buffer_.size() - held);
    if (count == 0) break;
    held += count;
  }
  setg(buffer_.data(), buffer_.data(), buffer_.data() + held);
  return {buffer_.data(), held};
}

InputBuffer::int_type InputBuffer::underflow() {
  if (gptr() == egptr()) {
    if (peek(1).empty()) return traits_type::eof();
    report();
  }
  return traits_type::to_int_type(*gptr());
}

// A block goes straight to the caller. Pipes give less than was asked for, so reading goes on until
// the block is full: readers take a short block for the last one.
std::streamsize InputBuffer::xsgetn(char* target, std::streamsize size) {
  if (received_ == 0) peek(1);  // By the buffer, which has room for as many as tell their form.
  const std::streamsize buffered = std::min<std::streamsize>(size, egptr() - gptr());
  if (buffered > 0) std::memcpy(target, gptr(), static_cast<std::size_t>(buffered));
  setg(eback(), gptr() + buffered, egptr());
  std::streamsize done = buffered;
  if (done == size) return done;
  // What is in the buffer no longer stands before the next octet: nothing can be put back.
  setg(buffer_.data(), buffer_.data(), buffer_.data());
  while (done < size) {
    const std::size_t count = read(target + done, static_cast<std::size_t>(size - done));
    if (count == 0) break;
    done += static_cast<std::streamsize>(count);
  }
  report();
  return done;
}

// --- OutputBuffer ---

OutputBuffer::OutputBuffer(const Descriptor& descriptor, const CompressionChoice& compression)
    : descriptor_(descriptor), compressor_(Compressor::create(compression)), buffer_(kBufferSize) {
  setp(buffer_.data(), buffer_.data() + buffer_.size());
}

OutputBuffer::~OutputBuffer() = default;

bool OutputBuffer::write(std::string_view octets) {
  while (!octets.empty() && error_ == 0) {
    const ssize_t count = ::write(descriptor_.number(), octets.data(), octets.size());
    if (count >= 0) {
      octets.remove_prefix(static_cast<std::size_t>(count));
      written_ += static_cast<std::uint64_t>(count);
    } else if (errno != EINTR) {
      error_ = errno;
    }
  }
  return error_ == 0;
}

bool OutputBuffer::put(std::string_view octets, Compressor::Upto upto) {
  if (!compressor_) return write(octets);
  compressor_->compress(octets, upto, [this](std::string_view made) { return write(made); });
  return error_ == 0;
}

bool OutputBuffer::putBuffered(Compressor::Upto upto) {
  const bool written = put({pbase(), static_cast<std::size_t>(pptr() - pbase())}, upto);
  setp(buffer_.data(), buffer_.data() + buffer_.size());
  return written;
}

OutputBuffer::int_type OutputBuffer::overflow(int_type c) {
  if (!putBuffered(Compressor::Upto::Full)) return traits_type::eof();
  if (!traits_type::eq_int_type(c, traits_type::eof())) sputc(traits_type::to_char_type(c));
  return traits_type::not_eof(c);
}

std::streamsize OutputBuffer::xsputn(const char* text, std::streamsize size) {
  const auto count = static_cast<std::size_t>(size);
  if (size > epptr() - pptr()) {
    if (!putBuffered(Compressor::Upto::Full)) return 0;
    if (count >= buffer_.size()) return put({text, count}, Compressor::Upto::Full) ? size : 0;
  }
  std::copy_n(text, count, pptr());  // An empty text may be a null pointer.
  pbump(static_cast<int>(size));
  return size;
}

int OutputBuffer::sync() { return putBuffered(Compressor::Upto::Here) ? 0 : -1; }

void OutputBuffer::finish() { putBuffered(Compressor::Upto::End); }

}  // namespace tool
