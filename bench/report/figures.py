"""All figures of a run, per rule, by subject, operation and number of rules."""

import json
import statistics

# What a subject is called in the document. The library comes first, then its peers.
SUBJECTS = {
    "filters": "the library",
    "messages": "messages",
    "arena": "messages on an arena",
    "nftnl": "libnftnl",
    "floor": "floor",
}
PEERS = [subject for subject in SUBJECTS if subject != "filters"]


class Figures:
    """Figures are looked up by (subject, operation, size), and are None if not measured."""

    def __init__(self, times, counted):
        self.context = times["context"]
        self.loading = counted["loading"]
        self._times = medians(times["benchmarks"])
        self._counted = {}
        for title, (rules, allocations, live) in counted["allocations"].items():
            self._counted[key_of(title)] = {
                "allocations": allocations / rules,
                "live_bytes": live / rules,
                "instructions": counted["instructions"][title] / rules,
            }
        self.sizes = sorted({size for _, _, size in self._times})
        self.repetitions = times["benchmarks"][0].get("repetitions", 1)

    def has(self, subject):
        return any(key[0] == subject for key in self._times)

    def time(self, subject, operation, size):
        """Nanoseconds."""
        return self._times.get((subject, operation, size))

    def count(self, what, subject, operation, size):
        """The count of "allocations", "live_bytes" or "instructions"."""
        return self._counted.get((subject, operation, size), {}).get(what)

    def quickest(self, subjects, operations, size):
        """The least time that any of the subjects takes for any of the operations."""
        times = [self.time(s, o, size) for s in subjects for o in operations]
        return min((time for time in times if time is not None), default=None)


def key_of(title):
    subject, operation, size = title.split("/")[:3]
    return subject, operation, int(size)


def medians(benchmarks):
    """The median of the repetitions of each benchmark."""
    repetitions = {}
    for each in benchmarks:
        if each["run_type"] == "iteration":
            time = each["real_time"] / each["rules"]
            repetitions.setdefault(key_of(each["name"]), []).append(time)
    return {key: statistics.median(values) for key, values in repetitions.items()}


def read(times_path, counted_path):
    with open(times_path, encoding="utf-8") as times:
        with open(counted_path, encoding="utf-8") as counted:
            return Figures(json.load(times), json.load(counted))
