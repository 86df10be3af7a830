#pragma once

#include "TakeOver.h"

namespace Tavrin {

/// Numbers whose text reads back as the same numbers, whatever the locale: integers in canonical
/// form (X.891, 10.4 to 10.6); of floating-point numbers the fewest digits, in the lexical form of
/// XML Schema (10.8, 10.9).
/// @tparam Holder the class whose text is made otherwise
template <typename Holder>
class ExactNumbers final : public Holder {
 public:
  using Holder::Holder;
  std::string toString() const override;
  std::unique_ptr<EncodedData> clone() override { return takeOver(*this); }

 protected:
  std::unique_ptr<EncodedData> copyEncodedData() const override { return copyOf(*this); }
};

using ExactShortData = ExactNumbers<ShortData>;
using ExactIntData = ExactNumbers<IntData>;
using ExactLongData = ExactNumbers<LongData>;
using ExactFloatData = ExactNumbers<FloatData>;
using ExactDoubleData = ExactNumbers<DoubleData>;

}  // namespace Tavrin
