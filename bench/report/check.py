"""Compares what the library's operations allocate and execute with the committed counts.

usage: check.py allocations | instructions | renew  PROGRAM EXPECTED.json NAME=VALUE...
Allocations have to be the same. Instructions per rule may differ by a tenth, and are compared only
if they were counted with the same setup: each NAME=VALUE has to be the same as in the file.
"""

import json
import sys
from pathlib import Path

import counts

SKIPPED = 77
TOLERANCE = 0.1
RULES = 1000
ARGUMENTS = [f"--sizes={RULES}", "--subject=filters"]


def operation_of(title):
    return title.split("/")[1]


def allocations(program):
    """Counts of one run with all rules, by operation."""
    counted = counts.allocations(program, ARGUMENTS)
    return {operation_of(title): count for title, (_, count, _) in counted.items()}


def instructions(program):
    """Counts per rule, by operation."""
    executed = counts.instructions(program, ARGUMENTS)
    return {
        operation_of(title): round(executed[title] / rules)
        for title, (rules, _, _) in counts.allocations(program, ARGUMENTS).items()
    }


def differences(counted, expected, tolerance):
    """A line for each operation that is not as expected, is missing or is new."""
    for operation in sorted({*counted, *expected}):
        now, then = counted.get(operation), expected.get(operation)
        if now is None or then is None or abs(now - then) > tolerance * then:
            yield f"{operation}: {then} expected, {now} counted"


def compare(what, counted, expected, tolerance):
    wrong = list(differences(counted, expected, tolerance))
    for line in wrong:
        print(f"{what} of {line}")
    if wrong:
        print("If this is meant, have the file written anew: build the target renew_counts.")
        return 1
    print(f"{what} of {len(counted)} operations are as expected")
    return 0


def check_instructions(program, expected, with_what):
    counted = instructions(program)
    if expected["counted_with"] == with_what:
        return compare("instructions", counted, expected["instructions"], TOLERANCE)
    print(f"not compared: expected with {expected['counted_with']}, counted with {with_what}")
    for operation, count in counted.items():
        print(f"instructions of {operation}: {count}")
    return SKIPPED


def renew(program, path, with_what):
    counted = {
        "rules": RULES,
        "allocations": allocations(program),
        "counted_with": with_what,
        "instructions": instructions(program),
    }
    path.write_text(json.dumps(counted, indent=2) + "\n", encoding="utf-8")
    return 0


def main(what, program, path, *with_what):
    path = Path(path)
    with_what = dict(each.split("=", 1) for each in with_what)
    if what == "renew":
        return renew(program, path, with_what)
    expected = json.loads(path.read_text(encoding="utf-8"))
    if what == "allocations":
        return compare(what, allocations(program), expected["allocations"], 0)
    return check_instructions(program, expected, with_what)


if __name__ == "__main__":
    try:
        sys.exit(main(*sys.argv[1:]))
    except counts.Missing as missing:
        print(f"not counted: {missing}")
        sys.exit(SKIPPED)
