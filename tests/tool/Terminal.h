#pragma once

#include <fcntl.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <string>

#include "ToolProcess.h"

/// A terminal, seen from the side of the person before it.
class Terminal {
 public:
  Terminal() {
    termios raw{};
    cfmakeraw(&raw);
    require(openpty(&person_, &program_, nullptr, &raw, nullptr), "openpty");
    fcntl(person_, F_SETFD, FD_CLOEXEC);
    fcntl(program_, F_SETFD, FD_CLOEXEC);
    fcntl(person_, F_SETFL, O_NONBLOCK);
  }
  ~Terminal() {
    close(person_);
    close(program_);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  int program() const { return program_; }

  /// What has been printed since the last call.
  std::string shown() {
    std::string text;
    char block[4096];
    for (ssize_t count; (count = read(person_, block, sizeof block)) > 0;) {
      text.append(block, static_cast<std::size_t>(count));
    }
    return text;
  }

 private:
  int person_ = -1;
  int program_ = -1;
};
