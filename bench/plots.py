"""The plots of docs/benchmarks.md: small SVG files, the same for the same results."""

import math
import pathlib
from collections.abc import Iterable

import matplotlib

matplotlib.use("svg")

from matplotlib import pyplot  # noqa: E402

from results import Run  # noqa: E402
from targets import GROWTH, GROWTH_READERS, GROWTH_WRITERS  # noqa: E402

TEXT_COLOUR = "#1f5fa8"  # Ours, XML text.
BINARY_COLOUR = "#c2570c"  # Ours, Fast Infoset.
PEER_COLOUR = "#8a8f98"
LINE_COLOUR = "#333333"
COLOURS = {"Expat": TEXT_COLOUR, "XML10": TEXT_COLOUR, "XML": TEXT_COLOUR,
           "FI": BINARY_COLOUR, "X891": BINARY_COLOUR}

STYLE = {
    "svg.hashsalt": "tavrin",
    "svg.fonttype": "none",
    "font.family": "sans-serif",
    "font.size": 9,
    "axes.spines.top": False,
    "axes.spines.right": False,
    "axes.titlesize": 9,
    "axes.titleweight": "bold",
    "figure.facecolor": "white",  # Also in a dark page.
    "axes.facecolor": "white",
}

Bar = tuple[str, float | None]  # Label and length.


def _colour(label: str) -> str:
    """By the first word: "X891, gzip -6" and "FI-writer" go with their type."""
    return COLOURS.get(label.replace("-", " ").replace(",", " ").split()[0], PEER_COLOUR)


def _draw_bars(axes, title: str, bars: list[Bar], longest: float, form: str) -> None:
    """Bars from above to below, each with its value at its end."""
    positions = range(len(bars))
    lengths = [length or 0 for _, length in bars]
    axes.barh(positions, lengths, color=[_colour(label) for label, _ in bars], height=0.7)
    for position, (_, length) in zip(positions, bars):
        text = "—" if length is None else form.format(length)
        axes.text((length or 0) + 0.02 * longest, position, text, va="center",
                  bbox={"facecolor": "white", "linewidth": 0, "pad": 0.5})
    axes.set_yticks(positions, [label for label, _ in bars])
    axes.tick_params(axis="y", length=0)
    axes.set_xticks([])
    axes.spines["bottom"].set_visible(False)
    axes.set_xlim(0, 1.3 * longest)
    axes.invert_yaxis()
    axes.set_title(title, loc="left")


def _save(figure, file: pathlib.Path) -> None:
    figure.tight_layout(h_pad=2)
    figure.savefig(file, metadata={"Date": None, "Creator": None})
    pyplot.close(figure)


def _draw_panels(file: pathlib.Path, heading: str, panels: dict[str, list[Bar]], line: float,
                 form: str) -> None:
    """A panel of bars for each title, three in a row, with a line at the baseline."""
    columns = min(3, len(panels))
    rows = math.ceil(len(panels) / columns)
    tallest = max(len(bars) for bars in panels.values())
    figure, grid = pyplot.subplots(rows, columns, squeeze=False,
                                   figsize=(3.4 * columns, rows * (0.24 * tallest + 0.6) + 0.4))
    figure.suptitle(heading, x=0.01, ha="left", fontsize=10)
    for axes in grid.flat[len(panels):]:
        axes.set_visible(False)
    for axes, (title, bars) in zip(grid.flat, panels.items()):
        longest = max([line, *(length for _, length in bars if length)])
        _draw_bars(axes, title, bars, longest, form)
        axes.axvline(line, color=LINE_COLOUR, linewidth=0.8, zorder=1.5)
    _save(figure, file)


def _ratios(run: Run, groups: Iterable[str], document: str) -> list[Bar]:
    return [(job, run.counter(f"{group}/{document}/{job}", "ratio"))
            for group in groups for job in run.types(group)]


def _draw_ratios(run: Run, file: pathlib.Path, heading: str, *groups: str) -> None:
    # The mesh would dwarf the others: readers of Fast Infoset have to make text of its numbers.
    documents = [document for document in run.documents(groups[0]) if document != "mesh"]
    panels = {document: _ratios(run, groups, document) for document in documents}
    if panels:
        _draw_panels(file, heading, panels, 1.0, "{:.2f}")


def _draw_sizes(run: Run, file: pathlib.Path) -> None:
    panels = {document: [(form, None if octets is None else 100 * octets / of["XML"])
                         for form, octets in of.items() if form != "XML"]
              for document, of in run.facts.get("sizes", {}).items()}
    if panels:
        _draw_panels(file, "Octets, in per cent of the XML text (the line)", panels, 100.0,
                     "{:.1f} %")


def _spread(positions: list[float], distance: float) -> list[float]:
    """Moves positions up where they are nearer than a distance to the one below."""
    moved = list(positions)
    order = sorted(range(len(positions)), key=positions.__getitem__)
    for below, above in zip(order, order[1:]):
        moved[above] = max(moved[above], moved[below] + distance)
    return moved


def _growth_line(run: Run, group: str, job: str) -> tuple[list[int], list[float]]:
    results = {number: run.results.get(f"{group}/{number}/{job}") for number in run.numbers(group)}
    times = {number: result.ns_per_event() for number, result in results.items() if result}
    known = {number: time for number, time in times.items() if time is not None}
    return list(known), list(known.values())


def _draw_growth_panel(axes, run: Run, group: str, what: str, jobs: tuple[str, ...]) -> None:
    lines = {job: line for job in jobs if (line := _growth_line(run, group, job))[0]}
    if not lines:
        axes.set_visible(False)
        return
    highest = max(max(times) for _, times in lines.values())
    # The newer type of a format has the dashed line.
    for job, (numbers, times) in lines.items():
        style = "--" if job.startswith("X") and not job.startswith("XML-") else "-"
        axes.plot(numbers, times, style, marker="o", markersize=3, color=_colour(job))
    heights = _spread([times[-1] for _, times in lines.values()], 0.1 * highest)
    for (job, (numbers, _)), height in zip(lines.items(), heights):
        axes.annotate(job.removesuffix("-writer"), (numbers[-1], height), xytext=(6, 0),
                      textcoords="offset points", va="center", color=_colour(job))
    axes.set_xscale("log")
    axes.minorticks_off()
    axes.set_xticks(run.numbers(group), [f"{number:,}" for number in run.numbers(group)])
    axes.set_ylim(0, 1.15 * max(highest, *heights))
    axes.set_xlabel(what)


def _draw_growth(run: Run, file: pathlib.Path) -> None:
    figure, grid = pyplot.subplots(2, len(GROWTH), figsize=(10.2, 5.2))
    figure.suptitle("Nanoseconds per event", x=0.01, ha="left", fontsize=10)
    for row, (title, jobs) in zip(grid, (("Readers", GROWTH_READERS), ("Writers", GROWTH_WRITERS))):
        row[0].set_title(title, loc="left")
        for axes, growth in zip(row, GROWTH):
            _draw_growth_panel(axes, run, growth.group, growth.what, jobs)
    _save(figure, file)


def draw(run: Run, folder: pathlib.Path) -> None:
    """Writes all plots into a folder."""
    folder.mkdir(parents=True, exist_ok=True)
    with matplotlib.rc_context(STYLE):
        _draw_ratios(run, folder / "reading.svg",
                     "Time to read; the line is expat from a stream, on XML text", "read")
        _draw_ratios(run, folder / "writing.svg",
                     "Time to write; the line is the escape loop for XML text, and reading with "
                     "expat for FI and X891", "write", "write-binary")
        _draw_growth(run, folder / "growth.svg")
        _draw_sizes(run, folder / "sizes.svg")
