#pragma once

#include <Tavrin/TypedData.h>

#include <memory>
#include <string>
#include <utility>

/// A typed value of an application that counts how often its text is made, and how many such values
/// there are.
class CountedData : public Tavrin::EncodedData {
 public:
  explicit CountedData(std::string shownText) : text(std::move(shownText)) { ++alive; }
  ~CountedData() override { --alive; }
  CountedData(const CountedData&) = delete;
  CountedData& operator=(const CountedData&) = delete;

  std::string toString() const override {
    ++texts;
    if (beforeText) beforeText();
    return text;
  }
  std::unique_ptr<EncodedData> clone() override {
    auto clone = std::make_unique<CountedData>(std::string());
    clone->text.swap(text);
    return clone;
  }

  std::string text;
  mutable int texts = 0;
  void (*beforeText)() = nullptr;  ///< May throw.

  inline static int alive = 0;
};
