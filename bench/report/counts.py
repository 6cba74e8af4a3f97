"""Counts that repeat exactly: allocations, and instructions as callgrind counts them."""

import os
import shutil
import subprocess
import tempfile
from pathlib import Path


# The exit status of filter_counts if it cannot count what it is asked for.
CANNOT_COUNT = 77


class Missing(Exception):
    """What counting needs is missing on this machine."""


def callgrind(arguments, out, options=(), environment=()):
    """Runs a program under callgrind, which dumps into files that begin with `out`."""
    if shutil.which("valgrind") is None:
        raise Missing("valgrind is not installed")
    command = ["valgrind", "-q", "--tool=callgrind", f"--callgrind-out-file={out}", *options]
    ended = subprocess.run(
        [*command, *arguments],
        env={**os.environ, **dict(environment)},
        check=False,
        stdout=subprocess.PIPE,
        text=True,
    )
    if ended.returncode == CANNOT_COUNT:
        raise Missing("valgrind/callgrind.h was not there when the program was built")
    ended.check_returncode()
    return ended.stdout


def read_dump(path):
    """What triggered a dump, and its total number of instructions."""
    trigger, total = "", 0
    with open(path, encoding="utf-8") as lines:
        for line in lines:
            if line.startswith("desc: Trigger:"):
                trigger = line.split(":", 3)[-1].strip()
            elif line.startswith("totals:"):
                total = int(line.split()[1])
    return trigger, total


def instructions(program, arguments):
    """{title: instructions of one run} of the operations of filter_counts."""
    with tempfile.TemporaryDirectory() as folder:
        lines = callgrind(
            [program, *arguments, "instructions"],
            f"{folder}/%p",
            ["--instr-atstart=no"],
            # Symbols resolved at load time cost the operations nothing.
            {"LD_BIND_NOW": "1"},
        ).splitlines()
        totals = dict(read_dump(path) for path in Path(folder).iterdir())
    return {title: totals[title] for title in (line.split()[0] for line in lines)}


def allocations(program, arguments):
    """{title: (rules, allocations, bytes still allocated) of one run}; needs no valgrind."""
    lines = subprocess.run(
        [program, *arguments, "allocations"], check=True, stdout=subprocess.PIPE, text=True
    ).stdout.splitlines()
    return {title: [int(n) for n in numbers] for title, *numbers in map(str.split, lines)}


# The names that compilers give to a source file's initialisation code, outside generated code.
OWN_INITIALISERS = "_GLOBAL__sub_I*.cpp"


def loading(program):
    """The instructions of a whole program, and those of its named dynamic initialisers outside
    generated code."""
    counted = []
    for options in [], [f"--toggle-collect={OWN_INITIALISERS}"]:
        with tempfile.TemporaryDirectory() as folder:
            callgrind([program], f"{folder}/dump", options)
            counted.append(read_dump(f"{folder}/dump")[1])
    return counted
