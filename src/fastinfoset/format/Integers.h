#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// The integers of the stream (X.891, clauses C.22 to C.28), each one table that reader, writer and
/// tests share.
///
/// An integer begins inside an octet whose leading bits have another meaning. Its own leading bits,
/// the marker, determine the form; the rest of the octet and the octets that follow, most
/// significant first, hold the field. The value is the field plus the form's bias.
namespace Tavrin::fastinfoset {

struct IntegerForm {
  std::uint8_t marker;     ///< The leading bits, with the field's bits zero.
  std::uint8_t fieldBits;  ///< How many bits of the first octet belong to the field.
  std::uint8_t octets;     ///< How many octets follow.
  std::uint32_t bias;      ///< Also the smallest value that has this form.
};

template <std::size_t Forms>
struct IntegerEncoding {
  std::uint8_t mask;  ///< The bits of the first octet that belong to the integer.
  std::array<IntegerForm, Forms> forms;
};

// --- Lengths in octets; they begin at 1 ---

/// Identifying strings: starts on the second bit (C.22).
inline constexpr IntegerEncoding<3> kIdentifierLength = {0x7F,
                                                         {{
                                                             {0b0000000, 6, 0, 1},
                                                             {0b1000000, 0, 1, 1 + 64},
                                                             {0b1100000, 0, 4, 1 + 64 + 256},
                                                         }}};

/// Non-identifying strings: starts on the fifth bit (C.23).
inline constexpr IntegerEncoding<3> kStringLength = {0x0F,
                                                     {{
                                                         {0b0000, 3, 0, 1},
                                                         {0b1000, 0, 1, 1 + 8},
                                                         {0b1100, 0, 4, 1 + 8 + 256},
                                                     }}};

/// Character chunks: starts on the seventh bit (C.24).
inline constexpr IntegerEncoding<3> kCharactersLength = {0x03,
                                                         {{
                                                             {0b00, 1, 0, 1},
                                                             {0b10, 0, 1, 1 + 2},
                                                             {0b11, 0, 4, 1 + 2 + 256},
                                                         }}};

// --- Positions in a vocabulary table, from 0; the standard counts from 1 ---

/// Names, prefixes, namespace names, identifiers and non-identifying strings: starts on the second
/// bit (C.25).
inline constexpr IntegerEncoding<3> kIndex = {0x7F,
                                              {{
                                                  {0b0000000, 6, 0, 0},
                                                  {0b1000000, 5, 1, 64},
                                                  {0b1100000, 4, 2, 64 + 8192},
                                              }}};

/// Element names: starts on the third bit (C.27). Of the three octets of the longest form, the
/// first four bits are padding.
inline constexpr IntegerEncoding<4> kElementIndex = {0x3F,
                                                     {{
                                                         {0b000000, 5, 0, 0},
                                                         {0b100000, 3, 1, 32},
                                                         {0b101000, 3, 2, 32 + 2048},
                                                         {0b110000, 0, 3, 32 + 2048 + 524288},
                                                     }}};
inline constexpr std::uint32_t kElementIndexLongestField = 0x0FFFFF;

/// Character chunks: starts on the fourth bit (C.28). The second bit, which is zero in every chunk,
/// is checked too: from 0xC0 on, an octet holds no index.
inline constexpr IntegerEncoding<4> kCharactersIndex = {0x5F,
                                                        {{
                                                            {0b00000, 4, 0, 0},
                                                            {0b10000, 2, 1, 16},
                                                            {0b10100, 2, 2, 16 + 1024},
                                                            {0b11000, 0, 3, 16 + 1024 + 262144},
                                                        }}};

/// kCharactersIndex as the "FI" writer writes it: its second and third form lack their marker, so
/// a reader decodes the first octet as the whole index. The octets are fixed: keep.
inline constexpr IntegerEncoding<4> kCharactersIndexUnmarked = {
    0x5F,
    {{
        {0b00000, 4, 0, 0},
        {0b00000, 2, 1, 16},
        {0b00000, 2, 2, 16 + 1024},
        {0b11000, 0, 3, 16 + 1024 + 262144},
    }}};

// --- The number of items of a list ---

/// Starts on the first bit (C.21). For the "FI" types, the field itself is the count.
inline constexpr unsigned kItemCountLong = 0x80;      ///< Two octets follow the first.
inline constexpr unsigned kItemCountLongBits = 0x0F;  ///< The bits of the field in the first octet.

// --- Coding ---

/// The form of an octet, or null where its leading bits are none of this encoding's.
/// @param octet the octet in which the integer begins; other bits are ignored
template <std::size_t Forms>
constexpr const IntegerForm* findForm(const IntegerEncoding<Forms>& encoding, unsigned octet) {
  for (const IntegerForm& form : encoding.forms) {
    if ((octet & encoding.mask) >> form.fieldBits == unsigned{form.marker} >> form.fieldBits) {
      return &form;
    }
  }
  return nullptr;
}

/// The field's bits in the first octet.
constexpr std::uint32_t firstField(const IntegerForm& form, unsigned octet) {
  return octet & ((1U << form.fieldBits) - 1);
}

/// An integer as octets.
struct EncodedInteger {
  std::array<char, 5> octets;
  std::size_t length;
};

/// Encodes a value in its shortest form.
/// @param bits  the bits of the first octet that do not belong to the integer
/// @param value at least the bias of the first form
template <std::size_t Forms>
constexpr EncodedInteger encodeInteger(const IntegerEncoding<Forms>& encoding, unsigned bits,
                                       std::uint64_t value) {
  std::size_t last = Forms - 1;
  while (last > 0 && value < encoding.forms[last].bias) --last;
  const IntegerForm& form = encoding.forms[last];
  const std::uint64_t field = value - form.bias;
  EncodedInteger result{{}, std::size_t{1} + form.octets};
  // Shifts of 32 bits occur in the five-octet form, hence the 64-bit field.
  result.octets[0] = static_cast<char>(bits | form.marker | (field >> (8 * form.octets)));
  for (std::size_t i = 1; i < result.length; ++i) {
    result.octets[i] = static_cast<char>(field >> (8 * (form.octets - i)));
  }
  return result;
}

}  // namespace Tavrin::fastinfoset
