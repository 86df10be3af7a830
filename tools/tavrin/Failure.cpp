#include "Failure.h"

#include <iostream>
#include <system_error>

#include "Text.h"

namespace tool {

Failure::Failure(ExitStatus status, const std::string& line)
    : status_(status), line_(oneLine(line)) {}

Failure Failure::usage(const std::string& message) { return {NotPossible, "tavrin: " + message}; }

Failure Failure::system(const std::string& name, int errorNumber) {
  return usage(name + ": " + std::generic_category().message(errorNumber));
}

Failure Failure::document(const std::string& name, const std::string& message) {
  return {DocumentFailed, name + ": " + message};
}

Failure Failure::document(const std::string& name, int line, int column,
                          const std::string& message) {
  return {DocumentFailed,
          name + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " + message};
}

void Failure::report() const { std::cerr << line_ + "\n" << std::flush; }

}  // namespace tool
