#include "RandomValues.h"

#include <bit>
#include <cstdint>
#include <limits>

namespace agreement {

using namespace Tavrin;

namespace {

/// A number of which all, few or the outermost bits are used.
std::int64_t randomInteger(Random& random) {
  switch (random.below(4)) {
    case 0:
      return static_cast<std::int64_t>(random.below(20)) - 10;
    case 1:
      return random.oneIn(2) ? std::numeric_limits<std::int64_t>::min() >> random.below(63)
                             : std::numeric_limits<std::int64_t>::max() >> random.below(63);
    default:
      return static_cast<std::int64_t>(random.bits()) >> random.below(64);
  }
}

/// Of all bits there are, or of a small integer's and half as much.
template <typename Number, typename Bits>
Number randomNumber(Random& random) {
  if (random.oneIn(2)) return std::bit_cast<Number>(static_cast<Bits>(random.bits()));
  return static_cast<Number>(static_cast<int>(random.below(2000)) - 1000) / 2;
}

std::string randomOctets(Random& random, std::size_t length) {
  std::string octets;
  while (octets.size() < length) octets += static_cast<char>(random.bits() & 0xFF);
  return octets;
}

/// How many items a value has: its octets change form at 1, 2, 8, 258 and 264.
std::size_t randomCount(Random& random, std::size_t itemSize) {
  if (random.oneIn(12)) return 0;
  if (!random.oneIn(20)) return 1 + random.below(5);
  return random.pick({8, 9, 256, 264, 272, 600}) / itemSize + random.below(2);
}

template <typename Item, typename Make>
std::vector<Item> randomItems(Random& random, std::size_t itemSize, Make make) {
  std::vector<Item> items(randomCount(random, itemSize));
  for (std::size_t i = 0; i < items.size(); ++i) items[i] = make();
  return items;
}

template <typename Holder, typename Value>
TypedValue valueOf(int algorithm, Value value) {
  return {algorithm, std::make_unique<Holder>(std::move(value))};
}

}  // namespace

TypedValue randomValue(Random& random) {
  const auto octets = [&] { return randomOctets(random, randomCount(random, 1)); };
  const auto integer = [&] { return static_cast<long>(randomInteger(random)); };
  switch (random.below(9)) {
    case 0:
      return valueOf<HexadecimalData>(algorithms::hexadecimal, octets());
    case 1:
      return valueOf<Base64Data>(algorithms::base64, octets());
    case 2:
      return valueOf<ShortData>(algorithms::shortInteger, randomItems<short>(random, 2, [&] {
                                  return static_cast<short>(integer());
                                }));
    case 3:
      return valueOf<IntData>(algorithms::integer, randomItems<long>(random, 4, integer));
    case 4:
      return valueOf<LongData>(algorithms::longInteger, randomItems<long>(random, 8, integer));
    case 5: {
      // Eight of them share an octet.
      std::vector<bool> booleans(randomCount(random, 1) * 8 / (1 + random.below(16)));
      for (std::size_t i = 0; i < booleans.size(); ++i) booleans[i] = random.oneIn(2);
      return valueOf<BooleanData>(algorithms::boolean, std::move(booleans));
    }
    case 6:
      return valueOf<FloatData>(algorithms::floatNumber, randomItems<float>(random, 4, [&] {
                                  return randomNumber<float, std::uint32_t>(random);
                                }));
    case 7:
      return valueOf<DoubleData>(algorithms::doubleNumber, randomItems<double>(random, 8, [&] {
                                   return randomNumber<double, std::uint64_t>(random);
                                 }));
    default:
      return valueOf<CDATAData>(algorithms::cdata,
                                randomText(random, random.oneIn(12) ? 0 : randomLength(random)));
  }
}

std::string randomText(Random& random, std::size_t length) {
  static const std::string kOthers(" \n\t\r\0<&]'\"-\xC3\xA9\xFF", 15);
  const bool mixed = random.oneIn(2);
  std::string text;
  while (text.size() < length) {
    text += mixed && random.oneIn(3) ? kOthers[random.below(kOthers.size())]
                                     : static_cast<char>('a' + random.below(26));
  }
  return text;
}

std::size_t randomLength(Random& random) {
  if (!random.oneIn(20)) return 1 + random.below(8);
  if (!random.oneIn(100)) return random.pick({7, 9, 63, 64, 65, 257, 258, 259, 264, 265, 320, 321});
  return random.pick({700, 5000, 66000});
}

}  // namespace agreement
