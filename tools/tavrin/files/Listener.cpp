#include "files/Listener.h"

#include <iostream>
#include <utility>

#include "files/Process.h"

namespace tool {

namespace {

thread_local Listener* current = nullptr;

}  // namespace

Listener* currentListener() { return current; }

Listening::Listening(Listener& listener) : before_(std::exchange(current, &listener)) {}

Listening::~Listening() { current = before_; }

void say(const std::string& line) {
  if (current) return current->message(line);
  std::cerr << (isProgressShown() ? kClearLine : "") + line << std::flush;
}

}  // namespace tool
