#pragma once

#include <cstddef>
#include <string>

/// How much memory reading a document takes, measured in a process of its own.
namespace peak {

/// What that process is started with, before the name of the reader and the path of the document.
constexpr char kOption[] = "--added-peak=";

/// Starts this program again to read a file, a few times, and waits for it.
/// @return by how many octets the memory in use rose at its peak, in the median
/// @throws std::runtime_error when that cannot be found out
std::size_t measure(const std::string& reader, const std::string& path);

/// What the process that measure starts does: prints the octets.
void report(const std::string& reader, const std::string& path);

/// A file in the directory for temporary files, gone at the end.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& content);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace peak
