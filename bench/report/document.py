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

# Each row: what it is called, the library's operation, and that of the peers.
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
# What the library alone does.
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
    header = ["a rule"]
    for what in "allocations", "live bytes", "instructions":
        header += [f"{what}, {few:,}", f"{many:,}", "quotient"]
    rows = []
    for own, name in OPERATIONS.items():
        row = [name]
        for what in "allocations", "live_bytes", "instructions":
            a, b = (figures.count(what, "filters", own, size) for size in (few, many))
            digits = 2 if what == "allocations" else 0
            # What is next to nothing has no growth.
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

A switch loads its whole rule set anew when it restarts: every rule is built, checked, copied into
its group, serialized, parsed in the next process, and compared. This is what each of these costs
for a rule, how it grows with the number of rules, and how it stands to other ways of holding rules.

`scripts/bench` repeats all measurements and writes this page. `scripts/bench --rules FILE` does so
for an access list of your own, in the format that `filterctl import` reads.
"""

SUBJECTS_EXPLAINED = """\
- **the library**: a `FiltersGroup` of rules, each a five-tuple (addresses, ports, protocol) with an
  action. *Build* makes the rules by themselves; a group then takes a copy of each.
- **messages**: the messages of the library's own schema with nothing around them, as a program
  holds rules that takes the generated classes for its data model; each part on the heap, or all on
  an arena, which frees all at once but no single rule. They check nothing. Their equality is
  `MessageDifferencer`'s, their text `DebugString`'s.
- **libnftnl**: the library that programs use to hand rules to the packet filter of the Linux
  kernel. A rule is a list of expressions: load, mask if the mask is not full, compare; and a
  verdict. A copy goes through the bytes, and equality is that of the bytes, for there are no
  others.
- **floor**: the least code that does the same, written by hand for these matches alone, without
  checks: 12 allocations for *build* and their frees for *destroy*; objects in maps encoded,
  decoded, copied with hints, and walked in parallel; the same text through a stream, and appended
  to a string.

All write the same bytes and the same text where the format is the library's; the benchmark checks
that before it begins.
"""


def page(figures, surroundings):
    yield INTRODUCTION
    yield "![Nanoseconds a rule against the number of rules](performance.svg)\n"
    yield "## On what\n"
    yield from (f"- {name}: {value}" for name, value in surroundings.items())
    yield (
        f"- medians of {figures.repetitions} repetitions in random order; the time is the "
        "processor's, so others on the machine disturb little"
    )
    yield (
        "- before each run the free memory of the heap is joined, and none goes back to the system: "
        "neither what ran before nor the kernel's pages are measured"
    )
    yield "\n## Targets\n"
    yield (
        "A figure is a quotient, or the allocations a rule. A target is met where it is met at "
        "every size. Messages are those on the heap: an arena gives nothing back before all goes, "
        "so rules that come and go cannot be held there. Its times stand below all the same.\n"
    )
    yield from aims(figures)
    yield "## Time\n"
    yield SUBJECTS_EXPLAINED
    yield (
        "In nanoseconds a rule. In brackets the library's time divided by that of the column: "
        "below 1 the library is quicker.\n"
    )
    for size in figures.sizes:
        yield from compared(figures, size)
    yield "What the library does besides, for each rule that is touched:\n"
    yield from alone(figures)
    yield "## Allocations, memory and instructions\n"
    yield (
        "Counted, so exact: allocations with all that the runtimes make, bytes that live on "
        "after the operation, instructions as callgrind counts them.\n"
    )
    yield from counted(figures)
    yield (
        "The instructions of the others; in brackets the library's divided by those of the "
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
