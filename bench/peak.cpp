#include "peak.h"

#include <fcntl.h>
#include <malloc.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <system_error>

#include "jobs.h"

namespace peak {

namespace {

[[noreturn]] void fail(const char* what, int error) {
  throw std::system_error(error, std::generic_category(), what);
}

/// A field of /proc/self/status, in octets.
std::size_t statusField(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    std::size_t kibibytes = 0;
    if (word == name && status >> kibibytes) return kibibytes * 1024;
  }
  throw std::runtime_error("/proc/self/status has no " + name);
}

/// Lets the peak of memory in use begin anew.
void resetPeak() {
  std::ofstream control("/proc/self/clear_refs");
  control << 5 << std::flush;
  if (!control) throw std::runtime_error("the peak of memory in use cannot be reset");
}

std::string readAll(int descriptor) {
  std::string text;
  std::array<char, 256> block;
  for (;;) {
    const ssize_t count = ::read(descriptor, block.data(), block.size());
    if (count == 0) return text;
    if (count > 0) text.append(block.data(), static_cast<std::size_t>(count));
    if (count < 0 && errno != EINTR) fail("read", errno);
  }
}

void waitFor(pid_t process) {
  int status = 0;
  while (waitpid(process, &status, 0) < 0) {
    if (errno != EINTR) fail("waitpid", errno);
  }
  if (status != 0) throw std::runtime_error("the process that reads the document failed");
}

/// Runs this program and gives what it writes to standard output.
std::string runSelf(const std::string& option, const std::string& operand) {
  std::array<int, 2> ends;
  if (pipe2(ends.data(), O_CLOEXEC) != 0) fail("pipe", errno);
  std::string program = "/proc/self/exe";
  std::string first = option;
  std::string second = operand;
  const std::array<char*, 4> arguments = {program.data(), first.data(), second.data(), nullptr};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
  pid_t process = 0;
  const int error =
      posix_spawn(&process, program.c_str(), &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(ends[1]);
  std::string output;
  if (error == 0) output = readAll(ends[0]);
  close(ends[0]);
  if (error != 0) fail("posix_spawn", error);
  waitFor(process);
  return output;
}

}  // namespace

namespace {

std::size_t measureOnce(const std::string& reader, const std::string& path) {
  const std::string output = runSelf(kOption + reader, path);
  std::size_t octets = 0;
  const auto end = output.data() + output.size();
  const auto [next, error] = std::from_chars(output.data(), end, octets);
  if (error != std::errc() || next == end || *next != '\n') {
    throw std::runtime_error("the process that reads the document reported no octets");
  }
  return octets;
}

}  // namespace

std::size_t measure(const std::string& reader, const std::string& path) {
  // The kernel counts pages in batches, so that one run may be misled.
  std::array<std::size_t, 5> peaks{};
  for (std::size_t& peak : peaks) peak = measureOnce(reader, path);
  std::ranges::sort(peaks);
  return peaks[peaks.size() / 2];
}

void report(const std::string& reader, const std::string& path) {
  const jobs::Reader& job = jobs::findReader(reader);
  std::ifstream stream(path, std::ios::binary);
  if (!stream) throw std::runtime_error("cannot read " + path);
  // The pages of the program itself come in now, as far as possible. They are no document's.
  mallopt(M_MMAP_THRESHOLD, 128 * 1024);  // It stays what it is in a new process.
  if (job.writer.empty()) {
    std::istringstream small("<r a='1'>t</r>");
    job.read(small);
  }
  resetPeak();
  const std::size_t before = statusField("VmRSS:");
  job.read(stream);
  const std::size_t highest = statusField("VmHWM:");
  std::cout << (highest > before ? highest - before : 0) << '\n' << std::flush;
}

TemporaryFile::TemporaryFile(const std::string& content)
    : path_(std::filesystem::temp_directory_path() / "bench_tavrin-XXXXXX") {
  const int descriptor = mkstemp(path_.data());
  if (descriptor < 0) fail("mkstemp", errno);
  close(descriptor);
  std::ofstream out(path_, std::ios::binary);
  out << content << std::flush;
  if (!out) {
    std::filesystem::remove(path_);
    throw std::runtime_error("cannot write " + path_);
  }
}

TemporaryFile::~TemporaryFile() {
  std::error_code ignored;  // Whoever removed it was only faster.
  std::filesystem::remove(path_, ignored);
}

}  // namespace peak
