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

/// Whether what has been read can be read again: other things may let themselves be positioned,
/// too, and give something else then.
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
    : descriptor_(descriptor), buffer_(kBufferSize) {}

InputBuffer::~InputBuffer() = default;

/// Reads once; 0 octets at the end of the input and on failure.
std::size_t InputBuffer::read(char* target, std::size_t size) {
  const std::size_t count = readKept(target, size);
  if (recent_) recent_->append({target, count});
  return count;
}

std::size_t InputBuffer::readKept(char* target, std::size_t size) {
  if (!kept_) return readDescriptor(target, size);
  std::size_t count = kept_->read(target, size);
  received_ += count;
  if (count > 0 || kept_->error() != 0) return count;
  if (!isKeeping_) kept_.reset();
  count = readDescriptor(target, size);
  if (!kept_) return count;
  isEnded_ = !kept_->append({target, count}) || isEnded_;
  if (kept_->error() != 0) return 0;
  kept_->skip(count);
  return count;
}

std::size_t InputBuffer::readDescriptor(char* target, std::size_t size) {
  if (isEnded_) return 0;
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

void InputBuffer::report() {
  if (meter_) meter_->show(takenTwice_ + taken());
}

void InputBuffer::mark() {
  mark_ = taken();
  if (isFile(descriptor_)) return;
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
  takenTwice_ += taken() - mark_;
  isKeeping_ = false;
  if (kept_) kept_->returnToStart();
  // A read that failed on a file fails once more.
  if (!kept_) {
    lseek(descriptor_.number(), static_cast<off_t>(mark_) - static_cast<off_t>(received_),
          SEEK_CUR);
    isEnded_ = false;
    error_ = 0;
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

OutputBuffer::OutputBuffer(const Descriptor& descriptor)
    : descriptor_(descriptor), buffer_(kBufferSize) {
  setp(buffer_.data(), buffer_.data() + buffer_.size());
}

bool OutputBuffer::write(const char* text, std::size_t size) {
  while (size > 0 && error_ == 0) {
    const ssize_t count = ::write(descriptor_.number(), text, size);
    if (count >= 0) {
      text += count;
      size -= static_cast<std::size_t>(count);
      written_ += static_cast<std::uint64_t>(count);
    } else if (errno != EINTR) {
      error_ = errno;
    }
  }
  return error_ == 0;
}

bool OutputBuffer::writeBuffered() {
  const bool written = write(pbase(), static_cast<std::size_t>(pptr() - pbase()));
  setp(buffer_.data(), buffer_.data() + buffer_.size());
  return written;
}

OutputBuffer::int_type OutputBuffer::overflow(int_type c) {
  if (!writeBuffered()) return traits_type::eof();
  if (!traits_type::eq_int_type(c, traits_type::eof())) sputc(traits_type::to_char_type(c));
  return traits_type::not_eof(c);
}

std::streamsize OutputBuffer::xsputn(const char* text, std::streamsize size) {
  const auto count = static_cast<std::size_t>(size);
  if (size > epptr() - pptr()) {
    if (!writeBuffered()) return 0;
    if (count >= buffer_.size()) return write(text, count) ? size : 0;
  }
  std::copy_n(text, count, pptr());  // An empty text may be a null pointer.
  pbump(static_cast<int>(size));
  return size;
}

int OutputBuffer::sync() { return writeBuffered() ? 0 : -1; }

}  // namespace tool
