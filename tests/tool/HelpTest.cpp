#include "Workplace.h"

namespace {

using Help = Workplace;

constexpr char kTool[] = R"(Reads, checks and converts XML documents.

Usage: tavrin COMMAND [OPTIONS] ...

Commands:
  convert      copy a document, in the same format or in another
  check        tell whether documents are well-formed
  events       show the events that a reader makes of a document
  types        list the readers and writers there are

Options:
  -h, --help   print this help; after a command, the help of that command
  --version    print the version

Exit status:
  0  done
  1  a document cannot be read, or not be written faithfully
  2  wrong usage, or a file that cannot be opened, read or written

Example:
  tavrin check in.xml
)";

constexpr char kConvert[] = R"(Copies a document, in the same format or in another.

Usage: tavrin convert [OPTIONS] IN [OUT]

  IN                the document to read; - is standard input
  OUT               where to write it; - or nothing is standard output

Options:
  --indent          begin every tag, comment and instruction on a line of its own
  --no-declaration  write no XML declaration at the beginning
  --force           replace OUT if it exists
  --from TYPE       the type of reader, instead of going by the first octets of IN
  --to TYPE         the type of writer, instead of going by the name of OUT; a name that
                    says nothing means XML text
  -h, --help        print this help

OUT appears when it is complete, and not at all if the work fails. Standard output may have
received a part of the document by then.

The copy has the elements, attributes, namespace declarations, text, comments, processing
instructions and CDATA sections, and the name and identifiers of the document type. In place
of internal entities stands their text. The declarations of the internal subset are not
copied.

External entities and the external subset are not read. If the content refers to an entity
that was not read, the work fails. In an attribute value such a reference is not noticed if
the document has an external subset or refers to parameter entities: no text stands for it.

Example:
  tavrin convert --indent in.xml out.xml
)";

constexpr char kCheck[] = R"(Tells whether documents are well-formed.

Usage: tavrin check [OPTIONS] FILE...

  FILE              a document; - is standard input

Options:
  -h, --help        print this help

Every FILE is checked. A well-formed one is named on standard output:

  FILE: well-formed

Any other is named on standard error, with what is wrong:

  FILE:LINE:COLUMN: MESSAGE

External entities and the external subset are not read.

Example:
  tavrin check chapter-*.xml
)";

constexpr char kEvents[] = R"(Shows the events that a reader makes of a document.

Usage: tavrin events [OPTIONS] FILE

  FILE              the document to read; - is standard input

Options:
  --json            print JSON lines
  --declarations    also set the handlers of declarations
  -h, --help        print this help

Every line is one call of a handler, in document order. Arguments are JSON strings, in the
order of the call. An attribute is namespace name, local name, qualified name, type, value:

  startElement("urn:x", "a", "p:a", [{"", "id", "id", "CDATA", "1"}])

With --json every line is an object: "event" is the name of the call, the other members are
its arguments, and "attributes" is an array of objects (here broken to fit the page):

  {"event":"startElement","uri":"urn:x","localName":"a","qName":"p:a",
   "attributes":[{"uri":"","localName":"id","qName":"id","type":"CDATA","value":"1"}]}

resolveEntity is a reference to an external entity or to the external subset. None is read.

With --declarations the Expat reader stops at a declaration with a system identifier: that
of a notation, of an external entity or of an unparsed entity.

Example:
  tavrin events --json in.xml
)";

constexpr char kTypes[] = R"(Lists the readers and writers there are.

Usage: tavrin types [OPTIONS]

Options:
  -h, --help        print this help

Every line is "reader" or "writer" and the name that --from and --to of convert take, in
upper or lower case.

Example:
  tavrin types
)";

}  // namespace

TEST_F(Help, TellsOfTheToolAndOfEveryCommand) {
  for (const std::string flag : {"-h", "--help"}) {
    SCOPED_TRACE(flag);
    EXPECT_EQ(run({flag}), (Result{0, kTool, ""}));
    EXPECT_EQ(run({"convert", flag}), (Result{0, kConvert, ""}));
    EXPECT_EQ(run({"check", flag}), (Result{0, kCheck, ""}));
    EXPECT_EQ(run({"events", flag}), (Result{0, kEvents, ""}));
    EXPECT_EQ(run({"types", flag}), (Result{0, kTypes, ""}));
  }
}

TEST_F(Help, ComesBeforeAnyWork) {
  writeFile("a.xml", "<a/>");
  EXPECT_EQ(run({"convert", "a.xml", "b.xml", "--help"}), (Result{0, kConvert, ""}));
  EXPECT_EQ(run({"convert", "missing.xml", "--help"}), (Result{0, kConvert, ""}));
  EXPECT_EQ(files(), Names{"a.xml"});
}

// What the help tells of the events of an attribute, shown by the tool itself.
TEST_F(Help, ShowsEventsAsTheyAre) {
  writeFile("a.xml", "<p:a id='1' xmlns:p='urn:x'/>");
  EXPECT_EQ(run({"events", "a.xml"}),
            (Result{0,
                    "startDocument()\n"
                    "startPrefixMapping(\"p\", \"urn:x\")\n"
                    "startElement(\"urn:x\", \"a\", \"p:a\", [{\"\", \"id\", \"id\", \"CDATA\", "
                    "\"1\"}])\n"
                    "endElement(\"urn:x\", \"a\", \"p:a\")\n"
                    "endPrefixMapping(\"p\")\n"
                    "endDocument()\n",
                    ""}));
}
