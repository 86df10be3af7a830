#pragma once

#include <Tavrin/XMLReader.h>
#include <Tavrin/XMLWriter_X891.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "files/EntityFiles.h"
#include "files/Input.h"
#include "options/ReadingOptions.h"
#include "vocabularies/Candidates.h"

namespace tool {

/// Files whose documents are samples. They can be read any number of times: what comes from no file
/// is kept in a temporary one meanwhile.
class Samples {
 public:
  /// Prepares the writer of a sample.
  /// @param number of the sample, counted from 0
  using Preparation = std::function<void(Tavrin::XMLWriter_X891& writer, std::uint64_t number)>;

  Samples(const std::vector<std::string>& names, const ReadingOptions& options);

  /// Puts all that the samples have into candidates.
  void tally(Candidates& candidates);
  /// How many octets the samples take as Fast Infoset.
  std::uint64_t octetsWith(const Preparation& prepare);

 private:
  using Work = std::function<void(Tavrin::XMLReader& reader, Input& input, EntityFiles& entities)>;

  void forEach(const Work& work);

  struct File {
    std::string name;
    std::unique_ptr<Input> kept;  // Where it cannot be opened again.
    EntityFiles entities;         // It warns of each entity once.
  };

  const ReadingOptions& options_;
  std::vector<std::unique_ptr<File>> files_;
};

}  // namespace tool
