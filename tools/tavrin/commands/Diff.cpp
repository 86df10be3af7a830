#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "commands/Commands.h"
#include "comparing/AllDifferences.h"
#include "comparing/ComparedDocuments.h"
#include "comparing/Comparison.h"
#include "files/Output.h"
#include "options/ReadingOptions.h"

namespace tool {

namespace {

constexpr char kDiffHelp[] =
    R"(Compares two documents event by event, whatever their encodings.

Usage: tavrin diff [OPTIONS] A B

  A, B              the documents; one of them may be -, standard input

Options:
  --lexical         also compare the borders of CDATA sections, and document types but for
                    their declarations
  --text            show differences as XML text, and not as tavrin events shows it
  --all             show all differences, each below its path
%options%
  --from-a TYPE     the type of reader of A, instead of going by its first octets
  --from-b TYPE     the type of reader of B
  -h, --help        print this help

Nothing is printed if the documents are the same. Otherwise the first difference is: what
comes there in A, and what comes there in B, in the form of tavrin events, and where it begins.
A place is a line and a column in XML text, in Fast Infoset the number of an octet:

  a.xml:2:4: startElement("", "b", "b", [])
  b.fi: octet 9: endElement("", "a", "a")

Where one document has come to its end, the line says so. Of long texts the part around the
first difference is shown, with ... for what is left out.

With --text, the lines tell what stands there as it would in XML text:

  a.xml:2:4: <b>
  b.fi: octet 9: </a>

With --all, every difference has its path on a line of its own, then what A has there behind "- ",
and what B has behind "+ "; one of them where the other has nothing like it. A number in a path
counts those of that name in an element. Of attributes the values are shown, and of an element that
only one document has, its start tag:

  /list/item[2]/@id
  - a.xml:3:3: "2"
  + b.fi: octet 40: "3"
  /list/item[5]
  + b.fi: octet 72: startElement("", "item", "item", [])

Behind a difference the comparison goes on where both are the same again. It looks ahead, in the
element that has the difference, over 32 siblings or 256 KiB: the nearest element or text that both
have unchanged, or with the same attributes, ends the difference. In front of it, those of one kind
and name are taken for the same one, changed; anything else is in one document only.

Compared are prefix mappings, elements, attributes in their order, text, comments, processing
instructions, and references to entities that were not read. Text is the same in whatever
pieces, CDATA sections or typed values it comes; a typed value of an attribute is the same as
its text. The content of an encoding algorithm that is not known is compared octet for octet,
with the URI that names the algorithm.

In Fast Infoset, documents may follow each other in one file. They are compared one by one, the
first with the first, and a place in a later one tells its number. Where only one file has another
document, that is the difference:

  a.fi: end of the document
  b.fi: octet 72: document 2 begins

Document types, with the comments in them, and CDATA sections are left out because Fast Infoset
does not keep them as they are, and so are the types of attributes. Instructions in the internal
subset are compared. Not looked at is what a document states of its version of XML, of its encoding
and of being standalone.

%limits%

The exit status is 0 if the documents are the same, and 1 if they differ, if one of them cannot be
read, or if nobody can tell: an attribute value refers to an entity that is not read. Whatever the
other document has there, the reference may stand for it or not.

Example:
  tavrin diff in.xml in.fi
)";

struct DiffOptions {
  std::string a;
  std::string b;
  std::string fromA;
  std::string fromB;
  bool lexical = false;
  bool all = false;
  Form form = Form::Events;
  ReadingOptions reading;
};

ExitStatus diff(const DiffOptions& options) {
  if (options.a == "-" && options.b == "-") {
    throw Failure::usage("only one of the documents can be standard input");
  }
  ReadingOptions optionsA = options.reading;
  ReadingOptions optionsB = options.reading;
  optionsA.from = options.fromA;
  optionsB.from = options.fromB;
  Output output("-", false);
  output.open();
  bool isDifferent = false;
  const auto sink = [&](const std::string& lines) {
    isDifferent = isDifferent || !lines.empty();
    output.stream() << lines;
    output.checkWritten();
  };
  std::vector<Failure> failures;
  {
    const bool isQuiet = options.all && output.isTerminal();
    ComparedDocuments a(options.a, optionsA, options.lexical, isQuiet);
    // There is room for one progress bar.
    ComparedDocuments b(options.b, optionsB, options.lexical, isQuiet || a.hasProgress());
    a.start();
    b.start();
    if (options.all) {
      AllDifferences(a, b, options.form, sink).find();
    } else {
      sink(findDifference(a, b, options.form));
    }
    if (options.all || !isDifferent) failures = failuresOf(a, b);
  }
  // By now a progress bar is gone.
  ExitStatus worst = isDifferent ? DocumentFailed : Done;
  for (const Failure& failure : failures) {
    failure.report();
    worst = std::max(worst, failure.status());
  }
  output.commit();
  return worst;
}

}  // namespace

Command makeDiff(CLI::App& app) {
  CLI::App* command = addReadingCommand(app, "diff", kDiffHelp);
  const auto options = std::make_shared<DiffOptions>();
  command->add_option("A", options->a)->required();
  command->add_option("B", options->b)->required();
  command->add_flag("--lexical", options->lexical);
  command->add_flag("--all", options->all);
  command->add_flag_callback("--text", [options] { options->form = Form::Markup; });
  addReadingOptions(*command, options->reading);
  command->add_option("--from-a", options->fromA)->type_name("TYPE");
  command->add_option("--from-b", options->fromB)->type_name("TYPE");
  return {command, [options] { return diff(*options); }};
}

}  // namespace tool
