#include "vocabularies/Samples.h"

#include <Tavrin/XMLWriter_X891.h>

#include <filesystem>
#include <ostream>
#include <system_error>
#include <utility>

#include "copying/Relay.h"
#include "files/Failure.h"
#include "files/OctetCounter.h"
#include "reading/Losses.h"
#include "reading/Reading.h"
#include "vocabularies/SampleTally.h"

namespace tool {

namespace {

bool canBeOpenedAgain(const std::string& name) {
  std::error_code error;
  return name != "-" && std::filesystem::is_regular_file(name, error);
}

}  // namespace

Samples::Samples(const std::vector<std::string>& names, const ReadingOptions& options)
    : options_(options) {
  for (const std::string& name : names) {
    files_.push_back(
        std::make_unique<File>(File{name, nullptr, EntityFiles(name, options.entityAccess())}));
  }
}

/// Reads all documents of all files.
void Samples::forEach(const Work& work) {
  for (const auto& file : files_) {
    std::unique_ptr<Input> opened;
    if (file->kept) {
      file->kept->rewind();
    } else {
      opened = std::make_unique<Input>(file->name);
    }
    Input& input = opened ? *opened : *file->kept;
    if (!canBeOpenedAgain(file->name)) input.mark();
    while (const auto reader = nextReader(input, options_)) work(*reader, input, file->entities);
    if (!canBeOpenedAgain(file->name) && opened) file->kept = std::move(opened);
  }
}

void Samples::tally(Candidates& candidates) {
  forEach([&](Tavrin::XMLReader& reader, Input& input, EntityFiles& entities) {
    SampleTally tally(candidates, entities.resolver());
    tally.attachTo(reader);
    const Losses losses(reader, input, warn);
    parse(reader, input, &entities);
  });
}

std::uint64_t Samples::octetsWith(const Preparation& prepare) {
  OctetCounter octets;
  std::ostream copy(&octets);
  std::uint64_t number = 0;
  forEach([&](Tavrin::XMLReader& reader, Input& input, EntityFiles& entities) {
    Tavrin::XMLWriter_X891 writer;
    options_.limits.applyTo(writer);
    prepare(writer, number++);
    writer.setOutputStream(&copy);
    Relay relay(writer, nullptr, input, entities.resolver());
    attach(reader, relay, relay.takesDeclarations());
    try {
      parse(reader, input, &entities);
    } catch (...) {
      relay.check();  // The reader may have kept the first failure to itself.
      throw;
    }
    relay.check();
  });
  return octets.count();
}

}  // namespace tool
