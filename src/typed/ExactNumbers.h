#pragma once

#include "TakeOver.h"

namespace Tavrin {

/// Numbers whose text is read back as the same numbers, in every locale: integers in canonical form
/// (X.891, 10.4 to 10.6), floating-point numbers with the fewest digits that suffice, in the
/// lexical form of XML Schema (10.8, 10.9).
/// @tparam Holder the class that holds the numbers; its own text may lose digits
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
