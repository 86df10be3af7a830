#include <Tavrin/Factories.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLReader.h>
#include <Tavrin/XMLWriter.h>

#include <exception>
#include <memory>
#include <string>

#include "Commands.h"
#include "EntityFiles.h"
#include "Input.h"
#include "Output.h"
#include "Reading.h"
#include "Relay.h"
#include "TypeChoice.h"

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
  --entities        read external entities and the external subset, as far as they are files
  --from TYPE       the type of reader, instead of going by the first octets of IN
  --to TYPE         the type of writer, instead of going by the name of OUT: .fi, .finf and
                    .x3db mean Fast Infoset, any other name means XML text
  -h, --help        print this help

OUT appears when it is complete, and not at all if the work fails. Standard output may have
received a part of the document by then.

The copy has the elements, attributes, namespace declarations, text, comments, processing
instructions and CDATA sections, the document type, and in XML text the declarations of its
internal subset. In place of entities that are read stands their text. Typed content stays what it
is from Fast Infoset to Fast Infoset, and becomes text in XML text.

Without --entities, external entities and the external subset are not read: references to them
are copied. In an attribute value such a reference is not noticed if the document has an external
subset or refers to parameter entities: no text stands for it.

Fast Infoset has no form for some of a document type: the declarations of elements, attributes and
parsed entities, and comments. They are left out. A reference to an entity whose declaration was
lost in that way cannot be written in XML text, nor can the content of an unknown encoding
algorithm be written at all: the work fails.

All that is so for the types XML10 and X891, which are used where no other is named. Others keep
less: the README tells what.

Examples:
  tavrin convert --indent in.xml out.xml
  tavrin convert in.xml out.fi
)";

struct Options {
  std::string in;
  std::string out = "-";
  std::string from;
  std::string to;
  bool indent = false;
  bool noDeclaration = false;
  bool force = false;
  bool entities = false;
};

std::unique_ptr<Tavrin::XMLWriter> createWriter(const Options& options) {
  auto writer = Tavrin::XMLWriterFactory::createXMLWriter(
      options.to.empty() ? writerTypeFor(options.out) : options.to);
  if (options.indent) writer->setFeature(Tavrin::features::autoIndent, true);
  if (options.noDeclaration) writer->setFeature(Tavrin::features::xmlDeclaration, false);
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

ExitStatus convert(const Options& options) {
  Output output(options.out, options.force);
  const auto writer = createWriter(options);
  Input input(options.in, output.isTerminal());
  const auto reader = createReader(input, options.from);
  output.open();
  writer->setOutputStream(&output.stream());
  EntityFiles entities(options.in);
  Relay relay(*writer, &output, input);
  if (options.entities) relay.readEntities(&entities);
  relay.attachTo(*reader);
  parseInto(relay, *reader, input, entities);
  output.commit();
  return Done;
}

}  // namespace

Command makeConvert(CLI::App& app) {
  CLI::App* command = addCommand(app, "convert", kHelp);
  const auto options = std::make_shared<Options>();
  command->add_option("IN", options->in)->required();
  command->add_option("OUT", options->out);
  command->add_flag("--indent", options->indent);
  command->add_flag("--no-declaration", options->noDeclaration);
  command->add_flag("--force", options->force);
  command->add_flag("--entities", options->entities);
  command->add_option("--from", options->from)->type_name("TYPE");
  command->add_option("--to", options->to)->type_name("TYPE");
  return {command, [options] { return convert(*options); }};
}

}  // namespace tool
