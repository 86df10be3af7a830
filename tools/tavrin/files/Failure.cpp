#include "files/Failure.h"

#include <iostream>
#include <system_error>

#include "files/Process.h"
#include "printing/Text.h"

namespace tool {

std::string placeIn(const std::string& name, int line, int column) {
  return name + ":" + std::to_string(line) + ":" + std::to_string(column);
}

std::string placeIn(const std::string& name, std::uint64_t octet) {
  return name + ": octet " + std::to_string(octet);
}

Failure::Failure(ExitStatus status, const std::string& line)
    : status_(status), line_(forMessage(line)) {}

Failure Failure::usage(const std::string& message) { return {NotPossible, "tavrin: " + message}; }

Failure Failure::usageAt(const std::string& place, const std::string& message) {
  return {NotPossible, place + ": " + message};
}

Failure Failure::system(const std::string& name, int errorNumber) {
  return usage(name + ": " + std::generic_category().message(errorNumber));
}

Failure Failure::document(const std::string& place, const std::string& message) {
  return {DocumentFailed, place + ": " + message};
}

void Failure::report() const { std::cerr << line_ + "\n" << std::flush; }

void warn(const std::string& name, const std::string& message) {
  const std::string line = forMessage(name + ": warning: " + message);
  std::cerr << (isProgressShown() ? kClearLine : "") + line + "\n" << std::flush;
}

}  // namespace tool
