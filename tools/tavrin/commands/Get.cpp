#include <Tavrin/XMLReader.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "commands/Commands.h"
#include "files/EntityFiles.h"
#include "files/Input.h"
#include "files/Output.h"
#include "options/Numbers.h"
#include "options/ReadingOptions.h"
#include "paths/Finder.h"
#include "paths/PathParser.h"
#include "paths/Results.h"
#include "printing/Text.h"
#include "reading/Losses.h"
#include "reading/Reading.h"

namespace tool {

namespace {

constexpr char kGetHelp[] =
    R"(Prints what a path leads to in documents.

Usage: tavrin get [OPTIONS] PATH FILE...

  PATH              what to look for, in a part of XPath 1.0
  FILE              a document; - is standard input

Options:
  --ns PREFIX=URI   a prefix of PATH and its namespace name; may stand several times
  --ns =URI         the namespace name of elements that have no prefix in PATH
  --text            print elements as their text
  --json            print JSON lines
  --count           print how many results there are in each FILE
  --max NUMBER      end with so many results in each FILE; the rest of it is not read
  -0, --null        end each result with a zero octet instead of a line end
%options%
  --from TYPE       the type of reader, instead of going by the first octets of FILE
  -h, --help        print this help

PATH begins at the root of a document, and has a step for each level:

  /a/b              elements b directly inside of the root element a
  //b               elements b anywhere
  /a//b             elements b anywhere inside of a
  *, p:b, p:*       any element; b of the namespace of p; any of it
  *:b               b of any namespace, and of none
  @x, @p:x, @*      as the last step: attributes
  text()            as the last step: texts between tags, comments and instructions
  comment(), processing-instruction(), processing-instruction('TARGET')
                    as the last step
  PATH | PATH       what one or the other leads to, once

A step may have predicates behind it, which all have to be true:

  [@x]              it has an attribute x
  [@x='v']          the value of x is v; in quotes of either kind
  [@x!='v']         it has an attribute x of another value
  [2]               it is the second one of its parent that the step, and the predicates in front,
                    lead to
  [position()<3]    likewise; also =, !=, <=, > and >=

Every result is printed on a line, in the order of the document: elements as XML text that is
well-formed by itself, as it declares all namespaces that are in scope there, and anything else as
its value. A line end that a result holds is printed as it is; --null and --json tell where a result
ends. An element inside of another one, if both are results, comes in it and once more behind it.

With --json, a value is a string, and so is an element with --text. Other elements are objects:
"name", "uri" if it has a namespace, "attributes" if it has any, and "content", an array of strings,
elements, {"comment":...} and {"target":...,"data":...}. Of several FILEs the name stands in every
line:

  {"file":"a.xml","value":"v"}

An entity that was not read ends a document where a result would lack it. Elsewhere the first one is
told of on standard error.

%limits%

The exit status is 0 if something was found in any FILE, and 1 if not, or if a document cannot be
read to its end. What was found before is printed.

Example:
  tavrin get --ns m=urn:menu '//m:dish[@price]/m:name/text()' menu.xml menu.fi
)";

struct GetOptions {
  std::string path;
  std::vector<std::string> files;
  PathNamespaces namespaces;
  bool isText = false;
  bool isJSON = false;
  bool count = false;
  bool null = false;
  std::uint64_t most = Finder::kAll;
  ReadingOptions reading;
};

/// Reads the document into the finder. Of all failures the one is thrown that led to the others.
void parseInto(Finder& finder, Tavrin::XMLReader& reader, Input& input,
               const EntityFiles& entities) {
  try {
    parse(reader, input, &entities);
  } catch (...) {
    finder.check();
    throw;
  }
  finder.check();
}

/// What is done for every file.
class Getter {
 public:
  Getter(const GetOptions& options, Output& output)
      : options_(options), paths_(parsePaths(options.path, options.namespaces)), output_(output) {}

  /// Prints what a file holds. Returns whether it holds anything.
  bool get(const std::string& name) {
    Input input(name, output_.isTerminal());
    EntityFiles entities(name, options_.reading.entityAccess());
    std::optional<Results> results;
    if (!options_.count) results.emplace(output_.stream(), formatFor(name));
    Finder finder(paths_, results ? &*results : nullptr, options_.most, input, entities.resolver());
    while (!finder.hasEnough()) {
      const auto reader = nextReader(input, options_.reading);
      if (!reader) break;
      const Losses losses(*reader, input, warn);
      finder.attachTo(*reader);
      parseInto(finder, *reader, input, entities);
    }
    if (options_.count) printCount(name, finder.found());
    return finder.found() > 0;
  }

 private:
  bool namesFiles() const { return options_.files.size() > 1; }

  ResultFormat formatFor(const std::string& name) const {
    return {options_.isJSON, options_.isText, end(),
            namesFiles() && options_.isJSON ? name : std::string()};
  }

  char end() const { return options_.null ? '\0' : '\n'; }

  void printCount(const std::string& name, std::uint64_t count) {
    std::string line = std::to_string(count);
    if (namesFiles() && options_.isJSON) {
      std::string object = "{\"file\":";
      appendQuoted(object, name);
      line = object + ",\"value\":" + line + "}";
    } else if (namesFiles()) {
      line = escaped(name) + ": " + line;
    }
    output_.stream() << line << end();
  }

  const GetOptions& options_;
  Paths paths_;
  Output& output_;
};

ExitStatus get(const GetOptions& options) {
  options.reading.properties.requireNamespaces("get");
  Output output("-", false);
  Getter getter(options, output);
  output.open();
  ExitStatus worst = Done;
  bool found = false;
  for (const std::string& file : options.files) {
    try {
      found = getter.get(file) || found;
    } catch (const Failure& failure) {
      output.flush();  // What came before the failure is shown. A failure to write it comes first.
      failure.report();
      worst = std::max(worst, failure.status());
    } catch (const std::exception&) {
      output.flush();
      throw;
    }
    output.flush();
  }
  output.commit();
  return worst == Done && !found ? DocumentFailed : worst;
}

}  // namespace

Command makeGet(CLI::App& app) {
  CLI::App* command = addReadingCommand(app, "get", kGetHelp);
  const auto options = std::make_shared<GetOptions>();
  command->add_option("PATH", options->path)->required();
  command->add_option("FILE", options->files)->required();
  command
      ->add_option_function<std::vector<std::string>>(
          "--ns",
          [options](const std::vector<std::string>& settings) {
            for (const std::string& setting : settings) options->namespaces.add(setting);
          })
      ->type_name("PREFIX=URI")
      ->allow_extra_args(false);
  command->add_flag("--text", options->isText);
  command->add_flag("--json", options->isJSON);
  command->add_flag("--count", options->count);
  command->add_flag("-0,--null", options->null);
  command->add_option("--max", options->most)->type_name("NUMBER")->check(whyNotCount);
  addReadingOptions(*command, options->reading);
  command->add_option("--from", options->reading.from)->type_name("TYPE");
  return {command, [options] { return get(*options); }};
}

}  // namespace tool
