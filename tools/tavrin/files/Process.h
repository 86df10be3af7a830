#pragma once

#include <csignal>
#include <cstddef>
#include <streambuf>

namespace tool {

/// Takes a line off the terminal.
inline constexpr char kClearLine[] = "\r\x1B[K";

/// Makes the process fit for work:
/// - Write failures come back as error numbers, not as signals.
/// - The descriptors 0 to 2 are taken, so that no file opened later stands in for a standard
/// stream.
/// - What the library prints to std::cout goes to standard error, never into a document.
/// - SIGINT, SIGTERM and SIGHUP remove the unfinished files and clear the progress bar before they
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

/// How many files may be unfinished at a time.
inline constexpr std::size_t kMostUnfinishedFiles = 512;

/// Notes a file that is to be removed when a signal ends the process. The text is not copied, and
/// has to stay until the file is forgotten. Call both while signals are held.
/// @return whether there was room for the note
bool noteUnfinishedFile(const char* path);
/// Takes the note of that very text back.
void forgetUnfinishedFile(const char* path);
/// Whether there is a progress bar to clear.
void setProgressShown(bool shown);
bool isProgressShown();

/// Holds the signals back that end the process, so that a file and the note of it change together.
/// A signal that another thread receives waits for this one. Once such a signal has been received,
/// the constructor does not return.
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
