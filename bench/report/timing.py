"""Times every operation, each in processes of its own, so that none runs on the heap that another
has left. Every round takes the operations in another order, so that a slow minute of the machine
falls on a few repetitions of many operations.

usage: timing.py FILTER_BENCH TIMES.json ROUNDS REPETITIONS SECONDS ARGUMENTS
ARGUMENTS say which rules to use, as filter_bench takes them.
"""

import json
import random
import subprocess
import sys
import time

REPORT_EVERY = 5  # seconds


def titles(program, arguments):
    """The titles of all operations. The program first checks that its subjects agree."""
    lines = run(program, *arguments, "--benchmark_list_tests=true")
    return ["/".join(line.split("/")[:3]) for line in lines.splitlines()]


def run(*command):
    return subprocess.run(command, stdout=subprocess.PIPE, text=True, check=True).stdout


def timed(program, arguments, title, repetitions, seconds):
    """What Google Benchmark says of the repetitions of one operation."""
    text = run(
        program, *arguments, f"--only={title}", f"--repetitions={repetitions}",
        f"--benchmark_min_time={seconds}", f"--benchmark_min_warmup_time={seconds}",
        "--benchmark_format=json",
    )
    return json.loads(text)["benchmarks"]


def main():
    program, path, rounds, repetitions, seconds, *arguments = sys.argv[1:]
    every = titles(program, arguments)
    total = int(rounds) * len(every)
    benchmarks = []
    start = reported = time.monotonic()
    for number in range(total):
        if number % len(every) == 0:
            random.shuffle(every)
        title = every[number % len(every)]
        now = time.monotonic()
        if now >= reported + REPORT_EVERY:
            reported = now
            print(f"timing: {number} of {total} after {now - start:.0f} s: {title}",
                  file=sys.stderr)
        benchmarks += timed(program, arguments, title, repetitions, seconds)
    with open(path, "w", encoding="utf-8") as times:
        json.dump({"benchmarks": benchmarks}, times, indent=1)


if __name__ == "__main__":
    try:
        main()
    except subprocess.CalledProcessError as error:
        sys.exit(f"timing.py: {' '.join(error.cmd)} failed")
