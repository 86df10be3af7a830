#include "files/Process.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <ctime>
#include <iostream>
#include <iterator>

namespace tool {

namespace {

constexpr int kEndingSignals[] = {SIGINT, SIGTERM, SIGHUP};

// A signal handler may touch lock-free atomics only.
std::atomic<const char*> unfinishedFiles[kMostUnfinishedFiles] = {};
std::atomic<bool> progressShown = false;
std::atomic<int> holders = 0;  // Threads that hold signals back.
std::atomic<bool> isEnding = false;
static_assert(std::atomic<const char*>::is_always_lock_free);
static_assert(std::atomic<bool>::is_always_lock_free);
static_assert(std::atomic<int>::is_always_lock_free);

void sleepAMoment() {
  const timespec moment = {0, 1000000};
  nanosleep(&moment, nullptr);
}

sigset_t endingSignals() {
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : kEndingSignals) sigaddset(&set, signal);
  return set;
}

// SA_RESETHAND has put the default action back, so the process dies of the signal once this
// returns, and its parent sees how it died.
void endBySignal(int signal) {
  // No thread begins to hold signals back from here on, and those that do it finish soon. This
  // thread is none of them, or the signal would not have come.
  isEnding = true;
  while (holders > 0) sleepAMoment();
  for (const auto& file : unfinishedFiles) {
    if (const char* path = file) unlink(path);
  }
  if (progressShown) {
    // Nothing is left to do about a terminal that cannot be written to.
    [[maybe_unused]] const ssize_t written =
        write(STDERR_FILENO, kClearLine, sizeof kClearLine - 1);
  }
  raise(signal);
}

void catchEndingSignals() {
  struct sigaction action {};
  action.sa_handler = endBySignal;
  action.sa_mask = endingSignals();
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  for (const int signal : kEndingSignals) {
    struct sigaction before {};
    sigaction(signal, nullptr, &before);
    // nohup and background jobs start programs with signals ignored; that holds.
    if (before.sa_handler != SIG_IGN) sigaction(signal, &action, nullptr);
  }
}

/// Opens what is closed for the opposite use, so that using it fails as on a closed stream.
void occupyStandardStreams() {
  for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(number, F_GETFD) != -1) continue;
    // The lowest free number is taken: this one.
    open("/dev/null", number == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

}  // namespace

Process::Process() : standardOutput_(std::cout.rdbuf(std::cerr.rdbuf())) {
  occupyStandardStreams();
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  catchEndingSignals();
}

Process::~Process() { std::cout.rdbuf(standardOutput_); }

bool noteUnfinishedFile(const char* path) {
  return std::any_of(std::begin(unfinishedFiles), std::end(unfinishedFiles), [path](auto& file) {
    const char* none = nullptr;
    return file.compare_exchange_strong(none, path);
  });
}

void forgetUnfinishedFile(const char* path) {
  for (auto& file : unfinishedFiles) {
    const char* noted = path;
    if (file.compare_exchange_strong(noted, nullptr)) return;
  }
}

void setProgressShown(bool shown) { progressShown = shown; }

bool isProgressShown() { return progressShown; }

SignalsHeld::SignalsHeld() {
  const sigset_t set = endingSignals();
  pthread_sigmask(SIG_BLOCK, &set, &before_);
  ++holders;
  if (!isEnding) return;
  --holders;
  for (;;) sleepAMoment();  // Another thread is ending the process.
}

SignalsHeld::~SignalsHeld() {
  --holders;
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

}  // namespace tool
