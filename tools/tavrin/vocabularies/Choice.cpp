#include "vocabularies/Choice.h"

#include <Tavrin/Identifiers.h>

#include <algorithm>
#include <array>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "vocabularies/VocabularyTables.h"

namespace tool {

namespace {

using Uses = Candidates::Uses;

/// More would take indexes of three octets and more, which hardly save anything.
constexpr std::size_t kMostEntriesOfTable = std::size_t{1} << 18;

/// A candidate with what the samples that are looked at have used it for.
struct Scored {
  std::string_view key;
  Uses uses{};
  std::uint64_t kept = 0;  // Octets that its entry takes in the documents themselves.
  std::int64_t saved = 0;  // With the shortest index.
};

std::int64_t asSigned(std::uint64_t value) { return static_cast<std::int64_t>(value); }

/// How often parts of names were used by names that are entries now.
using PartUses = std::unordered_map<std::string_view, std::uint64_t>;

bool savesMore(const Scored& a, const Scored& b) {
  return a.saved != b.saved ? a.saved > b.saved : a.key < b.key;
}

bool isUsedMore(const Scored& a, const Scored& b) {
  return a.uses.uses != b.uses.uses ? a.uses.uses > b.uses.uses : a.key < b.key;
}

/// Octets of all indexes of the candidates, once they are entries in the order of their use.
std::uint64_t octetsOfIndexes(Table table, std::size_t first, std::vector<std::uint64_t> uses) {
  std::sort(uses.begin(), uses.end(), std::greater<>());
  std::uint64_t octets = 0;
  for (std::size_t i = 0; i < uses.size(); ++i) {
    octets += uses[i] * octetsOfIndex(table, first + i);
  }
  return octets;
}

/// Octets that a candidate's indexes in documents take more once so many entries stand in front.
std::uint64_t octetsOfMoving(Table table, const Uses& uses, std::size_t entries) {
  if (uses.indexed == 0) return 0;
  const std::uint64_t position = uses.positions / uses.indexed;
  return uses.indexed * (octetsOfIndex(table, position + entries) - octetsOfIndex(table, position));
}

class Chooser {
 public:
  Chooser(const Candidates& candidates, unsigned leftOut, const ChoiceOptions& options)
      : candidates_(candidates),
        leftOut_(leftOut),
        options_(options),
        samples_(candidates.samplesWithout(leftOut)) {}

  Tavrin::OwnedVocabulary choose() {
    // In front of each document, a name takes more than its first use in there.
    if (!options_.isInitial) {
      for (const Table table : {Table::ElementNames, Table::AttributeNames}) chooseFrom(table);
    }
    for (std::size_t i = 0; i < kTablesOfStrings; ++i) chooseFrom(static_cast<Table>(i));
    keepBest();
    return build();
  }

 private:
  std::vector<Scored>& chosen(Table table) { return chosen_[static_cast<std::size_t>(table)]; }

  void chooseFrom(Table table) {
    std::vector<Scored> good;  // Those that may be entries,
    std::vector<Scored> rest;  // and all others.
    const PartUses& required = requiredOf(table);
    for (const auto& [key, candidate] : candidates_.of(table)) {
      if (required.contains(key)) continue;  // It is an entry already.
      Scored scored = score(table, key, candidate.usesWithout(leftOut_));
      const bool isShared = scored.uses.samples > 1 || samples_ == 1;
      (scored.saved > 0 && isShared ? good : rest).push_back(scored);
    }
    std::sort(good.begin(), good.end(), savesMore);
    good.resize(bestCount(table, good, rest));
    std::sort(good.begin(), good.end(), isUsedMore);
    if (table >= Table::ElementNames) requireParts(good);
    chosen(table) = std::move(good);
  }

  Scored score(Table table, std::string_view key, const Uses& uses) const {
    const std::uint64_t kept =
        options_.isInitial ? samples_ * octetsOfLiteral(entryForm(table), key.size()) : 0;
    return {key, uses, kept, asSigned(uses.octets) - asSigned(uses.uses + kept)};
  }

  /// Character data stands in a vocabulary as a value does (X.891, C.2.5).
  static Table entryForm(Table table) {
    return table == Table::Characters ? Table::AttributeValues : table;
  }

  /// How many of the candidates that save most are to be entries.
  std::size_t bestCount(Table table, const std::vector<Scored>& good,
                        const std::vector<Scored>& rest) const {
    const std::size_t most = std::min(good.size(), kMostEntriesOfTable);
    std::vector<std::size_t> counts = {most};
    for (const std::uint64_t step : indexSteps(table).bounds) {
      for (std::uint64_t quarters = 1; quarters <= 4; ++quarters) {
        if (step * quarters / 4 < most) counts.push_back(step * quarters / 4);
      }
    }
    std::sort(counts.begin(), counts.end(), std::greater<>());
    std::size_t best = 0;
    std::int64_t bestSaved = 0;
    for (const std::size_t count : counts) {
      const std::int64_t saved = savedBy(table, good, count, rest);
      if (saved <= bestSaved) continue;
      best = count;
      bestSaved = saved;
    }
    return best;
  }

  std::int64_t savedBy(Table table, const std::vector<Scored>& good, std::size_t count,
                       const std::vector<Scored>& rest) const {
    const std::size_t required = requiredOf(table).size();
    std::int64_t saved = 0;
    std::vector<std::uint64_t> uses;
    uses.reserve(count);
    for (std::size_t i = 0; i < good.size(); ++i) {
      if (i >= count) {
        saved -= asSigned(octetsOfMoving(table, good[i].uses, required + count));
        continue;
      }
      saved += asSigned(good[i].uses.octets) - asSigned(good[i].kept);
      uses.push_back(good[i].uses.uses);
    }
    for (const Scored& other : rest) {
      saved -= asSigned(octetsOfMoving(table, other.uses, required + count));
    }
    return saved - asSigned(octetsOfIndexes(table, required, std::move(uses)));
  }

  // --- Parts of names ---

  const PartUses& requiredOf(Table table) const {
    static const PartUses kNone;
    return table <= Table::LocalNames ? required_[static_cast<std::size_t>(table)] : kNone;
  }

  /// Whether a part of a name needs an entry: those of the prefix xml are built in.
  static bool isEntry(std::size_t part, std::string_view text) {
    constexpr std::array<std::string_view, 3> kBuiltIn = {"xml", Tavrin::namespaces::xml, ""};
    return !text.empty() && text != kBuiltIn[part];
  }

  /// The parts of names that are entries are entries, too. The names no longer use them.
  void requireParts(const std::vector<Scored>& names) {
    for (const Scored& name : names) {
      const auto parts = Candidates::nameParts(name.key);
      for (std::size_t i = 0; i < parts.size(); ++i) {
        if (isEntry(i, parts[i])) required_[i][parts[i]] += name.uses.samples;
      }
    }
  }

  /// Parts that are entries, with the uses that are left of them.
  std::vector<Scored> parts(Table table) {
    std::vector<Scored> result = chosen(table);
    for (const auto& [part, gone] : requiredOf(table)) {
      const auto known = candidates_.of(table).find(part);
      Uses uses;
      if (known != candidates_.of(table).end()) uses = known->second.usesWithout(leftOut_);
      uses.uses -= std::min(uses.uses, gone);
      result.push_back({part, uses, 0, 0});
    }
    std::sort(result.begin(), result.end(), isUsedMore);
    return result;
  }

  // --- The result ---

  /// Leaves out what saves least, where there are more than were asked for.
  void keepBest() {
    std::vector<std::pair<Scored, std::size_t>> all;
    for (std::size_t table = 0; table < kTables; ++table) {
      for (const Scored& scored : chosen_[table]) all.emplace_back(scored, table);
    }
    std::uint64_t entries = all.size();
    for (const PartUses& parts : required_) entries += parts.size();
    if (entries <= options_.mostEntries) return;
    std::sort(all.begin(), all.end(), [](const auto& a, const auto& b) {
      return savesMore(a.first, b.first) || (!savesMore(b.first, a.first) && a.second < b.second);
    });
    for (auto& scored : chosen_) scored.clear();
    for (PartUses& parts : required_) parts.clear();
    entries = 0;
    for (const auto& [scored, table] : all) {
      const bool isName = table >= kTablesOfStrings;
      const std::uint64_t added = 1 + (isName ? missingParts(scored.key) : 0);
      if (entries + added > options_.mostEntries) continue;
      entries += added;
      chosen_[table].push_back(scored);
      if (isName) requireParts({scored});
    }
    for (auto& scored : chosen_) std::sort(scored.begin(), scored.end(), isUsedMore);
  }

  std::uint64_t missingParts(std::string_view key) const {
    const auto parts = Candidates::nameParts(key);
    std::uint64_t missing = 0;
    for (std::size_t i = 0; i < parts.size(); ++i) {
      if (isEntry(i, parts[i]) && !required_[i].contains(parts[i])) ++missing;
    }
    return missing;
  }

  Tavrin::OwnedVocabulary build() {
    // The first two tables of the forms are not filled: writers find nothing in them.
    constexpr std::size_t kFirstForm = std::size(kStringTables) - kTablesOfStrings;
    Tavrin::OwnedVocabulary vocabulary;
    for (std::size_t i = 0; i < kTablesOfStrings; ++i) {
      const auto table = static_cast<Table>(i);
      const auto add = kStringTables[kFirstForm + i].add;
      for (const Scored& entry : table <= Table::LocalNames ? parts(table) : chosen(table)) {
        (vocabulary.*add)(std::string(entry.key));
      }
    }
    for (std::size_t i = 0; i < std::size(kNameTables); ++i) {
      for (const Scored& name : chosen_[kTablesOfStrings + i]) {
        const auto [prefix, uri, localName] = Candidates::nameParts(name.key);
        const std::string local(localName);
        const std::string qName = prefix.empty() ? local : std::string(prefix) + ":" + local;
        (vocabulary.*kNameTables[i].add)(std::string(uri), local, qName);
      }
    }
    return vocabulary;
  }

  const Candidates& candidates_;
  unsigned leftOut_;
  const ChoiceOptions& options_;
  std::uint64_t samples_;
  std::array<std::vector<Scored>, kTables> chosen_;
  std::array<PartUses, 3> required_;  // Of prefixes, namespace names and local names.
};

}  // namespace

Tavrin::OwnedVocabulary chooseVocabulary(const Candidates& candidates, unsigned leftOut,
                                         const ChoiceOptions& options) {
  return Chooser(candidates, leftOut, options).choose();
}

}  // namespace tool
