"""What every job should take, beside its baseline: the one table of targets and of usual values."""

from dataclasses import dataclass

# Means are taken over these and over the files that were named. The others are shown only.
MEAN_DOCUMENTS = ("records", "text", "languages", "attributes")

# A usual value times this is the limit of the guard. Runs of a busy machine differ by up to a
# third, and a doubling has to fail.
TOLERANCE = 1.6

ISTREAM = "expat from a stream"
ISTREAM_TWIN = "expat from a stream, on the XML twin"
NEW_PARSER = "expat, a new parser each time"


@dataclass(frozen=True)
class Row:
    """A job whose time is held against that of a baseline, which is 1."""

    group: str
    type: str
    job: str
    baseline: str
    target: float | None  # None: there is no target, the row is guarded only.
    usual: float  # At the scale of scripts/check-benchmarks.
    document: str | None = None  # The only document; None: the mean over documents.

    @property
    def limit(self) -> float:
        return TOLERANCE * self.usual

    @property
    def key(self) -> str:
        return self.name(self.document) if self.document else f"{self.group}/{self.type}"

    def name(self, document: str) -> str:
        """Of the benchmark that measures this job on a document."""
        return f"{self.group}/{document}/{self.type}"

    def required(self) -> list[str]:
        """The benchmarks without which the row tells nothing."""
        documents = (self.document,) if self.document else MEAN_DOCUMENTS
        return [self.name(document) for document in documents]


def _rows(group: str, job: str, baseline: str, *types: tuple[str, float | None, float],
          document: str | None = None) -> list[Row]:
    return [Row(group, name, job, baseline, target, usual, document)
            for name, target, usual in types]


# Group, job, baseline; then for each type its target and its usual value.
ROWS = (
    *_rows("read", "read", ISTREAM, ("Expat", 0.95, 0.89), ("XML10", 0.40, 0.23)),
    *_rows("read", "read", ISTREAM_TWIN, ("FI", 0.20, 0.22), ("X891", 0.20, 0.19)),
    *_rows("write-binary", "write", ISTREAM_TWIN, ("FI", 0.35, 0.33), ("X891", 0.35, 0.34)),
    *_rows("write", "write", "escape loop by hand", ("XML", 1.10, 0.51), ("XML10", 1.10, 0.50)),
    *_rows("to-binary", "convert XML text to Fast Infoset", ISTREAM,
           ("Expat-FI", 1.40, 1.25), ("XML10-X891", 0.75, 0.54)),
    *_rows("to-text", "convert Fast Infoset to XML text", ISTREAM_TWIN,
           ("FI-XML", 0.45, 0.40), ("X891-XML10", 0.35, 0.38)),
    *_rows("floats-read", "read a million floats, typed", "`strtof` over the text of the XML twin",
           ("FI", 0.03, 0.011), ("X891", 0.03, 0.011), document="mesh"),
    *_rows("floats-write", "write a million floats, typed", "`std::to_chars` and the text writer",
           ("FI", 0.05, 0.02), ("X891", 0.05, 0.02), document="mesh"),
    *_rows("small", "read 2 KB with a new reader", NEW_PARSER,
           ("Expat", 1.05, 0.98), ("XML10", 0.50, 0.24), ("FI", 0.25, 0.24), ("X891", 0.25, 0.245),
           document="document"),
    *_rows("message", "read a message of new names, with a new reader", NEW_PARSER,
           ("X891", 0.30, 0.37), document="messages"),
    *_rows("message", "write it, with a new writer", NEW_PARSER,
           ("X891-writer", 0.50, 0.73), document="messages"),
    *_rows("message", "convert its XML text to Fast Infoset, both new", NEW_PARSER,
           ("XML10-X891", 1.30, 1.12), document="messages"),
    *_rows("message", "convert its Fast Infoset to XML text, both new", NEW_PARSER,
           ("X891-XML10", 0.55, 0.88), document="messages"),
    *_rows("message-again", "read it, with the same reader", NEW_PARSER,
           ("X891", 0.25, 0.27), document="messages"),
    *_rows("message-again", "write it, with the same writer", NEW_PARSER,
           ("X891-writer", 0.40, 0.60), document="messages"),
    *_rows("write-binary", "write a table of keys that never come again", ISTREAM_TWIN,
           ("X891", None, 0.58), document="table"),
    *_rows("to-binary", "convert such a table to Fast Infoset", ISTREAM,
           ("XML10-X891", None, 0.95), document="table"),
    *_rows("read", "read long prose", ISTREAM_TWIN, ("X891", None, 0.03), document="prose"),
    *_rows("vocabulary-write", "write a message with a vocabulary of 500 entries", "without",
           ("external", None, 0.74), document="500"),
    *_rows("vocabulary-read", "read a message with a vocabulary of 500 entries", "without",
           ("external", None, 0.93), document="500"),
    *_rows("pull", "read by pulling", "the same reader with a handler",
           ("XML10", 1.20, 1.25), ("X891", 1.20, 1.20)),
    *_rows("sibling-read", "read", "`Expat`", ("XML10", 1.10, 0.26)),
    *_rows("sibling-read", "read", "`FI`", ("X891", 1.10, 0.95)),
    *_rows("sibling-write", "write", "`XML`", ("XML10", 1.10, 0.97)),
    *_rows("sibling-write", "write", "`FI`", ("X891", 1.10, 0.94)),
    *_rows("blocks", "read blocks of 1,500 octets", "the same reader on a stream",
           ("XML10-1500", 1.10, 1.04), ("X891-1500", 1.15, 1.15)),
    *_rows("blocks", "read blocks of 64 octets", "the same reader on a stream",
           ("XML10-64", None, 1.70), ("X891-64", None, 2.20)),
    *_rows("push", "read blocks of 1,500 octets", "expat in the same blocks",
           ("XML10-1500", None, 0.22), ("X891-1500", None, 0.20)),
)

# The writers of Fast Infoset, whose tables grow most with the records.
RECORDS_NO_WORSE = ("write-binary", ("FI", "X891"))

# Readers, whose added peak of memory is held against that of expat-istream.
MEMORY_BASELINE = "expat-istream"
# Octets by which the peak of one job differs from run to run, about.
MEMORY_NOISE = 128 * 1024
MEMORY_TEXT_TYPES = ("Expat", "XML10")
MEMORY_BINARY_TYPES = ("FI", "X891")

GROWTH_READERS = ("Expat", "XML10", "FI", "X891")
GROWTH_WRITERS = ("XML-writer", "XML10-writer", "FI-writer", "X891-writer")


@dataclass(frozen=True)
class Growth:
    """Time per event of a large number against that of a small one."""

    group: str
    what: str
    small: int
    large: int
    limit: float  # No job may take more than so many times longer per event.

    def names(self, job: str) -> list[str]:
        """The two benchmarks that tell."""
        return [f"{self.group}/{number}/{job}" for number in (self.small, self.large)]


# The limits leave room for memory that no longer fits the caches of the processor, and for a search
# among attributes; what grows with the number itself grows by tens at least. At a small scale the
# sizes shrink as documents do; the other numbers stay.
GROWTH = (
    Growth("growth-size", "size of the document, MB", 1, 100, 2.0),
    Growth("growth-depth", "open elements", 10, 100000, 2.0),
    # With one attribute, most events are tags.
    Growth("growth-attributes", "attributes on an element", 10, 10000, 4.0),
)
