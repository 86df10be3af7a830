"""The guard and the first table of the report, with results that are made up."""

import unittest
from dataclasses import replace

import guard
import page
import results
from results import Result, Run
from targets import GROWTH, GROWTH_READERS, GROWTH_WRITERS, ROWS


def usual_run() -> Run:
    """Every guarded benchmark as it usually is, and time per event the same for all numbers."""
    found = {name: Result({"ratio": row.usual, "job_ns": 500.0, "events": 10.0})
             for row in ROWS for name in row.required()}
    for growth in GROWTH:
        for job in (*GROWTH_READERS, *GROWTH_WRITERS):
            for number in (growth.small, growth.large):
                counters = {"job_ns": 50.0 * number, "events": 1.0 * number}
                found[f"{growth.group}/{number}/{job}"] = Result(counters)
    return Run(found)


def changed(run: Run, factor: float, counter: str, *names: str) -> Run:
    """The run with a counter of some benchmarks multiplied."""
    found = dict(run.results)
    for name in names:
        counters = found[name].counters
        found[name] = Result(counters | {counter: factor * counters[counter]})
    return replace(run, results=found)


READ_XML10 = ("read/records/XML10", "read/text/XML10", "read/languages/XML10",
              "read/attributes/XML10")


class GuardTest(unittest.TestCase):
    def judge(self, *runs: Run) -> list[str]:
        """Lets the guard measure these runs one after another; it has to use all of them."""
        self.said: list[str] = []
        self.asked: list[list[str]] = []
        waiting = list(runs)

        def measure(names: list[str]) -> Run:
            self.asked.append(names)
            return waiting.pop(0)

        failures = guard.judge(measure, self.said.append)
        self.assertEqual(waiting, [])
        return failures

    def test_the_usual_passes_at_once(self) -> None:
        self.assertEqual(self.judge(usual_run()), [])
        self.assertEqual(self.asked, [guard.everything()])
        jobs = len(GROWTH_READERS) + len(GROWTH_WRITERS)
        self.assertEqual(len(self.said), len(ROWS) + len(GROWTH) * jobs)

    def test_noise_passes(self) -> None:
        names = [name for row in ROWS for name in row.required()]
        self.assertEqual(self.judge(changed(usual_run(), 1.5, "ratio", *names)), [])

    def test_every_row_fails_when_doubled(self) -> None:
        for row in ROWS:
            with self.subTest(row.key):
                slow = changed(usual_run(), 2.0, "ratio", *row.required())
                failures = self.judge(slow, slow)
                self.assertEqual(len(failures), 1)
                self.assertTrue(failures[0].startswith(f"{row.key}: "), failures[0])
                self.assertEqual(self.asked, [guard.everything(), row.required()])

    def test_doubled_once_only_passes(self) -> None:
        slow = changed(usual_run(), 2.0, "ratio", *READ_XML10)
        self.assertEqual(self.judge(slow, usual_run()), [])

    def test_what_is_slow_the_second_time_only_passes(self) -> None:
        first = changed(usual_run(), 2.0, "ratio", *READ_XML10)
        second = changed(usual_run(), 2.0, "ratio", "small/document/FI")
        self.assertEqual(self.judge(first, second), [])

    def test_one_document_of_four_moves_the_mean(self) -> None:
        slow = changed(usual_run(), 8.0, "ratio", READ_XML10[0])
        self.assertEqual(len(self.judge(slow, slow)), 1)

    def test_growth_fails(self) -> None:
        for growth in GROWTH:
            with self.subTest(growth.group):
                name = f"{growth.group}/{growth.large}/X891-writer"
                slow = changed(usual_run(), 10.0, "job_ns", name)
                failures = self.judge(slow, slow)
                self.assertEqual(len(failures), 1)
                self.assertTrue(failures[0].startswith(f"{growth.group}/X891-writer: 10.000 "))

    def test_less_time_per_event_passes(self) -> None:
        faster = changed(usual_run(), 0.01, "job_ns", "growth-size/100/FI")
        self.assertEqual(self.judge(faster), [])

    def test_every_missing_benchmark_fails_at_once(self) -> None:
        for name in guard.required():
            found = dict(usual_run().results)
            del found[name]
            self.assertEqual(self.judge(Run(found)), [f"{name}: missing"])

    def test_a_counter_that_is_missing_or_no_number_fails_at_once(self) -> None:
        for name, counter in (("small/document/FI", "ratio"), ("growth-depth/10/FI", "events"),
                              ("growth-depth/10/FI", "job_ns")):
            for factor in (0.0, float("nan")):
                run = changed(usual_run(), factor, counter, name)
                self.assertEqual(self.judge(run), [f"{name}: no {counter}"])
            found = usual_run().results
            del found[name].counters[counter]
            self.assertEqual(self.judge(Run(found)), [f"{name}: no {counter}"])

    def test_no_results_fail(self) -> None:
        self.assertEqual(len(self.judge(Run({}))), len(guard.required()))

    def test_an_error_fails_at_once(self) -> None:
        found = usual_run().results | {"read/text/libxml2": Result(error="they do not agree")}
        self.assertEqual(self.judge(Run(found)), ["read/text/libxml2: they do not agree"])

    def test_an_error_or_a_gap_the_second_time_fails(self) -> None:
        slow = changed(usual_run(), 2.0, "ratio", *READ_XML10)
        found = dict(usual_run().results)
        found[READ_XML10[0]] = Result(error="out of memory")
        del found[READ_XML10[1]]
        self.assertEqual(self.judge(slow, Run(found)),
                         ["read/records/XML10: out of memory", "read/text/XML10: missing"])


class ParseTest(unittest.TestCase):
    def test_names_counters_and_errors(self) -> None:
        run = results.parse({
            "context": {"date": "2026-01-02T03:04:05+00:00"},
            "benchmarks": [
                {"name": "read/text/FI/iterations:3", "run_type": "iteration", "ratio": 0.5,
                 "time_unit": "ms", "events": 4, "job_ns": 10},
                {"name": "read/text/FI_mean", "run_type": "aggregate", "ratio": 9.0},
                {"name": "read/text/X891", "run_type": "iteration", "error_occurred": True,
                 "error_message": "wrong sums"},
            ]})
        self.assertEqual(list(run.results), ["read/text/FI", "read/text/X891"])
        self.assertEqual(run.counter("read/text/FI", "ratio"), 0.5)
        self.assertEqual(run.results["read/text/FI"].ns_per_event(), 2.5)
        self.assertEqual(run.errors(), {"read/text/X891": "wrong sums"})
        self.assertIsNone(run.counter("read/text/X891", "ratio"))
        self.assertEqual(run.types("read"), ["FI", "X891"])

    def test_an_empty_run(self) -> None:
        self.assertEqual(results.parse({"benchmarks": []}), Run({}))


class MeanTest(unittest.TestCase):
    row = next(row for row in ROWS if row.key == "write-binary/FI")

    def run_of(self, **ratios: float) -> Run:
        return Run({f"write-binary/{name}/FI": Result({"ratio": ratio})
                    for name, ratio in ratios.items()})

    def test_files_count_and_the_mesh_does_not(self) -> None:
        run = self.run_of(records=1.0, text=2.0, attributes=4.0, evdev=8.0, mesh=1000.0)
        self.assertAlmostEqual(results.mean_ratio(run, self.row), 64 ** 0.25)

    def test_nothing_measured(self) -> None:
        self.assertIsNone(results.mean_ratio(Run({}), self.row))
        self.assertIsNone(results.records_to_worst_other(Run({}), self.row))

    def test_records_beside_the_worst_of_the_others(self) -> None:
        run = self.run_of(records=0.6, text=0.4, attributes=0.5, mesh=100.0)
        self.assertAlmostEqual(results.records_to_worst_other(run, self.row), 1.2)

    def test_worst_peak(self) -> None:
        run = Run({
            f"{group}/{document}/{job}": Result({"added_peak_octets": octets})
            for group, document, job, octets in (
                ("memory", "text", "expat-istream", 10.0), ("memory", "text", "FI", 30.0),
                ("memory-size", "10", "expat-istream", 100.0), ("memory-size", "10", "FI", 130.0),
                ("memory-size", "100", "FI", 900.0))})
        self.assertEqual(results.worst_peak(run, "FI"), results.Peak("10 MB", 130.0, 100.0))
        self.assertIsNone(results.worst_peak(run, "X891"))


class TargetsTableTest(unittest.TestCase):
    def line(self, run: Run, start: str) -> str:
        return next(line for line in page.targets(run).splitlines() if line.startswith(start))

    def test_met_not_met_and_not_measured(self) -> None:
        run = Run({
            "small/document/XML10": Result({"ratio": 0.50}),
            "small/document/FI": Result({"ratio": 0.251}),
        })
        start = "| read 2 KB with a new reader | `{}` | expat, a new parser each time | {} |"
        for name, cells, verdict in (
                ("XML10", "0.500 | 0.50", "met"),
                ("FI", "0.251 | 0.25", "**not met**"),
                ("X891", "— | 0.25", "**not measured**")):
            with self.subTest(name):
                line = start.format(name, cells) + f" {verdict} |"
                self.assertEqual(self.line(run, line[:60]), line)

    def test_memory(self) -> None:
        def peak(mebibytes: float) -> Result:
            return Result({"added_peak_octets": mebibytes * 2**20})

        run = Run({"memory/text/expat-istream": peak(2.0), "memory/text/Expat": peak(2.125),
                   "memory/text/XML10": peak(3.0), "memory/text/FI": peak(3.0)})
        start = "| added peak of memory, worst document | `{}` | `expat-istream` | "
        over = "1.500 (text: 3.00 MiB beside 2.00) | "
        for name, rest in (
                ("Expat", "1.062 (text: 2.12 MiB beside 2.00) | 1.00 | met |"),
                ("XML10", over + "1.00 | **not met** |"),
                ("FI", over + "tables only | **more than the baseline, with the tables** |"),
                ("X891", "— | tables only | **not measured** |")):
            with self.subTest(name):
                line = start.format(name) + rest
                self.assertEqual(self.line(run, start.format(name)), line)


if __name__ == "__main__":
    unittest.main()
