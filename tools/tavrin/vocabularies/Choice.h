#pragma once

#include <Tavrin/OwnedVocabulary.h>

#include <cstdint>

#include "vocabularies/Candidates.h"

namespace tool {

/// What a vocabulary is learned for.
struct ChoiceOptions {
  /// It stands in each document, so that an entry has to save more than it takes there.
  bool isInitial = false;
  std::uint64_t mostEntries = std::uint64_t{1} << 32;
};

/// Chooses the entries that save the most octets in the samples. Where there are several samples,
/// only what two of them have in common can be an entry: anything else saves nothing in others.
///
/// Entries that are used most have the lowest numbers. As those of a document stand behind them,
/// and need more octets the more there are, a table gets as many as pay.
/// @param leftOut a fold whose samples are not looked at, or Candidates::kNoFold
Tavrin::OwnedVocabulary chooseVocabulary(const Candidates& candidates, unsigned leftOut,
                                         const ChoiceOptions& options);

}  // namespace tool
