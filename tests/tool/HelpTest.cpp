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

/// What the commands that read documents have in common.
const std::string kOptions =
    R"(  --entities        read external entities and the external subset, as far as they are files in
                    the folder of the document or below it
  --entities=any    read them wherever the files are: whoever wrote the document then chooses
                    which of your files are read, and their text shows in the result
  --limit NAME=VALUE
                    change a limit to what hostile documents may cost; may stand several times
  --explain         show what is around the place of a failure, as is done on a terminal
  --property NAME=VALUE
                    change a property of the reader or the writer; may stand several times
  --feature NAME    turn a feature of the reader or the writer on; NAME=off turns it off; may stand
                    several times
  --vocabulary FILE
                    names and strings that documents in Fast Infoset refer to by a URI
  --uri URI         that URI; both may stand several times (see tavrin vocabulary --help)
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
  maximum-coalesced-octets        octets of text that --feature coalesce-characters joins (1G)

Properties and features are those of the library that bear these names. What the reader or the
writer of a document does not have is passed over, unless its type was chosen by name. VALUE is on
or off, a number as above, or a text. Unless it is changed, it is that in brackets:

  base-uri                        text: what relative system identifiers count from (none)
  reparse-deferral                text: where a token is cut, wait for twice as much (on)
  raw-octets                      Fast Infoset: read on if a vocabulary is unknown (off)
)";

const std::string kWriterProperties =
    R"(  indent-width                    text: spaces for each level (2)
  quote-character                 text: around attribute values, ' or " (')
  indexed-attribute-value-length  Fast Infoset: octets of a value in a table, at most (32)
  indexed-chunk-length            Fast Infoset: octets of a text in a table, at most (32)
  value-indexing                  Fast Infoset: values in tables: always, never, adaptive (adaptive)
)";

const std::string kFeatures =
    R"(
The features, with what they are otherwise:

  coalesce-characters             all text between two events is one event (off)
  namespaces                      text: split names, and report prefix mappings (on)
  namespace-prefixes              text: declarations of namespaces are attributes, too (off)
  xmlns-uris                      text: these attributes have a namespace (off)
  external-general-entities       text: read them, with --entities (on)
  external-parameter-entities     text: and those of the document type (on)
)";

const std::string kWriterFeatures =
    R"(  auto-indent                     text: begin tags on lines of their own (off)
  empty-tags                      text: one tag for an element without content (on)
  xml-declaration                 text: begin with an XML declaration (on)
)";

/// Of commands that only read.
const std::string kNames = kLimits + kFeatures;
/// Of commands that write copies, too.
const std::string kAllNames = kLimits + kWriterProperties + kFeatures + kWriterFeatures;

const std::string kWork =
    R"(  -j, --jobs N      work on N files at a time; 0 for as many as there are processors
  --quiet           tell only of what is wrong: no line of progress on a terminal, no summary
)";

const std::string kFolders =
    R"(What counts in a folder are the names that end in .xml .fi .finf .x3d .x3db .svg .xsd .xsl .xslt
.rng .sch .wsdl .xhtml .rdf .rss .atom .gml .kml .gpx .dae .mml .dita .dbk .tei .xmi .xlf .osm
.musicxml, in upper or lower case, maybe with .gz or .zst behind. Names that begin with a dot do
not, nor do folders behind symbolic links.
)";

const std::string kTiming =
    R"(  --timing          tell on standard error how long the work on each file took
  --repeat N        then do it N times again, up to 10000, and tell the least and the median time
)";

const std::string kConvert =
    R"(Copies documents, in the same format or in another.

Usage: tavrin convert [OPTIONS] IN [OUT]
       tavrin convert [OPTIONS] -o DIR IN...

  IN                the document to read; - is standard input. With -o also a folder: all documents
                    in it and below it
  OUT               where to write it; - or nothing is standard output

Options:
  -o, --output DIR  write the copies into the folder DIR, which is made if it is not there
  --force           replace OUT if it exists
  --compress FORM   compress the copy: gzip, zstd or none, instead of going by the name of OUT
  --document N      copy the Nth of the documents in IN alone; what stands behind it is not read
  --lossy           go on, with a warning, where an attribute value refers to an entity that is not
                    read: the copy has nothing in its place
  --to TYPE         the type of writer, instead of going by the name of OUT: .fi, .finf and
                    .x3db mean Fast Infoset, any other name means XML text
)" + kWork +
    kTiming +
    R"(  -h, --help        print this help

Options of XML text:
  --indent          begin every tag, comment, instruction and declaration on a line of its own,
                    two blanks deeper than what it stands in, in place of white space, and end
                    the last line
  --indent=N        N blanks deeper, at most 16
  --tabs            one tab deeper
  --no-declaration  write no XML declaration at the beginning
  --encoding NAME   write XML text in this encoding instead of UTF-8
  --canonical       write Canonical XML 1.0, without comments
  --canonical=1.1   the same by version 1.1; for whole documents, as here, there is no difference
  --canonical=exclusive
                    write Exclusive XML Canonicalization 1.0, without comments
  --comments        with --canonical: write comments, too
  --inclusive-prefixes PREFIXES
                    with --canonical=exclusive: declare these prefixes as --canonical does; with
                    commas or blanks between them, and #default for the default namespace

Options of Fast Infoset:
  --typed RULES     in Fast Infoset, write the text of the elements and attributes that the file
                    RULES names as the values that it tells
  --typed=auto      write all text as values that is printed from them octet for octet
  --typed-exact     leave text as it is where its value would be printed in another form
  --typed-lenient   leave text as it is where it is not what RULES says

Options of reading, and vocabularies:
  --from TYPE       the type of reader, instead of going by the first octets of IN
)" + kOptions +
    R"(
In Fast Infoset, documents may follow each other in IN. All are copied to Fast Infoset. XML text
holds one alone: if there are more, the work fails unless --document tells which to copy.

OUT appears when it is complete, and not at all if the work fails. Standard output may have
received a part of the document by then.

OUT is compressed if its name ends in .gz (gzip) or .zst (zstd); the name in front of that tells the
type of writer, as in out.fi.zst. FORM may have a level behind a colon, from 1 (fast) to 9 for gzip
and to 22 for zstd: gzip:9. IN is decompressed whatever its name is: its first octets tell.

NAME is an encoding that iconv knows, if it has the characters of markup: ISO-8859-1, Shift_JIS,
UTF-16, ... Its name is in the XML declaration. Characters that it lacks are written as references
in text and in values, and between two CDATA sections. In names, comments, processing instructions
and identifiers there are no references: the work fails. IN may be in any encoding of iconv.

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

Each line of RULES is a path and a type, with white space between; # begins a comment. Of the
rules that match, the first one counts:

  # PATH          TYPE
  shape/@points   float
  /scene/*/image  base64
  visible         boolean
  @*              auto

A path ends with the name of an element, or with @ and that of an attribute; the elements in front
of it are those around it, and a slash at the beginning is the document. A name is a local name,
{URI}NAME, PREFIX:NAME or *. Types are short, int, long, float, double, boolean, uuid, base64,
hexadecimal, cdata and auto. Text that is something else is an error, and white space, signs and
zeros may take another form when a value becomes text again: 1.50 comes back as 1.5. auto types
text of more than 32 octets, and only where each octet of it comes back and the value is shorter.

Only an element that has nothing but text is typed; its text is kept until its end tag. In XML text
values are text: there the copy is the same with --typed and without it.

--indent and --tabs give XML text a new layout, whatever it had; done twice they change nothing any
more. An element that has text is left as it is, with all that is in it. So is one whose xml:space
is "preserve", but for elements in it that say "default". White space is text where an element has
nothing else, and in CDATA sections. Memory does not grow with the document: text that begins more
than 64 KiB behind the first child of its element does not change what stands in front of it.

--canonical writes documents that mean the same to an application in the same octets, to compare or
to sign them: in UTF-8, without a document type, with attributes in order and no superfluous
declarations of namespaces. It needs all of the document: references to entities that are not read
end the work, and so does an external part of the document type that is not read, unless --lossy
allows the loss of the defaults of attributes there. Namespace names have to be absolute.

)" + kAllNames +
    R"(
--limit maximum-table-octets counts for the tables of a copy in Fast Infoset, too.

With -o, any number of documents and folders may be named. A document is copied under its own name,
and what is in a folder keeps its place below it. Where two copies would have the same name, nothing
is done at all. Without --to, what has a name of Fast Infoset becomes XML text, and all else Fast
Infoset. The ending of the name goes with that, and what was in DIR already is not copied:

  a.xml   <-> a.fi          a.svg, and any other ending   <-> a.svg.fi
  a.x3d   <-> a.x3db        a.finf                         -> a.xml

)" + kFolders +
    R"(A document that cannot be copied is told of in a line on standard error, and the others are copied
all the same. The last line there sums up the work on more than one.

All that is so for the types XML10 and X891, which are used where no other is named. Others keep
less: their pages in the manual tell what.

Examples:
  tavrin convert --indent in.xml out.xml
  tavrin convert in.xml out.fi
  tavrin convert -o binary drawings
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

)" + kNames +
    R"(
Example:
  tavrin events --json in.xml
)";

const std::string kGet =
    R"(Prints what a path leads to in documents.

Usage: tavrin get [OPTIONS] PATH FILE...

  PATH              what to look for, in a part of XPath 1.0
  FILE              a document; - is standard input

Options:
  --ns PREFIX=URI   a prefix of PATH and its namespace name; may stand several times
  --ns =URI         the namespace name of elements that have no prefix in PATH
  --text            print elements as their text
  --json            print JSON lines
  --count           print how many results there are in each FILE
  --max NUMBER      end with so many results in each FILE; the rest of it is not read
  -0, --null        end each result with a zero octet instead of a line end
)" + kOptions +
    R"(  --from TYPE       the type of reader, instead of going by the first octets of FILE
  -h, --help        print this help

PATH begins at the root of a document, and has a step for each level:

  /a/b              elements b directly inside of the root element a
  //b               elements b anywhere
  /a//b             elements b anywhere inside of a
  *, p:b, p:*       any element; b of the namespace of p; any of it
  *:b               b of any namespace, and of none
  @x, @p:x, @*      as the last step: attributes
  text()            as the last step: texts between tags, comments and instructions
  comment(), processing-instruction(), processing-instruction('TARGET')
                    as the last step
  PATH | PATH       what one or the other leads to, once

A step may have predicates behind it, which all have to be true:

  [@x]              it has an attribute x
  [@x='v']          the value of x is v; in quotes of either kind
  [@x!='v']         it has an attribute x of another value
  [2]               it is the second one of its parent that the step, and the predicates in front,
                    lead to
  [position()<3]    likewise; also =, !=, <=, > and >=

Every result is printed on a line, in the order of the document: elements as XML text that is
well-formed by itself, as it declares all namespaces that are in scope there, and anything else as
its value. A line end that a result holds is printed as it is; --null and --json tell where a result
ends. An element inside of another one, if both are results, comes in it and once more behind it.

With --json, a value is a string, and so is an element with --text. Other elements are objects:
"name", "uri" if it has a namespace, "attributes" if it has any, and "content", an array of strings,
elements, {"comment":...} and {"target":...,"data":...}. Of several FILEs the name stands in every
line:

  {"file":"a.xml","value":"v"}

An entity that was not read ends a document where a result would lack it. Elsewhere the first one is
told of on standard error.

)" + kNames +
    R"(
The exit status is 0 if something was found in any FILE, and 1 if not, or if a document cannot be
read to its end. What was found before is printed.

Example:
  tavrin get --ns m=urn:menu '//m:dish[@price]/m:name/text()' menu.xml menu.fi
)";

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
    EXPECT_EQ(run({"get", flag}), (Result{0, kGet, ""}));
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
       {std::string(kTool), kConvert, kCheck, kEvents, kGet, kStat, kDiff, std::string(kTypes)}) {
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
