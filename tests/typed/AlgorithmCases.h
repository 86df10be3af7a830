#pragma once

#include <bit>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "Kinds.h"

/// Values and their octets, written by hand: what introduces the data in content, in an attribute,
/// and the data.
template <typename K>
struct AlgorithmCase {
  typename K::Value value;
  std::string chunk;
  std::string attribute;
  std::string data;
};

template <typename K>
using AlgorithmCases = std::vector<AlgorithmCase<K>>;

inline AlgorithmCases<HexadecimalKind> casesOf(HexadecimalKind) {
  return {
      {octets("00"), "8C 00", "30 00", "00"},
      {octets("0A FF"), "8C 01", "30 01", "0A FF"},
      {octets("00 7F A0"), "8C 02 00", "30 02", "00 7F A0"},
      {octets("20 09 0A 0D 20 00 1A FF"), "8C 02 05", "30 07", "20 09 0A 0D 20 00 1A FF"},
      {"123456789", "8C 02 06", "30 08 00", "'123456789'"},
  };
}

inline AlgorithmCases<Base64Kind> casesOf(Base64Kind) {
  return {
      {octets("4D"), "8C 04", "30 10", "4D"},
      {octets("4D 61"), "8C 05", "30 11", "4D 61"},
      {octets("4D 61 6E"), "8C 06 00", "30 12", "4D 61 6E"},
      {octets("00 FF 0D 0A 00"), "8C 06 02", "30 14", "00 FF 0D 0A 00"},
      {"TWFuTWFuTWFu", "8C 06 09", "30 18 03", "'TWFuTWFuTWFu'"},
  };
}

inline AlgorithmCases<CDATAKind> casesOf(CDATAKind) {
  return {
      {"a", "8C 24", "30 90", "'a'"},
      {"]>", "8C 25", "30 91", "5D 3E"},
      {octets("'caf' C3 A9"), "8C 26 02", "30 94", "63 61 66 C3 A9"},
      {"<b>&amp;</b>", "8C 26 09", "30 98 03", "'<b>&amp;</b>'"},
  };
}

inline AlgorithmCases<ShortKind> casesOf(ShortKind) {
  return {
      {{1}, "8C 09", "30 21", "00 01"},
      {{-1}, "8C 09", "30 21", "FF FF"},
      {{0x1234}, "8C 09", "30 21", "12 34"},
      {{255, 256}, "8C 0A 01", "30 23", "00 FF 01 00"},
      {{-1, 0, 32767, -32768}, "8C 0A 05", "30 27", "FF FF 00 00 7F FF 80 00"},
      {{1, 2, 3, 4, -129}, "8C 0A 07", "30 28 01", "00 01 00 02 00 03 00 04 FF 7F"},
  };
}

inline AlgorithmCases<IntKind> casesOf(IntKind) {
  return {
      {{0}, "8C 0E 01", "30 33", "00 00 00 00"},
      {{-1}, "8C 0E 01", "30 33", "FF FF FF FF"},
      {{0x12345678}, "8C 0E 01", "30 33", "12 34 56 78"},
      {{1, -2}, "8C 0E 05", "30 37", "00 00 00 01 FF FF FF FE"},
      {{2147483647, -2147483648, 128},
       "8C 0E 09",
       "30 38 03",
       "7F FF FF FF 80 00 00 00 00 00 00 80"},
  };
}

inline AlgorithmCases<LongKind> casesOf(LongKind) {
  using Limits = std::numeric_limits<long>;
  return {
      {{1}, "8C 12 05", "30 47", "00 00 00 00 00 00 00 01"},
      {{-1}, "8C 12 05", "30 47", "FF FF FF FF FF FF FF FF"},
      {{0x0123456789ABCDEF}, "8C 12 05", "30 47", "01 23 45 67 89 AB CD EF"},
      {{4294967301}, "8C 12 05", "30 47", "00 00 00 01 00 00 00 05"},
      {{Limits::min(), Limits::max()},
       "8C 12 0D",
       "30 48 07",
       "80 00 00 00 00 00 00 00 7F FF FF FF FF FF FF FF"},
  };
}

inline AlgorithmCases<FloatKind> casesOf(FloatKind) {
  using Limits = std::numeric_limits<float>;
  const auto ofBits = [](std::uint32_t bits) { return std::bit_cast<float>(bits); };
  return {
      {{1.0F}, "8C 1A 01", "30 63", "3F 80 00 00"},
      {{0.0F, -0.0F}, "8C 1A 05", "30 67", "00 00 00 00 80 00 00 00"},
      {{1.5F, -2.25F}, "8C 1A 05", "30 67", "3F C0 00 00 C0 10 00 00"},
      {{3.14159274F}, "8C 1A 01", "30 63", "40 49 0F DB"},
      {{Limits::infinity(), -Limits::infinity(), Limits::max()},
       "8C 1A 09",
       "30 68 03",
       "7F 80 00 00 FF 80 00 00 7F 7F FF FF"},
      {{Limits::denorm_min(), Limits::min()}, "8C 1A 05", "30 67", "00 00 00 01 00 80 00 00"},
      // Quiet and signalling not-a-numbers keep their payload.
      {{ofBits(0x7FC12345), ofBits(0xFFC00001)}, "8C 1A 05", "30 67", "7F C1 23 45 FF C0 00 01"},
      {{ofBits(0x7F812345), ofBits(0xFF800001)}, "8C 1A 05", "30 67", "7F 81 23 45 FF 80 00 01"},
  };
}

inline AlgorithmCases<DoubleKind> casesOf(DoubleKind) {
  using Limits = std::numeric_limits<double>;
  const auto ofBits = [](std::uint64_t bits) { return std::bit_cast<double>(bits); };
  return {
      {{1.0}, "8C 1E 05", "30 77", "3F F0 00 00 00 00 00 00"},
      {{-2.25}, "8C 1E 05", "30 77", "C0 02 00 00 00 00 00 00"},
      {{0.1}, "8C 1E 05", "30 77", "3F B9 99 99 99 99 99 9A"},
      {{0.0, -0.0}, "8C 1E 0D", "30 78 07", "00 00 00 00 00 00 00 00 80 00 00 00 00 00 00 00"},
      {{Limits::infinity(), -Limits::infinity()},
       "8C 1E 0D",
       "30 78 07",
       "7F F0 00 00 00 00 00 00 FF F0 00 00 00 00 00 00"},
      {{Limits::denorm_min(), Limits::max()},
       "8C 1E 0D",
       "30 78 07",
       "00 00 00 00 00 00 00 01 7F EF FF FF FF FF FF FF"},
      {{ofBits(0x7FF8123456789ABC), ofBits(0x7FF0000000000001)},
       "8C 1E 0D",
       "30 78 07",
       "7F F8 12 34 56 78 9A BC 7F F0 00 00 00 00 00 01"},
  };
}

inline AlgorithmCases<BooleanKind> casesOf(BooleanKind) {
  return {
      {{true}, "8C 14", "30 50", "38"},
      {{false}, "8C 14", "30 50", "30"},
      {{true, false, true}, "8C 14", "30 50", "1A"},
      {{true, true, true, true, true}, "8C 15", "30 51", "7F 80"},
      {{false, false, false, false, true, true, true, true, false, false, false, false},
       "8C 15",
       "30 51",
       "00 F0"},
      {{true, false, false, false, false, false, false, false, false, false, false, false, true},
       "8C 16 00",
       "30 52",
       "78 00 80"},
  };
}
