"""The results of a run of bench_tavrin, and what follows from them."""

import json
import math
import pathlib
from collections.abc import Iterable
from dataclasses import dataclass, field

from targets import MEAN_DOCUMENTS, MEMORY_BASELINE, Growth, Row

OWN_DOCUMENTS = (*MEAN_DOCUMENTS, "prose", "table", "mesh", "document", "messages")


@dataclass(frozen=True)
class Result:
    """One benchmark: its counters, or why it could not be done."""

    counters: dict[str, float] = field(default_factory=dict)
    error: str | None = None

    def ns_per_event(self, counter: str = "job_ns") -> float | None:
        nanoseconds, events = self.counters.get(counter), self.counters.get("events")
        return nanoseconds / events if nanoseconds is not None and events else None


@dataclass(frozen=True)
class Run:
    """All benchmarks of a run by GROUP/DOCUMENT/TYPE, in the order in which they ran."""

    results: dict[str, Result]
    context: dict = field(default_factory=dict)
    facts: dict = field(default_factory=dict)  # What bench/report adds: machine, scale, sizes.

    def errors(self) -> dict[str, str]:
        return {name: result.error for name, result in self.results.items() if result.error}

    def counter(self, name: str, counter: str) -> float | None:
        result = self.results.get(name)
        return None if result is None or result.error else result.counters.get(counter)

    def documents(self, group: str) -> list[str]:
        return self._parts(group, 1)

    def types(self, group: str) -> list[str]:
        return self._parts(group, 2)

    def numbers(self, group: str) -> list[int]:
        """The documents of a group that are numbers, from the smallest."""
        return sorted(int(number) for number in self.documents(group))

    def _parts(self, group: str, index: int) -> list[str]:
        parts = (name.split("/") for name in self.results)
        return list(dict.fromkeys(part[index] for part in parts if part[0] == group))


def parse(data: dict) -> Run:
    """Takes what a JSON file of Google Benchmark holds."""
    results = {}
    for entry in data["benchmarks"]:
        if entry.get("run_type", "iteration") != "iteration":
            continue
        # What follows the type tells how it was run.
        name = "/".join(entry["name"].split("/")[:3])
        if entry.get("error_occurred"):
            results[name] = Result(error=entry.get("error_message") or "no message")
        else:
            results[name] = Result({key: float(value) for key, value in entry.items()
                                    if isinstance(value, (int, float))})
    return Run(results, data.get("context", {}), data.get("report", {}))


def load(path: pathlib.Path) -> Run:
    with path.open(encoding="utf-8") as stream:
        return parse(json.load(stream))


def geometric_mean(values: Iterable[float]) -> float:
    logarithms = [math.log(value) for value in values]
    return math.exp(sum(logarithms) / len(logarithms))


def mean_ratios(run: Run, row: Row) -> dict[str, float]:
    """The ratios that the mean of a row is taken over, by document."""
    documents = [row.document] if row.document else [
        document for document in run.documents(row.group)
        if document in MEAN_DOCUMENTS or document not in OWN_DOCUMENTS]
    ratios = {document: run.counter(row.name(document), "ratio") for document in documents}
    return {document: ratio for document, ratio in ratios.items() if ratio is not None}


def mean_ratio(run: Run, row: Row) -> float | None:
    ratios = mean_ratios(run, row)
    return geometric_mean(ratios.values()) if ratios else None


def records_to_worst_other(run: Run, row: Row) -> float | None:
    """How much worse a job does on the records than on the worst of the other documents."""
    ratios = mean_ratios(run, row)
    records = ratios.pop("records", None)
    return records / max(ratios.values()) if records is not None and ratios else None


def growth_factor(run: Run, growth: Growth, job: str) -> float | None:
    """Time per event with the large number, as a multiple of that with the small one."""
    small, large = (run.results.get(name) for name in growth.names(job))
    before = small.ns_per_event() if small else None
    after = large.ns_per_event() if large else None
    return after / before if before and after else None


@dataclass(frozen=True)
class Peak:
    """Added peak of memory where it compares worst with the baseline."""

    where: str
    octets: float
    baseline: float

    @property
    def ratio(self) -> float:
        return self.octets / self.baseline

    @property
    def excess(self) -> float:
        return self.octets - self.baseline


def worst_peak(run: Run, job: str) -> Peak | None:
    peaks = []
    for group in ("memory", "memory-size"):
        for document in run.documents(group):
            octets = run.counter(f"{group}/{document}/{job}", "added_peak_octets")
            baseline = run.counter(f"{group}/{document}/{MEMORY_BASELINE}", "added_peak_octets")
            if octets is not None and baseline:
                where = f"{document} MB" if group == "memory-size" else document
                peaks.append(Peak(where, octets, baseline))
    return max(peaks, key=lambda peak: peak.excess, default=None)
