#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace tool {

/// How the program ends; the larger is the worse.
enum ExitStatus : int {
  Done = 0,
  DocumentFailed = 1,  ///< A document cannot be read, or cannot be written faithfully.
  NotPossible = 2      ///< Wrong usage, or a file that cannot be opened, read or written.
};

/// A place in a document of text: "NAME:LINE:COLUMN".
std::string placeIn(const std::string& name, int line, int column);
/// A place in any other document: "NAME: octet NUMBER", counted from 1; "NAME" in front of the
/// first.
std::string placeIn(const std::string& name, std::uint64_t octet);

/// A failure as the user meets it: one line for standard error, and the exit status.
class Failure : public std::exception {
 public:
  /// "tavrin: MESSAGE"
  static Failure usage(const std::string& message);
  /// "PLACE: MESSAGE", about a place in a file that tells the tool what to do.
  static Failure usageAt(const std::string& place, const std::string& message);
  /// "tavrin: NAME: REASON", the reason being the system's.
  static Failure system(const std::string& name, int errorNumber);
  /// "PLACE: MESSAGE", about a place in a document.
  /// @param explanation lines to stand below it, each with its end; empty for none
  static Failure document(const std::string& place, const std::string& message,
                          const std::string& explanation = {});
  /// Whoever read the output went away: they asked for no more, and are told nothing.
  static Failure nobodyReads();

  ExitStatus status() const { return status_; }
  const char* what() const noexcept override { return line_.c_str(); }

  /// Writes the line, and what explains it, to standard error.
  void report() const;

 private:
  Failure(ExitStatus status, const std::string& line);

  ExitStatus status_;
  std::string line_;  // Empty for nothing to say.
  std::string explanation_;
};

/// Writes a line to standard error about what does not end the work: "NAME: warning: MESSAGE". A
/// progress bar that is shown gives way to it.
void warn(const std::string& name, const std::string& message);

}  // namespace tool
