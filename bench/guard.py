"""Finds in a run what has become much slower than it usually is."""

from collections.abc import Callable, Iterable
from dataclasses import dataclass

import results
from targets import GROWTH, GROWTH_READERS, GROWTH_WRITERS, ROWS, Growth, Row


@dataclass(frozen=True)
class Check:
    """One value with the limit that it has to keep."""

    key: str
    value: float
    limit: float
    names: tuple[str, ...]  # The benchmarks that the value comes from.

    @property
    def kept(self) -> bool:
        return self.value <= self.limit

    def __str__(self) -> str:
        verdict = "ok" if self.kept else "TOO SLOW"
        return f"{self.key:32} {self.value:8.3f}  limit {self.limit:7.3f}  {verdict}"


def _growths() -> list[tuple[Growth, str]]:
    return [(growth, job) for growth in GROWTH for job in (*GROWTH_READERS, *GROWTH_WRITERS)]


def required() -> dict[str, tuple[str, ...]]:
    """Every benchmark without which something would go unguarded, and what it has to count."""
    ratios = {name: ("ratio",) for row in ROWS for name in row.required()}
    times = {name: ("job_ns", "events") for growth, job in _growths() for name in growth.names(job)}
    return ratios | times


def everything() -> list[str]:
    """What to measure: whole groups, as the sums of peers have to agree; of growth the ends."""
    groups = dict.fromkeys(row.group for row in ROWS)
    return [*groups, *(f"{growth.group}/{number}" for growth in GROWTH
                       for number in (growth.small, growth.large))]


def _gaps(run: results.Run, name: str, counters: tuple[str, ...]) -> list[str]:
    """What a benchmark that has no error does not tell."""
    if name not in run.results:
        return [f"{name}: missing"]
    if run.results[name].error:
        return []
    # Written so that a value that is no number is a gap, too.
    return [f"{name}: no {counter}" for counter in counters
            if not (run.counter(name, counter) or 0) > 0]


def defects(run: results.Run, names: Iterable[str]) -> list[str]:
    """What is wrong with a run whatever its times are."""
    found = [f"{name}: {error}" for name, error in run.errors().items()]
    counters = required()
    return found + [gap for name in names for gap in _gaps(run, name, counters[name])]


def _check_row(run: results.Run, row: Row) -> Check | None:
    ratio = results.mean_ratio(run, row)
    return None if ratio is None else Check(row.key, ratio, row.limit, tuple(row.required()))


def _check_growth(run: results.Run, growth: Growth, job: str) -> Check | None:
    factor = results.growth_factor(run, growth, job)
    if factor is None:
        return None
    return Check(f"{growth.group}/{job}", factor, growth.limit, tuple(growth.names(job)))


def checks(run: results.Run) -> list[Check]:
    """Of every row that the run holds."""
    found = [_check_row(run, row) for row in ROWS]
    found += [_check_growth(run, growth, job) for growth, job in _growths()]
    return [check for check in found if check]


# Measures the benchmarks whose names are these or begin with them and a slash.
Measure = Callable[[list[str]], results.Run]


def judge(measure: Measure, say: Callable[[str], None]) -> list[str]:
    """Returns what failed.

    What was too slow is measured once more, and fails only if it is too slow again: on a shared
    machine another program can slow down one run of many, and what has really become slower
    stays so. Errors and missing benchmarks are no matter of chance and fail at once.
    """
    run = measure(everything())
    if found := defects(run, required()):
        return found
    slow = []
    for check in checks(run):
        say(str(check))
        if not check.kept:
            slow.append(check)
    if not slow:
        return []

    names = [name for check in slow for name in check.names]
    say("Measuring once more what was too slow:")
    again = measure(names)
    if found := defects(again, names):
        return found
    keys = {check.key for check in slow}
    for check in checks(again):
        if check.key in keys:
            say(str(check))
            if not check.kept:
                found.append(f"{check.key}: {check.value:.3f} is over {check.limit:.3f}, twice")
    return found
