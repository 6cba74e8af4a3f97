"""Times the commands of filterctl on a large group, as whole processes, against the import of an
access list with as many entries, and ends with an error that names each target that is missed.

usage: commands.py FILTERCTL ROUNDS
"""

import os
import random
import statistics
import sys
import tempfile
import time
from pathlib import Path

ENTRIES = 65536
# What the library keeps for a rule of five fields, as its own targets have it.
HEAP_BYTES_OF_RULE = 320
MEMORY = 2  # times that of the group and of the output, besides that of a process that does nothing

# The command, its input, its operands behind it, and how many times the time of the import at most.
COMMANDS = [
    ("import", "list", [], 1),
    ("import", "rules", [], 2),
    ("import", "json", [], None),
    ("list", "group", [], 2),
    ("stats", "group", [], 2),
    ("check", "group", [], 2),
    ("diff", "group", ["group"], 2),
    ("show", "group", [], 3),
    ("json", "group", [], 5),
]


def write_list(path):
    """An access list of rules that make an entry each. The same in every run."""
    numbers = random.Random(1)
    with open(path, "w", encoding="utf-8") as out:
        for _ in range(ENTRIES):
            source, destination = (numbers.getrandbits(24) for _ in range(2))
            port = numbers.getrandbits(16)
            print(
                f"@10.{source >> 16}.{source >> 8 & 255}.{source & 255}/32\t"
                f"172.{destination >> 16}.{destination >> 8 & 255}.0/24\t"
                f"0 : 65535\t{port} : {port}\t0x{numbers.choice((6, 17)):02X}/0xFF",
                file=out,
            )


def run(command, folder, output):
    """The seconds and the most bytes in memory that a process took, and its output's size."""
    begin = time.monotonic()
    child = os.fork()
    if child == 0:
        os.chdir(folder)
        os.dup2(os.open(output, os.O_WRONLY | os.O_CREAT | os.O_TRUNC), 1)
        os.execv(command[0], command)
    _, status, usage = os.wait4(child, 0)
    seconds = time.monotonic() - begin
    if status != 0:
        sys.exit(f"commands.py: {' '.join(command)} failed")
    return seconds, usage.ru_maxrss * 1024, Path(folder, output).stat().st_size


def prepare(program, folder):
    write_list(Path(folder, "list"))
    for command, source, made in (
        ("import", "list", "group"), ("list", "group", "rules"), ("json", "group", "json")
    ):
        run([program, command, source], folder, made)


def measure(program, rounds, folder):
    """For each command all seconds, the most memory, and the size of the output."""
    figures = [([], [], 0)] * len(COMMANDS)
    for number in range(rounds):
        for index, (command, source, others, _) in enumerate(COMMANDS):
            seconds, memory, size = run([program, command, source, *others], folder, "out")
            figures[index] = (figures[index][0] + [seconds], figures[index][1] + [memory], size)
        print(f"commands: round {number + 1} of {rounds}", file=sys.stderr)
    return figures


def main():
    program, rounds = os.path.realpath(sys.argv[1]), int(sys.argv[2])
    missed = []
    with tempfile.TemporaryDirectory() as folder:
        prepare(program, folder)
        _, idle, _ = run([program, "--version"], folder, "out")
        figures = measure(program, rounds, folder)
    unit = statistics.median(figures[0][0])
    print(f"| {ENTRIES} entries | ms | of import's | at most | MB | at most |")
    print("|---|--:|--:|--:|--:|--:|")
    for (command, source, others, most), (seconds, memory, size) in zip(COMMANDS, figures):
        title = " ".join([command, source, *others])
        groups = 1 + len(others)
        quotient = statistics.median(seconds) / unit
        peak = max(memory) - idle
        limit = MEMORY * (groups * ENTRIES * HEAP_BYTES_OF_RULE + size)
        print(
            f"| {title} | {1000 * statistics.median(seconds):.0f} | {quotient:.2f} | {most or ''} "
            f"| {peak / 1e6:.0f} | {limit / 1e6:.0f} |"
        )
        if most and quotient > most:
            missed.append(f"{title}: {quotient:.2f} times the import")
        if most and peak > limit:
            missed.append(f"{title}: {peak / 1e6:.0f} MB")
    return "\n".join(f"missed: {text}" for text in missed) or 0


if __name__ == "__main__":
    sys.exit(main())
