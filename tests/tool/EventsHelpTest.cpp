#include "HelpTexts.h"

namespace {

using EventsHelp = HelpText;

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

}  // namespace

TEST_F(EventsHelp, OfTheCommandEvents) { expectHelp({"events"}, kEvents); }

TEST_F(EventsHelp, OfTheCommandGet) { expectHelp({"get"}, kGet); }

// What the help tells of the events of an attribute, shown by the tool itself.
TEST_F(EventsHelp, ShowsEventsAsTheyAre) {
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
