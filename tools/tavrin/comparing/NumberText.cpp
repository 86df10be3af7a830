#include "comparing/NumberText.h"

#include <Tavrin/EncodingAlgorithms.h>
#include <Tavrin/Identifiers.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <typeinfo>

#include "comparing/ShortNumbers.h"

namespace tool {

namespace {

/// A value prints as its class does: some readers make values that print exactly, others not.
constexpr char kExact = 0x40;

/// Calls a function with the class of arrays of an algorithm, as a value of it.
template <typename Work>
void withHolder(int algorithm, Work work) {
  switch (algorithm) {
    case Tavrin::algorithms::shortInteger:
      return work(Tavrin::ShortData());
    case Tavrin::algorithms::integer:
      return work(Tavrin::IntData());
    case Tavrin::algorithms::longInteger:
      return work(Tavrin::LongData());
    case Tavrin::algorithms::floatNumber:
      return work(Tavrin::FloatData());
    case Tavrin::algorithms::doubleNumber:
      return work(Tavrin::DoubleData());
    default:
      return;
  }
}

/// Whether a value prints exactly: it is of the class that has exact texts parsed.
bool isExact(int algorithm, const Tavrin::EncodedData& data) {
  using Types = std::array<const std::type_info*, Tavrin::algorithms::doubleNumber + 1>;
  static const Types types = [] {
    Types result{};
    for (int i = 0; i <= Tavrin::algorithms::doubleNumber; ++i) {
      withHolder(i, [&](const auto&) {
        const auto exact = Tavrin::encodedDataFromText(i, "0");
        const Tavrin::EncodedData& value = *exact;
        result[static_cast<std::size_t>(i)] = &typeid(value);
      });
    }
    return result;
  }();
  return typeid(data) == *types[static_cast<std::size_t>(algorithm)];
}

/// Whether a blank separates a number of a body from the one before.
bool hasBlank(std::string_view body, std::size_t number) { return number > 0 || body[1] != 0; }

/// @param hasBlank whether the text begins with a blank
template <typename Number>
Numbers::Recognised recogniseAs(std::string_view octets, bool hasBlank, std::string_view text) {
  if (hasBlank && !text.starts_with(' ')) return {};
  const std::size_t count = octets.size() / sizeof(Number);
  const char* at = text.data() + (hasBlank ? 1 : 0);
  const char* const end = text.data() + text.size();
  const char* taken = text.data();
  std::size_t known = 0;
  for (; known < count; ++known) {
    Number number{};
    std::memcpy(&number, octets.data() + known * sizeof number, sizeof number);
    const std::size_t size = ShortNumbers<Number>::sizeAt(at, end, number);
    if (size == 0) break;
    taken = at + size;
    at = taken + 1;  // A blank is there.
  }
  return {known, static_cast<std::size_t>(taken - text.data())};
}

}  // namespace

Numbers::Array Numbers::of(int algorithm, const Tavrin::EncodedData& data) {
  Array array;
  withHolder(algorithm, [&]<typename Holder>(const Holder&) {
    const bool isPlain = typeid(data) == typeid(Holder);
    if (!isPlain && !isExact(algorithm, data)) return;
    const auto& numbers = static_cast<const Holder&>(data).data_;
    array.mark = static_cast<char>(algorithm | (isPlain ? 0 : kExact));
    array.size = sizeof numbers[0];
    array.octets = {reinterpret_cast<const char*>(numbers.data()), numbers.size() * array.size};
  });
  return array;
}

void Numbers::putHeader(char* to, char mark, bool isContinued) {
  to[0] = mark;
  to[1] = isContinued ? 1 : 0;
}

std::string Numbers::lastOf(std::string_view body, std::size_t count) {
  std::string last(body.substr(0, kHeaderSize));
  withHolder(body[0] & ~kExact, [&]<typename Holder>(const Holder& holder) {
    const std::size_t size = std::min(count * sizeof holder.data_[0], body.size() - kHeaderSize);
    if (size < body.size() - kHeaderSize) last[1] = 1;  // The others stand before.
    last += body.substr(body.size() - size);
  });
  return last;
}

std::size_t Numbers::countOf(std::string_view body) {
  std::size_t count = 0;
  withHolder(body[0] & ~kExact, [&](const auto& holder) {
    count = (body.size() - kHeaderSize) / sizeof holder.data_[0];
  });
  return count;
}

void Numbers::appendText(std::string& text, std::string_view body) {
  appendText(text, body, 0, countOf(body));
}

void Numbers::appendText(std::string& text, std::string_view body, std::size_t first,
                         std::size_t count) {
  const char mark = body[0];
  if (hasBlank(body, first)) text += ' ';
  const int algorithm = mark & ~kExact;
  withHolder(algorithm, [&]<typename Holder>(Holder plain) {
    const auto take = [&](Holder& holder) {
      holder.data_.resize(count);
      const std::size_t size = sizeof holder.data_[0];
      std::memcpy(holder.data_.data(), body.data() + kHeaderSize + first * size, count * size);
      text += holder.toString();
    };
    if ((mark & kExact) == 0) return take(plain);
    const auto exact = Tavrin::encodedDataFromText(algorithm, "0");
    take(static_cast<Holder&>(*exact));
  });
}

Numbers::Recognised Numbers::recognise(std::string_view body, std::size_t first,
                                       std::string_view text) {
  Recognised recognised;
  if ((body[0] & kExact) == 0) return recognised;
  withHolder(body[0] & ~kExact, [&]<typename Holder>(const Holder&) {
    using Number = typename decltype(Holder::data_)::value_type;
    recognised = recogniseAs<Number>(body.substr(kHeaderSize + first * sizeof(Number)),
                                     hasBlank(body, first), text);
  });
  return recognised;
}

}  // namespace tool
