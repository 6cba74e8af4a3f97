"""Compares what the library's operations allocate and execute with the committed counts, and with
the targets for counts.

usage: check.py allocations | instructions | renew  PROGRAM EXPECTED.json NAME=VALUE...
Allocations have to be the same. Heap bytes may differ by a thousandth, because the allocator leaves
a block what is too small behind it for another, and instructions per rule by a tenth; but these are
compared only if they were counted with the same setup: each NAME=VALUE has to be the same as in the
file.
"""

import json
import sys
from pathlib import Path

import counts
import document
import figures
import targets

SKIPPED = 77
TOLERANCES = {"allocations": 0, "heap bytes": 0.001, "instructions": 0.1}
RULES = 1000
ARGUMENTS = [f"--sizes={RULES}"]


def count(program, what):
    """The counts of all subjects, as they are passed to figures.Figures."""
    counted = {"allocations": counts.allocations(program, ARGUMENTS)}
    if what != "allocations":
        counted["instructions"] = counts.instructions(program, ARGUMENTS)
    return counted


def summary(counted):
    """What the file holds: the library's counts by operation, per rule only instructions."""
    titles = [title for title in counted["allocations"] if title.startswith("filters/")]
    numbers = {title.split("/")[1]: counted["allocations"][title] for title in titles}
    summed = {
        "allocations": {operation: count for operation, (_, count, _) in numbers.items()},
        "heap bytes": {operation: live for operation, (_, _, live) in numbers.items()},
    }
    if "instructions" in counted:
        summed["instructions"] = {
            operation: round(counted["instructions"][title] / rules)
            for title, (operation, (rules, _, _)) in zip(titles, numbers.items())
        }
    return summed


def differences(counted, expected, tolerance):
    """A line for each operation that is not as expected, is missing or is new."""
    for operation in sorted({*counted, *expected}):
        now, then = counted.get(operation), expected.get(operation)
        if now is None or then is None or abs(now - then) > tolerance * abs(then):
            yield f"{operation}: {then} expected, {now} counted"


def compare(what, counted, expected):
    """Whether the counts are as expected."""
    wrong = list(differences(counted[what], expected[what], TOLERANCES[what]))
    for line in wrong:
        print(f"{what} of {line}")
    if wrong:
        print("If this is meant, have the file written anew: build the target renew_counts.")
    else:
        print(f"{what} of {len(expected[what])} operations are as expected")
    return not wrong


def meet(all_targets):
    """Whether the counts meet the targets."""
    all_targets = list(all_targets)
    for line in document.aims(all_targets, [RULES]):
        print(line)
    return all(target.passed for target in all_targets)


def main(what, program, path, *with_what):
    path = Path(path)
    with_what = dict(each.split("=", 1) for each in with_what)
    counted = count(program, what)
    summed = summary(counted)
    if what == "renew":
        renewed = {"rules": RULES, "counted_with": with_what, **summed}
        path.write_text(json.dumps(renewed, indent=2) + "\n", encoding="utf-8")
        return 0

    expected = json.loads(path.read_text(encoding="utf-8"))
    known = figures.Figures(counted)
    comparable = expected["counted_with"] == with_what
    if not comparable:
        print(f"expected with {expected['counted_with']}, counted with {with_what}")
    if what == "allocations":
        passed = [
            compare(what, summed, expected),
            not comparable or compare("heap bytes", summed, expected),
            meet([*targets.of_allocations(known), *targets.of_heap_bytes(known)]),
        ]
    else:
        passed = [
            not comparable or compare(what, summed, expected),
            meet(targets.of_instructions(known)),
        ]
    return 0 if all(passed) else 1


if __name__ == "__main__":
    try:
        sys.exit(main(*sys.argv[1:]))
    except counts.Missing as missing:
        print(f"not counted: {missing}")
        sys.exit(SKIPPED)
