#include <Tavrin/Factories.h>
#include <Tavrin/XMLReader.h>
#include <Tavrin/XMLWriter.h>

#include <algorithm>
#include <iomanip>
#include <memory>
#include <streambuf>
#include <string>
#include <vector>

#include "Commands.h"
#include "DocumentCounter.h"
#include "Input.h"
#include "Output.h"
#include "Reading.h"
#include "Relay.h"
#include "Text.h"
#include "TypeChoice.h"

namespace tool {

namespace {

constexpr char kHelp[] =
    R"(Counts what documents hold.

Usage: tavrin stat [OPTIONS] FILE...

  FILE              a document; - is standard input

Options:
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

If there can be no such copy, the reason stands in place of the size.

Example:
  tavrin stat in.xml in.fi
)";

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

OtherEncoding otherEncodingOf(Input& input) {
  return readerTypeFor(input.firstOctets()) == "X891" ? OtherEncoding{"XML10", "as XML text"}
                                                      : OtherEncoding{"X891", "as Fast Infoset"};
}

template <typename Value>
void printLine(std::ostream& out, const char* label, const Value& value) {
  out << "  " << std::left << std::setw(25) << label << value << '\n';
}

void print(std::ostream& out, const Input& input, const DocumentCounter& counter,
           const char* otherLabel, std::uint64_t otherSize) {
  const DocumentCounter::Counts& counts = counter.counts();
  out << oneLine(input.name()) << '\n';
  printLine(out, "octets", input.octetsRead());
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

/// Prints a block about a document, with an empty line in front unless it is the first.
void statFile(const std::string& name, const std::string& from, Output& output, bool isFirst) {
  Input input(name);
  const OtherEncoding other = otherEncodingOf(input);
  const auto reader = createReader(input, from);
  const auto writer = Tavrin::XMLWriterFactory::createXMLWriter(other.type);
  OctetCounter octets;
  std::ostream copy(&octets);
  writer->setOutputStream(&copy);
  Relay relay(*writer, nullptr, input);
  DocumentCounter counter(relay);
  counter.attachTo(*reader);
  try {
    parse(*reader, input);
  } catch (...) {
    if (counter.refusal().empty()) relay.check();  // The reader may have kept it to itself.
    throw;
  }
  if (!isFirst) output.stream() << '\n';
  print(output.stream(), input, counter, other.label, octets.count());
}

struct Options {
  std::vector<std::string> files;
  std::string from;
};

ExitStatus stat(const Options& options) {
  Output output("-", false);
  output.open();
  ExitStatus worst = Done;
  bool isFirst = true;
  for (const std::string& file : options.files) {
    try {
      statFile(file, options.from, output, isFirst);
      isFirst = false;
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
  CLI::App* command = addCommand(app, "stat", kHelp);
  const auto options = std::make_shared<Options>();
  command->add_option("FILE", options->files)->required();
  command->add_option("--from", options->from)->type_name("TYPE");
  return {command, [options] { return stat(*options); }};
}

}  // namespace tool
