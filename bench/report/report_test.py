"""The arithmetic of the report and of the check."""

import unittest
from pathlib import Path
from tempfile import TemporaryDirectory

import check
import counts
import figures
import picture
import targets


def benchmark(name, time, rules, run_type="iteration"):
    return {"name": name, "real_time": time, "rules": rules, "run_type": run_type}


def figures_of(times, counted=()):
    """Figures from {title: nanoseconds} and {title: (allocations, instructions)}, per rule."""
    return figures.Figures(
        {"context": {}, "benchmarks": [benchmark(t, time, 1) for t, time in times.items()]},
        {
            "allocations": {title: [1, a, 0] for title, (a, _) in dict(counted).items()},
            "instructions": {title: i for title, (_, i) in dict(counted).items()},
            "loading": {},
        },
    )


class Differences(unittest.TestCase):
    def test_are_none_within_the_tolerance(self):
        then = {"a": 100, "b": 100}
        self.assertEqual(list(check.differences({"a": 110, "b": 90}, then, 0.1)), [])
        self.assertEqual(list(check.differences({"a": 0}, {"a": 0}, 0.1)), [])

    def test_are_told_on_either_side(self):
        self.assertEqual(len(list(check.differences({"a": 111}, {"a": 100}, 0.1))), 1)
        self.assertEqual(len(list(check.differences({"a": 89}, {"a": 100}, 0.1))), 1)
        self.assertEqual(len(list(check.differences({"a": 1}, {"a": 0}, 0.1))), 1)
        self.assertEqual(len(list(check.differences({"a": 99}, {"a": 100}, 0))), 1)

    def test_are_operations_that_stand_on_one_side(self):
        self.assertEqual(len(list(check.differences({"a": 1}, {}, 0.1))), 1)
        self.assertEqual(len(list(check.differences({}, {"a": 1}, 0.1))), 1)


class Figures(unittest.TestCase):
    def test_are_medians_a_rule_without_aggregates(self):
        runs = [benchmark("filters/copy/10/manual_time", time, 10) for time in (900, 100, 200)]
        mean = benchmark("filters/copy/10/manual_time_mean", 9000, 10, "aggregate")
        self.assertEqual(figures.medians([*runs, mean]), {("filters", "copy", 10): 20})

    def test_give_the_quickest_of_those_measured(self):
        some = figures_of({"messages/copy/10": 3, "arena/copy/10": 2})
        self.assertEqual(some.quickest(["messages", "arena"], ["copy"], 10), 2)
        self.assertIsNone(some.quickest(["nftnl"], ["copy"], 10))


class Targets(unittest.TestCase):
    def test_have_to_be_met_at_every_size(self):
        self.assertEqual(targets.Target("", 1.0, [0.5, 1.0]).verdict(), "PASS")
        self.assertEqual(targets.Target("", 1.0, [0.5, 1.1]).verdict(), "FAIL")
        self.assertEqual(targets.Target("", 1.0, [None, None]).verdict(), "not measured")

    def test_may_be_stretched(self):
        self.assertEqual(
            targets.Target("", 1.0, [0.4, 0.5], stretch=0.5).verdict(), "PASS, stretch too"
        )
        self.assertEqual(targets.Target("", 1.0, [0.4, 0.6], stretch=0.5).verdict(), "PASS")

    def test_of_allocations_are_exact(self):
        def verdicts(insertion, removal):
            some = figures_of(
                {"filters/copy/9": 1},
                {
                    "filters/node_copy/9": (13, 0), "filters/entry_copy/9": (12, 0),
                    "filters/copy/9": (13, 0), "filters/insertion/9": (insertion, 0),
                    "filters/removal/9": (removal, 0),
                },
            )
            return [t.verdict() for t in targets.of_allocations(some) if t.passed is not None]

        self.assertEqual(verdicts(13, 0), ["PASS", "PASS", "PASS"])
        self.assertEqual(verdicts(14, 0), ["FAIL", "PASS", "PASS"])
        self.assertEqual(verdicts(12, 0), ["FAIL", "PASS", "PASS"])
        self.assertEqual(verdicts(13, 1), ["PASS", "PASS", "FAIL"])

    def test_of_peers_are_quotients_of_the_quickest_way(self):
        some = figures_of(
            {
                "filters/equality/9": 1, "messages/equality/9": 9,
                "messages/equality_of_bytes/9": 2,
            }
        )
        (target,) = [t for t in targets.of_peers(some) if t.values != [None]]
        self.assertEqual(target.values, [0.5])

    def test_of_growth_leave_out_what_looks_up(self):
        some = figures_of(
            {"filters/copy/1": 1, "filters/copy/9": 1},
            {
                "filters/copy/1": (0, 100), "filters/copy/9": (0, 120),
                "filters/removal/1": (0, 100), "filters/removal/9": (0, 300),
            },
        )
        (target,) = targets.of_growth(some, ["copy", "removal"])
        self.assertEqual((target.values[-1], target.verdict()), (1.2, "FAIL"))


class Dumps(unittest.TestCase):
    def test_give_their_trigger_and_total(self):
        with TemporaryDirectory() as folder:
            path = Path(folder, "dump")
            path.write_text(
                "desc: I1 cache:\ndesc: Trigger: Client Request: a/b/1\nfn=(1)\n1 2\ntotals: 42\n"
            )
            self.assertEqual(counts.read_dump(path), ("a/b/1", 42))


class Scales(unittest.TestCase):
    def test_are_logarithmic(self):
        scale = picture.Scale(1, 100, 0, 50)
        self.assertEqual([scale(1), scale(10), scale(100)], [0, 25, 50])


if __name__ == "__main__":
    unittest.main()
