"""Writes docs/performance.md and docs/performance.svg from the figures of a run. Ends with an error
that names each target that is missed.

usage: document.py TIMES.json COUNTS.json SURROUNDINGS.json FOLDER
"""

import json
import sys
from pathlib import Path

import figures as figures_module
import picture
import targets
from figures import COMPARED, SUBJECTS

# The number of rules that the first table is about, if it was measured.
TYPICAL = 10_000

# The library's operations, in the order of the last table.
OPERATIONS = {
    **{own: name for name, own, other in COMPARED if other != "tree_to_bytes"},
    "text_walk": "text to a stream that keeps nothing",
    "stage_change": "stage change of a full group",
    "type_change": "type set anew on a full group",
    "insertion": "copy inserted into a full group",
    "replacement": "replacement in a full group",
    "removal": "removal from a full group",
    "listing": "C listing of a group",
    "match_set": "match set",
    "match_get": "match read",
    "match_delete": "match deleted",
    "entry_build": "entry built",
    "entry_copy": "entry copied",
    "entry_to_bytes": "entry to bytes",
    "entry_from_bytes": "entry from bytes",
}


def table(header, rows):
    yield "| " + " | ".join(header) + " |"
    yield "|---" + "|--:" * (len(header) - 1) + "|"
    for row in rows:
        yield "| " + " | ".join(row) + " |"


def number(value, digits=0):
    return "" if value is None else f"{value:,.{digits}f}"


def short(value):
    """Ratios and allocations with decimals, bytes without."""
    return number(value, 2 if value is None or value < 100 else 0)


def compared(figures, what, size, rows):
    """The library's figures, and those of each peer, with the library's divided by them."""
    peers = figures.subjects[1:]
    for name, own, other in rows:
        mine = figures.get(what, "filters", own, size)
        row = [name, number(mine)]
        for peer in peers:
            theirs = figures.get(what, peer, other, size)
            row.append("" if theirs is None else f"{number(theirs)} ({mine / theirs:.2f})")
        yield row


def costs(figures):
    size = TYPICAL if TYPICAL in figures.sizes else figures.sizes[-1]
    rows = [
        *compared(figures, "time", size, COMPARED),
        *compared(figures, "heap bytes", size, [("heap bytes", "group_take", "build")]),
    ]
    header = [f"{size:,} rules", *(SUBJECTS[subject] for subject in figures.subjects)]
    return table(header, rows)


def aims(all_targets, sizes):
    rows = []
    for target in all_targets:
        stretch = "" if target.stretch is None else f" ({short(target.stretch)})"
        missing = [None] * (len(sizes) - len(target.values))
        rows.append(
            [target.text, short(target.limit) + stretch, *map(short, missing + target.values),
             target.verdict()]
        )
    return table(
        ["target", "at most (stretch)", *(f"{size:,} rules" for size in sizes), "verdict"], rows
    )


def operations(figures):
    last = figures.sizes[-1]
    rows = []
    for own, name in OPERATIONS.items():
        row = [name]
        row += [number(figures.get("time", "filters", own, size)) for size in figures.sizes]
        row.append(number(figures.get("allocations", "filters", own, last), 2))
        for what in "heap bytes", "instructions":
            row.append(number(figures.get(what, "filters", own, last)))
        rows.append(row)
    header = ["per rule that is touched", *(f"ns, {size:,} rules" for size in figures.sizes)]
    return table([*header, "allocations", "heap bytes", "instructions"], rows)


def loading(figures):
    nothing, messages, filters = (
        figures.loading[what][0] for what in ("nothing", "messages", "filters")
    )
    own = figures.loading["filters"][-1]
    return (
        f"Loading: a program that does nothing executes {nothing:,} instructions, linked with "
        f"Protocol Buffers {messages:,}, and linked with the library {filters:,}, of which its own "
        f"initialisers take {own:,}."
    )


INTRODUCTION = """\
# Performance

When a switch restarts, it reloads its whole rule set: every rule is built, checked, given to its
group, serialized, parsed in the next process, and compared. `scripts/bench` measures what each of
these steps costs and writes this page; `scripts/bench --rules FILE` does so for an access list of
your own, in the format that `filterctl import` reads. `scripts/bench --counts` checks in seconds
what does not vary from run to run.

## Cost of a rule

Nanoseconds for each rule, and the bytes that a built group keeps allocated for it. In brackets, the
library's figure divided by that of the column: below 1 the library is cheaper.
"""

SUBJECTS_EXPLAINED = """\
- **the library**: a `FiltersGroup` of rules, each a five-tuple (addresses, ports, protocol) with an
  action. *Rules to bytes; messages built first* is for programs that build messages to send them.
- **messages**: the generated classes of the library's own schema as the data model, on the heap, or
  on an arena, which frees everything at once but no single rule. They check nothing, are compared
  by their bytes, and their text is `DebugString`'s.
- **libnftnl**: what programs use to pass rules to the packet filter of the Linux kernel. Rules can
  only be copied and compared by their bytes.
- **struct**: the least that any design can do: flat structs of a five-tuple in a map by identifier,
  copied and compared as bytes. The library costs more because its rules are objects with virtual
  functions, with a block and a policer for each rule, and hold any subset of 32 kinds of matches.
"""

AIMS = """\
Times and instructions are divided by those of messages, on the heap unless said otherwise.
`scripts/bench` ends with an error if a target is missed at any size; the tests of a release build
check those for allocations, heap bytes and instructions at 1,000 rules.
"""


def page(figures, surroundings, all_targets):
    yield INTRODUCTION
    yield from costs(figures)
    yield ""
    yield SUBJECTS_EXPLAINED
    yield "![Nanoseconds per rule against the number of rules](performance.svg)\n"
    yield "## Targets\n"
    yield AIMS
    yield from aims(all_targets, figures.sizes)
    yield "\n## Details\n"
    yield (
        "The library's operations; allocations, heap bytes that remain and instructions with the "
        "most rules.\n"
    )
    yield from operations(figures)
    yield ""
    yield loading(figures)
    yield "\n## Setup\n"
    yield from (f"- {name}: {value}" for name, value in surroundings.items())
    yield (
        f"- the least of {figures.repetitions} repetitions in random order, in processor time; each "
        "operation has processes of its own, and a heap whose free memory is joined before each "
        "run and never returned to the system; what is made is destroyed outside the measured time"
    )


def main():
    times, counts, surroundings, folder = sys.argv[1:]
    figures = figures_module.read(times, counts)
    all_targets = list(targets.all_targets(figures, OPERATIONS))
    with open(surroundings, encoding="utf-8") as file:
        text = "\n".join(page(figures, json.load(file), all_targets)) + "\n"
    Path(folder, "performance.md").write_text(text, encoding="utf-8")
    Path(folder, "performance.svg").write_text(picture.draw(figures), encoding="utf-8")
    print(f"Wrote {folder}/performance.md and {folder}/performance.svg", file=sys.stderr)
    missed = [target.text for target in all_targets if not target.passed]
    return "\n".join(f"missed: {text}" for text in missed) or 0


if __name__ == "__main__":
    sys.exit(main())
