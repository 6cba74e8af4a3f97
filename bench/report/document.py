"""Writes docs/performance.md and docs/performance.svg from the figures of a run.

usage: document.py TIMES.json COUNTS.json SURROUNDINGS.json FOLDER
"""

import json
import sys
from pathlib import Path

import figures as figures_module
import picture
import targets
from figures import PEERS, SUBJECTS

# Each row: its title, the library's operation, and the peers'.
COMPARED = [
    ("build", "build", "build"),
    ("build, then copy into a group", "group_build", "group_build"),
    ("to bytes", "to_bytes", "to_bytes"),
    ("to bytes; messages built first", "to_bytes", "tree_to_bytes"),
    ("from bytes", "from_bytes", "from_bytes"),
    ("copy", "copy", "copy"),
    ("equality", "equality", "equality"),
    ("equality; messages by their bytes", "equality", "equality_of_bytes"),
    ("text", "text", "text"),
    ("text; floor appends to a string", "text", "text_appended"),
    ("destroy", "destroy", "destroy"),
]
# Operations that only the library has.
ALONE = {
    "text_walk": "text to a stream that keeps nothing",
    "stage_change": "stage change of a full group",
    "type_change": "type set anew on a full group",
    "node_copy": "entry copied into a map",
    "insertion": "insertion into a full group",
    "replacement": "replacement in a full group",
    "removal": "removal from a full group",
    "listing": "C listing of a group, and freeing it",
    "match_set": "match set",
    "match_get": "match read",
    "match_delete": "match deleted",
    "entry_copy": "entry copied",
    "entry_to_bytes": "entry to bytes",
    "entry_from_bytes": "entry from bytes",
}
WHOLE_GROUP = {own: name for name, own, peers in COMPARED if own == peers}
OPERATIONS = {**WHOLE_GROUP, **ALONE}


def table(header, rows):
    yield "| " + " | ".join(header) + " |"
    yield "|---" + "|--:" * (len(header) - 1) + "|"
    for row in rows:
        yield "| " + " | ".join(row) + " |"
    yield ""


def number(value, digits=0):
    return "" if value is None else f"{value:,.{digits}f}"


def quotient(value):
    return "" if value is None else f"{value:.2f}"


def compared(figures, size):
    peers = [peer for peer in PEERS if figures.has(peer)]
    rows = []
    for name, own, other in COMPARED:
        mine = figures.time("filters", own, size)
        row = [name, number(mine)]
        for peer in peers:
            theirs = figures.time(peer, other, size)
            row.append("" if theirs is None else f"{number(theirs)} ({quotient(mine / theirs)})")
        if any(row[2:]):
            rows.append(row)
    return table([f"{size:,} rules", *(SUBJECTS[s] for s in ["filters", *peers])], rows)


def alone(figures):
    rows = [
        [name, *(number(figures.time("filters", own, size), 1) for size in figures.sizes)]
        for own, name in ALONE.items()
    ]
    return table(["ns", *(f"{size:,} rules" for size in figures.sizes)], rows)


def counted(figures):
    few, many = figures.sizes[0], figures.sizes[-1]
    header = ["per rule"]
    for what in "allocations", "live bytes", "instructions":
        header += [f"{what}, {few:,}", f"{many:,}", "ratio"]
    rows = []
    for own, name in OPERATIONS.items():
        row = [name]
        for what in "allocations", "live_bytes", "instructions":
            a, b = (figures.count(what, "filters", own, size) for size in (few, many))
            digits = 2 if what == "allocations" else 0
            # The growth of next to nothing means nothing.
            grown = b / a if abs(a) >= 0.5 else None
            row += [number(a, digits), number(b, digits), quotient(grown)]
        rows.append(row)
    return table(header, rows)


def peers_counted(figures):
    size = figures.sizes[-1]
    peers = [peer for peer in PEERS if figures.has(peer)]
    rows = []
    for name, own, other in COMPARED:
        mine = figures.count("instructions", "filters", own, size)
        row = [name, number(mine)]
        for peer in peers:
            theirs = figures.count("instructions", peer, other, size)
            row.append("" if theirs is None else f"{number(theirs)} ({quotient(mine / theirs)})")
        if any(row[2:]):
            rows.append(row)
    subjects = [SUBJECTS[subject] for subject in ["filters", *peers]]
    return table([f"instructions, {size:,} rules", *subjects], rows)


def aims(figures):
    rows = []
    for target in targets.all_targets(figures, OPERATIONS):
        limit = "exact" if target.limit is None else quotient(target.limit)
        if target.stretch is not None:
            limit += f" ({quotient(target.stretch)})"
        rows.append(
            [target.text, limit, *map(quotient, target.values), target.verdict()]
        )
    return table(
        ["target", "at most (stretch)", *(f"{s:,} rules" for s in figures.sizes), "verdict"], rows
    )


def loading(figures):
    names = {
        "nothing": "the C++ runtime",
        "messages": "Protocol Buffers",
        "filters": "the library",
    }
    rows = [[name, *map(number, figures.loading[what])] for what, name in names.items()]
    return table(
        ["a program that does nothing, linked with", "instructions",
         "of them in initialisers", "of these in the library's own code"],
        rows,
    )


INTRODUCTION = """\
# Performance

When a switch restarts, it reloads its whole rule set: every rule is built, checked, copied into its
group, serialized, parsed in the next process, and compared. This page shows what each of these
steps costs per rule, how the cost grows with the number of rules, and how it compares to other ways
of holding rules.

`scripts/bench` repeats all measurements and writes this page. `scripts/bench --rules FILE` does so
for an access list of your own, in the format that `filterctl import` reads.
"""

SUBJECTS_EXPLAINED = """\
- **the library**: a `FiltersGroup` of rules, each a five-tuple (addresses, ports, protocol) with an
  action. *Build* makes the rules by themselves; a group then takes a copy of each.
- **messages**: bare messages of the library's own schema, as in a program that uses the generated
  classes as its data model; each part on the heap, or all on an arena, which frees everything at
  once but no single rule. They check nothing. Equality is `MessageDifferencer`'s, text
  `DebugString`'s.
- **libnftnl**: the library that programs use to pass rules to the packet filter of the Linux
  kernel. A rule is a list of expressions (load, mask if the mask is not full, compare) and a
  verdict. Rules are copied and compared by their bytes, since there is no other way.
- **floor**: the least code that does the same, written by hand for just these matches, without
  checks: 12 allocations for *build* and their frees for *destroy*; objects in maps encoded,
  decoded, copied with hints, and walked in parallel; the same text through a stream, and appended
  to a string.

Where the format is the library's, all write the same bytes and the same text; the benchmark checks
this before it begins.
"""


def page(figures, surroundings):
    yield INTRODUCTION
    yield "![Nanoseconds per rule against the number of rules](performance.svg)\n"
    yield "## Setup\n"
    yield from (f"- {name}: {value}" for name, value in surroundings.items())
    yield (
        f"- medians of {figures.repetitions} repetitions in random order, in processor time, so "
        "that other processes disturb little"
    )
    yield (
        "- before each run free heap memory is joined, and none is returned to the system: earlier "
        "runs and the kernel's page handling are not measured"
    )
    yield "\n## Targets\n"
    yield (
        "A figure is a ratio, or the allocations per rule. A target must be met at every size. "
        "Messages are those on the heap: an arena frees nothing until everything is freed, so it "
        "cannot hold rules that come and go. Its times are given below all the same.\n"
    )
    yield from aims(figures)
    yield "## Time\n"
    yield SUBJECTS_EXPLAINED
    yield (
        "In nanoseconds per rule. In brackets, the library's time divided by that of the column: "
        "below 1 the library is faster.\n"
    )
    for size in figures.sizes:
        yield from compared(figures, size)
    yield "The library's other operations, for each rule that is touched:\n"
    yield from alone(figures)
    yield "## Allocations, memory and instructions\n"
    yield (
        "Counted, so exact: allocations, including those of the runtimes; bytes still allocated "
        "after the operation; instructions as callgrind counts them.\n"
    )
    yield from counted(figures)
    yield (
        "The instructions of the others; in brackets, the library's divided by those of the "
        "column:\n"
    )
    yield from peers_counted(figures)
    yield "## Loading the library\n"
    yield from loading(figures)


def main():
    times, counts, surroundings, folder = sys.argv[1:]
    figures = figures_module.read(times, counts)
    with open(surroundings, encoding="utf-8") as file:
        text = "\n".join(page(figures, json.load(file))).rstrip() + "\n"
    Path(folder, "performance.md").write_text(text, encoding="utf-8")
    Path(folder, "performance.svg").write_text(picture.draw(figures), encoding="utf-8")


if __name__ == "__main__":
    main()
