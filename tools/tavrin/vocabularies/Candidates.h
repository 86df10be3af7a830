#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "vocabularies/EntryOctets.h"

namespace tool {

/// What samples have in common could be entries of a vocabulary: all their names and strings, with
/// how often they are used, and how many octets the writer spends on them without a vocabulary.
///
/// Samples are dealt out to folds, so that a vocabulary can be learned without those of one fold.
/// Memory grows with the distinct strings, of which longer ones are left out. Where they take more
/// than was granted, the half that costs least in octets is forgotten.
class Candidates {
 public:
  static constexpr unsigned kFolds = 10;
  static constexpr unsigned kNoFold = kFolds;

  /// What samples have used a candidate for.
  struct Uses {
    std::uint64_t uses = 0;
    std::uint64_t octets = 0;  ///< Without a vocabulary.
    /// Of `uses`, those by an index, and the positions of these, added up.
    std::uint64_t indexed = 0;
    std::uint64_t positions = 0;
    std::uint32_t samples = 0;
    unsigned fold = 0;

    void add(const Uses& other);
  };

  class Candidate {
   public:
    /// @param leftOut a fold, or kNoFold
    Uses usesWithout(unsigned leftOut) const;

   private:
    friend class Candidates;
    Uses& usesIn(unsigned fold);

    std::vector<Uses> byFold_;    // Only of folds that have it.
    std::uint64_t sample_ = 0;    // The last that had it, counted from 1,
    std::uint64_t position_ = 0;  // and where in its table.
  };

  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const {
      return std::hash<std::string_view>()(text);
    }
  };
  using Map = std::unordered_map<std::string, Candidate, Hash, std::equal_to<>>;

  /// @param longest    octets of the longest string that may be a candidate
  /// @param mostOctets that all candidates may take, about
  Candidates(std::size_t longest, std::uint64_t mostOctets)
      : longest_(longest), mostOctets_(mostOctets) {}

  std::size_t longest() const { return longest_; }
  /// Begins a sample, with tables that are empty.
  void beginSample();
  /// The sample uses a string that is not empty, once.
  /// @return the octets that this takes without a vocabulary
  std::uint64_t use(Table table, std::string_view text);
  /// The sample uses a name of an element or attribute.
  void useName(Table table, std::string_view prefix, std::string_view uri,
               std::string_view localName);

  std::uint64_t samples() const { return sample_; }
  std::uint64_t samplesWithout(unsigned leftOut) const;
  /// Those of a table. The key of a name is that of nameParts.
  const Map& of(Table table) const { return maps_[static_cast<std::size_t>(table)]; }

  /// The prefix, the namespace name and the local name of a key.
  static std::array<std::string_view, 3> nameParts(std::string_view key);

 private:
  static unsigned foldOf(std::uint64_t sample) {
    return static_cast<unsigned>((sample - 1) % kFolds);
  }
  /// @return null for a string that is too long
  Candidate* find(Table table, std::string_view key);
  std::uint64_t usePart(Table table, std::string_view part, std::string_view builtIn);
  std::uint64_t use(Table table, std::string_view key, bool isAdded, std::uint64_t octetsOfLiteral);
  void forgetCheapest();

  std::size_t longest_;
  std::uint64_t mostOctets_;
  std::uint64_t octets_ = 0;
  std::uint64_t sample_ = 0;
  std::array<Map, kTables> maps_;
  std::array<std::uint64_t, kTables> positions_{};  // The next of each table in the sample.
  std::string key_;                                 // Kept for its storage.
};

}  // namespace tool
