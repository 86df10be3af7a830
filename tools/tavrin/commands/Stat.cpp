#include <Tavrin/Factories.h>
#include <Tavrin/XMLReader.h>
#include <Tavrin/XMLWriter.h>

#include <algorithm>
#include <iomanip>
#include <memory>
#include <streambuf>
#include <string>
#include <vector>

#include "commands/Commands.h"
#include "copying/Relay.h"
#include "counting/DocumentCounter.h"
#include "files/EntityFiles.h"
#include "files/Input.h"
#include "files/Output.h"
#include "measuring/Measurement.h"
#include "measuring/Measurer.h"
#include "options/ReadingOptions.h"
#include "printing/StatPage.h"
#include "printing/Text.h"
#include "reading/Losses.h"
#include "reading/Reading.h"

namespace tool {

namespace {

constexpr char kHelp[] =
    R"(Counts what documents hold.

Usage: tavrin stat [OPTIONS] FILE...

  FILE              a document; - is standard input

Options:
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

The page of --html stands alone and needs neither scripts nor the network. OUT appears when it is
complete; - is standard output. Memory does not grow with the document: at most 10000 paths, of 64
levels, and 20000 strings are counted apart, by their first octets; the page tells of the others.

%limits%

Examples:
  tavrin stat in.xml in.fi
  tavrin stat --html octets.html in.xml
)";

struct Options {
  std::vector<std::string> files;
  std::string page;
  bool force = false;
  ReadingOptions reading;
};

/// Takes everything and keeps only the number of octets.
class OctetCounter : public std::streambuf {
 public:
  std::uint64_t count() const { return count_; }

 protected:
  int_type overflow(int_type c) override {
    if (!traits_type::eq_int_type(c, traits_type::eof())) ++count_;
    return traits_type::not_eof(c);
  }
  std::streamsize xsputn(const char*, std::streamsize size) override {
    count_ += static_cast<std::uint64_t>(size);
    return size;
  }

 private:
  std::uint64_t count_ = 0;
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

template <typename Value>
void printLine(std::ostream& out, const char* label, const Value& value) {
  out << "  " << std::left << std::setw(25) << label << value << '\n';
}

void print(std::ostream& out, const Input& input, const DocumentCounter& counter,
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

/// Reads a document and prints a block about it, with an empty line in front unless it is the
/// first.
void statDocument(Tavrin::XMLReader& reader, Input& input, const Options& options,
                  EntityFiles& entities, std::ostream& out, bool& isFirst) {
  const OtherEncoding other = otherEncodingOf(reader);
  const auto writer = Tavrin::XMLWriterFactory::createXMLWriter(other.type);
  options.reading.limits.applyTo(*writer);
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
  out << (isFirst ? "" : "\n") << headOf(input);
  isFirst = false;
  print(out, input, counter, other.label, octets.count());
}

void statFile(const std::string& name, const Options& options, Output& output, bool& isFirst) {
  Input input(name);
  EntityFiles entities(name, options.reading.entityAccess());
  while (const auto reader = nextReader(input, options.reading)) {
    statDocument(*reader, input, options, entities, output.stream(), isFirst);
  }
}

/// Measures all documents of a file, and writes a page about them.
void writePage(const std::string& name, const Options& options) {
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

ExitStatus stat(const Options& options) {
  if (!options.page.empty()) {
    if (options.files.size() > 1) throw Failure::usage("--html takes one FILE");
    writePage(options.files[0], options);
    return Done;
  }
  Output output("-", false);
  output.open();
  ExitStatus worst = Done;
  bool isFirst = true;
  for (const std::string& file : options.files) {
    try {
      statFile(file, options, output, isFirst);
    } catch (const Failure& failure) {
      // By now a progress bar is gone.
      failure.report();
      worst = std::max(worst, failure.status());
    }
    output.flush();  // Both streams may end in one place, where the order of the lines counts.
  }
  return worst;
}

}  // namespace

Command makeStat(CLI::App& app) {
  CLI::App* command = addReadingCommand(app, "stat", kHelp);
  const auto options = std::make_shared<Options>();
  command->add_option("FILE", options->files)->required();
  command->add_option("--html", options->page)->type_name("OUT");
  command->add_flag("--force", options->force);
  addReadingOptions(*command, options->reading);
  command->add_option("--from", options->reading.from)->type_name("TYPE");
  return {command, [options] { return stat(*options); }};
}

}  // namespace tool
