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
  /// How many numbers the body of a record has.
  static std::size_t countOf(std::string_view body);
  /// Appends the text of a record's body.
  static void appendText(std::string& text, std::string_view body);
  /// Appends the text of some of its numbers, with the blank that separates it from others.
  static void appendText(std::string& text, std::string_view body, std::size_t first,
                         std::size_t count);

  /// Numbers, and the octets that are their text.
  struct Recognised {
    std::size_t numbers = 0;
    std::size_t octets = 0;
  };
  /// Recognises numbers of a body in a text, as many as it can without printing them.
  /// @param first the number that comes next, with a blank in front of it where the text has that
  static Recognised recognise(std::string_view body, std::size_t first, std::string_view text);
};

}  // namespace tool
