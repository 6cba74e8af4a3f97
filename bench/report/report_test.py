"""The arithmetic of the report and of the check."""

import unittest
from pathlib import Path
from tempfile import TemporaryDirectory

import check
import counts
import document
import figures
import picture
import targets


def benchmark(name, time, rules, run_type="iteration"):
    return {"name": name, "real_time": time, "rules": rules, "run_type": run_type}


def figures_of(times=(), counted=()):
    """Figures from {title: nanoseconds} and {title: (allocations, heap bytes, instructions)}, per
    rule."""
    counted = {**{title: (0, 0, 0) for title in dict(times)}, **dict(counted)}
    return figures.Figures(
        {
            "allocations": {title: [1, a, live] for title, (a, live, _) in counted.items()},
            "instructions": {title: i for title, (_, _, i) in counted.items()},
        },
        {"benchmarks": [benchmark(title, time, 1) for title, time in dict(times).items()]},
    )


class Differences(unittest.TestCase):
    def test_are_none_within_the_tolerance(self):
        then = {"a": 100, "b": 100}
        self.assertEqual(list(check.differences({"a": 110, "b": 90}, then, 0.1)), [])
        self.assertEqual(list(check.differences({"a": 0}, {"a": 0}, 0.1)), [])
        self.assertEqual(list(check.differences({"a": -110}, {"a": -100}, 0.1)), [])

    def test_are_told_on_either_side(self):
        self.assertEqual(len(list(check.differences({"a": 111}, {"a": 100}, 0.1))), 1)
        self.assertEqual(len(list(check.differences({"a": 89}, {"a": 100}, 0.1))), 1)
        self.assertEqual(len(list(check.differences({"a": 1}, {"a": 0}, 0.1))), 1)
        self.assertEqual(len(list(check.differences({"a": 99}, {"a": 100}, 0))), 1)

    def test_are_operations_that_stand_on_one_side(self):
        self.assertEqual(len(list(check.differences({"a": 1}, {}, 0.1))), 1)
        self.assertEqual(len(list(check.differences({}, {"a": 1}, 0.1))), 1)


class Summaries(unittest.TestCase):
    def test_are_the_librarys_and_instructions_are_per_rule(self):
        counted = {
            "allocations": {"filters/copy/10": [10, 20, 30], "messages/copy/10": [10, 90, 90]},
            "instructions": {"filters/copy/10": 46, "messages/copy/10": 99},
        }
        self.assertEqual(
            check.summary(counted),
            {"allocations": {"copy": 20}, "heap bytes": {"copy": 30}, "instructions": {"copy": 5}},
        )


class Figures(unittest.TestCase):
    def test_are_the_least_a_rule_without_aggregates(self):
        runs = [benchmark("filters/copy/10/manual_time", time, 10) for time in (900, 100, 200)]
        mean = benchmark("filters/copy/10/manual_time_mean", 9000, 10, "aggregate")
        counted = {"allocations": {"filters/copy/10": [10, 0, 0]}}
        some = figures.Figures(counted, {"benchmarks": [*runs, mean]})
        self.assertEqual(some.get("time", "filters", "copy", 10), 10)
        self.assertEqual(some.repetitions, 3)

    def test_are_found_by_what_they_are_of(self):
        some = figures_of({"filters/copy/10/manual_time": 3}, {"filters/copy/10": (1, 2, 4)})
        for what, value in ("time", 3), ("allocations", 1), ("heap bytes", 2), ("instructions", 4):
            self.assertEqual(some.get(what, "filters", "copy", 10), value)
        self.assertIsNone(some.get("time", "nftnl", "copy", 10))
        self.assertEqual((some.sizes, some.subjects), ([10], ["filters"]))


class Targets(unittest.TestCase):
    def test_have_to_be_met_at_every_size(self):
        self.assertEqual(targets.Target("", [0.5, 1.0], 1.0).verdict(), "PASS")
        self.assertEqual(targets.Target("", [0.5, 1.1], 1.0).verdict(), "FAIL")

    def test_may_be_stretched(self):
        self.assertEqual(targets.Target("", [0.4, 0.5], 1.0, 0.5).verdict(), "PASS, stretch too")
        self.assertEqual(targets.Target("", [0.4, 0.6], 1.0, 0.5).verdict(), "PASS")

    def test_leave_a_share_for_all_rules_together(self):
        self.assertEqual(targets.Target("", [2.05], 2, share=0.05).verdict(), "PASS")
        self.assertEqual(targets.Target("", [2.06], 2, share=0.05).verdict(), "FAIL")

    def test_of_allocations_take_the_worst_of_those_without(self):
        def last(**allocations):
            operations = [row[1] for row in targets.ALLOCATIONS] + targets.WITHOUT_ALLOCATION
            some = {o: allocations.get(o, 0) for o in operations}
            counted = {f"filters/{o}/9": (a, 0, 0) for o, a in some.items()}
            return list(targets.of_allocations(figures_of({}, counted)))[-1].verdict()

        self.assertEqual(last(), "PASS")
        self.assertEqual(last(removal=1), "FAIL")

    def test_of_heap_bytes_hold_for_every_way_to_a_group(self):
        def target(worst):
            live = dict(zip(targets.WAYS_TO_GROUPS, (1, worst, 2)))
            counted = {f"filters/{way}/9": (0, heap, 0) for way, heap in live.items()}
            (only,) = targets.of_heap_bytes(figures_of({}, counted))
            return only

        self.assertEqual((target(320).values, target(320).verdict()), ([320], "PASS"))
        self.assertEqual(target(321).verdict(), "FAIL")

    def test_of_messages_are_quotients_of_each_operation(self):
        own = {f"filters/{row[1]}/9": 1 for row in targets.OF_MESSAGES}
        peers = {f"{p}/{row[2]}/9": 4 for row in targets.OF_MESSAGES for p in ("messages", "arena")}
        text = {"filters/text/9": 3, "stream/text/9": 2}
        *of_messages, of_stream = targets.of_times(figures_of({**own, **peers, **text}))
        self.assertEqual(of_stream.values, [1.5])
        self.assertEqual([target.values for target in of_messages], [[0.25]] * 11)

    def test_of_growth_leave_out_what_looks_up(self):
        some = figures_of(
            {},
            {
                "filters/copy/1": (0, 0, 100), "filters/copy/9": (0, 0, 120),
                "filters/removal/1": (0, 0, 100), "filters/removal/9": (0, 0, 300),
            },
        )
        (target,) = targets.of_growth(some, ["copy", "removal"])
        self.assertEqual((target.values, target.verdict()), ([1.2], "FAIL"))


class Tables(unittest.TestCase):
    def test_of_targets_put_a_single_figure_under_the_most_rules(self):
        rows = list(document.aims([targets.Target("a", [0.5], 1.0, 0.4)], [1, 9]))
        self.assertEqual(rows[-1], "| a | 1.00 (0.40) |  | 0.50 | PASS |")


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
