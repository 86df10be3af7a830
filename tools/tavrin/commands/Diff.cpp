#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "commands/Commands.h"
#include "comparing/Comparison.h"
#include "comparing/Documents.h"
#include "files/Output.h"
#include "options/ReadingOptions.h"

namespace tool {

namespace {

constexpr char kHelp[] =
    R"(Compares two documents event by event, whatever their encodings.

Usage: tavrin diff [OPTIONS] A B

  A, B              the documents; one of them may be -, standard input

Options:
  --lexical         also compare the borders of CDATA sections, and document types but for
                    their declarations
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

struct Options {
  std::string a;
  std::string b;
  std::string fromA;
  std::string fromB;
  bool lexical = false;
  Form form = Form::Events;
  ReadingOptions reading;
};

ExitStatus diff(const Options& options) {
  if (options.a == "-" && options.b == "-") {
    throw Failure::usage("only one of the documents can be standard input");
  }
  ReadingOptions optionsA = options.reading;
  ReadingOptions optionsB = options.reading;
  optionsA.from = options.fromA;
  optionsB.from = options.fromB;
  std::string difference;
  std::vector<Failure> failures;
  {
    Documents a(options.a, optionsA, options.lexical, false);
    // There is room for one progress bar.
    Documents b(options.b, optionsB, options.lexical, a.hasProgress());
    a.start();
    b.start();
    difference = findDifference(a, b, options.form);
    if (difference.empty()) failures = failuresOf(a, b);
  }
  // By now a progress bar is gone.
  ExitStatus worst = difference.empty() ? Done : DocumentFailed;
  for (const Failure& failure : failures) {
    failure.report();
    worst = std::max(worst, failure.status());
  }
  Output output("-", false);
  output.open();
  output.stream() << difference;
  output.commit();
  return worst;
}

}  // namespace

Command makeDiff(CLI::App& app) {
  CLI::App* command = addReadingCommand(app, "diff", kHelp);
  const auto options = std::make_shared<Options>();
  command->add_option("A", options->a)->required();
  command->add_option("B", options->b)->required();
  command->add_flag("--lexical", options->lexical);
  addReadingOptions(*command, options->reading);
  command->add_option("--from-a", options->fromA)->type_name("TYPE");
  command->add_option("--from-b", options->fromB)->type_name("TYPE");
  return {command, [options] { return diff(*options); }};
}

}  // namespace tool
