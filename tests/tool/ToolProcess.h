#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <ostream>
#include <string>
#include <system_error>
#include <vector>

/// How a run of the tool ended, and all that it printed.
struct Result {
  int status;  ///< The exit status; the negative number of the signal that ended the process.
  std::string out;
  std::string err;

  bool operator==(const Result&) const = default;

  friend void PrintTo(const Result& result, std::ostream* stream) {
    *stream << "status " << result.status << "\n--- out ---\n"
            << result.out << "\n--- err ---\n"
            << result.err << "\n---\n";
  }
};

/// Fails the test at once where the system does not do what the test builds on.
inline int require(int value, const char* what) {
  if (value == -1) throw std::system_error(errno, std::generic_category(), what);
  return value;
}

/// The built tool as a process. Standard input is a pipe held by the test; what the tool prints is
/// kept in memory.
class ToolProcess {
 public:
  using Arguments = std::vector<std::string>;

  /// @param directory  where it runs
  /// @param beforeExec runs in the new process, once the standard streams are in place
  ToolProcess(const Arguments& arguments, const std::string& directory,
              const std::function<void()>& beforeExec = {})
      : out_(require(memfd_create("out", MFD_CLOEXEC), "memfd_create")),
        err_(require(memfd_create("err", MFD_CLOEXEC), "memfd_create")) {
    int input[2];
    require(pipe2(input, O_CLOEXEC), "pipe2");
    std::vector<char*> argv = {const_cast<char*>("tavrin")};
    for (const std::string& argument : arguments)
      argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    process_ = require(fork(), "fork");
    if (process_ == 0) {
      if (chdir(directory.c_str()) != 0) _exit(kNotStarted);
      dup2(input[0], STDIN_FILENO);
      dup2(out_, STDOUT_FILENO);
      dup2(err_, STDERR_FILENO);
      alarm(kSecondsToLive);
      // Whoever runs the tests may ignore them, as a shell does for its background jobs.
      for (const int signal : {SIGINT, SIGTERM, SIGHUP}) std::signal(signal, SIG_DFL);
      if (beforeExec) beforeExec();
      execv(TAVRIN_TOOL, argv.data());
      _exit(kNotStarted);
    }
    close(input[0]);
    input_ = input[1];
  }

  ~ToolProcess() {
    closeInput();
    if (process_ != 0) {
      kill(process_, SIGKILL);
      waitpid(process_, nullptr, 0);
    }
    close(out_);
    close(err_);
  }
  ToolProcess(const ToolProcess&) = delete;
  ToolProcess& operator=(const ToolProcess&) = delete;

  /// Writes to the tool's standard input. A tool that no longer reads is no failure of the test.
  void write(const std::string& text) {
    const auto before = std::signal(SIGPIPE, SIG_IGN);
    std::size_t done = 0;
    while (done < text.size()) {
      const ssize_t count = ::write(input_, text.data() + done, text.size() - done);
      if (count < 0) break;
      done += static_cast<std::size_t>(count);
    }
    std::signal(SIGPIPE, before);
  }

  void closeInput() {
    if (input_ != -1) close(input_);
    input_ = -1;
  }

  void signal(int number) { require(kill(process_, number), "kill"); }

  /// Waits for the end while standard input stays open.
  Result waitWithOpenInput() {
    int status = 0;
    require(waitpid(process_, &status, 0), "waitpid");
    process_ = 0;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), contentOf(out_),
            contentOf(err_)};
  }

  /// Closes standard input and waits for the end.
  Result wait() {
    closeInput();
    return waitWithOpenInput();
  }

 private:
  static constexpr int kNotStarted = 127;
  static constexpr unsigned kSecondsToLive = 300;  // A tool that hangs dies of SIGALRM.

  static std::string contentOf(int file) {
    std::string content(
        static_cast<std::size_t>(require(static_cast<int>(lseek(file, 0, SEEK_END)), "lseek")),
        '\0');
    std::size_t done = 0;
    while (done < content.size()) {
      const ssize_t count =
          pread(file, content.data() + done, content.size() - done, static_cast<off_t>(done));
      require(count > 0 ? 0 : -1, "pread");
      done += static_cast<std::size_t>(count);
    }
    return content;
  }

  int out_;
  int err_;
  int input_ = -1;
  pid_t process_ = 0;
};
