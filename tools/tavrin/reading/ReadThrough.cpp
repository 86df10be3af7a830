#include "reading/ReadThrough.h"

#include <Tavrin/XMLReader.h>

#include "files/EntityFiles.h"
#include "files/Failure.h"
#include "files/Input.h"
#include "reading/Losses.h"
#include "reading/Reading.h"

namespace tool {

ReadThrough readThrough(const std::string& name, const ReadingOptions& options) {
  Input input(name);
  EntityFiles entities(name, options.entityAccess());
  while (const auto reader = nextReader(input, options)) {
    reader->setEntityResolver(entities.resolver());
    AnyAlgorithm anyAlgorithm;
    connect(*reader, anyAlgorithm);
    const Losses losses(*reader, input, warn, Losses::Warnings::All);
    parse(*reader, input, &entities);
  }
  return {input.documentNumber(), input.octetsRead()};
}

}  // namespace tool
