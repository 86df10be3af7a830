// Readers and writers beside their peers, on the same documents and with the same work per event.
//
//   bench_tavrin [--scale=F] [--benchmark_...] [FILE...]
//   bench_tavrin [--scale=F] --write-documents=DIRECTORY [FILE...]
//
// --scale multiplies the sizes of the generated documents; files are measured beside them.

#include <Tavrin/Tavrin.h>
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <exception>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "corpus.h"
#include "files.h"
#include "groups.h"
#include "peak.h"

namespace {

struct Options {
  double scale = 1.0;
  std::string directory;  // To write documents to; empty to measure.
  std::vector<std::string> files;
};

/// The rest of an argument that begins like this.
std::optional<std::string> valueOf(std::string_view argument, std::string_view option) {
  if (!argument.starts_with(option)) return std::nullopt;
  return std::string(argument.substr(option.size()));
}

double positive(const std::string& text) {
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  if (!(number > 0 && number <= 1000) || *end != '\0') {
    throw std::runtime_error("--scale needs a number above 0 and up to 1000");
  }
  return number;
}

Options parse(int argc, char** argv) {
  Options options;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (const auto scale = valueOf(argument, "--scale=")) {
      options.scale = positive(*scale);
    } else if (const auto directory = valueOf(argument, "--write-documents=")) {
      if (directory->empty()) throw std::runtime_error("--write-documents needs a directory");
      options.directory = *directory;
    } else if (argument.starts_with("-")) {
      throw std::runtime_error("unknown option " + argument);
    } else {
      options.files.push_back(argument);
    }
  }
  return options;
}

void run(int argc, char** argv) {
  if (argc == 3) {
    if (const auto reader = valueOf(argv[1], peak::kOption)) return peak::report(*reader, argv[2]);
  }
  benchmark::Initialize(&argc, argv);
  const Options options = parse(argc, argv);
  const Corpus corpus(options.scale, options.files);
  if (!options.directory.empty()) return files::writeAll(corpus, options.directory);
  for (const auto addGroup :
       {groups::addReading, groups::addWriting, groups::addConversions, groups::addSiblings,
        groups::addFloats, groups::addBlocks, groups::addPulling, groups::addSmall,
        groups::addMessages, groups::addVocabularies, groups::addGrowth, groups::addMemory}) {
    addGroup(corpus);
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}

}  // namespace

int main(int argc, char** argv) {
  std::string message;
  try {
    run(argc, argv);
    return 0;
  } catch (const Tavrin::SAXException& exception) {
    message = exception.getMessage();
  } catch (const Tavrin::FastInfosetException& exception) {
    message = exception.getMessage();
  } catch (const std::exception& exception) {
    message = exception.what();
  }
  std::cerr << "bench_tavrin: " << message << '\n';
  return 2;
}
