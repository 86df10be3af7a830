#include <Tavrin/Factories.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/TypedData.h>
#include <Tavrin/XMLReader.h>
#include <Tavrin/XMLWriter.h>

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <utility>

#include "Commands.h"
#include "EntityDeclarations.h"
#include "EntityFiles.h"
#include "Input.h"
#include "Losses.h"
#include "Output.h"
#include "Reading.h"
#include "ReadingOptions.h"
#include "Relay.h"
#include "TypeChoice.h"
#include "WayBack.h"

namespace tool {

namespace {

constexpr char kHelp[] =
    R"(Copies a document, in the same format or in another.

Usage: tavrin convert [OPTIONS] IN [OUT]

  IN                the document to read; - is standard input
  OUT               where to write it; - or nothing is standard output

Options:
  --indent          begin every tag, comment and instruction on a line of its own, but for
                    elements that have text, and what is within them
  --no-declaration  write no XML declaration at the beginning; both are for XML text only
  --force           replace OUT if it exists
  --lossy           go on, with a warning, where an attribute value refers to an entity that is not
                    read: the copy has nothing in its place
  --document N      copy the Nth of the documents in IN alone; what stands behind it is not read
%options%
  --from TYPE       the type of reader, instead of going by the first octets of IN
  --to TYPE         the type of writer, instead of going by the name of OUT: .fi, .finf and
                    .x3db mean Fast Infoset, any other name means XML text
  -h, --help        print this help

In Fast Infoset, documents may follow each other in IN. All are copied to Fast Infoset. XML text
holds one alone: if there are more, the work fails unless --document tells which to copy.

OUT appears when it is complete, and not at all if the work fails. Standard output may have
received a part of the document by then.

The copy has the elements, attributes, namespace declarations, text, comments, processing
instructions and CDATA sections, the document type, and in XML text the declarations of its
internal subset. In place of entities that are read stands their text. Typed content stays what it
is from Fast Infoset to Fast Infoset, and becomes text in XML text.

Without --entities, external entities and the external subset are not read: references to them
are copied. In an attribute value there is no place for one: the work fails, unless --entities finds
the entity or --lossy allows the loss.

Fast Infoset has no form for some of a document type: the declarations of elements, attributes and
parsed entities, and comments. They are left out. What is left of an entity are its identifiers,
with the references to it; a copy in XML text declares it again. For that, a document that has a
document type is read twice, and kept in a temporary file meanwhile if it is not read from one. A
reference without identifiers, which nothing outside of the document may declare, cannot be written
in XML text: the work fails, and when the copy in Fast Infoset was made there was a warning on
standard error. The content of an unknown encoding algorithm cannot be written at all.

%limits%

--limit maximum-table-octets counts for the tables of a copy in Fast Infoset, too.

All that is so for the types XML10 and X891, which are used where no other is named. Others keep
less: the README tells what.

Examples:
  tavrin convert --indent in.xml out.xml
  tavrin convert in.xml out.fi
)";

struct Options {
  std::string in;
  std::string out = "-";
  std::string to;
  bool indent = false;
  bool noDeclaration = false;
  bool force = false;
  bool lossy = false;
  std::uint64_t document = 0;  // The one to copy, counted from 1; 0 for all.
  ReadingOptions reading;
};

std::unique_ptr<Tavrin::XMLWriter> createWriter(const Options& options) {
  auto writer = tool::createWriter(options.to.empty() ? writerTypeFor(options.out) : options.to);
  if (options.indent) writer->setFeature(Tavrin::features::autoIndent, true);
  if (options.noDeclaration) writer->setFeature(Tavrin::features::xmlDeclaration, false);
  options.reading.limits.applyTo(*writer);
  return writer;
}

/// Reads the document into the relay. Of all failures the one is thrown that led to the others.
void parseInto(Relay& relay, Tavrin::XMLReader& reader, Input& input, const EntityFiles& entities) {
  try {
    parse(reader, input, &entities);
  } catch (...) {
    relay.check();
    throw;
  }
  relay.check();
}

/// Reads a document that is not to be copied.
void skip(Tavrin::XMLReader& reader, Input& input) {
  AnyAlgorithm anyAlgorithm;
  connect(reader, anyAlgorithm);
  parse(reader, input);
}

/// Copies documents from an input, each with a writer of its own.
class Copier {
 public:
  /// @param writer for the first document
  Copier(const Options& options, Input& input, Output& output,
         std::unique_ptr<Tavrin::XMLWriter> writer)
      : options_(options),
        input_(input),
        output_(output),
        entities_(options.in, options.reading.entityAccess()),
        isText_(!dynamic_cast<Tavrin::EncodingAlgorithmContentHandler*>(writer.get())),
        writer_(std::move(writer)) {}

  /// @param reader for the first document
  void copyAll(std::unique_ptr<Tavrin::XMLReader> reader) {
    for (; reader; reader = nextReader(input_, options_.reading)) {
      const std::uint64_t number = input_.documentNumber();
      if (options_.document == 0) {
        if (isText_ && number > 1) refuseSecond();
        copy(*reader);
      } else if (number < options_.document) {
        skip(*reader, input_);
      } else {
        return copy(*reader);
      }
    }
    if (options_.document == 0) return;
    throw Failure::document(input_.name(),
                            "There is no document " + std::to_string(options_.document));
  }

 private:
  void copy(Tavrin::XMLReader& reader) {
    if (!writer_) writer_ = createWriter(options_);
    Relay relay(*writer_, &output_, input_, entities_.resolver());
    relay.expectFrom(reader);
    EntityDeclarations declarations;
    if (relay.needsEntityDeclarations()) declarations.findIn(reader, input_);
    relay.declare(&declarations);
    WayBack wayBack(reader);
    if (relay.mayLackWayBack()) relay.watch(&wayBack);
    relay.attachTo(reader);
    // What cannot be read to its end is read only for the failure that comes first.
    if (declarations.areComplete()) writer_->setOutputStream(&output_.stream());
    const Losses losses(reader, input_, [this](const auto& place, const auto& message) {
      if (options_.lossy) return warn(place, message);
      throw Failure::document(place, message + " (see --entities and --lossy)");
    });
    parseInto(relay, reader, input_, entities_);
    declarations.check();  // A file may have changed meanwhile.
    writer_.reset();       // Nothing of a document shall show in the next.
  }

  [[noreturn]] void refuseSecond() const {
    throw Failure::document(placeIn(input_.name(), input_.documentStart() + 1),
                            "A second document begins here, and XML text holds one (see "
                            "--document)");
  }

  const Options& options_;
  Input& input_;
  Output& output_;
  EntityFiles entities_;
  bool isText_;
  std::unique_ptr<Tavrin::XMLWriter> writer_;
};

ExitStatus convert(const Options& options) {
  Output output(options.out, options.force);
  auto writer = createWriter(options);
  Input input(options.in, output.isTerminal());
  auto reader = nextReader(input, options.reading);
  output.open();
  Copier(options, input, output, std::move(writer)).copyAll(std::move(reader));
  output.commit();
  return Done;
}

}  // namespace

Command makeConvert(CLI::App& app) {
  CLI::App* command = addReadingCommand(app, "convert", kHelp);
  const auto options = std::make_shared<Options>();
  command->add_option("IN", options->in)->required();
  command->add_option("OUT", options->out);
  command->add_flag("--indent", options->indent);
  command->add_flag("--no-declaration", options->noDeclaration);
  command->add_flag("--force", options->force);
  command->add_flag("--lossy", options->lossy);
  command->add_option("--document", options->document)
      ->type_name("N")
      ->check([](const std::string& text) {
        const bool isNumber = text.find_first_not_of("0123456789") == std::string::npos;
        const bool isPositive = text.find_first_not_of('0') != std::string::npos;
        return isNumber && isPositive ? "" : "\"" + text + "\" is not the number of a document";
      });
  addReadingOptions(*command, options->reading);
  command->add_option("--from", options->reading.from)->type_name("TYPE");
  command->add_option("--to", options->to)->type_name("TYPE");
  return {command, [options] { return convert(*options); }};
}

}  // namespace tool
