#include <Tavrin/Factories.h>

#include "commands/Commands.h"
#include "files/Output.h"

namespace tool {

namespace {

constexpr char kTypesHelp[] =
    R"(Lists the readers and writers there are.

Usage: tavrin types [OPTIONS]

Options:
  -h, --help        print this help

Every line is "reader" or "writer" and the name that --from or --to takes, in upper or lower case.

Example:
  tavrin types
)";

ExitStatus types() {
  Output output("-", false);
  output.open();
  for (const auto& name : Tavrin::XMLReaderFactory::getTypeNames()) {
    output.stream() << "reader " << name << "\n";
  }
  for (const auto& name : Tavrin::XMLWriterFactory::getTypeNames()) {
    output.stream() << "writer " << name << "\n";
  }
  output.commit();
  return Done;
}

}  // namespace

Command makeTypes(CLI::App& app) {
  CLI::App* command = addCommand(app, "types", kTypesHelp);
  return {command, types};
}

}  // namespace tool
