#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "CharacterEncodings.h"
#include "Iconv.h"

namespace Tavrin::text {

/// Makes UTF-8 of an entity that comes in pieces, in an encoding that iconv knows. A character may
/// be cut anywhere.
class Recoder {
 public:
  /// @param encoding known to iconv
  /// @throws std::bad_alloc
  explicit Recoder(const std::string& encoding)
      : name_(encoding), iconv_(encoding.c_str(), "UTF-8") {}

  /// Converts the next octets of the entity. Where they are not valid, kInvalid stands behind the
  /// characters in front of them, so that the parser fails at their place, and nothing may follow.
  /// @param areLast whether the entity ends with them
  /// @return the octets of UTF-8, until the next call
  std::string_view convert(std::string_view octets, bool areLast);
  static constexpr char kInvalid = '\xFF';  // No octet of UTF-8.

  /// Whether the entity is in UTF-32.
  bool isFourOctets() const { return text::isFourOctets(name_); }
  bool hasFailed() const { return hasFailed_; }
  /// What is wrong at an octet of UTF-8, counted from the beginning of the entity; empty where the
  /// octets were valid.
  std::string describeFailure(std::uint64_t octet) const;

 private:
  void append(const char* octets, std::size_t size);
  void fail(std::string_view octets, bool areAll);

  std::string name_;
  Iconv iconv_;
  std::string pending_;  // What has not been converted: a part of a character.
  std::string converted_;
  std::uint64_t before_ = 0;  // Octets of UTF-8 of all calls before.
  bool hasFailed_ = false;
  std::uint64_t failedAt_ = 0;
  std::string failure_;
};

}  // namespace Tavrin::text
