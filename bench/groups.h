#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

#include "corpus.h"

/// The groups of benchmarks. A name is GROUP/DOCUMENT/TYPE.
namespace groups {

void addReading(const Corpus& corpus);
void addWriting(const Corpus& corpus);
void addConversions(const Corpus& corpus);
void addSiblings(const Corpus& corpus);
void addFloats(const Corpus& corpus);
void addBlocks(const Corpus& corpus);
void addPulling(const Corpus& corpus);
void addSmall(const Corpus& corpus);
void addMessages(const Corpus& corpus);
void addVocabularies(const Corpus& corpus);
void addGrowth(const Corpus& corpus);
void addMemory(const Corpus& corpus);

// --- For the groups themselves ---

/// A job beside its baseline.
struct Comparison {
  std::function<void()> job;
  std::function<void()> baseline;
  std::size_t octets = 0;  ///< What the job reads or writes.
  unsigned runs = 1;       ///< How often job and baseline do their work each time.
};

/// Registers a comparison, which is prepared when it is first run, so that only what is selected
/// costs. An exception while it is prepared is an error of the benchmark; with a document from
/// outside, the benchmark is left out and standard error told why.
void add(const std::string& name, const DocumentPointer& document,
         std::function<Comparison()> prepare);

/// Registers a benchmark that keeps its own counters, under the same rules.
void add(const std::string& name, const DocumentPointer& document, std::function<void()> prepare,
         std::function<void(benchmark::State&)> run);

}  // namespace groups
