#include "vocabularies/Candidates.h"

#include <Tavrin/Identifiers.h>

#include <algorithm>

namespace tool {

namespace {

/// About what a candidate takes beside its text.
constexpr std::uint64_t kCandidateOctets = 192;

constexpr std::uint64_t kNoPosition = std::numeric_limits<std::uint64_t>::max();
constexpr char kSeparator = '\0';  // It is in no document.

/// What the candidate costs above what any vocabulary would leave of it.
std::uint64_t mostSaved(const Candidates::Candidate& candidate) {
  const Candidates::Uses all = candidate.usesWithout(Candidates::kNoFold);
  return all.octets - all.uses;
}

}  // namespace

void Candidates::Uses::add(const Uses& other) {
  uses += other.uses;
  octets += other.octets;
  indexed += other.indexed;
  positions += other.positions;
  samples += other.samples;
}

Candidates::Uses Candidates::Candidate::usesWithout(unsigned leftOut) const {
  Uses sum;
  for (const Uses& uses : byFold_) {
    if (uses.fold != leftOut) sum.add(uses);
  }
  return sum;
}

Candidates::Uses& Candidates::Candidate::usesIn(unsigned fold) {
  for (Uses& uses : byFold_) {
    if (uses.fold == fold) return uses;
  }
  byFold_.emplace_back().fold = fold;
  return byFold_.back();
}

void Candidates::beginSample() {
  ++sample_;
  positions_ = {};
}

std::uint64_t Candidates::samplesWithout(unsigned leftOut) const {
  if (leftOut == kNoFold) return sample_;
  const std::uint64_t ofFold = (sample_ + kFolds - 1 - leftOut) / kFolds;
  return sample_ - ofFold;
}

std::array<std::string_view, 3> Candidates::nameParts(std::string_view key) {
  const std::size_t first = key.find(kSeparator);
  const std::size_t second = key.find(kSeparator, first + 1);
  return {key.substr(0, first), key.substr(first + 1, second - first - 1), key.substr(second + 1)};
}

Candidates::Candidate* Candidates::find(Table table, std::string_view key) {
  if (key.size() > longest_) return nullptr;
  Map& map = maps_[static_cast<std::size_t>(table)];
  const auto known = map.find(key);
  if (known != map.end()) return &known->second;
  octets_ += key.size() + kCandidateOctets;
  if (octets_ > mostOctets_) forgetCheapest();
  return &map.try_emplace(std::string(key)).first->second;
}

/// @param isAdded         whether the writer adds it to its table, so that later uses are indexes
/// @param octetsOfLiteral what the first use takes
std::uint64_t Candidates::use(Table table, std::string_view key, bool isAdded,
                              std::uint64_t octetsOfLiteral) {
  std::uint64_t& next = positions_[static_cast<std::size_t>(table)];
  Candidate* const candidate = find(table, key);
  if (candidate == nullptr) {
    if (isAdded) ++next;
    return octetsOfLiteral;
  }
  const bool isNew = candidate->sample_ != sample_;
  const bool isIndexed = !isNew && candidate->position_ != kNoPosition;
  const std::uint64_t octets =
      isIndexed ? octetsOfIndex(table, candidate->position_) : octetsOfLiteral;
  Uses& uses = candidate->usesIn(foldOf(sample_));
  ++uses.uses;
  uses.octets += octets;
  if (isIndexed) {
    ++uses.indexed;
    uses.positions += candidate->position_;
  }
  if (isNew) {
    ++uses.samples;
    candidate->sample_ = sample_;
    candidate->position_ = isAdded ? next++ : kNoPosition;
  }
  return octets;
}

std::uint64_t Candidates::use(Table table, std::string_view text) {
  return use(table, text, getsEverything(table) || text.size() <= kLongestAdded,
             octetsOfLiteral(table, text.size()));
}

std::uint64_t Candidates::usePart(Table table, std::string_view part, std::string_view builtIn) {
  if (part.empty()) return 0;
  return part == builtIn ? 1 : use(table, part);
}

void Candidates::useName(Table table, std::string_view prefix, std::string_view uri,
                         std::string_view localName) {
  key_.assign(prefix).append(1, kSeparator).append(uri).append(1, kSeparator).append(localName);
  const Map& names = of(table);
  const auto known = names.find(key_);
  if (known != names.end() && known->second.sample_ == sample_) {
    use(table, key_, true, 0);
    return;
  }
  // The parts come first: what they add may make place by taking the name away.
  const std::uint64_t parts = usePart(Table::Prefixes, prefix, "xml") +
                              usePart(Table::NamespaceNames, uri, Tavrin::namespaces::xml) +
                              usePart(Table::LocalNames, localName, {});
  use(table, key_, true, 1 + parts);
}

void Candidates::forgetCheapest() {
  std::vector<std::uint64_t> saved;
  for (const Map& map : maps_) {
    for (const auto& entry : map) saved.push_back(mostSaved(entry.second));
  }
  if (saved.empty()) return;
  const auto middle = saved.begin() + static_cast<std::ptrdiff_t>(saved.size() / 2);
  std::nth_element(saved.begin(), middle, saved.end());
  // Of those that save as much, as many go as it takes to make it a half.
  auto equal = static_cast<std::uint64_t>(std::count(saved.begin(), middle, *middle)) + 1;
  for (Map& map : maps_) {
    std::erase_if(map, [&](const auto& entry) {
      const std::uint64_t octets = mostSaved(entry.second);
      const bool goes = octets < *middle || (octets == *middle && equal > 0);
      if (goes && octets == *middle) --equal;
      if (goes) octets_ -= entry.first.size() + kCandidateOctets;
      return goes;
    });
  }
}

}  // namespace tool
