#pragma once

#include <streambuf>
#include <string>

/// Logs when it is flushed.
class LoggingFlush : public std::streambuf {
 public:
  explicit LoggingFlush(std::string& log) : log_(log) {}

 protected:
  int sync() override {
    log_ += "flush\n";
    return 0;
  }

 private:
  std::string& log_;
};
