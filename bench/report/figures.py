"""All figures of a run, per rule, by subject, operation and number of rules."""

import json

# What a subject is called in the document. The library comes first, then its peers.
SUBJECTS = {
    "filters": "the library",
    "messages": "messages",
    "arena": "messages on an arena",
    "nftnl": "libnftnl",
    "struct": "struct",
}

# Operations on a whole group: what they are called, the library's, and what the peers do instead.
COMPARED = [
    ("build and insert", "group_take", "build"),
    ("copy", "copy", "copy"),
    ("rules to bytes", "to_bytes", "to_bytes"),
    ("rules to bytes; messages built first", "to_bytes", "tree_to_bytes"),
    ("bytes to rules", "from_bytes", "from_bytes"),
    ("equality", "equality", "equality"),
    ("text", "text", "text"),
    ("destroy", "destroy", "destroy"),
]


class Figures:
    """Figures are looked up by what they are of, and are None if not measured."""

    def __init__(self, counted, times=None):
        self._figures = {}
        for title, (rules, allocations, live) in counted["allocations"].items():
            self._add(title, "allocations", allocations / rules)
            self._add(title, "heap bytes", live / rules)
            if "instructions" in counted:
                self._add(title, "instructions", counted["instructions"][title] / rules)
        repeated = repetitions(times["benchmarks"] if times else [])
        for title, values in repeated.items():
            # The least: what else the machine does only ever adds to a time.
            self._add(title, "time", min(values))
        self.repetitions = min(map(len, repeated.values()), default=0)
        self.loading = counted.get("loading")
        self.sizes = sorted({size for _, _, size in self._figures})
        self.subjects = [s for s in SUBJECTS if any(key[0] == s for key in self._figures)]

    def _add(self, title, what, value):
        subject, operation, size = title.split("/")[:3]
        self._figures.setdefault((subject, operation, int(size)), {})[what] = value

    def get(self, what, subject, operation, size):
        """The "time" in nanoseconds, "allocations", "heap bytes" or "instructions"."""
        return self._figures.get((subject, operation, size), {}).get(what)


def repetitions(benchmarks):
    """The times of each benchmark, per rule."""
    times = {}
    for each in benchmarks:
        if each["run_type"] == "iteration":
            times.setdefault(each["name"], []).append(each["real_time"] / each["rules"])
    return times


def read(times_path, counted_path):
    with open(times_path, encoding="utf-8") as times:
        with open(counted_path, encoding="utf-8") as counted:
            return Figures(json.load(counted), json.load(times))
