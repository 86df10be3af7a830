#include "HelpTexts.h"

namespace {

using Help = HelpText;

constexpr char kTool[] =
    R"(Reads, checks, compares and converts XML documents, in XML text and in Fast Infoset.

Usage: tavrin COMMAND [OPTIONS] ...

Commands:
  convert      copy a document, in the same format or in another
  check        tell whether documents are well-formed
  events       show the events that a reader makes of a document
  get          print what a path leads to in documents
  stat         count what documents hold
  diff         compare two documents event by event
  inspect      show what every octet of a Fast Infoset document is
  assemble     make the octets of a document of what inspect shows
  vocabulary   learn what documents have in common, and show it
  types        list the readers and writers there are
  completion   print what a shell needs to complete all this

Options:
  -h, --help   print this help; after a command, the help of that command
  --version    print the version

Exit status:
  0  done
  1  a document cannot be read, or not be written faithfully; or two documents differ
  2  wrong usage, or a file that cannot be opened, read or written

Example:
  tavrin check in.xml
)";

const std::string kCheck =
    R"(Tells whether documents are well-formed.

Usage: tavrin check [OPTIONS] FILE...

  FILE              a document, or a folder: all documents in it and below it; - is standard input

Options:
)" + kWork +
    kTiming + kOptions +
    R"(  --from TYPE       the type of reader, instead of going by the first octets of FILE
  -h, --help        print this help

Every FILE is checked. A well-formed one is named on standard output:

  FILE: well-formed
  FILE: well-formed (3 documents)

--quiet leaves these lines out. Any other is named on standard error, with what is wrong:

  FILE:LINE:COLUMN: MESSAGE     in XML text
  FILE: octet NUMBER: MESSAGE   in Fast Infoset

A reference in an attribute value to an entity that is not read is no error. It is told of on
standard error, because no reader can tell it to a program; so is a version of XML other than 1.0,
which is read by the rules of 1.0:

  FILE:LINE:COLUMN: warning: MESSAGE

A document that begins with the octets E0 00, or with an XML declaration of the encoding finf, is
taken for Fast Infoset. It is well-formed if it could be written as XML text. Others like it may
follow it in FILE, and nothing else. NUMBER is the last octet of FILE that was read, counted from 1.

)" + kFolders +
    "\n" + kNames +
    R"(
Example:
  tavrin check chapter-*.xml
)";

constexpr char kTypes[] = R"(Lists the readers and writers there are.

Usage: tavrin types [OPTIONS]

Options:
  -h, --help        print this help

Every line is "reader" or "writer" and the name that --from or --to takes, in upper or lower case.

Example:
  tavrin types
)";

}  // namespace

TEST_F(Help, IsThatOfTheToolAndOfItsCommands) {
  expectHelp({}, kTool);
  expectHelp({"check"}, kCheck);
  expectHelp({"types"}, kTypes);
}

TEST_F(Help, FitsAPageOf100Columns) {
  for (const ToolProcess::Arguments& command : {ToolProcess::Arguments{},
                                                {"convert"},
                                                {"check"},
                                                {"events"},
                                                {"get"},
                                                {"stat"},
                                                {"diff"},
                                                {"inspect"},
                                                {"assemble"},
                                                {"vocabulary"},
                                                {"vocabulary", "learn"},
                                                {"vocabulary", "show"},
                                                {"vocabulary", "header"},
                                                {"types"},
                                                {"completion"}}) {
    ToolProcess::Arguments arguments = command;
    arguments.emplace_back("--help");
    const std::string text = run(arguments).out;
    EXPECT_TRUE(text.ends_with('\n'));
    for (std::size_t begin = 0; begin < text.size();) {
      const std::size_t end = text.find('\n', begin);
      EXPECT_LE(end - begin, 100U) << text.substr(begin, end - begin);
      begin = end + 1;
    }
  }
}
