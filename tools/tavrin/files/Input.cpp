#include "files/Input.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "explaining/Explaining.h"
#include "files/Failure.h"

namespace tool {

namespace {

constexpr std::uint64_t kLargeFile = std::uint64_t{8} << 20;
constexpr std::size_t kFirstOctets = 256;

std::string systemName(const std::string& name) { return name == "-" ? "standard input" : name; }

int openForReading(const std::string& name) {
  if (name == "-") return STDIN_FILENO;
  const int number = open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
  if (number == -1) throw Failure::system(name, errno);
  return number;
}

/// The size of a file; 0 of anything else.
std::uint64_t sizeOf(const Descriptor& descriptor) {
  struct stat status {};
  const bool isFile = fstat(descriptor.number(), &status) == 0 && S_ISREG(status.st_mode);
  return isFile ? static_cast<std::uint64_t>(status.st_size) : 0;
}

/// Whether octets, at least two of them, are enough to tell one format from another: behind an XML
/// declaration a document of Fast Infoset may begin.
bool tellFormat(std::string_view octets) {
  constexpr std::string_view kDeclaration = "<?xml";
  if (octets.substr(0, kDeclaration.size()) != kDeclaration.substr(0, octets.size())) return true;
  constexpr std::size_t kHeader = 4;
  const std::size_t end = octets.find('>');
  return end != std::string_view::npos && octets.size() > end + kHeader;
}

}  // namespace

Input::Input(const std::string& name, bool quiet)
    : name_(name), descriptor_(openForReading(name)), buffer_(descriptor_), stream_(&buffer_) {
  if (explains()) buffer_.keepRecent();
  buffer_.peek(1);
  checkRead();  // A directory, for one, can be opened but not read.
  if (Listener* const listener = currentListener()) {
    sizeToReturn_ = sizeOf(descriptor_);
    reportTo(*listener);
  } else if (!quiet && isatty(STDERR_FILENO)) {
    showProgress();
  }
}

Input::~Input() {
  if (meter_ && !progress_) buffer_.report();  // What was read since the last block.
}

void Input::showProgress() {
  sizeToReturn_ = sizeOf(descriptor_);
  if (sizeToReturn_ <= kLargeFile) return;
  progress_.emplace(sizeToReturn_);
  reportTo(*progress_);
}

void Input::reportTo(Meter& meter) {
  meter_ = &meter;
  buffer_.reportTo(meter_);
}

// It does not wait for more of them than it takes.
std::string_view Input::firstOctets() {
  for (std::size_t size = 2;; ++size) {
    const std::string_view octets = buffer_.peek(size);
    if (octets.size() < size || octets.size() >= kFirstOctets || tellFormat(octets)) return octets;
    size = octets.size();
  }
}

void Input::beginDocument() {
  ++documentNumber_;
  documentStart_ = octetsRead();
}

void Input::expectToReturn() {
  if (meter_) meter_->lengthen(std::exchange(sizeToReturn_, 0));
}

void Input::returnToMark() {
  buffer_.returnToMark();
  stream_.clear();
}

void Input::rewind() {
  returnToMark();
  documentNumber_ = 0;
  documentStart_ = 0;
}

// What stands in front of standard input may have been read by somebody else.
bool Input::canLookUp() const {
  return descriptor_.number() != STDIN_FILENO && buffer_.isPlainFile();
}

std::size_t Input::lookUp(std::uint64_t octet, char* target, std::size_t size) const {
  ssize_t count = 0;
  do {
    count = pread(descriptor_.number(), target, size, static_cast<off_t>(octet));
  } while (count < 0 && errno == EINTR);
  return count < 0 ? 0 : static_cast<std::size_t>(count);
}

void Input::checkRead() const {
  if (!buffer_.problem().empty()) throw Failure::document(name_, buffer_.problem());
  if (buffer_.keepingError() != 0) throw Failure::system("temporary file", buffer_.keepingError());
  if (buffer_.error() != 0) throw Failure::system(systemName(name_), buffer_.error());
}

}  // namespace tool
