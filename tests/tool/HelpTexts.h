#pragma once

#include <gtest/gtest.h>

#include <string>

#include "Workplace.h"

// What the commands that read documents have in common in what --help prints.

inline const std::string kLimitOption =
    R"(  --limit NAME=VALUE
                    change a limit to what hostile documents may cost; may stand several times
)";

inline const std::string kVocabularyOptions =
    R"(  --vocabulary FILE
                    names and strings that documents in Fast Infoset refer to by a URI
  --uri URI         that URI; both may stand several times (see tavrin vocabulary --help)
)";

inline const std::string kOptions =
    R"(  --entities        read external entities and the external subset, as far as they are files in
                    the folder of the document or below it
  --entities=any    read them wherever the files are: whoever wrote the document then chooses
                    which of your files are read, and their text shows in the result
)" + kLimitOption +
    R"(  --explain         show what is around the place of a failure, as is done on a terminal
  --property NAME=VALUE
                    change a property of the reader or the writer; may stand several times
  --feature NAME    turn a feature of the reader or the writer on; NAME=off turns it off; may stand
                    several times
)" + kVocabularyOptions;

inline const std::string kLimits =
    R"(Limits end the reading of documents that are made to exhaust whoever reads them. VALUE is a number,
maybe with K, M or G behind it, or none. Unless --limit says otherwise, they are those in brackets:

  entity-amplification-factor     text: octets that entities or defaults make of each (100)
  entity-amplification-threshold  text: so many octets before that factor counts (8M)
  maximum-depth                   elements that may be open at a time (none)
  amplification-factor            Fast Infoset: octets from tables for each one read (1000)
  amplification-threshold         Fast Infoset: so many octets before that factor counts (8M)
  maximum-table-octets            Fast Infoset: octets of all tables of a document (512M)
  maximum-literal-octets          Fast Infoset: octets of one string or typed value (1G)
  maximum-coalesced-octets        octets of text that --feature coalesce-characters joins (1G)
)";

inline const std::string kReading =
    R"(With --entities, an entity that is not a file is passed over, as without the option. So is one
whose file is missing, no regular file or outside of the folder, with a warning on standard error.

)" + kLimits +
    R"(
Properties and features are those of the library that bear these names. What the reader or the
writer of a document does not have is passed over, unless its type was chosen by name. VALUE is on
or off, a number as above, or a text. Unless it is changed, it is that in brackets:

  base-uri                        text: what relative system identifiers count from (none)
  reparse-deferral                text: where a token is cut, wait for twice as much (on)
  text-scanner                    text: who reads it: automatic, expat (automatic)
  raw-octets                      Fast Infoset: read on if a vocabulary is unknown (off)
)";

inline const std::string kWriterProperties =
    R"(  indent-width                    text: spaces for each level (2)
  quote-character                 text: around attribute values, ' or " (')
  indexed-attribute-value-length  Fast Infoset: octets of a value in a table, at most (32)
  indexed-chunk-length            Fast Infoset: octets of a text in a table, at most (32)
  value-indexing                  Fast Infoset: values in tables: always, never, adaptive (adaptive)
)";

inline const std::string kFeatures =
    R"(
The features, with what they are otherwise:

  coalesce-characters             all text between two events is one event (off)
  namespaces                      text: split names, and report prefix mappings (on)
  namespace-prefixes              text: declarations of namespaces are attributes, too (off)
  xmlns-uris                      text: these attributes have a namespace (off)
  external-general-entities       text: read them, with --entities (on)
  external-parameter-entities     text: and those of the document type (on)
)";

inline const std::string kWriterFeatures =
    R"(  auto-indent                     text: begin tags on lines of their own (off)
  empty-tags                      text: one tag for an element without content (on)
  xml-declaration                 text: begin with an XML declaration (on)
)";

/// Of commands that only read.
inline const std::string kNames = kReading + kFeatures;
/// Of commands that write copies, too.
inline const std::string kAllNames = kReading + kWriterProperties + kFeatures + kWriterFeatures;

inline const std::string kWork =
    R"(  -j, --jobs N      work on N files at a time; 0 for as many as there are processors
  --quiet           tell only of what is wrong: no line of progress on a terminal, no summary
)";

inline const std::string kFolders =
    R"(What counts in a folder are the names that end in .xml .fi .finf .x3d .x3db .svg .xsd .xsl .xslt
.rng .sch .wsdl .xhtml .rdf .rss .atom .gml .kml .gpx .dae .mml .dita .dbk .tei .xmi .xlf .osm
.musicxml, in upper or lower case, maybe with .gz or .zst behind. Names that begin with a dot do
not, nor do folders behind symbolic links.
)";

inline const std::string kTiming =
    R"(  --timing          tell on standard error how long the work on each file took
  --repeat N        then do it N times again, up to 10000, and tell the least and the median time
)";

/// A help text, for tests of whether a command prints it.
class HelpText : public Workplace {
 protected:
  void expectHelp(const ToolProcess::Arguments& command, const std::string& help) const {
    for (const std::string flag : {"-h", "--help"}) {
      SCOPED_TRACE(flag);
      ToolProcess::Arguments arguments = command;
      arguments.push_back(flag);
      EXPECT_EQ(run(arguments), (Result{0, help, ""}));
    }
  }
};
