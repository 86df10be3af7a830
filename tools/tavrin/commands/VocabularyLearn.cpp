#include "commands/VocabularyLearn.h"

#include <Tavrin/OwnedVocabulary.h>
#include <Tavrin/XMLWriter_X891.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <iomanip>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "files/OctetCounter.h"
#include "files/Output.h"
#include "options/Numbers.h"
#include "options/ReadingOptions.h"
#include "vocabularies/Candidates.h"
#include "vocabularies/Choice.h"
#include "vocabularies/Samples.h"
#include "vocabularies/VocabularyTables.h"

namespace tool {

namespace {

constexpr char kVocabularyLearnHelp[] =
    R"(Makes a vocabulary of what samples have in common, and tells what it saves.

Usage: tavrin vocabulary learn [OPTIONS] SAMPLE...

  SAMPLE            a file; each of its documents, in XML text or in Fast Infoset, is a sample;
                    - is standard input

Options:
  -o OUT            where to write the vocabulary; - is standard output, and nothing is told there
                    then; without -o it is not written
  --force           replace OUT if it exists
  --initial         make a vocabulary that documents begin with, instead of one that they refer to:
                    each of its entries saves more than it takes in every document
  --maximum-entries N
                    at most so many entries, those that save most
  --longest N       octets of the longest string that may be an entry (1024)
  --memory N        octets that strings of the samples may take in memory, about, maybe with K, M
                    or G behind it (512M)
%options%
  --from TYPE       the type of reader, instead of going by the first octets of SAMPLE
  -h, --help        print this help

Entries are names of elements and attributes with what these need, attribute values, runs of
character data, namespaces, and the strings of comments, instructions and the document type. Each
saves octets: used as often as in the samples, its number takes fewer than the writer X891 spends
without it. Of several samples, only what two of them have in common is an entry. What is used most
has the lowest numbers, which take one octet.

What the vocabulary comes to is printed, in octets, as the writer X891 has counted them:

  samples
  entries                    in all tables
  octets of the vocabulary   of the file
  as Fast Infoset            all samples without a vocabulary
  with the vocabulary        all samples, and what is left of their size
  with one of the others     each sample with a vocabulary that was learned without it; of more than
                             10 samples, without every tenth from it on. So much is left of a
                             document that is not among the samples

In the last two, a sample refers to the vocabulary by a URI of 16 octets; one that is shorter or
longer by an octet makes each document so. With --initial the vocabulary is in the sample.

All samples are read several times. Memory grows with their distinct strings: of those that are
longer than --longest nothing is kept, and where the others take more than --memory, the half that
takes the fewest octets in the samples is forgotten.

%limits%

Example:
  tavrin vocabulary learn -o orders.fi order-*.xml
)";

constexpr char kURI[] = "urn:vocabulary:1";

struct VocabularyLearnOptions {
  std::vector<std::string> samples;
  std::string out;
  bool force = false;
  std::size_t longest = 1024;
  std::uint64_t memory = std::uint64_t{512} << 20;
  ChoiceOptions choice;
  ReadingOptions reading;
};

/// What is printed of a vocabulary.
struct Outcome {
  std::uint64_t samples;
  std::uint64_t entries;
  std::uint64_t octets;
  std::uint64_t without;
  std::uint64_t with;
  std::uint64_t withOthers;
};

std::ostream& label(std::ostream& out, const char* text) {
  return out << std::left << std::setw(26) << text;
}

std::string partOf(std::uint64_t octets, std::uint64_t all) {
  char text[64];
  std::snprintf(text, sizeof text, "%llu (%.1f %%)", static_cast<unsigned long long>(octets),
                100 * static_cast<double>(octets) / static_cast<double>(all));
  return text;
}

void print(std::ostream& out, const Outcome& outcome) {
  label(out, "samples") << outcome.samples << '\n';
  label(out, "entries") << outcome.entries << '\n';
  label(out, "octets of the vocabulary") << outcome.octets << '\n';
  label(out, "as Fast Infoset") << outcome.without << '\n';
  label(out, "with the vocabulary") << partOf(outcome.with, outcome.without) << '\n';
  label(out, "with one of the others")
      << (outcome.samples > 1 ? partOf(outcome.withOthers, outcome.without)
                              : "impossible: there are no others")
      << '\n';
}

void setVocabulary(Tavrin::XMLWriter_X891& writer, const Tavrin::OwnedVocabulary& vocabulary,
                   const ChoiceOptions& options) {
  if (options.isInitial) {
    writer.setInitialVocabulary(vocabulary);
  } else {
    writer.setExternalVocabulary(kURI, vocabulary);
  }
}

std::uint64_t octetsOf(const Tavrin::OwnedVocabulary& vocabulary) {
  OctetCounter octets;
  std::ostream stream(&octets);
  vocabulary.write(stream);
  return octets.count();
}

/// Octets of the samples, each with a vocabulary that was learned without it.
std::uint64_t octetsWithOthers(Samples& samples, const Candidates& candidates,
                               const ChoiceOptions& options) {
  std::vector<Tavrin::OwnedVocabulary> others;
  const std::uint64_t folds = std::min<std::uint64_t>(Candidates::kFolds, candidates.samples());
  for (unsigned fold = 0; fold < folds; ++fold) {
    others.push_back(chooseVocabulary(candidates, fold, options));
  }
  return samples.octetsWith([&](Tavrin::XMLWriter_X891& writer, std::uint64_t number) {
    setVocabulary(writer, others.at(number % folds), options);
  });
}

Outcome measure(Samples& samples, const Candidates& candidates,
                const Tavrin::OwnedVocabulary& vocabulary, const ChoiceOptions& options) {
  Outcome outcome{};
  outcome.samples = candidates.samples();
  outcome.entries = entriesOf(vocabulary);
  outcome.octets = octetsOf(vocabulary);
  outcome.without = samples.octetsWith([](Tavrin::XMLWriter_X891&, std::uint64_t) {});
  outcome.with = samples.octetsWith([&](Tavrin::XMLWriter_X891& writer, std::uint64_t) {
    setVocabulary(writer, vocabulary, options);
  });
  if (outcome.samples > 1) outcome.withOthers = octetsWithOthers(samples, candidates, options);
  return outcome;
}

ExitStatus learn(const VocabularyLearnOptions& options) {
  options.reading.properties.requireNamespaces("vocabulary learn");
  const bool writes = !options.out.empty();
  Output file(writes ? options.out : "-", options.force);
  Samples samples(options.samples, options.reading);
  Candidates candidates(options.longest, options.memory);
  samples.tally(candidates);
  const Tavrin::OwnedVocabulary vocabulary =
      chooseVocabulary(candidates, Candidates::kNoFold, options.choice);
  if (options.out == "-") {
    file.open();
    vocabulary.write(file.stream());
    file.commit();
    return Done;
  }
  const Outcome outcome = measure(samples, candidates, vocabulary, options.choice);
  if (writes) {
    file.open();
    vocabulary.write(file.stream());
    file.commit();
  }
  Output report("-", false);
  report.open();
  print(report.stream(), outcome);
  report.commit();
  return Done;
}

}  // namespace

Command makeLearn(CLI::App& vocabulary) {
  CLI::App* command = addReadingCommand(vocabulary, "learn", kVocabularyLearnHelp);
  const auto options = std::make_shared<VocabularyLearnOptions>();
  command->add_option("SAMPLE", options->samples)->required();
  command->add_option("-o", options->out)->type_name("OUT");
  command->add_flag("--force", options->force);
  command->add_flag("--initial", options->choice.isInitial);
  command->add_option("--maximum-entries", options->choice.mostEntries)
      ->type_name("N")
      ->check(whyNotCount);
  command->add_option("--longest", options->longest)->type_name("N")->check(whyNotCount);
  command
      ->add_option_function<std::string>(
          "--memory",
          [options](const std::string& text) { options->memory = countFrom(*numberFrom(text)); })
      ->type_name("N")
      ->check(whyNotNumber);
  addReadingOptions(*command, options->reading);
  command->add_option("--from", options->reading.from)->type_name("TYPE");
  return {command, [options] { return learn(*options); }};
}

}  // namespace tool
