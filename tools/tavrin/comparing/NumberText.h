#pragma once

#include <Tavrin/TypedData.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace tool {

/// Numbers of typed content in a record: as they are in memory, behind a mark that tells how to
/// make text of them. So equal arrays are compared without making text of either.
class Numbers {
 public:
  static constexpr std::size_t kHeaderSize = 2;

  /// What a typed value holds.
  struct Array {
    char mark = 0;
    std::size_t size = 0;     ///< Of one number; 0 where the value holds no numbers.
    std::string_view octets;  ///< Of all, in the value.
  };

  /// The numbers of a value, if it is one of the library's own arrays of them.
  /// @param algorithm a number in Tavrin::algorithms, or any other
  static Array of(int algorithm, const Tavrin::EncodedData& data);

  /// @param isContinued other numbers of the value stand before
  static void putHeader(char* to, char mark, bool isContinued);
  /// The body of a record of the last of many numbers.
  /// @param body  of the record with all of them
  static std::string lastOf(std::string_view body, std::size_t count);
  /// Appends the text of a record's body.
  static void appendText(std::string& text, std::string_view body);
};

}  // namespace tool
