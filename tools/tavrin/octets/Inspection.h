#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "options/Limits.h"
#include "options/Vocabularies.h"

namespace tool::octets {

struct InspectionOptions {
  bool hasTables = false;
  bool isColoured = false;
  /// Shows the lines around the octet of an offset, and nothing else.
  std::optional<std::uint64_t> near;
  Vocabularies vocabularies;
  Limits limits;
};

/// What is wrong with octets.
struct Finding {
  std::uint64_t octet;  ///< Counted from 1; one more than there are where octets are missing.
  std::string message;
};

/// Shows octets in the text form.
class Inspection {
 public:
  /// Puts octets at a place, as many as it says unless none are left. Returns how many.
  using Source = std::function<std::size_t(char*, std::size_t)>;
  using Sink = std::function<void(std::string_view)>;

  Inspection(const InspectionOptions& options, Source source, Sink sink);

  /// @return null where nothing is wrong with what was shown
  std::optional<Finding> run();
  /// How many octets there were to show.
  std::uint64_t octets() const { return octets_; }
  /// Whether that was fewer than it takes to show what is asked for.
  bool isTooShort() const { return isTooShort_; }

 private:
  InspectionOptions options_;
  Source source_;
  Sink sink_;
  std::uint64_t octets_ = 0;
  bool isTooShort_ = false;
};

}  // namespace tool::octets
