#include "HelpTexts.h"

namespace {

using ConvertHelp = HelpText;

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

}  // namespace

TEST_F(ConvertHelp, OfTheCommandConvert) { expectHelp({"convert"}, kConvert); }

TEST_F(ConvertHelp, ComesBeforeAnyWork) {
  writeFile("a.xml", "<a/>");
  EXPECT_EQ(run({"convert", "a.xml", "b.xml", "--help"}), (Result{0, kConvert, ""}));
  EXPECT_EQ(run({"convert", "missing.xml", "--help"}), (Result{0, kConvert, ""}));
  EXPECT_EQ(files(), Names{"a.xml"});
}
