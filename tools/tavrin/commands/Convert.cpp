#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "commands/Commands.h"
#include "copying/Conversion.h"
#include "copying/FolderConversion.h"
#include "files/Failure.h"
#include "many/Work.h"
#include "measuring/MeasuredConversion.h"
#include "measuring/Timing.h"
#include "options/EncodingOption.h"
#include "options/ReadingOptions.h"
#include "options/TypingOptions.h"

namespace tool {

namespace {

std::string helpText() {
  std::string help =
      R"(Copies documents, in the same format or in another.

Usage: tavrin convert [OPTIONS] IN [OUT]
       tavrin convert [OPTIONS] -o DIR IN...

  IN                the document to read; - is standard input. With -o also a folder: all documents
                    in it and below it
  OUT               where to write it; - or nothing is standard output

Options:
  -o, --output DIR  write the copies into the folder DIR, which is made if it is not there
  --force           replace OUT if it exists
%compression option%
  --document N      copy the Nth of the documents in IN alone; what stands behind it is not read
  --lossy           go on, with a warning, where an attribute value refers to an entity that is not
                    read: the copy has nothing in its place
  --to TYPE         the type of writer, instead of going by the name of OUT: .fi, .finf and
                    .x3db mean Fast Infoset, any other name means XML text
%work%
%timing%
  -h, --help        print this help

Options of XML text:
)" + std::string(kLayoutOptionsHelp) +
      R"(  --no-declaration  write no XML declaration at the beginning
%encoding option%
)" + kCanonicalOptionsHelp +
      R"(
Options of Fast Infoset:
%typing options%

Options of reading, and vocabularies:
  --from TYPE       the type of reader, instead of going by the first octets of IN
%options%

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

With --vocabulary FILE --uri URI, a copy in Fast Infoset refers to that vocabulary by the URI and
holds numbers in place of what is in there; without --uri, it begins with the vocabulary itself.

%typing%

)" + kLayoutHelp +
      "\n" + kCanonicalHelp +
      R"(
%limits%

--limit maximum-table-octets counts for the tables of a copy in Fast Infoset, too.

With -o, any number of documents and folders may be named. A document is copied under its own name,
and what is in a folder keeps its place below it. Where two copies would have the same name, nothing
is done at all. Without --to, what has a name of Fast Infoset becomes XML text, and all else Fast
Infoset. The ending of the name goes with that, and what was in DIR already is not copied:

  a.xml   <-> a.fi          a.svg, and any other ending   <-> a.svg.fi
  a.x3d   <-> a.x3db        a.finf                         -> a.xml

%folders%
A document that cannot be copied is told of in a line on standard error, and the others are copied
all the same. The last line there sums up the work on more than one.

All that is so for the types XML10 and X891, which are used where no other is named. Others keep
less: their pages in the manual tell what.

Examples:
  tavrin convert --indent in.xml out.xml
  tavrin convert in.xml out.fi
  tavrin convert -o binary drawings
)";
  replaceLine(help, "%typing options%\n", kTypingOptionsHelp);
  replaceLine(help, "%typing%\n", kTypingHelp);
  replaceLine(help, "%encoding option%\n", kEncodingOptionHelp);
  replaceLine(help, "%encoding%\n", kEncodingHelp);
  replaceLine(help, "%compression option%\n", kCompressionOptionHelp);
  replaceLine(help, "%compression%\n", kCompressionHelp);
  return help;
}

struct ConvertOptions : ConversionOptions {
  std::vector<std::string> names;
  std::string folder;
  WorkOptions work;
};

ExitStatus convert(ConvertOptions& options) {
  const std::vector<std::string>& names = options.names;
  if (options.typing.rules == "-" && std::ranges::count(names, "-") > 0) {
    throw Failure::usage("only one of the document and the rules can be standard input");
  }
  options.typing.load();
  refuseToRepeat(options.timing,
                 {names.begin(), options.makesFolders ? names.end() : names.begin() + 1});
  if (options.makesFolders) return convertAll(options, names, options.folder, options.work);
  if (names.size() > 2) {
    throw Failure::usage(
        "several documents need a folder for their copies, -o DIR (see tavrin "
        "convert --help)");
  }
  convertMeasured(options, names[0], names.size() == 2 ? names[1] : "-");
  return Done;
}

}  // namespace

Command makeConvert(CLI::App& app) {
  CLI::App* command =
      addReadingCommand(app, "convert", helpText(), Properties::Owners::ReadersAndWriters);
  const auto options = std::make_shared<ConvertOptions>();
  command->add_option("IN", options->names)->required();
  command
      ->add_option_function<std::string>("-o,--output",
                                         [options](const std::string& folder) {
                                           options->folder = folder;
                                           options->makesFolders = true;
                                         })
      ->type_name("DIR");
  addWorkOptions(*command, options->work);
  addTimingOptions(*command, options->timing);
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
  addTypingOptions(*command, options->typing);
  addReadingOptions(*command, options->reading, VocabularyUse::Copying);
  addEncodingOption(*command, options->encoding);
  addCompressionOptions(*command, options->compression);
  command->add_option("--from", options->reading.from)->type_name("TYPE");
  command->add_option("--to", options->to)->type_name("TYPE");
  addLayoutOptions(*command, options->layout);
  addCanonicalOptions(*command, options->canonical);
  return {command, [options] { return convert(*options); }};
}

}  // namespace tool
