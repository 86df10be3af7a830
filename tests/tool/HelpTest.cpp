#include "Workplace.h"

namespace {

using Help = Workplace;

constexpr char kTool[] =
    R"(Reads, checks, compares and converts XML documents, in XML text and in Fast Infoset.

Usage: tavrin COMMAND [OPTIONS] ...

Commands:
  convert      copy a document, in the same format or in another
  check        tell whether documents are well-formed
  events       show the events that a reader makes of a document
  stat         count what documents hold
  diff         compare two documents event by event
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

/// What the commands that read documents have in common.
const std::string kOptions =
    R"(  --entities        read external entities and the external subset, as far as they are files in
                    the folder of the document or below it
  --entities=any    read them wherever the files are: whoever wrote the document then chooses
                    which of your files are read, and their text shows in the result
  --limit NAME=VALUE
                    change a limit to what hostile documents may cost; may stand several times
)";

const std::string kLimits =
    R"(With --entities, an entity that is not a file is passed over, as without the option. So is one
whose file is missing, no regular file or outside of the folder, with a warning on standard error.

Limits end the reading of documents that are made to exhaust whoever reads them. VALUE is a number,
maybe with K, M or G behind it, or none. Unless --limit says otherwise, they are those in brackets:

  entity-amplification-factor     text: octets that entities or defaults make of each (100)
  entity-amplification-threshold  text: so many octets before that factor counts (8M)
  maximum-depth                   elements that may be open at a time (none)
  amplification-factor            Fast Infoset: octets from tables for each one read (1000)
  amplification-threshold         Fast Infoset: so many octets before that factor counts (8M)
  maximum-table-octets            Fast Infoset: octets of all tables of a document (512M)
  maximum-literal-octets          Fast Infoset: octets of one string or typed value (1G)
)";

const std::string kConvert =
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
  --encoding NAME   write XML text in this encoding instead of UTF-8
  --compress FORM   compress the copy: gzip, zstd or none, instead of going by the name of OUT
)" + kOptions +
    R"(  --from TYPE       the type of reader, instead of going by the first octets of IN
  --to TYPE         the type of writer, instead of going by the name of OUT: .fi, .finf and
                    .x3db mean Fast Infoset, any other name means XML text
  -h, --help        print this help

In Fast Infoset, documents may follow each other in IN. All are copied to Fast Infoset. XML text
holds one alone: if there are more, the work fails unless --document tells which to copy.

OUT appears when it is complete, and not at all if the work fails. Standard output may have
received a part of the document by then.

OUT is compressed if its name ends in .gz (gzip) or .zst (zstd); the name in front of that tells the
type of writer, as in out.fi.zst. FORM may have a level behind a colon, from 1 (fast) to 9 for gzip
and to 22 for zstd: gzip:9. IN is decompressed whatever its name is: its first octets tell.

NAME is any encoding that iconv knows: ISO-8859-1, Shift_JIS, UTF-16, ... Its name is in the XML
declaration. Characters that it lacks are written as references in text and in values, and between
two CDATA sections. In names, comments, processing instructions and identifiers there are no
references: the work fails. IN may be in any of these encodings, too.

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

)" + kLimits +
    R"(
--limit maximum-table-octets counts for the tables of a copy in Fast Infoset, too.

All that is so for the types XML10 and X891, which are used where no other is named. Others keep
less: the README tells what.

Examples:
  tavrin convert --indent in.xml out.xml
  tavrin convert in.xml out.fi
)";

const std::string kCheck =
    R"(Tells whether documents are well-formed.

Usage: tavrin check [OPTIONS] FILE...

  FILE              a document; - is standard input

Options:
)" + kOptions +
    R"(  --from TYPE       the type of reader, instead of going by the first octets of FILE
  -h, --help        print this help

Every FILE is checked. A well-formed one is named on standard output:

  FILE: well-formed
  FILE: well-formed (3 documents)

Any other is named on standard error, with what is wrong:

  FILE:LINE:COLUMN: MESSAGE     in XML text
  FILE: octet NUMBER: MESSAGE   in Fast Infoset

A reference in an attribute value to an entity that is not read is no error. It is told of on
standard error, because no reader can tell it to a program:

  FILE:LINE:COLUMN: warning: MESSAGE

A document that begins with the octets E0 00, or with an XML declaration of the encoding finf, is
taken for Fast Infoset. It is well-formed if it could be written as XML text. Others like it may
follow it in FILE, and nothing else. NUMBER is the last octet of FILE that was read, counted from 1.

)" + kLimits +
    R"(
Example:
  tavrin check chapter-*.xml
)";

const std::string kEvents =
    R"(Shows the events that a reader makes of a document.

Usage: tavrin events [OPTIONS] FILE

  FILE              the document to read; - is standard input

Options:
  --json            print JSON lines
  --declarations    also set the handlers of declarations
)" + kOptions +
    R"(  --from TYPE       the type of reader, instead of going by the first octets of FILE
  -h, --help        print this help

Every line is one call of a handler, in document order. Arguments are JSON strings, in the
order of the call. An attribute is namespace name, local name, qualified name, type, value:

  startElement("urn:x", "a", "p:a", [{"", "id", "id", "CDATA", "1"}])

With --json every line is an object: "event" is the name of the call, the other members are
its arguments, and "attributes" is an array of objects (here broken to fit the page):

  {"event":"startElement","uri":"urn:x","localName":"a","qName":"p:a",
   "attributes":[{"uri":"","localName":"id","qName":"id","type":"CDATA","value":"1"}]}

Typed content, which Fast Infoset has, shows as an array of values, and octets as base64:

  doubles([0.1, -2, "nan"])
  bytes("AQID")
  object("", 8, "f81d4fae-7dec-11d0-a765-00a0c91e6bf6")

An attribute with a typed value has two more parts behind its value: the URI and the number of
the encoding algorithm, in JSON "algorithmURI" and "algorithmIndex". object is the content of an
algorithm that has no call of its own, such as UUIDs, as text; octets that of an algorithm that is
not known.

resolveEntity is a reference to an external entity or to the external subset. What is not read is
skipped: skippedEntity follows.

A reference in an attribute value to an entity that is not read is in no event. It is told of on
standard error.

Nothing else is left out, and all shows as it is: a character that would break the line, control the
terminal or turn the direction of text stands as \uXXXX, and an octet NN that is not part of valid
UTF-8, which the reader FI delivers as it is, as \uDCNN.

In Fast Infoset, documents may follow each other in one file. In front of each but the first, a
line tells its number and its first octet, in JSON {"document":2,"octet":72}:

  --- document 2: octet 72 ---

Where FILE comes through a pipe, events show as it comes.

With --declarations the reader Expat stops at a declaration with a system identifier: that
of a notation, of an external entity or of an unparsed entity.

)" + kLimits +
    R"(
Example:
  tavrin events --json in.xml
)";

const std::string kStat =
    R"(Counts what documents hold.

Usage: tavrin stat [OPTIONS] FILE...

  FILE              a document; - is standard input

Options:
)" + kOptions +
    R"(  --from TYPE       the type of reader, instead of going by the first octets of FILE
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

If there can be no such copy, the reason stands in place of the size. With --entities, entities
count where they are referred to; comments and instructions of the external subset do not count.

Where documents follow each other in FILE, as they may in Fast Infoset, there is a block for each:
its head is "FILE, document 1", "FILE, document 2" and so on.

)" + kLimits +
    R"(
Example:
  tavrin stat in.xml in.fi
)";

const std::string kDiff =
    R"(Compares two documents event by event, whatever their encodings.

Usage: tavrin diff [OPTIONS] A B

  A, B              the documents; one of them may be -, standard input

Options:
  --lexical         also compare the borders of CDATA sections, and document types but for
                    their declarations
)" + kOptions +
    R"(  --from-a TYPE     the type of reader of A, instead of going by its first octets
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

)" + kLimits +
    R"(
The exit status is 0 if the documents are the same, and 1 if they differ, if one of them cannot be
read, or if nobody can tell: an attribute value refers to an entity that is not read. Whatever the
other document has there, the reference may stand for it or not.

Example:
  tavrin diff in.xml in.fi
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

TEST_F(Help, TellsOfTheToolAndOfEveryCommand) {
  for (const std::string flag : {"-h", "--help"}) {
    SCOPED_TRACE(flag);
    EXPECT_EQ(run({flag}), (Result{0, kTool, ""}));
    EXPECT_EQ(run({"convert", flag}), (Result{0, kConvert, ""}));
    EXPECT_EQ(run({"check", flag}), (Result{0, kCheck, ""}));
    EXPECT_EQ(run({"events", flag}), (Result{0, kEvents, ""}));
    EXPECT_EQ(run({"stat", flag}), (Result{0, kStat, ""}));
    EXPECT_EQ(run({"diff", flag}), (Result{0, kDiff, ""}));
    EXPECT_EQ(run({"types", flag}), (Result{0, kTypes, ""}));
  }
}

TEST_F(Help, ComesBeforeAnyWork) {
  writeFile("a.xml", "<a/>");
  EXPECT_EQ(run({"convert", "a.xml", "b.xml", "--help"}), (Result{0, kConvert, ""}));
  EXPECT_EQ(run({"convert", "missing.xml", "--help"}), (Result{0, kConvert, ""}));
  EXPECT_EQ(files(), Names{"a.xml"});
}

TEST_F(Help, FitsAPageOf100Columns) {
  for (const std::string& text :
       {std::string(kTool), kConvert, kCheck, kEvents, kStat, kDiff, std::string(kTypes)}) {
    for (std::size_t begin = 0; begin < text.size();) {
      const std::size_t end = text.find('\n', begin);
      ASSERT_NE(end, std::string::npos);
      EXPECT_LE(end - begin, 100U) << text.substr(begin, end - begin);
      begin = end + 1;
    }
  }
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
