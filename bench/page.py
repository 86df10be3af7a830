"""Writes docs/benchmarks.md: Markdown of the tables, around the plots."""

from collections.abc import Callable, Sequence

import results
from results import Run
from targets import (GROWTH, MEMORY_BASELINE, MEMORY_BINARY_TYPES, MEMORY_NOISE,
                     MEMORY_TEXT_TYPES, RECORDS_NO_WORSE, ROWS)

NOTHING = "—"
MIB = 2.0**20

INTRODUCTION = """\
# Benchmarks

<!-- Written by bench/report. Do not edit: change that, or run it again. -->

`bench/report` builds the preset `release`, runs `bench_tavrin` and writes this page.
{trial}
## How it is measured

Every job is measured beside a baseline that does the same work, the two in turn within one run,
so that whatever else the machine does meets both alike. A **ratio** is the median, over all
pairs of runs, of the processor time of the job divided by that of the baseline: less than 1 is
faster than the baseline. An **event** is a start tag, an end tag, an attribute or a run of text
of the document, the same number for all jobs. Readers get the document from a `std::istream` in
memory, and every one of them, the peers as well, makes strings of URI, local name and qualified
name, a list of attributes and text; sums of counts and lengths have to agree, or the run fails.
Writers write to a `std::ofstream` on `/dev/null`.

The baseline `expat-istream` reads the stream in blocks of 1 MiB and makes the same strings from
what expat calls back; `raw-expat` only counts. For Fast Infoset the baseline reads the XML text
of the same document. The escape loop is what one writes by hand, for a document whose names are
known to be right.

The documents are made by a program that always makes the same: `records` (many short elements,
few distinct values, distinct ids), `text` (long mixed prose), `prose` (25 MB of paragraphs with
nothing between their words), `languages` (as `text`, in Russian, Chinese, Korean, Hindi, Thai, and
with emoji), `attributes` (dense, of several namespaces), `table` (rows with 200,000 keys that never
come again), `mesh` (floats, in one element), `small` (2 KB, read again and again, each time with a
new reader) and `messages` (likewise, with a name of its own in nearly every tag).{files}

## The machine

{machine}
"""

TIME = """\
## Time

The ratio, and in brackets the time per event, or for `mesh` and for messages the time of all. Where a dash stands,
the type cannot carry the document, or the peer does not hear the same events. The Fast Infoset form
of `mesh` holds numbers; a reader of Fast Infoset makes text of them where text is asked for.
"""

# Group, heading, what its baseline is.
GROUPS = (
    ("read", "Reading", "`expat-istream` on the XML text"),
    ("write", "Writing XML text", "the escape loop"),
    ("write-binary", "Writing Fast Infoset", "`expat-istream` on the XML twin"),
    ("to-binary", "XML text to Fast Infoset, reader and writer", "`expat-istream` on the XML text"),
    ("to-typed", "XML text to Fast Infoset, with `TypedContentFilter`",
     "`XML10` and `X891` without the filter"),
    ("to-text", "Fast Infoset to XML text, reader and writer", "`expat-istream` on the XML twin"),
    ("sibling-read", "Readers beside the other of their format",
     "`Expat` for `XML10`, `FI` for `X891`, each on what the writer of its family wrote\nwith "
     "tables of the same strings"),
    ("sibling-write", "Writers beside the other of their format",
     "`XML` for `XML10`, `FI` for `X891` with tables of the same strings"),
    ("floats-read", "Floats, typed, read", "`strtof` over the text of the XML twin, in memory"),
    ("floats-write", "Floats, typed, written",
     "`std::to_chars` of each into one string, which the writer `XML` then writes"),
    ("blocks", "In blocks of 64, 1,500 and 65,536 octets, beside the stream",
     "the same reader on a stream"),
    ("push", "In blocks, beside expat in the same blocks",
     "expat's `XML_Parse` on the XML text, in the same blocks"),
    ("pull", "The pull reader beside handlers", "the same reader with a handler"),
    ("small", "2 KB, a new reader each time", "expat, a new parser each time, from a stream"),
    ("message", "A message of 2 KB with many names, a new reader and writer each time",
     "expat on its XML text, a new parser each time, from a stream"),
    ("message-again", "The same, with a reader and a writer that are used again",
     "the same: a new parser each time"),
    ("vocabulary-write", "Messages of 200 octets of XML text, written with a shared vocabulary of so "
     "many entries", "the same writer without a vocabulary"),
    ("vocabulary-read", "The same, read", "the same reader, without a vocabulary"),
)

PLOTS = {
    "read": ("reading", "Time of readers beside expat from a stream"),
    "write-binary": ("writing", "Time of writers beside their baselines"),
}


def table(head: Sequence[str], rows: Sequence[Sequence[str]], texts: int = 1) -> str:
    """A Markdown table: so many columns of text, and numbers to the right."""
    lines = [head, ["---"] * texts + ["---:"] * (len(head) - texts), *rows]
    return "".join(f"| {' | '.join(line)} |\n" for line in lines)


def code(name: str) -> str:
    return f"`{name}`"


def title(document: str) -> str:
    return code("small" if document == "document" else document)


def verdict(value: float | None, target: float) -> str:
    if value is None:
        return "**not measured**"
    return "met" if value <= target else "**not met**"


def ratio_text(value: float | None) -> str:
    return NOTHING if value is None else f"{value:.3f}"


def _target_rows(run: Run) -> list[list[str]]:
    rows = []
    for row in ROWS:
        if row.target is not None:
            value = results.mean_ratio(run, row)
            rows.append([row.job, code(row.type), row.baseline, ratio_text(value),
                         f"{row.target:.2f}", verdict(value, row.target)])
    return rows


def _records_rows(run: Run) -> list[list[str]]:
    group, types = RECORDS_NO_WORSE
    rows = []
    for row in ROWS:
        if row.group == group and row.type in types and row.document is None:
            value = results.records_to_worst_other(run, row)
            rows.append([f"{row.job}, records alone", code(row.type),
                         "the ratio of the worst other document", ratio_text(value), "1.00",
                         verdict(value, 1.0)])
    return rows


def _peak_row(run: Run, job: str, target: str, over: str) -> list[str]:
    """A row of memory; `over` is said of a reader that takes more than the baseline."""
    peak = results.worst_peak(run, job)
    if peak is None:
        told, judged = NOTHING, "**not measured**"
    else:
        told = (f"{peak.ratio:.3f} ({peak.where}: {peak.octets / MIB:.2f} MiB beside "
                f"{peak.baseline / MIB:.2f})")
        judged = "met" if peak.excess <= MEMORY_NOISE else over
    return ["added peak of memory, worst document", code(job), code(MEMORY_BASELINE), told, target,
            judged]


def _memory_rows(run: Run) -> list[list[str]]:
    rows = [_peak_row(run, job, "1.00", "**not met**") for job in MEMORY_TEXT_TYPES]
    # Nothing tells from outside how much of it is tables.
    rows += [_peak_row(run, job, "tables only", "**more than the baseline, with the tables**")
             for job in MEMORY_BINARY_TYPES]
    return rows


def targets(run: Run) -> str:
    """The table of targets, each with what was measured and whether it is met."""
    rows = _target_rows(run) + _records_rows(run) + _memory_rows(run)
    return table(["Job", "Type", "Baseline = 1", "Measured", "Target", ""], rows, texts=3)


def _nanoseconds(run: Run, name: str, counter: str) -> str:
    result = run.results.get(name)
    time = result.ns_per_event(counter) if result and not result.error else None
    return NOTHING if time is None else f"{time:.1f} ns"


def _microseconds(run: Run, name: str, counter: str) -> str:
    time = run.counter(name, counter)
    return NOTHING if time is None else f"{time / 1e3:.2f} µs"


def _milliseconds(run: Run, name: str, counter: str) -> str:
    time = run.counter(name, counter)
    return NOTHING if time is None else f"{time / 1e6:.2f} ms"


def _cell(run: Run, name: str, time: Callable[[Run, str, str], str]) -> str:
    ratio = run.counter(name, "ratio")
    return NOTHING if ratio is None else f"{ratio_text(ratio)} ({time(run, name, 'job_ns')})"


def _baseline_cell(run: Run, group: str, document: str, time: Callable) -> str:
    """The time of the baseline as the first type met it."""
    names = (f"{group}/{document}/{job}" for job in run.types(group))
    return next((time(run, name, "baseline_ns") for name in names
                 if run.counter(name, "ratio") is not None), NOTHING)


def group_table(run: Run, group: str) -> str:
    """Documents by types: the ratio, and the time that it stands for."""
    types = run.types(group)
    common_baseline = not group.startswith("sibling")  # These have a baseline each.
    rows = []
    for document in run.documents(group):
        # The mesh is one run of text, so that its time per event tells nothing; messages are all
        # the same.
        if group.startswith("vocabulary"):
            time = _microseconds
        else:
            time = _milliseconds if document == "mesh" else _nanoseconds
        cells = [_cell(run, f"{group}/{document}/{job}", time) for job in types]
        if common_baseline:
            cells.insert(0, _baseline_cell(run, group, document, time))
        rows.append([title(document), *cells])
    head = ["Document", *(["baseline"] if common_baseline else []), *map(code, types)]
    return table(head, rows)


def _groups(run: Run) -> str:
    parts = []
    for group, heading, baseline in GROUPS:
        if not run.documents(group):
            continue
        parts.append(f"### {heading}\n\nBaseline: {baseline}.\n\n{group_table(run, group)}")
        if group in PLOTS:
            name, title = PLOTS[group]
            parts.append(plot(name, title))
    return "\n".join(parts)


def plot(name: str, title: str) -> str:
    return f"![{title}](benchmarks/{name}.svg)\n"


def _size_cell(octets: int | None, xml: int) -> str:
    return NOTHING if octets is None else f"{octets:,} ({100 * octets / xml:.1f} %)"


def sizes_table(sizes: dict[str, dict[str, int | None]]) -> str:
    forms = list(next(iter(sizes.values())))
    rows = [[code(document), *(_size_cell(of[form], of["XML"]) for form in forms)]
            for document, of in sizes.items()]
    return table(["Document", *forms], rows)


def _sizes(run: Run) -> str:
    if not (sizes := run.facts.get("sizes")):
        return "## Octets\n\nNot recorded in this run.\n"
    return ("## Octets\n\n`FI` and `X891` are Fast Infoset as these types write it; floats are "
            "typed there. The compressors\nstand beside them for XML text, and on top of `X891`."
            "\n\n"
            f"{sizes_table(sizes)}\n{plot('sizes', 'Octets as a share of the XML text')}")


def memory_table(run: Run, group: str, suffix: str = "") -> str:
    types = run.types(group)
    rows = []
    for document in run.documents(group):
        peaks = [run.counter(f"{group}/{document}/{job}", "added_peak_octets") for job in types]
        rows.append([code(document) if not suffix else document + suffix,
                     *(NOTHING if peak is None else f"{peak / MIB:.2f}" for peak in peaks)])
    return table(["Document", *map(code, types)], rows)


def _memory(run: Run) -> str:
    return ("## Peak of memory\n\nMiB that a process of its own takes more at its peak than before "
            "it began to read a file, the\nmedian of five runs. Runs of one job differ by about an "
            "eighth of a MiB, so a reader that takes up\nto so much more than the baseline counts "
            "as taking no more. libxml2 reads events here, as it does\nabove; pugixml builds a "
            "tree.\n\n"
            f"{memory_table(run, 'memory')}\nRecords of 1, 10 and 100 MB of XML text:\n\n"
            f"{memory_table(run, 'memory-size', ' MB')}")


def growth_table(run: Run, group: str, what: str) -> str:
    numbers = run.numbers(group)
    rows = [[code(job), *(_nanoseconds(run, f"{group}/{number}/{job}", "job_ns")
                          for number in numbers)]
            for job in run.types(group)]
    return table([f"Time per event by {what}", *(f"{number:,}" for number in numbers)], rows)


def _growth(run: Run) -> str:
    tables = [growth_table(run, growth.group, growth.what) for growth in GROWTH
              if run.documents(growth.group)]
    return ("## Growth\n\nTime per event must not grow with the document, nor with its depth, nor "
            "with the number of\nattributes on an element. What is left are the caches of the "
            "processor: names and values are kept\nin tables, and thousands of them no longer fit "
            "the first cache. The writer `X891` adds values to its\ntables as "
            "long as enough of them come back. The properties `value-indexing`,\n"
            "`indexed-attribute-value-length`, `indexed-chunk-length` and\n"
            "`maximum-table-octets` bound the tables.\n\n"
            f"{plot('growth', 'Time per event as documents grow')}\n" + "\n".join(tables))


def _errors(run: Run) -> str:
    errors = [f"- `{name}`: {error}\n" for name, error in run.errors().items()]
    return "\n## What could not be measured\n\n" + "".join(errors) if errors else ""


def _introduction(run: Run) -> str:
    scale = run.facts.get("scale", 1.0)
    trial = "" if scale == 1 else (
        f"\n**This is a trial run with documents of {scale:g} times their size. Its figures are "
        "not to be quoted.**\n")
    names = [code(name) for name in run.facts.get("files", [])]
    files = f"\nBeside them stand files that others wrote: {', '.join(names)}." if names else ""
    machine = dict(run.facts.get("machine", {"Machine": "not recorded"}))
    machine["Date"] = run.context.get("date", "not recorded")[:len("2000-01-01")]
    lines = [f"- {name}: {value}" for name, value in machine.items()]
    return INTRODUCTION.format(trial=trial, files=files, machine="\n".join(lines))


def write(run: Run) -> str:
    """The whole page."""
    return "\n".join((
        _introduction(run),
        "## Targets\n\nThe geometric mean of the ratios over `records`, `text`, `attributes` and "
        "the files, as far as\nthe type can carry them, where nothing else is said. The worst "
        "document decides on memory.\n\n"
        + targets(run),
        TIME,
        _groups(run), _sizes(run), _memory(run), _growth(run))) + _errors(run)
