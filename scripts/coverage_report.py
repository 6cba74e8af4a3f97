"""Prints how much of each source file the tests reach, and what they do not reach.
usage: coverage_report.py EXPORT LINES BRANCHES FOLDER...
  EXPORT           what llvm-cov export wrote
  LINES, BRANCHES  fails below this percentage
  FOLDER           whose files count
A line counts as reached, and an outcome of a condition as taken, if it is in any instantiation of
its template. What the compiler decides is not counted: constant conditions, and constexpr functions
that are used only in constant expressions.
"""
import collections
import itertools
import json
import os
import pathlib
import re
import sys

Row = collections.namedtuple("Row", "name lines missing_lines branches missing_branches")


def line_counts(segments):
    """How often each line that holds code was reached."""
    counts = {}
    before = None  # the segment that extends into the line from above
    by_line = {n: list(s) for n, s in itertools.groupby(segments, lambda s: s[0])}
    for number in range(segments[0][0], segments[-1][0] + 1):
        here = by_line.get(number, [])
        begun = [count for _, _, count, counted, entered, gap in here
                 if counted and entered and not gap]
        skipped = here and not here[0][3] and here[0][4]
        if not skipped and (begun or before is not None and before[3]):
            above = before[2] if before is not None and before[3] else 0
            counts[number] = max([above, *begun])
        before = here[-1] if here else before
    return counts


def outcome_counts(branches):
    """How often each outcome of each condition was taken, by place and outcome."""
    counts = collections.Counter()
    for first_line, first_column, last_line, last_column, yes, no, *_ in branches:
        place = (first_line, first_column, last_line, last_column)
        counts[place, "true"] += yes
        counts[place, "false"] += no
    # If neither was taken, the condition is constant; or an earlier one, which is counted itself,
    # keeps it from being evaluated.
    return {(place, outcome): count for (place, outcome), count in counts.items()
            if counts[place, "true"] + counts[place, "false"] > 0}


def constant_lines(functions):
    """The lines of constexpr functions that never ran, by file."""
    counts = collections.Counter()
    for function in functions:
        first, _, last, *_ = function["regions"][0]
        counts[os.path.normpath(function["filenames"][0]), first, last] += function["count"]
    constant = collections.defaultdict(set)
    for (file, first, last), count in counts.items():
        if count == 0 and "constexpr" in declaration(file, first):
            constant[file].update(range(first, last + 1))
    return constant


def declaration(file, first):
    """What precedes the body of a function that begins in the line."""
    before = "\n".join(pathlib.Path(file).read_text().split("\n")[max(first - 5, 0):first])
    return re.split(r"[;}]\s*\n|\n\s*\n", before)[-1]


def row_of(name, file, constant):
    lines = {n: count for n, count in line_counts(file["segments"]).items() if n not in constant}
    outcomes = {key: count for key, count in outcome_counts(file["branches"]).items()
                if key[0][0] not in constant}
    return Row(
        name, len(lines), ["%d" % n for n, count in sorted(lines.items()) if count == 0],
        len(outcomes), ["%d:%d never %s" % (*place[:2], outcome)
                        for (place, outcome), count in sorted(outcomes.items()) if count == 0])


def percent(missing, all_of_them):
    return 100 - 100 * missing / all_of_them if all_of_them else 100.0


def show(name, lines, missing_lines, branches, missing_branches, rest=""):
    print("%-42s %5d %6.1f %% %6d %6.1f %%  %s" % (
        name, lines, percent(missing_lines, lines), branches,
        percent(missing_branches, branches), rest))


def main(export, least_lines, least_branches, *folders):
    data = json.loads(pathlib.Path(export).read_text())["data"][0]
    constant = constant_lines(data["functions"])
    rows = []
    for file in data["files"]:
        path = os.path.normpath(file["filename"])
        name = os.path.relpath(path)
        if name.split("/")[0] in folders and file["segments"]:
            rows.append(row_of(name, file, constant[path]))
    print("%-42s %14s %15s  missing" % ("", "lines", "branches"))
    for row in sorted(rows):
        show(row.name, row.lines, len(row.missing_lines), row.branches,
             len(row.missing_branches), ", ".join(row.missing_lines + row.missing_branches))
    totals = [sum(column) for column in zip(*(
        (row.lines, len(row.missing_lines), row.branches, len(row.missing_branches))
        for row in rows))]
    show("all", *totals)
    return (percent(totals[1], totals[0]) < float(least_lines) or
            percent(totals[3], totals[2]) < float(least_branches))


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
