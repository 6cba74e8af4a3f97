"""Counts everything once, and describes the machine and the software that it ran on.

usage: collect.py BINARIES COUNTS.json SURROUNDINGS.json NAME=VALUE... -- ARGUMENTS
ARGUMENTS go to filter_counts; each NAME=VALUE is one more line of the surroundings.
"""

import datetime
import json
import platform
import subprocess
import sys
from pathlib import Path

import counts


def processor():
    for line in Path("/proc/cpuinfo").read_text(encoding="utf-8").splitlines():
        if line.startswith("model name"):
            return line.split(":", 1)[1].strip()
    return platform.machine()


def output(*command):
    """The first line that a command prints, or nothing."""
    try:
        lines = subprocess.run(command, capture_output=True, text=True, check=True).stdout
    except (OSError, subprocess.CalledProcessError):
        return ""
    return lines.splitlines()[0] if lines else ""


def versions():
    for name, package in (
        ("Protocol Buffers", "protobuf"),
        ("libnftnl", "libnftnl"),
        ("Google Benchmark", "benchmark"),
    ):
        version = output("pkg-config", "--modversion", package)
        if version:
            yield f"{name} {version}"
    yield output("valgrind", "--version").replace("valgrind-", "valgrind ")


def surroundings(more):
    system = platform.freedesktop_os_release().get("PRETTY_NAME", platform.system())
    return {
        "date": datetime.date.today().isoformat(),
        "processor": f"{processor()}, {platform.machine()}",
        "system": f"{system}, {' '.join(platform.libc_ver())}",
        "libraries": ", ".join(versions()),
        **more,
    }


def main():
    split = sys.argv.index("--")
    binaries, counts_path, surroundings_path, *more = sys.argv[1:split]
    arguments = sys.argv[split + 1 :]
    program = f"{binaries}/filter_counts"
    counted = {
        "allocations": counts.allocations(program, arguments),
        "instructions": counts.instructions(program, arguments),
        "loading": {
            what: counts.loading(f"{binaries}/load_{what}")
            for what in ("nothing", "messages", "filters")
        },
    }
    Path(counts_path).write_text(json.dumps(counted, indent=1), encoding="utf-8")
    said = surroundings(dict(each.split("=", 1) for each in more))
    Path(surroundings_path).write_text(json.dumps(said, indent=1), encoding="utf-8")


if __name__ == "__main__":
    try:
        main()
    except counts.Missing as missing:
        sys.exit(f"collect.py: {missing}")
