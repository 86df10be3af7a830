#pragma once

#include <cstdint>
#include <istream>
#include <optional>
#include <string>
#include <string_view>

#include "DescriptorBuffers.h"
#include "Progress.h"

namespace tool {

/// A document to read: a file, or standard input by the name "-". On a terminal a large file shows
/// a progress bar while the object lives.
class Input {
 public:
  /// @param quiet no progress bar: the terminal is used for something else
  /// @throws Failure when it cannot be opened or read
  explicit Input(const std::string& name, bool quiet = false);

  /// The name for messages about the document.
  const std::string& name() const { return name_; }
  /// The first octets, as many as it takes to tell one format from another. Call it before reading.
  std::string_view firstOctets();
  std::istream& stream() { return stream_; }
  /// How many octets have been read, whoever read them.
  std::uint64_t octetsRead() const { return buffer_.taken(); }
  /// Whether a progress bar may come up.
  bool hasProgress() const { return progress_.has_value(); }
  /// @throws Failure when what looked like the end of the document was a failed read
  void checkRead() const;

 private:
  void showProgress();

  std::string name_;
  Descriptor descriptor_;
  InputBuffer buffer_;
  std::optional<Progress> progress_;
  std::istream stream_;
};

}  // namespace tool
