#include "files/Failure.h"

#include <system_error>

#include "files/Listener.h"
#include "printing/Text.h"

namespace tool {

std::string placeIn(const std::string& name, int line, int column) {
  return name + ":" + std::to_string(line) + ":" + std::to_string(column);
}

std::string placeIn(const std::string& name, std::uint64_t octet) {
  return octet == 0 ? name : name + ": octet " + std::to_string(octet);
}

Failure::Failure(ExitStatus status, const std::string& line)
    : status_(status), line_(forMessage(line)) {}

Failure Failure::usage(const std::string& message) { return {NotPossible, "tavrin: " + message}; }

Failure Failure::usageAt(const std::string& place, const std::string& message) {
  return {NotPossible, place + ": " + message};
}

Failure Failure::system(const std::string& name, int errorNumber) {
  return usage((name.empty() ? "\"\"" : name) + ": " +
               std::generic_category().message(errorNumber));
}

Failure Failure::document(const std::string& place, const std::string& message,
                          const std::string& explanation) {
  Failure failure(DocumentFailed, place + ": " + message);
  failure.explanation_ = explanation;
  return failure;
}

Failure Failure::nobodyReads() { return {NotPossible, ""}; }

void Failure::report() const {
  if (!line_.empty()) say(line_ + "\n" + explanation_);
}

void warn(const std::string& name, const std::string& message) {
  say(forMessage(name + ": warning: " + message) + "\n");
}

}  // namespace tool
