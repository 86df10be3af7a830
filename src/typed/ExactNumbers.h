#pragma once

#include <Tavrin/TypedData.h>

namespace Tavrin {

/// Single precision numbers whose text reads back as the same numbers: the fewest digits that do,
/// in the lexical form of XML Schema (X.891, 10.8), whatever the locale.
class ExactFloatData : public FloatData {
 public:
  std::string toString() const override;
  std::unique_ptr<EncodedData> clone() override;
};

/// Double precision numbers, likewise (X.891, 10.9).
class ExactDoubleData : public DoubleData {
 public:
  std::string toString() const override;
  std::unique_ptr<EncodedData> clone() override;
};

}  // namespace Tavrin
