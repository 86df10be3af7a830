#include "HelpTexts.h"

namespace {

using StatHelp = HelpText;

const std::string kStat =
    R"(Counts what documents hold.

Usage: tavrin stat [OPTIONS] FILE...

  FILE              a document, or a folder: all documents in it and below it; - is standard input

Options:
)" + kWork +
    R"(  --html OUT        write a page that shows where the octets of FILE go, instead of the counts: by
                    kind and by element, as XML text and as Fast Infoset, and the strings that cost
                    most; there is one FILE then, and its documents are taken together
  --force           replace OUT if it exists
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

)" + kFolders +
    R"(
The page of --html stands alone and needs neither scripts nor the network. OUT appears when it is
complete; - is standard output. Memory does not grow with the document: at most 10000 paths, of 64
levels, and 20000 strings are counted apart, by their first octets; the page tells of the others.

)" + kAllNames +
    R"(
Examples:
  tavrin stat in.xml in.fi
  tavrin stat --html octets.html in.xml
)";

const std::string kDiff =
    R"(Compares two documents event by event, whatever their encodings.

Usage: tavrin diff [OPTIONS] A B

  A, B              the documents; one of them may be -, standard input

Options:
  --lexical         also compare the borders of CDATA sections, and document types but for
                    their declarations
  --text            show differences as XML text, and not as tavrin events shows it
  --all             show all differences, each below its path
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

)" + kNames +
    R"(
The exit status is 0 if the documents are the same, and 1 if they differ, if one of them cannot be
read, or if nobody can tell: an attribute value refers to an entity that is not read. Whatever the
other document has there, the reference may stand for it or not.

Example:
  tavrin diff in.xml in.fi
)";

}  // namespace

TEST_F(StatHelp, OfTheCommandStat) { expectHelp({"stat"}, kStat); }

TEST_F(StatHelp, OfTheCommandDiff) { expectHelp({"diff"}, kDiff); }
