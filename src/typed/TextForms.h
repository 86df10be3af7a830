#pragma once

#include <Tavrin/TypedData.h>

#include <ios>
#include <iterator>
#include <locale>
#include <streambuf>
#include <string>
#include <vector>

/// The texts of typed values: what a handler sees that knows nothing of typed content.
namespace Tavrin {

/// Two upper-case digits an octet.
std::string hexadecimalText(const std::string& octets);

/// Base64 (RFC 4648, section 4), padded, in one line.
std::string base64Text(const std::string& octets);

/// "true" and "false", separated by single spaces.
std::string booleansText(const std::vector<bool>& values);

/// Lower-case digits in the groups of RFC 4122, section 3, separated by single spaces.
std::string uuidsText(const std::vector<UUID>& values);

/// Appends numbers to a text as a new stream with this text would: with the facets of the global
/// locale. A stream would keep a lack of memory to itself, and cut the text.
class NumberText {
 public:
  /// @param digits significant digits of floating-point numbers
  explicit NumberText(std::string& text, int digits = 6) : buffer_(text), format_(nullptr) {
    format_.precision(digits);
  }

  void append(long value) { put(value); }
  void append(double value) { put(value); }

 private:
  class Buffer : public std::streambuf {
   public:
    explicit Buffer(std::string& text) : text_(text) {}

   protected:
    int_type overflow(int_type octet) override {
      text_ += traits_type::to_char_type(octet);
      return octet;
    }
    std::streamsize xsputn(const char* octets, std::streamsize count) override {
      text_.append(octets, static_cast<std::size_t>(count));
      return count;
    }

   private:
    std::string& text_;
  };

  template <typename Number>
  void put(Number value) {
    std::use_facet<std::num_put<char>>(format_.getloc())
        .put(std::ostreambuf_iterator<char>(&buffer_), format_, format_.fill(), value);
  }

  Buffer buffer_;
  std::ios format_;  // Takes the global locale, as every new stream does.
};

/// Texts of elements, separated by single spaces.
/// @param append appends the text of an element
template <typename Vector, typename Append>
void appendSeparated(const Vector& values, std::string& text, Append append) {
  bool first = true;
  for (const auto value : values) {
    if (!first) text += ' ';
    first = false;
    append(value);
  }
}

/// Signed decimals, separated by single spaces.
template <typename Integer>
std::string integersText(const std::vector<Integer>& values) {
  std::string text;
  NumberText numbers(text);
  appendSeparated(values, text, [&numbers](Integer value) { numbers.append(long{value}); });
  return text;
}

/// Numbers in general notation, separated by single spaces.
/// @param digits significant digits
template <typename Floating>
std::string floatingText(const std::vector<Floating>& values, int digits) {
  std::string text;
  NumberText numbers(text, digits);
  appendSeparated(values, text, [&numbers](Floating value) { numbers.append(double{value}); });
  return text;
}

}  // namespace Tavrin
