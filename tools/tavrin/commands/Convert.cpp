#include <memory>
#include <string>

#include "commands/Commands.h"
#include "copying/Conversion.h"
#include "options/EncodingOption.h"
#include "options/ReadingOptions.h"

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
%encoding option%
%compression option%
%options%
  --from TYPE       the type of reader, instead of going by the first octets of IN
  --to TYPE         the type of writer, instead of going by the name of OUT: .fi, .finf and
                    .x3db mean Fast Infoset, any other name means XML text
  -h, --help        print this help

In Fast Infoset, documents may follow each other in IN. All are copied to Fast Infoset. XML text
holds one alone: if there are more, the work fails unless --document tells which to copy.

OUT appears when it is complete, and not at all if the work fails. Standard output may have
received a part of the document by then.

%compression%

%encoding%

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

struct Options : ConversionOptions {
  std::string in;
  std::string out = "-";
};

ExitStatus convert(const Options& options) {
  convertFile(options, options.in, options.out);
  return Done;
}

}  // namespace

Command makeConvert(CLI::App& app) {
  std::string help = kHelp;
  replaceLine(help, "%encoding option%\n", kEncodingOptionHelp);
  replaceLine(help, "%encoding%\n", kEncodingHelp);
  replaceLine(help, "%compression option%\n", kCompressionOptionHelp);
  replaceLine(help, "%compression%\n", kCompressionHelp);
  CLI::App* command = addReadingCommand(app, "convert", help);
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
  addEncodingOption(*command, options->encoding);
  addCompressionOptions(*command, options->compression);
  command->add_option("--from", options->reading.from)->type_name("TYPE");
  command->add_option("--to", options->to)->type_name("TYPE");
  return {command, [options] { return convert(*options); }};
}

}  // namespace tool
