#include <Tavrin/Factories.h>
#include <Tavrin/XMLReader.h>
#include <Tavrin/XMLWriter.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "commands/Commands.h"
#include "copying/Relay.h"
#include "counting/DocumentCounter.h"
#include "files/EntityFiles.h"
#include "files/Input.h"
#include "files/OctetCounter.h"
#include "files/Output.h"
#include "many/Work.h"
#include "measuring/Measurement.h"
#include "measuring/Measurer.h"
#include "options/ReadingOptions.h"
#include "printing/StatPage.h"
#include "printing/Text.h"
#include "reading/Losses.h"
#include "reading/Reading.h"

namespace tool {

namespace {

constexpr char kStatHelp[] =
    R"(Counts what documents hold.

Usage: tavrin stat [OPTIONS] FILE...

  FILE              a document, or a folder: all documents in it and below it; - is standard input

Options:
%work%
  --html OUT        write a page that shows where the octets of FILE go, instead of the counts: by
                    kind and by element, as XML text and as Fast Infoset, and the strings that cost
                    most; there is one FILE then, and its documents are taken together
  --force           replace OUT if it exists
%options%
  --from TYPE       the type of reader, instead of going by the first octets of FILE
  -h, --help        print this help

For every FILE its name is printed, and below it these counts, a line each:

  octets                   the document's size
  elements
  attributes               without namespace declarations
  distinct names           of elements and attributes: namespace name and name with prefix
  text octets              octets of the text between tags, in UTF-8
  attribute value octets   octets of the values of attributes, typed ones as text
  comments
  processing instructions
  depth                    how many elements are open at the most
  typed values             typed contents and attributes with a typed value
  typed items              numbers, truth values, UUIDs or octets in all of these
  as Fast Infoset          the size of the copy that tavrin convert would make; of a document
  as XML text              in Fast Infoset that in XML text, of any other that in Fast Infoset

If there can be no such copy, the reason stands in place of the size. With --entities, entities
count where they are referred to; comments and instructions of the external subset do not count.

Where documents follow each other in FILE, as they may in Fast Infoset, there is a block for each:
its head is "FILE, document 1", "FILE, document 2" and so on.

%folders%

The page of --html stands alone and needs neither scripts nor the network. OUT appears when it is
complete; - is standard output. Memory does not grow with the document: at most 10000 paths, of 64
levels, and 20000 strings are counted apart, by their first octets; the page tells of the others.

%limits%

Examples:
  tavrin stat in.xml in.fi
  tavrin stat --html octets.html in.xml
)";

struct StatOptions {
  std::vector<std::string> files;
  std::string page;
  bool force = false;
  ReadingOptions reading = ReadingOptions(Properties::Owners::ReadersAndWriters);
  WorkOptions work;
};

/// The encoding that a document is not in: the writer's type, and what it is called.
struct OtherEncoding {
  const char* type;
  const char* label;
};

OtherEncoding otherEncodingOf(Tavrin::XMLReader& reader) {
  return knowsTypedContent(reader) ? OtherEncoding{"XML10", "as XML text"}
                                   : OtherEncoding{"X891", "as Fast Infoset"};
}

void printLine(std::string& out, const char* label, const std::string& value) {
  constexpr std::size_t kValues = 25;
  std::string column = label;
  column.resize(std::max(column.size(), kValues), ' ');
  out += "  " + column + value + "\n";
}

void printLine(std::string& out, const char* label, std::uint64_t value) {
  printLine(out, label, std::to_string(value));
}

void print(std::string& out, const Input& input, const DocumentCounter& counter,
           const char* otherLabel, std::uint64_t otherSize) {
  const DocumentCounter::Counts& counts = counter.counts();
  printLine(out, "octets", input.octetsRead() - input.documentStart());
  printLine(out, "elements", counts.elements);
  printLine(out, "attributes", counts.attributes);
  printLine(out, "distinct names", counter.distinctNames());
  printLine(out, "text octets", counts.textOctets);
  printLine(out, "attribute value octets", counts.attributeOctets);
  printLine(out, "comments", counts.comments);
  printLine(out, "processing instructions", counts.instructions);
  printLine(out, "depth", counts.depth);
  printLine(out, "typed values", counts.typedValues);
  printLine(out, "typed items", counts.typedItems);
  if (counter.refusal().empty()) {
    printLine(out, otherLabel, otherSize);
  } else {
    printLine(out, otherLabel, "impossible: " + counter.refusal());
  }
}

/// The first line of a block. Whether other documents follow shows only behind the first.
std::string headOf(Input& input) {
  const bool isOnly = input.documentNumber() == 1 && input.isAtEnd();
  const std::string number = ", document " + std::to_string(input.documentNumber());
  return escaped(input.name()) + (isOnly ? "" : number) + "\n";
}

/// Reads a document and returns a block about it.
std::string statDocument(Tavrin::XMLReader& reader, Input& input, const StatOptions& options,
                         EntityFiles& entities) {
  const OtherEncoding other = otherEncodingOf(reader);
  const auto writer = Tavrin::XMLWriterFactory::createXMLWriter(other.type);
  options.reading.applyTo(*writer, false);
  if (!knowsTypedContent(reader)) options.reading.vocabularies.applyTo(*writer);
  OctetCounter octets;
  std::ostream copy(&octets);
  writer->setOutputStream(&copy);
  Relay relay(*writer, nullptr, input);
  relay.expectFrom(reader);
  EntityDeclarations declarations;
  if (relay.needsEntityDeclarations()) declarations.findIn(reader, input);
  relay.declare(&declarations);
  DocumentCounter counter(relay, entities.resolver());
  counter.attachTo(reader);
  const Losses losses(reader, input, [&counter](const auto& place, const auto& message) {
    counter.refuse(Failure::document(place, message));
  });
  try {
    parse(reader, input, &entities);
    declarations.check();  // A file may have changed meanwhile.
  } catch (...) {
    if (counter.refusal().empty()) relay.check();  // The reader may have kept it to itself.
    throw;
  }
  std::string block = headOf(input);
  print(block, input, counter, other.label, octets.count());
  return block;
}

ExitStatus statFile(const std::string& name, const StatOptions& options, Turn& turn) {
  Input input(name);
  EntityFiles entities(name, options.reading.entityAccess());
  while (const auto reader = nextReader(input, options.reading)) {
    turn.printBlock(statDocument(*reader, input, options, entities));
    turn.flush();
  }
  return Done;
}

/// Measures all documents of a file, and writes a page about them.
void writePage(const std::string& name, const StatOptions& options) {
  Output output(options.page, options.force);
  Input input(name, output.isTerminal());
  EntityFiles entities(name, options.reading.entityAccess());
  Measurement measurement;
  measurement.name = name;
  while (const auto reader = nextReader(input, options.reading)) {
    measurement.encoding = knowsTypedContent(*reader) ? Encoding::Binary : Encoding::Text;
    Measurer(measurement, input, options.reading, entities).measure(*reader);
  }
  measurement.octets = input.octetsRead();
  output.open();
  writeStatPage(output.stream(), measurement);
  output.commit();
}

ExitStatus stat(const StatOptions& options) {
  options.reading.properties.requireNamespaces("stat");
  if (!options.page.empty()) {
    if (options.files.size() > 1) throw Failure::usage("--html takes one FILE");
    writePage(options.files[0], options);
    return Done;
  }
  Documents documents;
  for (const std::string& file : options.files) documents.add(file);
  const auto work = [&](const Document& document, std::size_t, Turn& turn) {
    return statFile(document.name, options, turn);
  };
  return std::max(workOnAll(documents.all(), options.work, work), documents.status());
}

}  // namespace

Command makeStat(CLI::App& app) {
  CLI::App* command =
      addReadingCommand(app, "stat", kStatHelp, Properties::Owners::ReadersAndWriters);
  const auto options = std::make_shared<StatOptions>();
  command->add_option("FILE", options->files)->required();
  addWorkOptions(*command, options->work);
  command->add_option("--html", options->page)->type_name("OUT");
  command->add_flag("--force", options->force);
  addReadingOptions(*command, options->reading, VocabularyUse::Copying);
  command->add_option("--from", options->reading.from)->type_name("TYPE");
  return {command, [options] { return stat(*options); }};
}

}  // namespace tool
