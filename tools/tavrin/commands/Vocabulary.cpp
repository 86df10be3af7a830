#include <Tavrin/OwnedVocabulary.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "commands/Commands.h"
#include "commands/VocabularyLearn.h"
#include "files/Output.h"
#include "files/VocabularyFile.h"
#include "vocabularies/HeaderFile.h"
#include "vocabularies/Listing.h"

namespace tool {

namespace {

constexpr char kVocabularyHelp[] =
    R"(Makes and shows vocabularies: names and strings that documents in Fast Infoset have in common.

Usage: tavrin vocabulary COMMAND [OPTIONS] ...

Commands:
  learn        choose the entries of a vocabulary by what they save in samples
  show         list the entries of a vocabulary
  header       make C++ code of a vocabulary

Options:
  -h, --help   print this help; after a command, the help of that command

A vocabulary is kept in a file that is a Fast Infoset document itself: the vocabulary that it begins
with, and one empty element. Any document in Fast Infoset serves as such a file.

All commands that read documents take --vocabulary FILE --uri URI: a document that refers to a
vocabulary by that URI is read with it. With the same options, tavrin convert writes documents that
refer to it, so that they hold numbers in place of names and frequent strings. With --vocabulary
alone, its copy in Fast Infoset begins with the vocabulary, and any reader understands it.

Both options may stand several times: the first URI is that of the first FILE, and so on. All are
for reading; convert writes with the last, which may be without a URI.

The position of an entry is its number, so a vocabulary that documents refer to must never change:
give one that has other entries another URI.

Example:
  tavrin vocabulary learn -o orders.fi order-*.xml
  tavrin convert --vocabulary orders.fi --uri urn:o:1 order-1.xml order-1.fi
  tavrin events --vocabulary orders.fi --uri urn:o:1 order-1.fi
)";

constexpr char kShowHelp[] =
    R"(Lists the entries of a vocabulary.

Usage: tavrin vocabulary show [OPTIONS] FILE

  FILE              a vocabulary, or any document in Fast Infoset: the vocabulary that it begins
                    with is shown, and the rest not read; - is standard input

Options:
  -h, --help        print this help

Below the number of entries stands each table that has some, with a line for each entry: its index,
and the string in quotes. An entry of the two tables of names is a name with its prefix, and the
namespace name in quotes if it has one. Characters that would break the line or control the terminal
stand as \uXXXX.

Indexes are those of X.891, clause 7.2, which count built-in entries: prefixes and namespace names
begin at 2, restricted alphabets at 16, encoding algorithms at 32.

Example:
  tavrin vocabulary show orders.fi
)";

constexpr char kHeaderHelp[] =
    R"(Makes C++ code of a vocabulary: a header with a function that returns it.

Usage: tavrin vocabulary header [OPTIONS] FILE

  FILE              a vocabulary, or any document in Fast Infoset: the vocabulary that it begins
                    with is taken; - is standard input

Options:
  -o OUT            where to write it; - or nothing is standard output
  --force           replace OUT if it exists
  --name NAME       the name of the function, with namespaces if it has any, such as
                    shop::makeOrders; makeVocabulary without this option
  --uri URI         also define the URI by which documents refer to the vocabulary, as a constant
                    with the name of the function and URI behind it
  -h, --help        print this help

The code needs libTavrin and C++17. The function returns a Tavrin::OwnedVocabulary, for
XMLWriter_X891::setExternalVocabulary and XMLReader_X891::addExternalVocabulary. OUT appears when it
is complete, and not at all if the work fails.

Example:
  tavrin vocabulary header --name shop::makeOrders --uri urn:o:1 -o Orders.h orders.fi
)";

struct HeaderOptions {
  std::string file;
  std::string out = "-";
  bool force = false;
  HeaderNames names;
};

ExitStatus show(const std::string& file) {
  const Tavrin::OwnedVocabulary vocabulary = readVocabulary(file);
  Output output("-", false);
  output.open();
  printVocabulary(output.stream(), file, vocabulary);
  output.commit();
  return Done;
}

ExitStatus header(const HeaderOptions& options) {
  Output output(options.out, options.force);
  const Tavrin::OwnedVocabulary vocabulary = readVocabulary(options.file);
  output.open();
  printHeader(output.stream(), options.names, options.file, vocabulary);
  output.commit();
  return Done;
}

Command makeShow(CLI::App& app) {
  CLI::App* command = addCommand(app, "show", kShowHelp);
  const auto file = std::make_shared<std::string>();
  command->add_option("FILE", *file)->required();
  return {command, [file] { return show(*file); }};
}

Command makeHeader(CLI::App& app) {
  CLI::App* command = addCommand(app, "header", kHeaderHelp);
  const auto options = std::make_shared<HeaderOptions>();
  command->add_option("FILE", options->file)->required();
  command->add_option("-o", options->out)->type_name("OUT");
  command->add_flag("--force", options->force);
  command->add_option("--uri", options->names.uri)->type_name("URI");
  command->add_option("--name", options->names.function)
      ->type_name("NAME")
      ->check([](const std::string& text) {
        return isFunctionName(text) ? "" : "\"" + text + "\" is not the name of a function";
      });
  return {command, [options] { return header(*options); }};
}

}  // namespace

Command makeVocabulary(CLI::App& app) {
  CLI::App* command = addCommand(app, "vocabulary", kVocabularyHelp);
  return asGroup(*command, {makeLearn(*command), makeShow(*command), makeHeader(*command)});
}

}  // namespace tool
