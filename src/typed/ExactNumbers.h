#pragma once

#include <Tavrin/TypedData.h>

// Numbers whose text reads back as the same numbers, whatever the locale.

namespace Tavrin {

/// 16-bit integers in canonical form (X.891, 10.4).
class ExactShortData : public ShortData {
 public:
  using ShortData::ShortData;
  std::string toString() const override;
  std::unique_ptr<EncodedData> clone() override;

 protected:
  std::unique_ptr<EncodedData> copyEncodedData() const override;
};

/// 32-bit integers, likewise (X.891, 10.5).
class ExactIntData : public IntData {
 public:
  using IntData::IntData;
  std::string toString() const override;
  std::unique_ptr<EncodedData> clone() override;

 protected:
  std::unique_ptr<EncodedData> copyEncodedData() const override;
};

/// 64-bit integers, likewise (X.891, 10.6).
class ExactLongData : public LongData {
 public:
  using LongData::LongData;
  std::string toString() const override;
  std::unique_ptr<EncodedData> clone() override;

 protected:
  std::unique_ptr<EncodedData> copyEncodedData() const override;
};

/// Single precision numbers: the fewest digits that read back as the same number, in the lexical
/// form of XML Schema (X.891, 10.8).
class ExactFloatData : public FloatData {
 public:
  using FloatData::FloatData;
  std::string toString() const override;
  std::unique_ptr<EncodedData> clone() override;

 protected:
  std::unique_ptr<EncodedData> copyEncodedData() const override;
};

/// Double precision numbers, likewise (X.891, 10.9).
class ExactDoubleData : public DoubleData {
 public:
  using DoubleData::DoubleData;
  std::string toString() const override;
  std::unique_ptr<EncodedData> clone() override;

 protected:
  std::unique_ptr<EncodedData> copyEncodedData() const override;
};

}  // namespace Tavrin
