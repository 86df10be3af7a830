#pragma once

#include <csignal>
#include <streambuf>

namespace tool {

/// Takes a line off the terminal.
inline constexpr char kClearLine[] = "\r\x1B[K";

/// Makes the process fit for work:
/// - Write failures come back as error numbers, not as signals.
/// - The descriptors 0 to 2 are taken, so that no file opened later stands in for a standard
/// stream.
/// - What the library prints to std::cout goes to standard error, never into a document.
/// - SIGINT, SIGTERM and SIGHUP remove the unfinished file and clear the progress bar before they
///   end the process.
class Process {
 public:
  Process();
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

 private:
  std::streambuf* standardOutput_;
};

/// The file to remove when a signal ends the process; null for none. The text is not copied. Call
/// it while signals are held.
void setUnfinishedFile(const char* path);
/// Whether there is a progress bar to clear.
void setProgressShown(bool shown);
bool isProgressShown();

/// Holds the signals back that end the process, so that a file and the note of it change together.
class SignalsHeld {
 public:
  SignalsHeld();
  ~SignalsHeld();
  SignalsHeld(const SignalsHeld&) = delete;
  SignalsHeld& operator=(const SignalsHeld&) = delete;

 private:
  sigset_t before_{};
};

}  // namespace tool
