#pragma once

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "ToolProcess.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

/// Limits the memory of the tool before it is executed, as ulimit -v does. The shadow of a
/// sanitizer is larger than any limit, so there is none then.
inline void limitMemory(rlim_t octets) {
  const rlimit limit{octets, octets};
  if (!kIsSanitized) setrlimit(RLIMIT_AS, &limit);
}

/// A directory of its own for every test, in which the tool runs.
class Workplace : public testing::Test {
 protected:
  using Names = std::vector<std::string>;

  Workplace() {
    std::string name = testing::TempDir() + "tavrin-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) require(-1, "mkdtemp");
    directory_ = name;
  }
  ~Workplace() override { std::filesystem::remove_all(directory_); }

  std::string path(const std::string& name) const { return directory_ + "/" + name; }

  void writeFile(const std::string& name, const std::string& content) const {
    std::ofstream file(path(name), std::ios::binary);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    file.close();
    if (!file) throw std::runtime_error("cannot write " + path(name));
  }

  std::string readFile(const std::string& name) const {
    std::ifstream file(path(name), std::ios::binary);
    if (!file) throw std::runtime_error("cannot read " + path(name));
    return {std::istreambuf_iterator<char>(file), {}};
  }

  /// The permissions of a file, behind symbolic links.
  unsigned modeOf(const std::string& name) const {
    struct stat status {};
    require(stat(path(name).c_str(), &status), "stat");
    return status.st_mode & 07777;
  }

  /// All names in the directory, in order: what a run left behind shows.
  Names files() const {
    Names names;
    for (const auto& entry : std::filesystem::directory_iterator(directory_)) {
      names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  /// Waits until there are so many files: a tool at work has begun a new one.
  void waitForFiles(std::size_t count) const {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (files().size() != count) {
      if (std::chrono::steady_clock::now() > end) throw std::runtime_error("the files do not come");
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
  }

  /// Runs the tool to its end.
  Result run(const ToolProcess::Arguments& arguments, const std::string& input = {},
             const std::function<void()>& beforeExec = {}) const {
    ToolProcess process(arguments, directory_, beforeExec);
    process.write(input);
    return process.wait();
  }

  std::string directory_;
};

/// An exit status without any output.
inline Result silent(int status) { return {status, "", ""}; }
