#pragma once

#include <Tavrin/TypedData.h>

#include <memory>

namespace Tavrin {

/// Moves the value of a holder to a new one. The old holder is empty afterwards.
template <typename Holder>
std::unique_ptr<EncodedData> takeOver(Holder& holder) {
  auto taken = std::make_unique<Holder>();
  taken->data_.swap(holder.data_);
  return taken;
}

/// A new holder with a copy of the value of this one.
template <typename Holder>
std::unique_ptr<EncodedData> copyOf(const Holder& holder) {
  return std::make_unique<Holder>(holder.data_);
}

}  // namespace Tavrin
